// Many threads at once. What these protect shows best under the thread sanitizer.
#include <atomic>
#include <barrier>
#include <functional>
#include <thread>

#include "api/handles.h"
#include "image/params.h"
#include "library_fixture.h"

namespace {

constexpr int kThreads = 4;

void runInThreads(const std::function<void(int)>& work) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      work(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

class ApiThreads : public LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    UseDiscDetector();
  }
};

TEST_F(ApiThreads, CreateUseAndFreeWhileOthersLookUp) {
  const TPicture shared = RandomPicture(17, 13, 3);
  const HImage stable = ImageOf(shared);
  runInThreads([&](int thread) {
    for (int round = 0; round < 25; ++round) {
      const TPicture picture = RandomPicture(5 + thread, 4, 3, static_cast<unsigned>(round));
      const HImage image = ImageOf(picture);
      ASSERT_NE(image, stable);
      ASSERT_TRUE(PictureOf(image, 3) == picture) << "another thread got the same slot";
      ASSERT_EQ(WidthOf(stable), 17);
      int width;
      VIZL_GetImageWidth(1000, &width);
      ASSERT_EQ(VIZL_CopyImage(stable, image), VIZLE_OK);
      ASSERT_EQ(VIZL_FreeImage(image), VIZLE_OK);
    }
  });
  EXPECT_EQ(GetImagesReads(), 0);
  EXPECT_LE(Images.size(), 1u + kThreads) << "freed slots are used again";
  EXPECT_TRUE(PictureOf(stable, 3) == shared);
}

// Large, so that making the copy takes longer than the threads' start and all of them are at it.
TEST_F(ApiThreads, TwoFirstDetectionsAtOnceShareOneCopy) {
  const HImage source = ImageOf(PlainPicture(2400, 1800, 3, 7));
  for (int round = 0; round < 10; ++round) {
    const HImage image = EmptyImage();
    ASSERT_EQ(VIZL_CopyImage(source, image), VIZLE_OK);
    TIppiImage* copies[kThreads] = {};
    runInThreads([&](int thread) { copies[thread] = DetectionCopyOf(*Images[image]); });
    for (TIppiImage* copy : copies) EXPECT_EQ(copy, Images[image]->DetectionCopy.load());
    ASSERT_EQ(VIZL_FreeImage(image), VIZLE_OK);
  }
}

TEST_F(ApiThreads, PortraitsAreCutWhileSettingsChange) {
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(false, false, 200), VIZLE_OK);
  const HImage image = ImageOf(DiscPicture(300, 200, 150, 100, 40));
  std::atomic<bool> done = false;
  std::thread settings([&] {
    for (int round = 0; !done; ++round) {
      VIZL_SetFaceDetectionThreshold(1 + round % 3);
      VIZL_SetFaceDetectionParameters(round % 2 == 0, false, 200);
      VIZL_SetJpegCompressionQuality(round % 101);
      pcSetFaceShift(0, 0.01f * static_cast<float>(round % 10));
    }
  });
  runInThreads([&](int) {
    const HImage portrait = EmptyImage();
    for (int round = 0; round < 3; ++round) {
      ASSERT_EQ(pcPortraitCut_HImageToHImage_C(image, portrait, 30, 40, 0), VIZLE_OK);
      ASSERT_EQ(WidthOf(portrait), 30);
    }
    ASSERT_EQ(VIZL_FreeImage(portrait), VIZLE_OK);
  });
  done = true;
  settings.join();
}

TEST_F(ApiThreads, ContextsAreMadeAndFreedAtOnce) {
  runInThreads([](int thread) {
    for (int round = 0; round < 200; ++round) {
      ContextID id = 0;
      ASSERT_EQ(VIZL_CreateContext_ID(&id), VIZLE_OK);
      ASSERT_EQ(VIZL_SetFaceDetectionThreshold_C(10 + thread, id), VIZLE_OK);
      ASSERT_EQ(pcSetFaceScale_C(2, id), VIZLE_OK);
      ASSERT_EQ(ContextThreshold2(id), 10 + thread) << "another thread got the same context";
      ASSERT_EQ(VIZL_FreeContext_ID(id), VIZLE_OK);
    }
  });
  ContextID id = 0;
  ASSERT_EQ(VIZL_CreateContext_ID(&id), VIZLE_OK);
  EXPECT_LE(id, kThreads + 1);
  EXPECT_EQ(VIZL_FreeContext_ID(id), VIZLE_OK);
}

}  // namespace
