#include "features/TPatchImage.h"

#include <algorithm>
#include <cstring>

#include "primitives/kernels.h"

void TPatchImage::Allocate() {
  if (pixels_) return;
  constexpr std::size_t kPositions = std::size_t{kSide} * kSide;
  pixels_ = std::make_unique_for_overwrite<unsigned char[]>(std::size_t{kStep} * kRangePictureSide);
  low_ = std::make_unique_for_overwrite<unsigned char[]>(kPositions);
  high_ = std::make_unique_for_overwrite<unsigned char[]>(kPositions);
  work_ = std::make_unique_for_overwrite<unsigned char[]>(kRangeWorkBytes);
}

void TPatchImage::Assign(const TIppiImage& face) {
  Allocate();
  std::memset(pixels_.get(), 0, std::size_t{kStep} * kRangePictureSide);
  for (int row = 0; row < face.Height; ++row) {  // rows of the buffer, bottom first
    unsigned char* to = pixels_.get() + (kBefore + kSide - 1 - row) * kStep + kBefore;
    std::memcpy(to, face.Pixels + static_cast<std::ptrdiff_t>(row) * face.Step, static_cast<std::size_t>(face.Width));
  }
  const auto extremes = kernels().patch.patchExtremes;
  extremes(pixels_.get(), 0, low_.get(), work_.get());
  extremes(pixels_.get(), 255, high_.get(), work_.get());
  std::fill_n(shared_[0], 2 * kSide, false);
}

// Gives the positions with the same centre the range of this one, once.
void TPatchImage::Share(int x, int y) {
  const int centreX = std::max(x - 1, 0), centreY = std::max(y - 1, 0);
  bool& done = centreX == 0 ? shared_[0][centreY] : shared_[1][centreX];
  if (done) return;
  done = true;
  const std::size_t from = At(x, y);
  for (int row = y < 2 ? 0 : y; row <= (y < 2 ? 1 : y); ++row) {
    for (int column = x < 2 ? 0 : x; column <= (x < 2 ? 1 : x); ++column) {
      low_[At(column, row)] = low_[from];
      high_[At(column, row)] = high_[from];
    }
  }
}
