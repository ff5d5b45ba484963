#include <climits>
#include <cstdlib>
#include <vector>

#include "image/params.h"
#include "library_fixture.h"

namespace {

class Contexts : public LibraryTest {
 protected:
  ContextID create() {
    ContextID id = 0;
    EXPECT_EQ(VIZL_CreateContext_ID(&id), VIZLE_OK);
    created.push_back(id);
    return id;
  }

  void TearDown() override {
    // Contexts live on past the library; the ones that a test has freed are refused here.
    for (ContextID id : created) VIZL_FreeContext_ID(id);
    LibraryTest::TearDown();
  }

  std::vector<ContextID> created;
};

struct TThresholds {
  int first;
  int second;
  bool operator==(const TThresholds&) const = default;
};

TThresholds thresholdsOf(ContextID context) { return {ContextThreshold1(context), ContextThreshold2(context)}; }

TEST_F(Contexts, NumbersStartAtOneAndTheLowestFreeComesBack) {
  for (ContextID expected = 1; expected <= 3; ++expected) EXPECT_EQ(create(), expected);
  // A hole in front, and one at the end.
  for (const ContextID first : {1, 2}) {
    EXPECT_EQ(VIZL_FreeContext_ID(first), VIZLE_OK);
    EXPECT_EQ(VIZL_FreeContext_ID(first + 1), VIZLE_OK);
    EXPECT_EQ(create(), first);
    EXPECT_EQ(create(), first + 1);
  }
  EXPECT_EQ(create(), 4) << "and then the table grows";
}

TEST_F(Contexts, WritingToAnUnknownOneIsRefused) {
  const ContextID freed = create();
  create();
  ASSERT_EQ(VIZL_FreeContext_ID(freed), VIZLE_OK);
  int owner;
  void* value = &owner;
  for (ContextID id : {freed, -1, 3, 1000, INT_MAX, INT_MIN}) {
    EXPECT_EQ(VIZL_FreeContext_ID(id), VIZLE_INVALID_ARGUMENT) << id;
    EXPECT_EQ(VIZL_SetContextUserField(id, &owner), VIZLE_INVALID_ARGUMENT) << id;
    EXPECT_EQ(VIZL_GetContextUserField(id, &value), VIZLE_INVALID_ARGUMENT) << id;
    EXPECT_EQ(VIZL_SetFaceDetectionParameters_C(true, true, 384, id), VIZLE_INVALID_ARGUMENT) << id;
    EXPECT_EQ(VIZL_SetFaceDetectionThreshold_C(3, id), VIZLE_INVALID_ARGUMENT) << id;
    EXPECT_EQ(VIZL_SetJpegCompressionQuality_C(90, id), VIZLE_INVALID_ARGUMENT) << id;
  }
  EXPECT_EQ(value, &owner);
  EXPECT_EQ(VIZL_FreeContext_ID(0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_SetContextUserField(0, &owner), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_GetContextUserField(0, &value), VIZLE_INVALID_ARGUMENT);
}

TEST_F(Contexts, ReadingAnUnknownOneGivesTheFallBacks) {
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(false, false, 50), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold(9), VIZLE_OK);
  ASSERT_EQ(VIZL_SetJpegCompressionQuality(5), VIZLE_OK);
  const ContextID freed = create();
  ASSERT_EQ(VIZL_FreeContext_ID(freed), VIZLE_OK);
  for (ContextID id : {freed, -1, 12345}) {
    EXPECT_TRUE(ContextHandleArbitraryRotations(id));
    EXPECT_TRUE(ContextDetermineFaceRotationAngle(id));
    EXPECT_EQ(ContextInternalResizeWidth(id), 384);
    EXPECT_EQ(thresholdsOf(id), (TThresholds{4, 5}));
    EXPECT_EQ(ContextJpegQuality(id), 90);
  }
}

TEST_F(Contexts, NewOnesStartFromTheDefaultsAndStandAlone) {
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(false, false, 50), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold(9), VIZLE_OK);
  ASSERT_EQ(VIZL_SetJpegCompressionQuality(5), VIZLE_OK);
  const ContextID one = create(), two = create();
  EXPECT_TRUE(ContextHandleArbitraryRotations(one));
  EXPECT_TRUE(ContextDetermineFaceRotationAngle(one));
  EXPECT_EQ(ContextInternalResizeWidth(one), 384);
  EXPECT_EQ(thresholdsOf(one), (TThresholds{2, 3}));
  EXPECT_EQ(ContextJpegQuality(one), 90);

