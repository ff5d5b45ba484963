// The memory of large pictures that is kept for the next one.
#include "image/pixel_buffer_store.h"

#include <cstdlib>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/image/pictures.h"

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

class PixelBufferStore : public testing::Test {
 protected:
  void SetUp() override { releaseSpareBuffers(); }
  void TearDown() override { releaseSpareBuffers(); }

  static void giveDirty(std::size_t bytes) {
    void* const memory = takePixelBuffer(bytes).memory;
    ASSERT_NE(memory, nullptr);
    std::memset(memory, 0xA5, bytes);
    givePixelBuffer(memory, bytes);
  }

  // Whether a buffer of this size comes from the store; what comes from the system must be zero.
  static bool isReused(std::size_t bytes) {
    const TPixelBuffer buffer = takePixelBuffer(bytes);
    const auto* const memory = static_cast<const unsigned char*>(buffer.memory);
    for (std::size_t i = 0; buffer.isZero && i < bytes; i += 997) EXPECT_EQ(memory[i], 0);
    std::free(buffer.memory);
    return !buffer.isZero;
  }
};

TEST_F(PixelBufferStore, GivesALargeBufferToTheNextThatItSuits) {
  for (const auto& [first, second, reused] : {std::tuple{8 * kMiB, 8 * kMiB, true},
                                              {8 * kMiB, 5 * kMiB, true},
                                              {8 * kMiB, 4 * kMiB, true},
                                              {8 * kMiB, 4 * kMiB - 2, false},
                                              {8 * kMiB, 8 * kMiB + 1, false},
                                              {4 * kMiB - 1, 4 * kMiB - 1, false},
                                              {64 * kMiB, 64 * kMiB, true},
                                              {64 * kMiB + 1, 64 * kMiB, false}}) {
    giveDirty(first);
    EXPECT_EQ(isReused(second), reused) << first << " then " << second;
    releaseSpareBuffers();
  }
}

TEST_F(PixelBufferStore, GivesEachBufferOnce) {
  giveDirty(6 * kMiB);
  EXPECT_TRUE(isReused(6 * kMiB));
  EXPECT_FALSE(isReused(6 * kMiB));
}

TEST_F(PixelBufferStore, KeepsTwoAndTheNewest) {
  // Three at a time, so that none comes from another.
  void* memory[3];
  for (std::size_t i = 0; i < 3; ++i) memory[i] = takePixelBuffer((10 + 20 * i) * kMiB).memory;
  for (std::size_t i = 0; i < 3; ++i) givePixelBuffer(memory[i], (10 + 20 * i) * kMiB);
  EXPECT_TRUE(isReused(50 * kMiB));
  EXPECT_NE(isReused(10 * kMiB), isReused(30 * kMiB));
}

TEST_F(PixelBufferStore, NeverGivesOneBufferToTwoThreads) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      constexpr std::size_t kBytes = 4 * kMiB;
      for (int round = 0; round < 200; ++round) {
        const TPixelBuffer buffer = takePixelBuffer(kBytes);
        auto* const memory = static_cast<unsigned char*>(buffer.memory);
        for (std::size_t i = 0; i < kBytes; i += 4096) memory[i] = static_cast<unsigned char>(t);
        for (std::size_t i = 0; i < kBytes; i += 4096) ASSERT_EQ(memory[i], t);
        givePixelBuffer(memory, kBytes);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

constexpr int kWidth = 1300, kHeight = 1100;  // above 4 MiB in three bytes a pixel

void leaveDirty(TIppiImageMode mode) {
  TIppiImage image(mode);
  image.AllocNew(kWidth, kHeight);
  std::memset(image.Pixels, 0xA5, static_cast<std::size_t>(image.SizeBytes));
}

TEST_F(PixelBufferStore, NewImagesAreZeroNevertheless) {
  for (const TIppiImageMode mode : {imRGB24, imRGBA32, imGray32f}) {
    TIppiImage fresh(mode), reused(mode);
    fresh.AllocNew(kWidth, kHeight);
    leaveDirty(mode);
    reused.AllocNew(kWidth, kHeight);
    EXPECT_EQ(0, std::memcmp(fresh.Pixels, reused.Pixels, static_cast<std::size_t>(fresh.SizeBytes)));
  }
}

TEST_F(PixelBufferStore, ImagesToFillHaveZeroPadding) {
  for (const TIppiImageMode mode : kByteModes) {
    leaveDirty(imRGBA32);
    TIppiImage image(mode);
    image.AllocToFill(mode == imGray8 ? 3 * kWidth : kWidth, kHeight);
    EXPECT_EQ(image.Pixels[100], 0xA5) << "the case is about used memory";
    EXPECT_TRUE(soundImage(image));
  }
  TIppiImage colour(imRGB24), gray;
  fillRandom(colour, 2600, 1700, 5);
  leaveDirty(imRGBA32);
  gray.CopyFrom(colour);
  EXPECT_TRUE(soundImage(gray));
}

}  // namespace
