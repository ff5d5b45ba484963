#include "image/gaussian_blur.h"

#include <cmath>
#include <memory>
#include <new>

#include "image/pixel_buffer_store.h"
#include "primitives/ippi.h"

namespace {

constexpr int kColours = 3;

// Odd and at least 3.
int kernelSizeOf(float sigma) {
  const double size = std::nearbyint(sigma * 1.5);
  if (!(size > 3)) return 3;
  // A kernel reaches over the whole picture long before; the size of the buffer is refused then.
  if (size > 1 << 30) return (1 << 30) + 1;
  return static_cast<int>(size) | 1;
}

// Planes of one size without content, rows side by side.
class Planes {
 public:
  Planes(IppiSize size, int count)
      : size_(size),
        values_(static_cast<float*>(
            takePixelBuffer(static_cast<std::size_t>(count) * planeValues() * sizeof(float)).memory)) {
    if (values_ == nullptr) throw std::bad_alloc();
  }

  int step() const { return size_.width * static_cast<int>(sizeof(float)); }
  float* row(int plane, int y) const {
    return values_.get() + static_cast<std::size_t>(plane) * planeValues() + static_cast<std::size_t>(y) * rowValues();
  }

 private:
  std::size_t rowValues() const { return static_cast<std::size_t>(size_.width); }
  std::size_t planeValues() const { return rowValues() * static_cast<std::size_t>(size_.height); }

  IppiSize size_;
  struct GiveBack {
    void operator()(float* values) const { givePixelBuffer(values); }
  };
  std::unique_ptr<float[], GiveBack> values_;
};

// The three colours of `source` as planes. Row by row, since the whole picture in floats would leave the cache.
void split(const TIppiImage& source, const Planes& planes) {
  const IppiSize row = {source.Width, 1};
  const auto width = static_cast<std::size_t>(source.Width);
  const std::unique_ptr<float[]> pixels(new float[width * 4]), alpha(new float[width]);
  for (int y = 0; y < source.Height; ++y) {
    float* const rows[] = {planes.row(0, y), planes.row(1, y), planes.row(2, y), alpha.get()};
    const unsigned char* bytes = source.Pixels + static_cast<std::ptrdiff_t>(y) * source.Step;
    ippiConvert_8u32f_C4R(bytes, source.Step, pixels.get(), source.Width * 16, row);
    ippiCopy_32f_C4P4R(pixels.get(), source.Width * 16, rows, planes.step(), row);
  }
}

// False if the kernel is refused.
bool blur(const Planes& from, const Planes& to, IppiSize size, float sigma) {
  const int kernelSize = kernelSizeOf(sigma), step = from.step();
  int bytes;
  if (ippiFilterGaussGetBufferSize_32f_C1R(size, kernelSize, &bytes) != ippStsNoErr) return false;
  const std::unique_ptr<Ipp8u[]> buffer(new Ipp8u[static_cast<std::size_t>(bytes)]);
  constexpr int kReplicate = 0;
  IppStatus status = ippStsNoErr;
  for (int k = 0; k < kColours && status == ippStsNoErr; ++k) {
    status = ippiFilterGaussBorder_32f_C1R(from.row(k, 0), step, to.row(k, 0), step, size, kernelSize, sigma,
                                           kReplicate, 0.0F, buffer.get());
  }
  return status == ippStsNoErr;
}

void join(const Planes& planes, TIppiImage& result) {
  const std::unique_ptr<float[]> alpha(new float[static_cast<std::size_t>(result.Width)]());
  for (int y = 0; y < result.Height; ++y) {
    const float* const rows[] = {planes.row(0, y), planes.row(1, y), planes.row(2, y), alpha.get()};
    ippiCopy_32f_P4C4R(rows, planes.step(), result.PixelsF + static_cast<std::ptrdiff_t>(y) * (result.Step / 4),
                       result.Step, {result.Width, 1});
  }
}

}  // namespace

void ApplyGaussianBlurAC4R(TIppiImage& source, TIppiImage& result, float sigma) {
  const IppiSize size = source.RoiSize;
  // The sizes are checked here, before memory is taken for planes.
  TIppiImage joined(imRGBA32f);
  joined.AllocToFill(size.width, size.height);
  bool done = false;
  if (source.Mode == imRGBA32 && source.Pixels != nullptr) {
    const Planes planes(size, kColours), blurred(size, kColours);
    split(source, planes);
    done = blur(planes, blurred, size, sigma);
    if (done) join(blurred, joined);
  }
  if (!done) joined.AllocNew(size.width, size.height);
  result.Swap(joined);
}
