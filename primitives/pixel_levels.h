// The rows that another level falls back on, by name: a faster level hands its remainder, what does not fill a vector,
// to the level below. Plain functions, since a template or an inline function shared by files with different processor
// flags would leave the linker to choose one of them.
#pragma once

#include "primitives/pixel_kernels.h"

namespace pixel_base {
void copyAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void copyAC4C3(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void copyC3AC4(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void copyC1C4(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void replicateC3(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void replicateC4(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void setC4C(Ipp8u value, Ipp8u* dst, std::size_t count);
void swapC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order);
void swapC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order);
void exchangeAC4(Ipp8u* a, Ipp8u* b, std::size_t count);
void reverseC1(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void reverseC3(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void reverseC4(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void transposeC1(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size);
void transposeC3(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size);
void grayC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights);
void grayAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights);
void alphaOver(const Ipp8u* a, const Ipp8u* b, Ipp8u* dst, std::size_t count);
}  // namespace pixel_base

namespace pixel_sse41 {
void copyAC4C3(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void copyC3AC4(const Ipp8u* src, Ipp8u* dst, std::size_t count);
void grayC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights);
void grayAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights);
void alphaOver(const Ipp8u* a, const Ipp8u* b, Ipp8u* dst, std::size_t count);
}  // namespace pixel_sse41
