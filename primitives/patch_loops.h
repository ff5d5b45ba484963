// The kernels of patch_kernels.h and vector_kernels.h over the vector types of a level: F holds floats, D doubles, B
// bytes. Included by kernel files only; the unnamed namespace keeps each file's instructions its own.
#pragma once

#include <cstring>

#include "primitives/patch_kernels.h"
#include "primitives/vector_kernels.h"

namespace {

// --- Dot products -------------------------------------------------------------------------------------

template <class F>
struct PartialSums {
  static constexpr int kVectors = kPartialSums / F::kLanes;
  typename F::Type sum[kVectors];

  PartialSums() {
    for (int k = 0; k < kVectors; ++k) sum[k] = F::set(0.0F);
  }
  void Add(int k, typename F::Type a, typename F::Type b) { sum[k] = F::add(sum[k], F::mul(a, b)); }
  void Store(Ipp32f* sums) const {
    for (int k = 0; k < kVectors; ++k) F::store(sums + k * F::kLanes, sum[k]);
  }
};

inline Ipp32f foldSums(Ipp32f* sums) {
  for (int half = kPartialSums / 2; half > 0; half /= 2) {
    for (int k = 0; k < half; ++k) sums[k] += sums[k + half];
  }
  return sums[0];
}

template <class F>
Ipp32f dotProd(const Ipp32f* a, const Ipp32f* b, std::size_t count) {
  PartialSums<F> partial;
  std::size_t i = 0;
  for (; i + kPartialSums <= count; i += kPartialSums) {
    for (int k = 0; k < partial.kVectors; ++k) {
      const std::size_t at = i + static_cast<std::size_t>(k * F::kLanes);
      partial.Add(k, F::load(a + at), F::load(b + at));
    }
  }
  Ipp32f sums[kPartialSums];
  partial.Store(sums);
  for (std::size_t k = 0; i + k < count; ++k) sums[k] += a[i + k] * b[i + k];
  return foldSums(sums);
}

// All neurons in one pass, so that a pixel is normalised once.
template <class F>
void hiddenSums(const Ipp8u* patch, std::ptrdiff_t step, Ipp32f scale, Ipp32f offset,
                const Ipp32f* const weights[kHiddenNeurons], Ipp32f sums[kHiddenNeurons]) {
  PartialSums<F> partial[kHiddenNeurons];
  const auto s = F::set(scale), o = F::set(offset), low = F::set(-0.5F), high = F::set(0.5F);
  const Ipp32f *w0 = weights[0], *w1 = weights[1], *w2 = weights[2];
  for (int row = 0; row < kPatchSide; ++row, patch += step, w0 += kPatchSide, w1 += kPatchSide, w2 += kPatchSide) {
    for (int at = 0; at < kPatchSide; at += F::kLanes) {
      const auto x = F::add(F::mul(F::pixels(patch + at), s), o);
      const auto input = F::atMost(high, F::atLeast(low, x));
      const int k = at / F::kLanes % PartialSums<F>::kVectors;
      partial[0].Add(k, input, F::load(w0 + at));
      partial[1].Add(k, input, F::load(w1 + at));
      partial[2].Add(k, input, F::load(w2 + at));
    }
  }
  for (int j = 0; j < kHiddenNeurons; ++j) {
    Ipp32f all[kPartialSums];
    partial[j].Store(all);
    sums[j] = foldSums(all);
  }
}

// --- tanh ---------------------------------------------------------------------------------------------

// expm1(r) for |r| up to ln(2) / 2: the series to the power of 13, after which less than 2^-56 of r is left.
template <class D>
inline typename D::Type expm1Series(typename D::Type r) {
  constexpr double kFactors[] = {1.0 / 6227020800.0, 1.0 / 479001600.0, 1.0 / 39916800.0, 1.0 / 3628800.0,
                                 1.0 / 362880.0,     1.0 / 40320.0,     1.0 / 5040.0,     1.0 / 720.0,
                                 1.0 / 120.0,        1.0 / 24.0,        1.0 / 6.0,        0.5};
  auto sum = D::set(kFactors[0]);
  for (int k = 1; k < 12; ++k) sum = D::add(D::mul(sum, r), D::set(kFactors[k]));
  return D::add(r, D::mul(D::mul(r, r), sum));
}

// tanh(x) / 2 to about two units in the last place: with e = expm1(2|x|) it is sign(x) e / (e + 2) / 2. The same
// operations at every level; a C library's tanh differs from processor to processor.
template <class D>
inline typename D::Type halfTanhOf(typename D::Type x) {
  const auto y = D::atMost(D::set(44.0), D::mul(D::magnitude(x), D::set(2.0)));  // tanh(22) is 1
  const auto magic = D::set(6755399441055744.0);  // 1.5 2^52: added, it leaves the nearest integer in the low bits
  const auto shifted = D::add(D::mul(y, D::set(1.44269504088896338700)), magic);
  const auto n = D::sub(shifted, magic);
  // ln(2) in two parts, the first with so few bits that its product with n is exact.
  const auto r =
      D::sub(D::sub(y, D::mul(n, D::set(6.93147180369123816490e-01))), D::mul(n, D::set(1.90821492927058770002e-10)));
  const auto power = D::powerOfTwo(shifted);
  const auto e = D::add(D::mul(power, expm1Series<D>(r)), D::sub(power, D::set(1.0)));
  return D::withSignOf(x, D::mul(D::set(0.5), D::div(e, D::add(e, D::set(2.0)))));
}

template <class D>
void halfTanh(const Ipp32f* values, Ipp32f* result, std::size_t count) {
  constexpr std::size_t kLanes = D::kLanes;
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) D::narrow(result + i, halfTanhOf<D>(D::widen(values + i)));
  if (i == count) return;
  Ipp32f rest[kLanes] = {};
  std::memcpy(rest, values + i, (count - i) * sizeof(Ipp32f));
  D::narrow(rest, halfTanhOf<D>(D::widen(rest)));
  std::memcpy(result + i, rest, (count - i) * sizeof(Ipp32f));
}

