// The real transform in two dimensions and the product of its results.
//
// Both directions are complex transforms of radix 2 that work on whole rows: a row holds the real parts of its
// samples and then their imaginary parts, so that each butterfly is a loop over neighbouring floats. A real picture
// becomes complex by taking its left half as the real and its right half as the imaginary part of half as many
// columns; the spectra of the two halves are then separated by their symmetry.
//
// Packed form, for a width W and a height H: row f below H/2 holds the real parts of vertical frequency f and row
// H/2 + f the imaginary parts, each over all horizontal frequencies in bit-reversed order. Row 0 and row H/2 are
// different: they are real and imaginary part of the transform of A + iB, where the real rows A and B are vertical
// frequency 0 and H/2. Nothing outside this file depends on it.
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <numbers>
#include <vector>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

// One complex transform of `size` samples, a power of two.
struct Axis {
  explicit Axis(int order);
  std::size_t size;
  std::vector<float> cosine;  // of 2 pi k / size, for k below size / 2
  std::vector<float> sine;
  std::vector<std::size_t> reversed;  // the place of sample k after the forward transform
};

Axis::Axis(int order) : size(std::size_t{1} << order), reversed(size) {
  for (std::size_t k = 0; k < size / 2; ++k) {
    const double angle = 2 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(size);
    cosine.push_back(static_cast<float>(std::cos(angle)));
    sine.push_back(static_cast<float>(std::sin(angle)));
  }
  for (std::size_t k = 1; k < size; ++k) reversed[k] = reversed[k / 2] / 2 + (k % 2) * (size / 2);
}

// Rows `a` and `b` of a butterfly: `lanes` real parts, then as many imaginary parts.
struct Butterfly {
  float* __restrict a;
  float* __restrict b;
  std::size_t lanes;
};

void forwardButterfly(const Butterfly& at, float cosine, float sine) {
  float *ar = at.a, *ai = at.a + at.lanes, *br = at.b, *bi = at.b + at.lanes;
#pragma GCC ivdep
  for (std::size_t l = 0; l < at.lanes; ++l) {
    const float real = ar[l] - br[l], imaginary = ai[l] - bi[l];
    ar[l] += br[l];
    ai[l] += bi[l];
    br[l] = real * cosine + imaginary * sine;
    bi[l] = imaginary * cosine - real * sine;
  }
}

void inverseButterfly(const Butterfly& at, float cosine, float sine) {
  float *ar = at.a, *ai = at.a + at.lanes, *br = at.b, *bi = at.b + at.lanes;
#pragma GCC ivdep
  for (std::size_t l = 0; l < at.lanes; ++l) {
    const float real = br[l] * cosine - bi[l] * sine, imaginary = bi[l] * cosine + br[l] * sine;
    br[l] = ar[l] - real;
    bi[l] = ai[l] - imaginary;
    ar[l] += real;
    ai[l] += imaginary;
  }
}

// Natural order in, bit-reversed order out; exponent -2 pi i.
void forwardAxis(const Axis& axis, float* rows, std::size_t lanes) {
  for (std::size_t half = axis.size / 2; half > 0; half /= 2) {
    const std::size_t stride = axis.size / (2 * half);
    for (std::size_t block = 0; block < axis.size; block += 2 * half) {
      for (std::size_t j = 0; j < half; ++j) {
        float* a = rows + (block + j) * 2 * lanes;
        forwardButterfly({a, a + half * 2 * lanes, lanes}, axis.cosine[j * stride], axis.sine[j * stride]);
      }
    }
  }
}

// Bit-reversed order in, natural order out; exponent +2 pi i, not scaled.
void inverseAxis(const Axis& axis, float* rows, std::size_t lanes) {
  for (std::size_t half = 1; half < axis.size; half *= 2) {
    const std::size_t stride = axis.size / (2 * half);
    for (std::size_t block = 0; block < axis.size; block += 2 * half) {
      for (std::size_t j = 0; j < half; ++j) {
        float* a = rows + (block + j) * 2 * lanes;
        inverseButterfly({a, a + half * 2 * lanes, lanes}, axis.cosine[j * stride], axis.sine[j * stride]);
      }
    }
  }
}

// Z(k) = A(k) + i B(k) and Z(-k), with A and B transforms of real columns, give A(k) and B(k): `real` receives the
// real parts of both, `imaginary` their imaginary parts.
void separate(const float* zk, const float* zMinusK, float* __restrict real, float* __restrict imaginary,
              std::size_t lanes) {
  for (std::size_t l = 0; l < lanes; ++l) {
    real[l] = (zk[l] + zMinusK[l]) * 0.5f;
    real[l + lanes] = (zk[l + lanes] + zMinusK[l + lanes]) * 0.5f;
    imaginary[l] = (zk[l + lanes] - zMinusK[l + lanes]) * 0.5f;
    imaginary[l + lanes] = (zMinusK[l] - zk[l]) * 0.5f;
  }
}

