#include "image/gaussian_blur.h"

#include <cmath>
#include <memory>

#include "primitives/ippi.h"

namespace {

constexpr int kPlanes = 4;

// Odd and at least 3.
int kernelSizeOf(float sigma) {
  const double size = std::nearbyint(sigma * 1.5);
  if (!(size > 3)) return 3;
  // A kernel reaches over the whole picture long before; the size of the buffer is refused then.
  if (size > 1 << 30) return (1 << 30) + 1;
  return static_cast<int>(size) | 1;
}

struct Planes {
  TIppiImage image[kPlanes] = {TIppiImage(imGray32f), TIppiImage(imGray32f), TIppiImage(imGray32f),
                               TIppiImage(imGray32f)};

  Planes(int width, int height) {
    for (TIppiImage& plane : image) plane.AllocNew(width, height);
  }
};

void split(TIppiImage& source, Planes& planes) {
  TIppiImage floats(imRGBA32f);
  floats.CopyFrom(source);
  Ipp32f* const pixels[kPlanes] = {planes.image[0].PixelsF, planes.image[1].PixelsF, planes.image[2].PixelsF,
                                   planes.image[3].PixelsF};
  ippiCopy_32f_C4P4R(floats.PixelsF, floats.Step, pixels, planes.image[0].Step, floats.RoiSize);
}

// The fourth plane stays as it is.
void blur(const Planes& from, Planes& to, float sigma) {
  const IppiSize size = from.image[0].RoiSize;
  const int step = from.image[0].Step, kernelSize = kernelSizeOf(sigma);
  int bytes;
  if (ippiFilterGaussGetBufferSize_32f_C1R(size, kernelSize, &bytes) != ippStsNoErr) return;
  const std::unique_ptr<Ipp8u[]> buffer(new Ipp8u[static_cast<std::size_t>(bytes)]);
  constexpr int kReplicate = 0;
  for (int k = 0; k < 3; ++k) {
    ippiFilterGaussBorder_32f_C1R(from.image[k].PixelsF, step, to.image[k].PixelsF, step, size, kernelSize, sigma,
                                  kReplicate, 0.0F, buffer.get());
  }
}

void join(const Planes& planes, TIppiImage& result) {
  const Ipp32f* const pixels[kPlanes] = {planes.image[0].PixelsF, planes.image[1].PixelsF, planes.image[2].PixelsF,
                                         planes.image[3].PixelsF};
  ippiCopy_32f_P4C4R(pixels, planes.image[0].Step, result.PixelsF, result.Step, result.RoiSize);
}

}  // namespace

void ApplyGaussianBlurAC4R(TIppiImage& source, TIppiImage& result, float sigma) {
  const int width = source.Width, height = source.Height;
  Planes blurred(width, height);
  {
    Planes planes(width, height);
    split(source, planes);
    blur(planes, blurred, sigma);
  }
  result.FreeImage();
  result.Mode = imRGBA32f;
  result.AllocNew(width, height);
  join(blurred, result);
}