// --- Gray ranges --------------------------------------------------------------------------------------

// The smallest values of a window, ascending, for a vector of windows side by side. Lists of windows next to each
// other merge into the list of both together, so the windows grow 1, 4, 8, 16, 32 in height and then 2 .. 32 in width.
template <class B>
struct Smallest {
  typename B::Type v[kRangeListLength];

  static void Order(typename B::Type& a, typename B::Type& b) {
    const auto low = B::min(a, b);
    b = B::max(a, b);
    a = low;
  }

  // An ascending list against a descending one leaves the smallest five, first rising, then falling.
  static Smallest Bitonic(const Smallest& a, const Smallest& b) {
    Smallest c;
    for (int k = 0; k < kRangeListLength; ++k) c.v[k] = B::min(a.v[k], b.v[kRangeListLength - 1 - k]);
    return c;
  }

  void SortBitonic() {
    Order(v[0], v[4]);
    // Now v[0] is the smallest, and 4, 1, 2, 3 are a bitonic sequence.
    Order(v[4], v[2]);
    Order(v[1], v[3]);
    Order(v[4], v[1]);
    Order(v[2], v[3]);
    const auto second = v[4], third = v[1], fourth = v[2], fifth = v[3];
    v[1] = second;
    v[2] = third;
    v[3] = fourth;
    v[4] = fifth;
  }

  static Smallest Merge(const Smallest& a, const Smallest& b) {
    Smallest c = Bitonic(a, b);
    c.SortBitonic();
    return c;
  }

  static typename B::Type FifthOfBoth(const Smallest& a, const Smallest& b) {
    const Smallest c = Bitonic(a, b);
    return B::max(B::max(B::max(c.v[0], c.v[1]), B::max(c.v[2], c.v[3])), c.v[4]);
  }

  // Four values; the fifth is larger than any.
  static Smallest OfFour(typename B::Type a, typename B::Type b, typename B::Type c, typename B::Type d) {
    Order(a, b);
    Order(c, d);
    Order(a, c);
    Order(b, d);
    Order(b, c);
    return {{a, b, c, d, B::set(255)}};
  }

  static Smallest Load(const Ipp8u* list, std::ptrdiff_t pitch) {
    Smallest s;
    for (int k = 0; k < kRangeListLength; ++k) s.v[k] = B::load(list + k * pitch);
    return s;
  }

  void Store(Ipp8u* list, std::ptrdiff_t pitch) const {
    for (int k = 0; k < kRangeListLength; ++k) B::store(list + k * pitch, v[k]);
  }
};

