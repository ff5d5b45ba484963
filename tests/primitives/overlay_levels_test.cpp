// The matching of levels of a faster level against the portable one, on random input of odd sizes at odd addresses; the
// bytes around the output count too. The Gaussian filter has bits to compare with at every level.
#include "primitives/ippi.h"
#include "tests/primitives/level_test.h"

namespace {

class OverlayLevels : public LevelTest {};

TEST_P(OverlayLevels, MatchedRows) {
  for (int round = 0; round < 300; ++round) {
    const auto count = static_cast<std::size_t>(UpTo(30));
    // Values about the least mean, and ratios from far below 1 to far above.
    const float high = round % 3 == 0 ? 2e-5F : round % 3 == 1 ? 1.0F : 255.0F;
    const std::vector<float> a = Floats(4 * count, 0.0F, high), b = Floats(4 * count, -2e-5F, 255.0F);
    const std::vector<float> c = Floats(4 * count, 0.0F, 255.0F), d = Floats(4 * count, 0.0F, high);
    const unsigned channels = random_() % 8;
    ExpectSame<Ipp8u>(4 * count, [&](const Kernels& level, Ipp8u* pixels) {
      level.overlay.matchRow(pixels, {a.data(), b.data(), c.data(), d.data()}, channels, count);
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, OverlayLevels, testing::Values(CpuLevel::sse41, CpuLevel::avx2), levelName);

TEST(PlanesOfFourChannels, ComeApartAndTogether) {
  std::mt19937 random(3);
  for (const IppiSize size : {IppiSize{1, 1}, {3, 2}, {4, 5}, {7, 3}, {50, 4}}) {
    const int planeStep = size.width + 3, pixelStep = 4 * size.width + 5;  // in floats
    const auto planeSize = static_cast<std::size_t>(planeStep * size.height);
    std::vector<float> pixels(static_cast<std::size_t>(pixelStep * size.height));
    for (float& value : pixels) value = static_cast<float>(random() % 1000);
    std::vector<std::vector<float>> planes(4, std::vector<float>(planeSize, -1.0F));
    float* const parts[4] = {planes[0].data(), planes[1].data(), planes[2].data(), planes[3].data()};
    ASSERT_EQ(ippiCopy_32f_C4P4R(pixels.data(), pixelStep * 4, parts, planeStep * 4, size), ippStsNoErr);
    for (int i = 0; i < static_cast<int>(planeSize); ++i) {
      const int x = i % planeStep, y = i / planeStep;
      for (int c = 0; c < 4; ++c) {
        const float expected = x < size.width ? pixels[static_cast<std::size_t>(y * pixelStep + 4 * x + c)] : -1.0F;
        ASSERT_EQ(parts[c][i], expected) << x << ", " << y << ", channel " << c;
      }
    }
    std::vector<float> joined = pixels;
    for (int y = 0; y < size.height; ++y) std::fill_n(joined.begin() + y * pixelStep, 4 * size.width, 0.0F);
    ASSERT_EQ(ippiCopy_32f_P4C4R(parts, planeStep * 4, joined.data(), pixelStep * 4, size), ippStsNoErr);
    EXPECT_EQ(joined, pixels);
  }
}

TEST(PlanesOfFourChannels, RefuseNullsAndEmptySizes) {
  float pixels[4] = {1, 2, 3, 4}, values[4] = {};
  float* planes[4] = {values, values + 1, values + 2, nullptr};
  EXPECT_EQ(ippiCopy_32f_C4P4R(pixels, 16, planes, 4, {1, 1}), ippStsNullPtrErr);
  EXPECT_EQ(ippiCopy_32f_C4P4R(pixels, 16, nullptr, 4, {1, 1}), ippStsNullPtrErr);
  EXPECT_EQ(ippiCopy_32f_P4C4R(planes, 4, pixels, 16, {1, 1}), ippStsNullPtrErr);
  planes[3] = values + 3;
  EXPECT_EQ(ippiCopy_32f_C4P4R(pixels, 16, planes, 4, {0, 1}), ippStsSizeErr);
  EXPECT_EQ(ippiCopy_32f_P4C4R(planes, 4, nullptr, 16, {1, 1}), ippStsNullPtrErr);
  EXPECT_EQ(values[0], 0.0F);
}

}  // namespace
