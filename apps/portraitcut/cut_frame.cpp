#include "cut_frame.h"

#include <algorithm>
#include <cstring>

#include "failure.h"

namespace {

constexpr int64_t kMostPaddedBytes = INT32_MAX;

// The column or row of the picture that stands at `at`, which may lie beyond it.
int32_t sourceOf(int64_t at, int32_t side, Padding padding) {
  if (padding == Padding::kEdge) return static_cast<int32_t>(std::clamp<int64_t>(at, 0, side - 1));
  const int64_t period = 2 * int64_t{side};
  const int64_t phase = ((at % period) + period) % period;
  return static_cast<int32_t>(phase < side ? phase : period - 1 - phase);
}

void putPixel(unsigned char* to, const unsigned char* from) {
  to[0] = from[0];
  to[1] = from[1];
  to[2] = from[2];
}

class PaddedCopy {
 public:
  PaddedCopy(const PixelView& view, const Frame& frame, Padding padding, Colour fill)
      : view_(view), frame_(frame), padding_(padding), fill_{fill.red, fill.green, fill.blue} {}

  void writeRow(int64_t y, unsigned char* row) const {
    const bool outside = y < 0 || y >= view_.size.height;
    if (outside && padding_ == Padding::kFill) {
      for (int64_t x = frame_.x1; x <= frame_.x2; ++x, row += 3) putPixel(row, fill_);
      return;
    }
    const unsigned char* source = view_.row(sourceOf(y, view_.size.height, padding_));
    for (int64_t x = frame_.x1; x <= frame_.x2; ++x, row += 3) putPixel(row, pixelAt(source, x));
  }

 private:
  const unsigned char* pixelAt(const unsigned char* source, int64_t x) const {
    if (x >= 0 && x < view_.size.width) return source + 3 * x;
    return padding_ == Padding::kFill ? fill_ : source + 3 * int64_t{sourceOf(x, view_.size.width, padding_)};
  }

  PixelView view_;
  Frame frame_;
  Padding padding_;
  unsigned char fill_[3];
};

Picture paddedFrame(const Picture& picture, const Frame& frame, Padding padding, Colour fill) {
  const int64_t bytes = 3 * frame.width() * frame.height();
  if (bytes > kMostPaddedBytes) throw Failure("the portrait's frame would be too large");
  std::vector<unsigned char> pixels(static_cast<size_t>(bytes));
  const PaddedCopy copy(viewOf(picture), frame, padding, fill);
  for (int64_t y = 0; y < frame.height(); ++y) copy.writeRow(frame.y1 + y, pixels.data() + 3 * frame.width() * y);
  return Picture::fromPixels(pixels, {static_cast<int32_t>(frame.width()), static_cast<int32_t>(frame.height())});
}

Picture copyFrame(const Picture& picture, const Frame& frame) {
  Picture copy;
  requireOk(VIZL_CopyRect(picture.handle(), frame.x1, frame.y1, frame.x2, frame.y2, copy.handle()), "cutting");
  return copy;
}

}  // namespace

Picture cutFrame(const Picture& picture, const Frame& frame, Size size, Padding padding, Colour fill) {
  const bool inside = frame.inside(picture.size());
  const Picture cut = inside ? copyFrame(picture, frame) : paddedFrame(picture, frame, padding, fill);
  // The larger ratio covers the whole portrait; 0.4 keeps the floored side from falling one pixel short.
  const double ratio = std::max((size.width + 0.4) / static_cast<double>(frame.width()),
                                (size.height + 0.4) / static_cast<double>(frame.height()));
  const Picture scaled;
  requireOk(VIZL_ResizeImage(cut.handle(), ratio, scaled.handle()), "scaling");
  const Size got = scaled.size();
  const int32_t x = got.width / 2;
  const int32_t y = got.height / 2;
  return copyFrame(scaled,
                   {x - size.width / 2, y - size.height / 2, x + (size.width - 1) / 2, y + (size.height - 1) / 2});
}
