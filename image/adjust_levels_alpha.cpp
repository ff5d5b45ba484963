// The local matching of levels: each pixel is divided by the ratio of the brightness around it to that of another
// picture there. How far around depends on alpha: opaque pixels follow the broad illumination, transparent ones the
// fine one.
#include <algorithm>
#include <array>
#include <cmath>

#include "image/TIppiImage.h"
#include "image/gaussian_blur.h"
#include "primitives/kernels.h"

namespace {

struct Means {
  const TIppiImage& otherSmall;
  const TIppiImage& imageSmall;
  const TIppiImage& otherLarge;
  const TIppiImage& imageLarge;

  bool usable() const {
    return hasPixels(otherSmall) && hasPixels(imageSmall) && hasPixels(otherLarge) && hasPixels(imageLarge);
  }

  // Columns that all four have.
  int columns() const {
    return std::min(std::min(otherSmall.Width, imageSmall.Width), std::min(otherLarge.Width, imageLarge.Width));
  }

  // Columns and rows that a mean does not have take its last ones.
  LocalMeans at(int x, int y) const {
    return {pixelAt(otherSmall, x, y), pixelAt(imageSmall, x, y), pixelAt(otherLarge, x, y), pixelAt(imageLarge, x, y)};
  }

 private:
  static bool hasPixels(const TIppiImage& image) { return image.Mode == imRGBA32f && image.Pixels != nullptr; }

  static const Ipp32f* pixelAt(const TIppiImage& image, int x, int y) {
    return image.PixelsF + static_cast<std::ptrdiff_t>(std::min(y, image.Height - 1)) * (image.Step / 4) +
           static_cast<std::ptrdiff_t>(std::min(x, image.Width - 1)) * 4;
  }
};

// Divides the channels that `channels` chooses (bit k for channel k) over the rows that both images have.
void divide(const TIppiImage& other, TIppiImage& image, unsigned channels, const Means& means) {
  if (image.Mode != imRGBA32 || image.Pixels == nullptr || !means.usable()) return;
  const auto matchRow = kernels().overlay.matchRow;
  const int common = std::min(image.Width, means.columns());
  for (int y = 0; y < std::min(image.Height, other.Height); ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step;
    matchRow(row, means.at(0, y), channels, static_cast<std::size_t>(common));
    for (int x = common; x < image.Width; ++x) {
      matchRow(row + static_cast<std::ptrdiff_t>(x) * 4, means.at(x, y), channels, 1);
    }
  }
}

// The edge of an overlay becomes more opaque, once its colours fit.
void raiseAlpha(TIppiImage& image) {
  std::array<unsigned char, 256> raised;
  for (int a = 0; a < 256; ++a) {
    raised[static_cast<std::size_t>(a)] = static_cast<unsigned char>(std::min(std::lrint(a * 3.375), 255L));
  }
  for (int y = 0; y < image.Height; ++y) {
    unsigned char* alpha = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step + 3;
    for (int x = 0; x < image.Width; ++x, alpha += 4) *alpha = raised[*alpha];
  }
}

}  // namespace

void TIppiImage::AdjustLevelsWithAlphaSingleChannel(TIppiImage& other, TIppiImage& image, int channel, float,
                                                    TIppiImage& otherSmall, TIppiImage& imageSmall,
                                                    TIppiImage& otherLarge, TIppiImage& imageLarge) {
  if (channel < 0 || channel > 2) return;
  divide(other, image, 1U << channel, {otherSmall, imageSmall, otherLarge, imageLarge});
}

int TIppiImage::AdjustLevelsWithAlpha(TIppiImage& other) {
  if (Mode != imRGBA32 || other.Mode != imRGBA32) return -1;
  if (Pixels == nullptr) return 0;
  // A twelfth and a fifth of the width.
  const float small = static_cast<float>(Width * 0.08333333333333333), large = static_cast<float>(Width / 5.0);
  TIppiImage otherSmall, imageSmall, otherLarge, imageLarge;
  ApplyGaussianBlurAC4R(other, otherSmall, small);
  ApplyGaussianBlurAC4R(*this, imageSmall, small);
  ApplyGaussianBlurAC4R(other, otherLarge, large);
  ApplyGaussianBlurAC4R(*this, imageLarge, large);
  // The three channels in one pass: they share the reading of the means.
  divide(other, *this, 7U, {otherSmall, imageSmall, otherLarge, imageLarge});
  raiseAlpha(*this);
  return 0;
}