void merge(const float* real, const float* imaginary, float* __restrict zk, float* __restrict zMinusK,
           std::size_t lanes) {
  for (std::size_t l = 0; l < lanes; ++l) {
    zk[l] = real[l] - imaginary[l + lanes];
    zk[l + lanes] = imaginary[l] + real[l + lanes];
    zMinusK[l] = real[l] + imaginary[l + lanes];
    zMinusK[l + lanes] = real[l + lanes] - imaginary[l];
  }
}

// Where the horizontal frequency -f stands if f stands at `index`, in bit-reversed order: the blocks from each
// power of two to the next are mirrored.
std::size_t negated(std::size_t index) {
  if (index < 2) return index;
  std::size_t block = 2;
  while (block * 2 <= index) block *= 2;
  return 3 * block - 1 - index;
}

}  // namespace

struct IppiFFTSpec_R_32f {
  IppiFFTSpec_R_32f(int orderX, int orderY, float inverseScale) : x(orderX), y(orderY), scale(inverseScale) {}
  Axis x;
  Axis y;
  float scale;  // of the inverse
};

namespace {

// 2^12 a side: the work memory stays far below the range of an int.
constexpr int kMaxOrder = 12;

void transpose(const float* src, std::size_t width, std::size_t height, float* dst) {
  kernels().pixel.transposeC4(reinterpret_cast<const Ipp8u*>(src), static_cast<int>(width * sizeof(float)),
                              reinterpret_cast<Ipp8u*>(dst), static_cast<int>(height * sizeof(float)),
                              {static_cast<int>(width), static_cast<int>(height)});
}

// `image` to `packed`, both dense; `image` is overwritten.
void forward(const IppiFFTSpec_R_32f& spec, float* image, float* packed) {
  const std::size_t width = spec.x.size, height = spec.y.size, half = height / 2;
  const auto& place = spec.y.reversed;
  forwardAxis(spec.y, image, width / 2);
  std::memcpy(packed, image, width * sizeof(float));
  std::memcpy(packed + half * width, image + place[half] * width, width * sizeof(float));
  for (std::size_t k = 1; k < half; ++k) {
    separate(image + place[k] * width, image + place[height - k] * width, packed + k * width,
             packed + (half + k) * width, width / 2);
  }
  transpose(packed, width, height, image);
  forwardAxis(spec.x, image, half);
  transpose(image, height, width, packed);
}

// `packed` to `image`, both dense; `packed` is overwritten.
void inverse(const IppiFFTSpec_R_32f& spec, float* packed, float* image) {
  const std::size_t width = spec.x.size, height = spec.y.size, half = height / 2;
  const auto& place = spec.y.reversed;
  transpose(packed, width, height, image);
  inverseAxis(spec.x, image, half);
  transpose(image, height, width, packed);
  std::memcpy(image, packed, width * sizeof(float));
  std::memcpy(image + place[half] * width, packed + half * width, width * sizeof(float));
  for (std::size_t k = 1; k < half; ++k) {
    merge(packed + k * width, packed + (half + k) * width, image + place[k] * width, image + place[height - k] * width,
          width / 2);
  }
  inverseAxis(spec.y, image, width / 2);
  for (std::size_t i = 0; i < width * height; ++i) image[i] *= spec.scale;
}

void copyRows(const float* src, std::ptrdiff_t srcStep, float* dst, std::ptrdiff_t dstStep,
              const IppiFFTSpec_R_32f& spec) {
  for (std::size_t y = 0; y < spec.y.size; ++y) {
    std::memcpy(rowAt(dst, static_cast<int>(dstStep), static_cast<int>(y)),
                rowAt(src, static_cast<int>(srcStep), static_cast<int>(y)), spec.x.size * sizeof(float));
  }
}

template <class Direction>
IppStatus transformInPlace(Ipp32f* srcDst, int step, const IppiFFTSpec_R_32f* spec, Ipp8u* buffer, Direction run) {
  if (srcDst == nullptr || spec == nullptr) return ippStsNullPtrErr;
  const std::size_t count = spec->x.size * spec->y.size;
  std::unique_ptr<float[]> own;
  auto* work = reinterpret_cast<float*>(buffer);
  if (work == nullptr) {
    own.reset(new (std::nothrow) float[2 * count]);
    work = own.get();
  }
  if (work == nullptr) return ippStsMemAllocErr;
  const auto dense = static_cast<std::ptrdiff_t>(spec->x.size * sizeof(float));
  copyRows(srcDst, step, work, dense, *spec);
  run(*spec, work, work + count);
  copyRows(work + count, dense, srcDst, step, *spec);
  return ippStsNoErr;
}

void multiplyRows(const float* __restrict factorReal, const float* __restrict factorImaginary, float* __restrict real,
                  float* __restrict imaginary, std::size_t count) {
  for (std::size_t x = 0; x < count; ++x) {
    const float r = real[x] * factorReal[x] - imaginary[x] * factorImaginary[x];
    imaginary[x] = real[x] * factorImaginary[x] + imaginary[x] * factorReal[x];
    real[x] = r;
  }
}

struct Complex {
  float real;
  float imaginary;
};

// The transforms of the real rows A and B that stand in one row as the transform of A + iB.
struct TwoSpectra {
  TwoSpectra(const float* real, const float* imaginary, std::size_t at, std::size_t minus)
      : a{(real[at] + real[minus]) * 0.5f, (imaginary[at] - imaginary[minus]) * 0.5f},
        b{(imaginary[at] + imaginary[minus]) * 0.5f, (real[minus] - real[at]) * 0.5f} {}
  Complex a;
  Complex b;
};

Complex product(const Complex& u, const Complex& v) {
  return {u.real * v.real - u.imaginary * v.imaginary, u.real * v.imaginary + u.imaginary * v.real};
}

// The rows of vertical frequency 0 and H/2.
void multiplyRealRows(const float* factorReal, const float* factorImaginary, float* real, float* imaginary,
                      std::size_t count) {
  for (std::size_t at = 0; at < count; ++at) {
    const std::size_t minus = negated(at);
    if (minus < at) continue;
    const TwoSpectra f(factorReal, factorImaginary, at, minus), s(real, imaginary, at, minus);
    const Complex a = product(f.a, s.a), b = product(f.b, s.b);
    real[at] = a.real - b.imaginary;
    imaginary[at] = a.imaginary + b.real;
    real[minus] = a.real + b.imaginary;
    imaginary[minus] = b.real - a.imaginary;
  }
}

bool isPowerOfTwo(int value) { return value >= 2 && (value & (value - 1)) == 0; }

}  // namespace

