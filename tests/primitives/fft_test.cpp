#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "primitives/ippi.h"
#include "tests/primitives/guarded_picture.h"

namespace {

struct FreeSpec {
  void operator()(IppiFFTSpec_R_32f* spec) const { ippiFFTFree_R_32f(spec); }
};
using Spec = std::unique_ptr<IppiFFTSpec_R_32f, FreeSpec>;

Spec makeSpec(int orderX, int orderY) {
  IppiFFTSpec_R_32f* spec = nullptr;
  EXPECT_EQ(ippiFFTInitAlloc_R_32f(&spec, orderX, orderY, IPP_FFT_DIV_INV_BY_N, 1), ippStsNoErr);
  return Spec(spec);
}

// A dense image whose sides are powers of two.
struct Image {
  Image(int orderX, int orderY) : size{1 << orderX, 1 << orderY}, values(count()) {}
  std::size_t count() const { return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height); }
  int step() const { return size.width * static_cast<int>(sizeof(float)); }
  float& at(int x, int y) { return values[static_cast<std::size_t>(x + y * size.width)]; }
  IppiSize size;
  std::vector<float> values;
};

Image randomImage(int orderX, int orderY, unsigned seed) {
  std::mt19937 random(seed);
  Image image(orderX, orderY);
  for (float& value : image.values) value = std::uniform_real_distribution<float>(-1, 1)(random);
  return image;
}

void forward(Image& image, const Spec& spec) {
  ASSERT_EQ(ippiFFTFwd_RToPack_32f_C1IR(image.values.data(), image.step(), spec.get(), nullptr), ippStsNoErr);
}

void inverse(Image& image, const Spec& spec) {
  ASSERT_EQ(ippiFFTInv_PackToR_32f_C1IR(image.values.data(), image.step(), spec.get(), nullptr), ippStsNoErr);
}

// image := circular convolution of image and kernel, through the spectra.
void convolve(Image& image, Image kernel, const Spec& spec) {
  forward(kernel, spec);
  forward(image, spec);
  ASSERT_EQ(ippiMulPack_32f_C1IR(kernel.values.data(), kernel.step(), image.values.data(), image.step(), image.size),
            ippStsNoErr);
  inverse(image, spec);
}

double directValue(Image& image, Image& kernel, int x, int y) {
  const int width = image.size.width, height = image.size.height;
  double sum = 0;
  for (int j = 0; j < height; ++j) {
    for (int i = 0; i < width; ++i) {
      sum += static_cast<double>(image.at((x - i + width) % width, (y - j + height) % height)) *
             static_cast<double>(kernel.at(i, j));
    }
  }
  return sum;
}

double largestDifference(const Image& a, const Image& b) {
  double largest = 0;
  for (std::size_t i = 0; i < a.values.size(); ++i) {
    largest = std::max(largest, static_cast<double>(std::abs(a.values[i] - b.values[i])));
  }
  return largest;
}

struct Orders {
  int x;
  int y;
};

class Transform : public testing::TestWithParam<Orders> {};

TEST_P(Transform, ThereAndBackIsTheImage) {
  const auto [x, y] = GetParam();
  const Spec spec = makeSpec(x, y);
  const Image original = randomImage(x, y, 1);
  Image image = original;
  forward(image, spec);
  EXPECT_GT(largestDifference(image, original), 0.01) << "nothing was done";
  inverse(image, spec);
  EXPECT_LT(largestDifference(image, original), 1e-6);
}

TEST_P(Transform, AProductIsTheCircularConvolution) {
  const auto [x, y] = GetParam();
  const Spec spec = makeSpec(x, y);
  Image image = randomImage(x, y, 2), kernel = randomImage(x, y, 3);
  Image expected(x, y);
  for (int v = 0; v < image.size.height; ++v) {
    for (int u = 0; u < image.size.width; ++u) expected.at(u, v) = static_cast<float>(directValue(image, kernel, u, v));
  }
  convolve(image, kernel, spec);
  EXPECT_LT(largestDifference(image, expected), 2e-5);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Transform,
                         testing::Values(Orders{5, 5}, Orders{1, 1}, Orders{1, 4}, Orders{4, 1}, Orders{3, 5},
                                         Orders{5, 2}),
                         [](const auto& instance) {
                           return std::to_string(1 << instance.param.x) + "x" + std::to_string(1 << instance.param.y);
                         });

TEST(TransformMemory, RowsMayLieApartAndAgainstTheEdgeOfMemory) {
  const Spec spec = makeSpec(5, 4);
  const Image source = randomImage(5, 4, 5);
  std::mt19937 random(6);
  for (const Against against : {Against::pageBefore, Against::pageAfter}) {
    GuardedPicture picture(source.size, sizeof(float), {12, against, false}, random);
    Image dense = source;
    for (int y = 0; y < source.size.height; ++y) {
      std::memcpy(&picture.at(0, y, 0), &dense.at(0, y), static_cast<std::size_t>(source.step()));
    }
    auto* values = reinterpret_cast<float*>(picture.pixels());
    // With the caller's own work memory, which must not change the result.
    std::vector<float> work(2 * source.count());
    ASSERT_EQ(ippiFFTFwd_RToPack_32f_C1IR(values, picture.step(), spec.get(), reinterpret_cast<Ipp8u*>(work.data())),
              ippStsNoErr);
    forward(dense, spec);
    for (int y = 0; y < source.size.height; ++y) {
      EXPECT_EQ(std::memcmp(&picture.at(0, y, 0), &dense.at(0, y), static_cast<std::size_t>(source.step())), 0) << y;
    }
  }
}

TEST(TransformStatus, RefusesWhatItCannotDo) {
  IppiFFTSpec_R_32f* spec = nullptr;
  EXPECT_EQ(ippiFFTInitAlloc_R_32f(nullptr, 5, 5, IPP_FFT_DIV_INV_BY_N, 1), ippStsNullPtrErr);
  for (const auto& [x, y] : {Orders{0, 5}, Orders{5, 0}, Orders{13, 5}, Orders{5, -1}}) {
    EXPECT_EQ(ippiFFTInitAlloc_R_32f(&spec, x, y, IPP_FFT_DIV_INV_BY_N, 1), ippStsBadArgErr);
  }
  EXPECT_EQ(ippiFFTInitAlloc_R_32f(&spec, 5, 5, 1, 1), ippStsBadArgErr);
  EXPECT_EQ(spec, nullptr);
  EXPECT_EQ(ippiFFTFree_R_32f(nullptr), ippStsNullPtrErr);
  const Spec made = makeSpec(2, 2);
  float image[16] = {};
  EXPECT_EQ(ippiFFTFwd_RToPack_32f_C1IR(nullptr, 16, made.get(), nullptr), ippStsNullPtrErr);
  EXPECT_EQ(ippiFFTInv_PackToR_32f_C1IR(image, 16, nullptr, nullptr), ippStsNullPtrErr);
  EXPECT_EQ(ippiMulPack_32f_C1IR(image, 16, nullptr, 16, {4, 4}), ippStsNullPtrErr);
  EXPECT_EQ(ippiMulPack_32f_C1IR(image, 16, image, 16, {4, 3}), ippStsSizeErr);
  EXPECT_EQ(ippiMulPack_32f_C1IR(image, 16, image, 16, {1, 4}), ippStsSizeErr);
  EXPECT_EQ(ippiMulPack_32f_C1IR(image, 16, image, 16, {0, 4}), ippStsSizeErr);
}

}  // namespace
