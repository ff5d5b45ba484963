// Types and codes shared by all imaging primitives.
#pragma once

#include <cstdint>

using Ipp8u = unsigned char;
using Ipp32s = std::int32_t;
using Ipp32f = float;
using Ipp64f = double;

// 0 is success; a primitive that answers anything else has written nothing.
using IppStatus = int;

constexpr IppStatus ippStsNoErr = 0;
constexpr IppStatus ippStsBadArgErr = -5;
constexpr IppStatus ippStsSizeErr = -6;
constexpr IppStatus ippStsNullPtrErr = -8;
constexpr IppStatus ippStsMemAllocErr = -9;
constexpr IppStatus ippStsStepErr = -14;
constexpr IppStatus ippStsMaskSizeErr = -33;
constexpr IppStatus ippStsAnchorErr = -34;
constexpr IppStatus ippStsNotEvenStepErr = -108;
constexpr IppStatus ippStsResizeNoOperationErr = -201;

// Sizes and rectangles in pixels.
struct IppiSize {
  int width;
  int height;
};

struct IppiRect {
  int x;
  int y;
  int width;
  int height;
};

struct IppiPoint {
  int x;
  int y;
};

// Flip codes of ippiMirror_*: the axis that the picture is turned about.
constexpr int ippAxsHorizontal = 0;
constexpr int ippAxsVertical = 1;

// Interpolation codes of ippiResize_* and ippiRotateCenter_*.
constexpr int IPPI_INTER_LINEAR = 2;
constexpr int IPPI_INTER_SUPER = 8;
constexpr int IPPI_INTER_LANCZOS = 16;
constexpr unsigned IPPI_SMOOTH_EDGE = 0x80000000u;

// Composition types of ippiAlphaComp_*.
constexpr int ippAlphaOver = 0;

// Scaling flag of ippiFFTInitAlloc_*: the inverse transform divides by the number of pixels.
constexpr int IPP_FFT_DIV_INV_BY_N = 2;
