// The overlay kernels over vectors of values, once for every vector type: V names the type and its operations.
// Included by kernel files only; the unnamed namespace keeps each file's instructions its own.
#pragma once

#include "primitives/overlay_loops.h"

namespace {

template <class V, int kVectors>
inline void gaussRowBlock(const Ipp32f* src, const Ipp32f* weights, int taps, Ipp32f* dst) {
  typename V::Type sum[kVectors];
  for (int k = 0; k < kVectors; ++k) sum[k] = V::zero();
  for (int t = 0; t < taps; ++t) {
    const auto weight = V::set(weights[t]);
    for (int k = 0; k < kVectors; ++k) sum[k] = V::add(sum[k], V::mul(V::load(src + t + k * V::kLanes), weight));
  }
  for (int k = 0; k < kVectors; ++k) V::store(dst + k * V::kLanes, sum[k]);
}

// The end of a row that fills no vector is made again with what stands before it.
template <class V>
void gaussRowVectors(const Ipp32f* src, const Ipp32f* weights, int taps, Ipp32f* dst, int count) {
  constexpr int kLanes = V::kLanes;
  if (count < kLanes) return gaussRowLoop(src, weights, taps, dst, count);
  int x = 0;
  for (; x + 8 * kLanes <= count; x += 8 * kLanes) gaussRowBlock<V, 8>(src + x, weights, taps, dst + x);
  for (; x + 2 * kLanes <= count; x += 2 * kLanes) gaussRowBlock<V, 2>(src + x, weights, taps, dst + x);
  for (; x + kLanes <= count; x += kLanes) gaussRowBlock<V, 1>(src + x, weights, taps, dst + x);
  if (x < count) gaussRowBlock<V, 1>(src + count - kLanes, weights, taps, dst + count - kLanes);
}

// kOutputs rows of sums side by side; every row of the source is loaded once for all of them.
template <class V, int kOutputs, int kVectors>
class GaussColumns {
 public:
  GaussColumns() {
    for (int r = 0; r < kOutputs; ++r) {
      for (int k = 0; k < kVectors; ++k) sum_[r][k] = V::zero();
    }
  }

  void Run(const Ipp32f* const* rows, const Ipp32f* weights, int taps, int x) {
    for (int j = 0; j < kOutputs - 1; ++j) Add(rows[j] + x, weights + j, 0, j);
    for (int j = kOutputs - 1; j < taps; ++j) AddToAll(rows[j] + x, weights + j);
    for (int j = 0; j < kOutputs - 1; ++j) Add(rows[taps + j] + x, weights + taps + j, j + 1, kOutputs - 1);
  }

  void Store(Ipp32f* dst, std::ptrdiff_t dstStep) const {
    for (int r = 0; r < kOutputs; ++r) {
      Ipp32f* to = reinterpret_cast<Ipp32f*>(reinterpret_cast<Ipp8u*>(dst) + r * dstStep);
      for (int k = 0; k < kVectors; ++k) V::store(to + k * V::kLanes, sum_[r][k]);
    }
  }

 private:
  using Vector = typename V::Type;

  void AddTo(int r, const Vector* values, float weight) {
    const Vector factor = V::set(weight);
    for (int k = 0; k < kVectors; ++k) sum_[r][k] = V::add(sum_[r][k], V::mul(values[k], factor));
  }

  // The weight of output r is weights[-r].
  void AddToAll(const Ipp32f* row, const Ipp32f* weights) {
    Vector values[kVectors];
    for (int k = 0; k < kVectors; ++k) values[k] = V::load(row + k * V::kLanes);
    for (int r = 0; r < kOutputs; ++r) AddTo(r, values, weights[-r]);
  }

  // For rows at the ends of the reach, which not all outputs have.
  void Add(const Ipp32f* row, const Ipp32f* weights, int first, int last) {
    Vector values[kVectors];
    for (int k = 0; k < kVectors; ++k) values[k] = V::load(row + k * V::kLanes);
    for (int r = 0; r < kOutputs; ++r) {
      if (r >= first && r <= last) AddTo(r, values, weights[-r]);
    }
  }

  Vector sum_[kOutputs][kVectors];
};

template <class V, int kOutputs, int kVectors>
inline void gaussColumnsBlock(const Ipp32f* const* rows, const Ipp32f* weights, int taps, Ipp32f* dst,
                              std::ptrdiff_t dstStep, int x) {
  GaussColumns<V, kOutputs, kVectors> block;
  block.Run(rows, weights, taps, x);
  block.Store(dst + x, dstStep);
}

template <class V, int kOutputs>
void gaussColumnsRun(const Ipp32f* const* rows, const Ipp32f* weights, int taps, Ipp32f* dst, std::ptrdiff_t dstStep,
                     int count) {
  constexpr int kLanes = V::kLanes;
  int x = 0;
  for (; x + 2 * kLanes <= count; x += 2 * kLanes) {
    gaussColumnsBlock<V, kOutputs, 2>(rows, weights, taps, dst, dstStep, x);
  }
  for (; x + kLanes <= count; x += kLanes) gaussColumnsBlock<V, kOutputs, 1>(rows, weights, taps, dst, dstStep, x);
  if (x < count) gaussColumnsBlock<V, kOutputs, 1>(rows, weights, taps, dst, dstStep, count - kLanes);
}

template <class V>
void gaussColumnsVectors(const Ipp32f* const* rows, const Ipp32f* weights, int taps, Ipp32f* dst,
                         std::ptrdiff_t dstStep, int outputs, int count) {
  if (count < V::kLanes) return gaussColumnsLoop(rows, weights, taps, dst, dstStep, outputs, count);
  if (outputs == kGaussOutputs && taps >= kGaussOutputs) {
    return gaussColumnsRun<V, kGaussOutputs>(rows, weights, taps, dst, dstStep, count);
  }
  int r = 0;
  const auto row = [&] { return reinterpret_cast<Ipp32f*>(reinterpret_cast<Ipp8u*>(dst) + r * dstStep); };
  for (; r + 2 <= outputs && taps >= 2; r += 2) gaussColumnsRun<V, 2>(rows + r, weights, taps, row(), dstStep, count);
  for (; r < outputs; ++r) gaussColumnsRun<V, 1>(rows + r, weights, taps, row(), dstStep, count);
}

}  // namespace
