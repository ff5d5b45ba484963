// The memory of large pictures that is kept for the next one.
#include "image/pixel_buffer_store.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
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
    givePixelBuffer(memory);
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
  // The system may give a little more than was asked for: no case stands at the very limit from above.
  for (const auto& [first, second, reused] : {std::tuple{8 * kMiB, 8 * kMiB, true},
                                              {8 * kMiB, 5 * kMiB, true},
                                              {9 * kMiB, 4 * kMiB, false},
                                              {8 * kMiB, 9 * kMiB, false},
                                              {3 * kMiB, 3 * kMiB, true},
                                              {kMiB, kMiB, false},
                                              {3 * kMiB, 2 * kMiB - 1, false},
                                              {64 * kMiB, 64 * kMiB, true},
                                              {66 * kMiB, 64 * kMiB, false}}) {
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

// Buffers of sizes that do not suit each other, all taken before any is given back.
int countKept(const std::vector<std::size_t>& sizes, const std::function<bool(std::size_t)>& isReused) {
  std::vector<void*> memory;
  for (const std::size_t bytes : sizes) memory.push_back(takePixelBuffer(bytes).memory);
  for (void* const buffer : memory) givePixelBuffer(buffer);
  return static_cast<int>(std::count_if(sizes.begin(), sizes.end(), isReused));
}

TEST_F(PixelBufferStore, KeepsNoMoreThanItsLimits) {
  EXPECT_EQ(countKept({60 * kMiB, 29 * kMiB, 14 * kMiB, 6 * kMiB}, isReused), 4);
  EXPECT_LE(countKept({60 * kMiB, 60 * kMiB, 29 * kMiB, 14 * kMiB}, isReused), 3);
  EXPECT_EQ(countKept(std::vector<std::size_t>(12, 5 * kMiB), isReused), 8);
  giveDirty(60 * kMiB);
  giveDirty(29 * kMiB);
  releaseSpareBuffers();
  EXPECT_FALSE(isReused(60 * kMiB) || isReused(29 * kMiB));
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
        givePixelBuffer(memory);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

constexpr int kWidth = 1300, kHeight = 1100;  // 4 MiB in three bytes a pixel

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
