#include "eyes/illumination.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

struct Size {
  int width;
  int height;
  int count() const { return width * height; }
};

// One pixel at a time, with the neighbours of its class listed.
float relaxedPixel(const std::vector<unsigned char>& image, const std::vector<float>& present, const Size& size, int x,
                   int y) {
  const bool sideColumn = x == 0 || x == size.width - 1, sideRow = y == 0 || y == size.height - 1;
  const auto at = [&](int column, int row) { return static_cast<std::size_t>(column + row * size.width); };
  std::vector<std::size_t> neighbours;
  if (!sideRow) neighbours = {at(x, y - 1), at(x, y + 1)};
  if (!sideColumn) neighbours.insert(neighbours.end(), {at(x - 1, y), at(x + 1, y)});
  if (sideColumn && sideRow) neighbours.clear();
  float above = image[at(x, y)], below = 1;
  for (const std::size_t neighbour : neighbours) {
    above = above + 100.0f * present[neighbour];
    below = below + 100.0f;
  }
  return above / below;
}

std::vector<float> referenceIllumination(const std::vector<unsigned char>& image, const Size& size) {
  std::vector<float> present(image.begin(), image.end()), next = present;
  for (int sweep = 0; sweep < 100; ++sweep) {
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) {
        next[static_cast<std::size_t>(x + y * size.width)] = relaxedPixel(image, present, size, x, y);
      }
    }
    present = next;
  }
  return present;
}

class Illumination : public testing::TestWithParam<Size> {};

TEST_P(Illumination, IsTheRelaxedPictureToTheLastBit) {
  const Size size = GetParam();
  std::mt19937 random(7);
  std::vector<unsigned char> image(static_cast<std::size_t>(size.count()));
  for (unsigned char& pixel : image) pixel = static_cast<unsigned char>(random() % 4 == 0 ? 0 : random());
  std::vector<float> illumination(image.size());
  diffur(image.data(), illumination.data(), size.width, size.height);
  EXPECT_EQ(illumination, referenceIllumination(image, size));

  std::vector<unsigned char> reflectance = image;
  IlluminationReflactanceDecomposition(reflectance.data(), size.width, size.height);
  for (std::size_t i = 0; i < image.size(); ++i) {
    const float ratio = static_cast<float>(image[i]) * 100.0f / illumination[i];
    const int expected = image[i] == 0 ? 0 : illumination[i] < 1e-8f ? 255 : ratio > 255.0f ? 255 : int(ratio);
    EXPECT_EQ(reflectance[i], expected) << "pixel " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Illumination,
                         testing::Values(Size{32, 32}, Size{1, 1}, Size{2, 2}, Size{2, 7}, Size{7, 2}, Size{1, 5},
                                         Size{5, 1}, Size{3, 3}, Size{17, 9}),
                         [](const auto& instance) {
                           return std::to_string(instance.param.width) + "x" + std::to_string(instance.param.height);
                         });

TEST(Reflectance, NoPixelsNoWork) {
  unsigned char pixel = 77;
  float light = 5;
  for (const Size& size : {Size{0, 1}, Size{1, 0}, Size{-3, 4}}) {
    IlluminationReflactanceDecomposition(&pixel, size.width, size.height);
    diffur(&pixel, &light, size.width, size.height);
  }
  EXPECT_EQ(pixel, 77);
  EXPECT_EQ(light, 5);
}

}  // namespace
