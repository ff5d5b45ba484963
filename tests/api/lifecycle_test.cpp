#include <cstring>
#include <string>

#include "detect/TIppiFaceDetector.h"
#include "image/params.h"
#include "library_fixture.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#define DISABLE_LEAK_CHECK __lsan::ScopedDisabler noLeakCheck
#else
#define DISABLE_LEAK_CHECK
#endif

namespace {

TEST(Lifecycle, AnyPathStartsTheLibraryAndNoneIsKept) {
  for (const char* path : {static_cast<const char*>(nullptr), "", "/no/such/folder"}) {
    EXPECT_EQ(VIZL_Initialize(path), VIZLE_OK);
    EXPECT_EQ(DataFilesPath, nullptr);
    EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
  }
}

TEST(Lifecycle, FinalizeFreesWhatIsOpenAndNumbersStartAgain) {
  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  EXPECT_EQ(EmptyImage(), 0u);
  EXPECT_EQ(ImageOf(RandomPicture(9, 9, 3)), 1u);
  EXPECT_EQ(VIZL_FreeImage(0), VIZLE_OK);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
  EXPECT_EQ(IppiFaceDetector, nullptr);
  EXPECT_EQ(mutex_params, nullptr);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_INVALID_ARGUMENT);

  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  EXPECT_FALSE(IsValid(0));
  EXPECT_FALSE(IsValid(1));
  EXPECT_EQ(EmptyImage(), 0u);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
}

TEST(Lifecycle, ContextsAndSettingsOutliveFinalize) {
  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  ContextID context = 0;
  ASSERT_EQ(VIZL_CreateContext_ID(&context), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionParameters_C(false, true, 77, context), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(true, false, 123), VIZLE_OK);
  ASSERT_EQ(VIZL_Finalize(), VIZLE_OK);
  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  EXPECT_EQ(ContextInternalResizeWidth(context), 77);
  EXPECT_EQ(ContextInternalResizeWidth(0), 123);
  EXPECT_FALSE(ContextDetermineFaceRotationAngle(0));
  EXPECT_EQ(VIZL_FreeContext_ID(context), VIZLE_OK);
  EXPECT_EQ(VIZL_SetFaceDetectionParameters(true, true, 384), VIZLE_OK);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
}

TEST(Lifecycle, ASecondInitializeStartsAnew) {
  {
    // What the first start made is never released.
    DISABLE_LEAK_CHECK;
    ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
    ImageOf(RandomPicture(40, 40, 3));
    EmptyImage();
  }
  const TIppiFaceDetector* const first = IppiFaceDetector;
  EXPECT_EQ(VIZL_Initialize(""), VIZLE_OK);
  EXPECT_NE(IppiFaceDetector, first);
  EXPECT_FALSE(IsValid(0));
  EXPECT_FALSE(IsValid(1));
  EXPECT_EQ(EmptyImage(), 0u);
  EXPECT_EQ(WidthOf(0), 0);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_INVALID_ARGUMENT);
}

TEST(Lifecycle, TheVersionNeedsNoStart) { EXPECT_STREQ(VIZL_GetVersion(), PORTRAITCUT_VERSION); }

TEST(Lifecycle, TheFlagsAreTheApplications) {
  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  NeedInterrupt = 1;
  NeedBreak = 1;
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
  EXPECT_EQ(NeedInterrupt, 1);
  EXPECT_EQ(NeedBreak, 1);
  NeedInterrupt = 0;
  NeedBreak = 0;
}

TEST(Resources, AreFoundByTheirExactNamesWhileTheTableStands) {
  EXPECT_EQ(VIZL_resData("CDATA"), nullptr) << "no table yet";
  EXPECT_EQ(VIZL_resType("CDATA"), nullptr);
  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  EXPECT_EQ(VIZL_resData("CDATA"), VIZL_resu1);
  EXPECT_EQ(VIZL_resData("EYESVM"), VIZL_resu2);
  EXPECT_EQ(VIZL_resData("EYESVM2"), VIZL_resu3);
  EXPECT_EQ(VIZL_resData("MW"), VIZL_resu4);
  EXPECT_STREQ(VIZL_resType("MW"), "unknown 4096");
  EXPECT_STREQ(VIZL_resType("EYESVM"), "unknown 178716");
  for (const char* name : {"cdata", "", "EYESVM3", "EYES"}) EXPECT_EQ(VIZL_resData(name), nullptr) << name;
  EXPECT_EQ(VIZL_resData(nullptr), nullptr);
  EXPECT_EQ(VIZL_resType(nullptr), nullptr);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
  EXPECT_EQ(VIZL_resData("MW"), nullptr);

  VIZL_resInit();
  EXPECT_EQ(VIZL_resData("MW"), VIZL_resu4) << "the table needs no library";
  ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
}

}  // namespace