// Lists of the columns of height 32 in a strip one vector wide, for 64 rows of windows; row y's lists begin at
// lists + y * 5 * step.
template <class B>
void columnLists(const Ipp8u* picture, Ipp8u flip, Ipp8u* strip, Ipp8u* lists) {
  using List = Smallest<B>;
  constexpr std::ptrdiff_t kPitch = B::kLanes, kRow = kRangeListLength * kPitch, kStep = kRangePictureStep;
  constexpr int kRows = kRangeRowsAtOnce + kPatchSide - 1;
  const auto mask = B::set(flip);
  const auto pixels = [&](int y) { return B::flip(B::load(picture + y * kStep), mask); };
  for (int y = 0; y + 3 < kRows; ++y) {
    List::OfFour(pixels(y), pixels(y + 1), pixels(y + 2), pixels(y + 3)).Store(strip + y * kRow, kPitch);
  }
  const auto merged = [&](int y, int height) {
    return List::Merge(List::Load(strip + y * kRow, kPitch), List::Load(strip + (y + height) * kRow, kPitch));
  };
  for (int height = 4; height <= 8; height *= 2) {
    for (int y = 0; y + 2 * height <= kRows; ++y) merged(y, height).Store(strip + y * kRow, kPitch);
  }
  for (int y = 0; y < kRangeRowsAtOnce; ++y) merged(y, 16).Store(lists + y * kRangeListLength * kStep, kStep);
}

// Widens the lists of one row in place and writes the fifth values.
template <class B>
void rowExtremes(Ipp8u* lists, Ipp8u flip, Ipp8u* result) {
  using List = Smallest<B>;
  constexpr int kLanes = B::kLanes, kStep = kRangePictureStep;
  for (int width = 1; width <= 8; width *= 2) {
    for (int x = 0; x < kRangePictureSide - width; x += kLanes) {
      List::Merge(List::Load(lists + x, kStep), List::Load(lists + x + width, kStep)).Store(lists + x, kStep);
    }
  }
  const auto mask = B::set(flip);
  for (int x = 0; x < kRangeSide; x += kLanes) {
    const auto fifth = List::FifthOfBoth(List::Load(lists + x, kStep), List::Load(lists + x + 16, kStep));
    B::store(result + x, B::flip(fifth, mask));
  }
}

template <class B>
void patchExtremes(const Ipp8u* picture, Ipp8u flip, Ipp8u* result, Ipp8u* work) {
  constexpr int kLists = kRangeListLength * kRangePictureStep;
  Ipp8u* const strip = work + kLists * kRangeRowsAtOnce;
  for (int first = 0; first < kRangeSide; first += kRangeRowsAtOnce) {
    const Ipp8u* rows = picture + first * kRangePictureStep;
    for (int x = 0; x < kRangePictureSide; x += B::kLanes) columnLists<B>(rows + x, flip, strip, work + x);
    for (int y = 0; y < kRangeRowsAtOnce; ++y) {
      rowExtremes<B>(work + y * kLists, flip, result + (first + y) * kRangeSide);
    }
  }
}

// --- Shapes -------------------------------------------------------------------------------------------

constexpr int kCoordinatesAtOnce = 8;

// Coordinates of the bent mean for the lanes from `lane`: the mean, then the deformations in order, then the shift.
template <class F>
void bendCoordinates(const ShapeModel& model, const ShapeRow* parameters, int first, int lane, ShapeRow* nodes) {
  typename F::Type sum[kCoordinatesAtOnce];
  for (int k = 0; k < kCoordinatesAtOnce; ++k) sum[k] = F::set(model.mean[first + k]);
  const Ipp32f* row = model.deformations + first;
  for (int m = 0; m < model.deformationCount; ++m, row += model.coordinates) {
    const auto b = F::load(parameters[m] + lane);
    for (int k = 0; k < kCoordinatesAtOnce; ++k) sum[k] = F::add(sum[k], F::mul(b, F::set(row[k])));
  }
  const ShapeRow* shift = parameters + model.deformationCount;
  for (int k = 0; k < kCoordinatesAtOnce; ++k) {
    F::store(nodes[first + k] + lane, F::add(sum[k], F::load(shift[k % 2] + lane)));
  }
}

