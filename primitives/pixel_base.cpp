// The portable level: plain loops, the definition of what every other level must give bit for bit.
#include "primitives/pixel_levels.h"

namespace {

template <std::size_t channels>
void reverse(const Ipp8u* __restrict src, Ipp8u* __restrict dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < channels; ++k) dst[channels * i + k] = src[channels * (count - 1 - i) + k];
  }
}

template <int channels>
void transpose(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  for (int c = 0; c < size.width; ++c) {
    Ipp8u* to = dst + static_cast<std::ptrdiff_t>(c) * dstStep;
    for (int r = 0; r < size.height; ++r) {
      const Ipp8u* from = src + static_cast<std::ptrdiff_t>(r) * srcStep + static_cast<std::ptrdiff_t>(c) * channels;
      for (int k = 0; k < channels; ++k) to[static_cast<std::ptrdiff_t>(r) * channels + k] = from[k];
    }
  }
}

template <std::size_t stride>
void gray(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) {
  const int w0 = weights[0], w1 = weights[1], w2 = weights[2];
  for (std::size_t i = 0; i < count; ++i) {
    const Ipp8u* p = src + stride * i;
    dst[i] = static_cast<Ipp8u>((w0 * p[0] + w1 * p[1] + w2 * p[2]) >> 12);
  }
}

// u * v / 255 for bytes, exact for 0 and 255.
unsigned mul(unsigned u, unsigned v) {
  const unsigned t = u * v;
  return (t + (t >> 8) + 1) >> 8;
}

Ipp8u saturated(unsigned v) { return static_cast<Ipp8u>(v < 255 ? v : 255); }

void convert8u32f(const Ipp8u* src, Ipp32f* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) dst[i] = static_cast<Ipp32f>(src[i]);
}

void exchange(Ipp8u* __restrict a, Ipp8u* __restrict b, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) {
    const Ipp8u held = a[i];
    a[i] = b[i];
    b[i] = held;
  }
}

}  // namespace

namespace pixel_base {

void copyAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < 3; ++k) dst[4 * i + k] = src[4 * i + k];
  }
}

void copyAC4C3(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < 3; ++k) dst[3 * i + k] = src[4 * i + k];
  }
}

void copyC3AC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < 3; ++k) dst[4 * i + k] = src[3 * i + k];
  }
}

void copyC1C4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) dst[4 * i] = src[i];
}

void replicateC3(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < 3; ++k) dst[3 * i + k] = src[i];
  }
}

void replicateC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < 4; ++k) dst[4 * i + k] = src[i];
  }
}

void setC4C(Ipp8u value, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) dst[4 * i] = value;
}

void swapC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order) {
  for (std::size_t i = 0; i < count; ++i, src += 3, dst += 3) {
    const Ipp8u pixel[3] = {src[0], src[1], src[2]};
    for (std::size_t k = 0; k < 3; ++k) dst[k] = pixel[order[k]];
  }
}

void swapC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order) {
  for (std::size_t i = 0; i < count; ++i, src += 4, dst += 4) {
    const Ipp8u pixel[4] = {src[0], src[1], src[2], src[3]};
    for (std::size_t k = 0; k < 4; ++k) dst[k] = pixel[order[k]];
  }
}

void exchangeAC4(Ipp8u* __restrict a, Ipp8u* __restrict b, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      const Ipp8u held = a[4 * i + k];
      a[4 * i + k] = b[4 * i + k];
      b[4 * i + k] = held;
    }
  }
}

void reverseC1(const Ipp8u* src, Ipp8u* dst, std::size_t count) { reverse<1>(src, dst, count); }

void reverseC3(const Ipp8u* src, Ipp8u* dst, std::size_t count) { reverse<3>(src, dst, count); }

void reverseC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) { reverse<4>(src, dst, count); }

void transposeC1(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  transpose<1>(src, srcStep, dst, dstStep, size);
}

void transposeC3(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  transpose<3>(src, srcStep, dst, dstStep, size);
}

void grayC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) { gray<3>(src, dst, count, weights); }

void grayAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) { gray<4>(src, dst, count, weights); }

void alphaOver(const Ipp8u* a, const Ipp8u* b, Ipp8u* dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i, a += 4, b += 4, dst += 4) {
    const unsigned alphaA = a[3], alphaB = b[3], rest = 255 - alphaA;
    for (std::size_t k = 0; k < 3; ++k) dst[k] = saturated(mul(alphaA, a[k]) + mul(rest, mul(alphaB, b[k])));
    dst[3] = saturated(alphaA + mul(rest, alphaB));
  }
}

}  // namespace pixel_base

void fillPixelKernelsBase(PixelKernels& table) {
  table.copyAC4 = pixel_base::copyAC4;
  table.copyAC4C3 = pixel_base::copyAC4C3;
  table.copyC3AC4 = pixel_base::copyC3AC4;
  table.copyC1C4 = pixel_base::copyC1C4;
  table.replicateC3 = pixel_base::replicateC3;
  table.replicateC4 = pixel_base::replicateC4;
  table.convert8u32f = convert8u32f;
  table.setC4C = pixel_base::setC4C;
  table.swapC3 = pixel_base::swapC3;
  table.swapC4 = pixel_base::swapC4;
  table.exchange = exchange;
  table.exchangeAC4 = pixel_base::exchangeAC4;
  table.reverseC1 = pixel_base::reverseC1;
  table.reverseC3 = pixel_base::reverseC3;
  table.reverseC4 = pixel_base::reverseC4;
  table.transposeC1 = pixel_base::transposeC1;
  table.transposeC3 = pixel_base::transposeC3;
  table.transposeC4 = transpose<4>;
  table.grayC3 = pixel_base::grayC3;
  table.grayAC4 = pixel_base::grayAC4;
  table.alphaOver = pixel_base::alphaOver;
}
