// The global matching of levels: the mean of the middle of the picture is brought to that of another.
#include <algorithm>
#include <array>
#include <cmath>

#include "image/TIppiImage.h"

namespace {

// Channels of the 8-bit modes, 0 for the others.
int channelsOf(const TIppiImage& image) {
  switch (image.Mode) {
    case imGray8:
      return 1;
    case imRGB24:
      return 3;
    case imRGBA32:
      return 4;
    default:
      return 0;
  }
}

bool hasChannel(const TIppiImage& image, int channel) {
  return image.Pixels != nullptr && channel >= 0 && channel < channelsOf(image);
}

// Columns and stored rows, the last ones included.
struct Area {
  int x1, y1, x2, y2;
};

struct ChannelSum {
  long long sum = 0;
  long long count = 0;

  ChannelSum(const TIppiImage& image, int channel, const Area& area) {
    const int channels = channelsOf(image);
    for (int y = area.y1; y <= area.y2; ++y) {
      const unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step + channel;
      for (int x = area.x1; x <= area.x2; ++x) sum += row[static_cast<std::ptrdiff_t>(x) * channels];
      count += std::max(area.x2 - area.x1 + 1, 0);
    }
  }

  // A mean of 0 counts as 1: it is divided by.
  long long mean() const { return std::max(sum / std::max(count, 1LL), 1LL); }
};

// The central thirds of the reference, as far as the target has them. A reference of 3 rows or more has all of them.
Area middle(const TIppiImage& reference, const TIppiImage& target) {
  const int width = reference.Width, height = reference.Height;
  return {width / 3, height - (2 * height) / 3, std::min({(2 * width) / 3, width - 1, target.Width - 1}),
          std::min(height - height / 3, target.Height - 1)};
}

std::array<unsigned char, 256> dividedBy(float ratio) {
  const double divisor = std::sqrt(static_cast<double>(ratio * ratio));
  std::array<unsigned char, 256> table;
  for (int p = 0; p < 256; ++p) {
    table[static_cast<std::size_t>(p)] = static_cast<unsigned char>(std::clamp(std::lrint(p / divisor), 0L, 255L));
  }
  return table;
}

void replace(TIppiImage& image, int channel, int width, int height, const std::array<unsigned char, 256>& table) {
  const int channels = channelsOf(image);
  for (int y = 0; y < height; ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step + channel;
    for (int x = 0; x < width; ++x, row += channels) *row = table[*row];
  }
}

}  // namespace

void TIppiImage::AdjustLevelsSingleChannel(TIppiImage& reference, TIppiImage& target, int channel) {
  if (!hasChannel(reference, channel) || !hasChannel(target, channel) || reference.Height < 3) return;
  const Area area = middle(reference, target);
  const long long wanted = ChannelSum(reference, channel, area).mean();
  const long long present = ChannelSum(target, channel, area).mean();
  const float ratio = static_cast<float>(present) / static_cast<float>(wanted);
  replace(target, channel, std::min(reference.Width, target.Width), std::min(reference.Height, target.Height),
          dividedBy(ratio));
}

void TIppiImage::AdjustLevelsSingleChannelTest(TIppiImage& other, int channel) {
  AdjustLevelsSingleChannel(other, *this, channel);
}

void TIppiImage::AdjustLevelsWith(TIppiImage& other) {
  AdjustLevelsSingleChannelTest(other, 0);
  if (Mode != imRGB24 && Mode != imRGBA32) return;
  AdjustLevelsSingleChannelTest(other, 1);
  AdjustLevelsSingleChannelTest(other, 2);
}