// Scales and turns about the centroid of the nodes plus the shift, then clamps.
template <class F>
void poseShapes(const ShapeModel& model, const ShapeRow* pose, const ShapeRow& cosines, const ShapeRow& sines, int lane,
                ShapeRow* nodes) {
  auto sumX = F::set(0.0F), sumY = F::set(0.0F);
  for (int k = 0; k < model.coordinates; k += 2) {
    sumX = F::add(sumX, F::load(nodes[k] + lane));
    sumY = F::add(sumY, F::load(nodes[k + 1] + lane));
  }
  const auto count = F::set(static_cast<Ipp32f>(model.coordinates / 2));
  const auto pivotX = F::add(F::load(pose[0] + lane), F::div(sumX, count));
  const auto pivotY = F::add(F::load(pose[1] + lane), F::div(sumY, count));
  const auto sx = F::load(pose[2] + lane), sy = F::load(pose[3] + lane);
  const auto c = F::load(cosines + lane), s = F::load(sines + lane);
  const auto low = F::set(0.0F), high = F::set(model.limit);
  for (int k = 0; k < model.coordinates; k += 2) {
    const auto dx = F::mul(F::sub(F::load(nodes[k] + lane), pivotX), sx);
    const auto dy = F::mul(F::sub(F::load(nodes[k + 1] + lane), pivotY), sy);
    const auto x = F::add(F::sub(F::mul(c, dx), F::mul(s, dy)), pivotX);
    const auto y = F::add(F::add(F::mul(s, dx), F::mul(c, dy)), pivotY);
    F::store(nodes[k] + lane, F::atMost(high, F::atLeast(low, x)));
    F::store(nodes[k + 1] + lane, F::atMost(high, F::atLeast(low, y)));
  }
}

template <class F>
void bendShapes(const ShapeModel& model, const ShapeRow* parameters, const ShapeRow& cosines, const ShapeRow& sines,
                ShapeRow* nodes) {
  for (int lane = 0; lane < kShapeLanes; lane += F::kLanes) {
    for (int k = 0; k < model.coordinates; k += kCoordinatesAtOnce) {
      bendCoordinates<F>(model, parameters, k, lane, nodes);
    }
    poseShapes<F>(model, parameters + model.deformationCount, cosines, sines, lane, nodes);
  }
}

template <class F>
bool meanScores(const ScoreTables& tables, const ShapeRow* nodes, ShapeRow& means, Ipp8u* missing) {
  const auto margin = F::set(tables.margin), right = F::set(tables.right), bottom = F::set(tables.bottom);
  const auto zero = F::set(0.0F), one = F::set(1.0F);
  unsigned anywhere = 0;
  for (int lane = 0; lane < kShapeLanes; lane += F::kLanes) {
    auto sum = zero, count = zero;
    const Ipp32f* table = tables.scores;
    for (int n = 0; n < tables.nodes; ++n, table += kScoreTableSize) {
      const auto x = F::load(nodes[2 * n] + lane), y = F::load(nodes[2 * n + 1] + lane);
      const auto counts =
          F::both(F::both(F::less(margin, x), F::less(x, right)), F::both(F::less(margin, y), F::less(y, bottom)));
      const auto score = F::tableScores(table, x, y, counts);
      const unsigned unknown = F::mask(F::both(counts, F::equal(score, zero))) << lane;
      missing[n] = static_cast<Ipp8u>(lane == 0 ? unknown : missing[n] | unknown);
      anywhere |= unknown;
      sum = F::add(sum, F::where(counts, score));
      count = F::add(count, F::where(counts, one));
    }
    const auto any = F::less(zero, count);
    F::store(means + lane, F::where(any, F::div(sum, F::atLeast(one, count))));
  }
  return anywhere == 0;
}

// --- Plain loops, which the compiler makes into vectors ----------------------------------------------------

inline void mulC(Ipp32f value, Ipp32f* data, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) data[i] *= value;
}

inline void addC(Ipp32f value, Ipp32f* data, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) data[i] += value;
}

inline void threshold(Ipp32f* data, std::size_t count, Ipp32f levelLT, Ipp32f valueLT, Ipp32f levelGT, Ipp32f valueGT) {
  for (std::size_t i = 0; i < count; ++i) {
    const Ipp32f value = data[i];
    data[i] = value < levelLT ? valueLT : value > levelGT ? valueGT : value;
  }
}

template <class F>
void fillVectorKernels(VectorKernels& table) {
  table = {mulC, addC, threshold, dotProd<F>};
}

template <class F, class D, class B>
void fillPatchKernels(PatchKernels& table) {
  table = {hiddenSums<F>, halfTanh<D>, patchExtremes<B>, bendShapes<F>, meanScores<F>};
}

}  // namespace