IppStatus ippiFFTInitAlloc_R_32f(IppiFFTSpec_R_32f** spec, int orderX, int orderY, int flag, int /*hint*/) {
  if (spec == nullptr) return ippStsNullPtrErr;
  if (orderX < 1 || orderY < 1 || orderX > kMaxOrder || orderY > kMaxOrder) return ippStsBadArgErr;
  if (flag != IPP_FFT_DIV_INV_BY_N) return ippStsBadArgErr;
  try {
    *spec = new IppiFFTSpec_R_32f(orderX, orderY, std::ldexp(1.0f, -orderX - orderY));
  } catch (const std::bad_alloc&) {
    return ippStsMemAllocErr;
  }
  return ippStsNoErr;
}

IppStatus ippiFFTFree_R_32f(IppiFFTSpec_R_32f* spec) {
  if (spec == nullptr) return ippStsNullPtrErr;
  delete spec;
  return ippStsNoErr;
}

IppStatus ippiFFTFwd_RToPack_32f_C1IR(Ipp32f* srcDst, int step, const IppiFFTSpec_R_32f* spec, Ipp8u* buffer) {
  return transformInPlace(srcDst, step, spec, buffer, forward);
}

IppStatus ippiFFTInv_PackToR_32f_C1IR(Ipp32f* srcDst, int step, const IppiFFTSpec_R_32f* spec, Ipp8u* buffer) {
  return transformInPlace(srcDst, step, spec, buffer, inverse);
}

IppStatus ippiMulPack_32f_C1IR(const Ipp32f* src, int srcStep, Ipp32f* srcDst, int srcDstStep, IppiSize roi) {
  if (const IppStatus status = checkRegion(roi, src, srcDst)) return status;
  if (!isPowerOfTwo(roi.width) || !isPowerOfTwo(roi.height)) return ippStsSizeErr;
  const auto count = static_cast<std::size_t>(roi.width);
  const int half = roi.height / 2;
  multiplyRealRows(src, rowAt(src, srcStep, half), srcDst, rowAt(srcDst, srcDstStep, half), count);
  for (int f = 1; f < half; ++f) {
    multiplyRows(rowAt(src, srcStep, f), rowAt(src, srcStep, half + f), rowAt(srcDst, srcDstStep, f),
                 rowAt(srcDst, srcDstStep, half + f), count);
  }
  return ippStsNoErr;
}