  ASSERT_EQ(VIZL_SetFaceDetectionParameters_C(false, true, 20, one), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold_C(7, one), VIZLE_OK);
  ASSERT_EQ(VIZL_SetJpegCompressionQuality_C(33, one), VIZLE_OK);
  EXPECT_FALSE(ContextHandleArbitraryRotations(one));
  EXPECT_TRUE(ContextDetermineFaceRotationAngle(one));
  EXPECT_EQ(ContextInternalResizeWidth(one), 20);
  EXPECT_EQ(thresholdsOf(one), (TThresholds{6, 7}));
  EXPECT_EQ(ContextJpegQuality(one), 33);
  EXPECT_EQ(thresholdsOf(two), (TThresholds{2, 3}));
  EXPECT_EQ(ContextInternalResizeWidth(0), 50);
}

TEST_F(Contexts, OneThresholdGivesAPair) {
  EXPECT_EQ(VIZL_SetFaceDetectionThreshold(1), VIZLE_OK);
  EXPECT_EQ(thresholdsOf(0), (TThresholds{1, 1}));
  EXPECT_EQ(VIZL_SetFaceDetectionThreshold(2), VIZLE_OK);
  EXPECT_EQ(thresholdsOf(0), (TThresholds{1, 2}));
  EXPECT_EQ(VIZL_SetFaceDetectionThreshold(INT_MAX), VIZLE_OK);
  EXPECT_EQ(thresholdsOf(0), (TThresholds{INT_MAX - 1, INT_MAX}));
  EXPECT_EQ(SetFaceDetectionThreshold(5, 1, 0), VIZLE_OK);
  EXPECT_EQ(thresholdsOf(0), (TThresholds{5, 1}));
}

TEST_F(Contexts, NumbersOutOfRangeAreRefusedAndStoreNothing) {
  const ContextID context = create();
  for (ContextID id : {0, context}) {
    for (int threshold : {0, -1, INT_MIN}) {
      EXPECT_EQ(VIZL_SetFaceDetectionThreshold_C(threshold, id), VIZLE_INVALID_ARGUMENT);
    }
    EXPECT_EQ(SetFaceDetectionThreshold(0, 3, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(SetFaceDetectionThreshold(3, 0, id), VIZLE_INVALID_ARGUMENT);
    for (int width : {19, 0, INT_MIN}) {
      EXPECT_EQ(VIZL_SetFaceDetectionParameters_C(false, false, width, id), VIZLE_INVALID_ARGUMENT);
    }
    for (int quality : {-1, 101, INT_MIN, INT_MAX}) {
      EXPECT_EQ(VIZL_SetJpegCompressionQuality_C(quality, id), VIZLE_INVALID_ARGUMENT);
    }
    EXPECT_TRUE(ContextHandleArbitraryRotations(id));
    EXPECT_EQ(ContextInternalResizeWidth(id), 384);
    EXPECT_EQ(thresholdsOf(id), (TThresholds{2, 3}));
    EXPECT_EQ(ContextJpegQuality(id), 90);
    for (int quality : {0, 100}) EXPECT_EQ(VIZL_SetJpegCompressionQuality_C(quality, id), VIZLE_OK);
    EXPECT_EQ(VIZL_SetFaceDetectionParameters_C(true, true, 20, id), VIZLE_OK);
  }
}

// That the field is released with its context is for the leak checker to see.
TEST_F(Contexts, TheUserFieldBelongsToTheContext) {
  const ContextID id = create();
  void* value = &value;
  EXPECT_EQ(VIZL_GetContextUserField(id, &value), VIZLE_OK);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(VIZL_GetContextUserField(id, nullptr), VIZLE_INVALID_ARGUMENT);
  void* const stored = std::malloc(100);
  EXPECT_EQ(VIZL_SetContextUserField(id, stored), VIZLE_OK);
  EXPECT_EQ(VIZL_SetContextUserField(id, nullptr), VIZLE_INVALID_ARGUMENT) << "a field can't be cleared";
  EXPECT_EQ(VIZL_GetContextUserField(id, &value), VIZLE_OK);
  EXPECT_EQ(value, stored);
  EXPECT_EQ(VIZL_FreeContext_ID(id), VIZLE_OK);
  ASSERT_EQ(create(), id);
  EXPECT_EQ(VIZL_GetContextUserField(id, &value), VIZLE_OK);
  EXPECT_EQ(value, nullptr);
}

TEST(ContextsWithoutALibrary, ReadAndWriteForProgramsBelowTheFrame) {
  EXPECT_EQ(SetFaceDetectionParameters(true, true, 99, 0), VIZLE_OK);
  EXPECT_EQ(ContextInternalResizeWidth(0), 99);
  EXPECT_EQ(SetFaceDetectionParameters(true, true, 384, 0), VIZLE_OK);
  int id = 0;
  EXPECT_EQ(CreateContext(&id), VIZLE_OK);
  EXPECT_EQ(FreeContext(id), VIZLE_OK);
}

}  // namespace
