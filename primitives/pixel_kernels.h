// Row kernels of the pixel primitives; see kernels.h. `count` is in pixels unless a line says otherwise. A
// kernel touches the bytes of its row and no others, whatever the padding: rows may end where a page ends.
#pragma once

#include <cstddef>

#include "primitives/ippdefs.h"

using PixelRow = void (*)(const Ipp8u* src, Ipp8u* dst, std::size_t count);
// order[k] is the source channel of destination channel k, in range. `dst` may be `src`.
using SwapRow = void (*)(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order);
// Weights in 1/4096, none negative, their sum at most 4096, so that no gray value exceeds 255.
using GrayRow = void (*)(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights);
// A tile, not a row: dst(r, c) := src(c, r) for `size` pixels of the source.
using TransposeTile = void (*)(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size);

struct PixelKernels {
  PixelRow copyAC4;
  PixelRow copyAC4C3;
  PixelRow copyC3AC4;
  // `dst` is the wanted channel of the first pixel; the row ends with that channel of the last pixel.
  PixelRow copyC1C4;
  // One gray value becomes three or four equal channels.
  PixelRow replicateC3;
  PixelRow replicateC4;
  // `count` in values.
  void (*convert8u32f)(const Ipp8u* src, Ipp32f* dst, std::size_t count);
  // `dst` as in copyC1C4.
  void (*setC4C)(Ipp8u value, Ipp8u* dst, std::size_t count);
  SwapRow swapC3;
  SwapRow swapC4;
  // Two rows that do not overlap change places; `bytes` long, or `count` pixels whose alpha stays.
  void (*exchange)(Ipp8u* a, Ipp8u* b, std::size_t bytes);
  void (*exchangeAC4)(Ipp8u* a, Ipp8u* b, std::size_t count);
  // The last pixel first; `dst` does not overlap `src`.
  PixelRow reverseC1;
  PixelRow reverseC3;
  PixelRow reverseC4;
  TransposeTile transposeC1;
  TransposeTile transposeC3;
  TransposeTile transposeC4;
  GrayRow grayC3;
  GrayRow grayAC4;
  // `a` over `b`; `dst` may be either.
  void (*alphaOver)(const Ipp8u* a, const Ipp8u* b, Ipp8u* dst, std::size_t count);
};

void fillPixelKernelsBase(PixelKernels& table);
void fillPixelKernelsSse41(PixelKernels& table);
void fillPixelKernelsAvx2(PixelKernels& table);
