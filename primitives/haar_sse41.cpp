#include <smmintrin.h>

#include "primitives/haar_rows.h"
#include "primitives/haar_vector.h"

namespace {

struct Floats4 {
  static constexpr int kLanes = 4;
  using Type = __m128;
  static Type load(const float* p) { return _mm_loadu_ps(p); }
  static Type set(float value) { return _mm_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm_add_ps(a, b); }
  static Type sub(Type a, Type b) { return _mm_sub_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm_mul_ps(a, b); }
  static Type greater(Type a, Type b) { return _mm_cmpgt_ps(a, b); }
  static Type select(Type mask, Type a, Type b) { return _mm_blendv_ps(b, a, mask); }
  static unsigned mask(Type a) { return static_cast<unsigned>(_mm_movemask_ps(a)); }
};

void stageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  runStageBlocks<Floats4, 2>(stage, sum, norm, blocks, count);
}

// Running sums of a row, eight pixels at a time. Sums of squares within the eight fit in 32 bits; added up
// in double precision they stay exact integers, so the order does not show.
struct RowSums {
  __m128i sum = _mm_setzero_si128();
  __m128d sqr = _mm_setzero_pd();

  void Add(const IntegralRow& row, int c) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row.src + c));
    const __m128i p = _mm_cvtepu8_epi16(bytes);
    __m128i s = _mm_add_epi16(p, _mm_slli_si128(p, 2));
    s = _mm_add_epi16(s, _mm_slli_si128(s, 4));
    s = _mm_add_epi16(s, _mm_slli_si128(s, 8));
    AddSums(row, c, _mm_cvtepu16_epi32(s));
    AddSums(row, c + 4, _mm_cvtepu16_epi32(_mm_srli_si128(s, 8)));
    sum = _mm_shuffle_epi32(last_, 0xff);
    const __m128i squares = _mm_mullo_epi16(p, p);
    AddSquares(row, c, _mm_cvtepu16_epi32(squares));
    AddSquares(row, c + 4, _mm_cvtepu16_epi32(_mm_srli_si128(squares, 8)));
  }

 private:
  void AddSums(const IntegralRow& row, int c, __m128i s) {
    last_ = _mm_add_epi32(s, sum);
    _mm_storeu_ps(row.sum + c + 1, _mm_add_ps(_mm_cvtepi32_ps(last_), _mm_loadu_ps(row.above + c + 1)));
  }

  void AddSquares(const IntegralRow& row, int c, __m128i q) {
    q = _mm_add_epi32(q, _mm_slli_si128(q, 4));
    q = _mm_add_epi32(q, _mm_slli_si128(q, 8));
    const __m128d low = _mm_add_pd(sqr, _mm_cvtepi32_pd(q));
    const __m128d high = _mm_add_pd(sqr, _mm_cvtepi32_pd(_mm_srli_si128(q, 8)));
    _mm_storeu_pd(row.sqr + c + 1, _mm_add_pd(_mm_loadu_pd(row.aboveSqr + c + 1), low));
    _mm_storeu_pd(row.sqr + c + 3, _mm_add_pd(_mm_loadu_pd(row.aboveSqr + c + 3), high));
    sqr = _mm_unpackhi_pd(high, high);
  }

  __m128i last_ = _mm_setzero_si128();
};

void integralRow(const IntegralRow& row, int width) {
  row.sum[0] = row.above[0];
  row.sqr[0] = row.aboveSqr[0];
  RowSums sums;
  int c = 0;
  for (; c + 8 <= width; c += 8) sums.Add(row, c);
  integrateColumns(row, c, width, _mm_cvtsi128_si32(sums.sum), _mm_cvtsd_f64(sums.sqr));
}

// Variance of two positions; `mean` holds them in its low half. Negative values become 0.
inline __m128d variance(const DeviationRows& rows, int x, __m128 mean, __m128d area) {
  const int right = x + rows.rectWidth;
  __m128d v = _mm_sub_pd(_mm_loadu_pd(rows.bottomSqr + right), _mm_loadu_pd(rows.topSqr + right));
  v = _mm_sub_pd(v, _mm_loadu_pd(rows.bottomSqr + x));
  v = _mm_add_pd(v, _mm_loadu_pd(rows.topSqr + x));
  const __m128d wide = _mm_cvtps_pd(mean);
  v = _mm_sub_pd(_mm_div_pd(v, area), _mm_mul_pd(wide, wide));
  return _mm_max_pd(_mm_setzero_pd(), v);
}

inline void deviations(const DeviationRows& rows, int x, Ipp32f* dst) {
  const int right = x + rows.rectWidth;
  __m128 mean = _mm_sub_ps(_mm_loadu_ps(rows.bottom + right), _mm_loadu_ps(rows.top + right));
  mean = _mm_sub_ps(mean, _mm_loadu_ps(rows.bottom + x));
  mean = _mm_add_ps(mean, _mm_loadu_ps(rows.top + x));
  mean = _mm_div_ps(mean, _mm_set1_ps(rows.area));
  const __m128d area = _mm_set1_pd(static_cast<double>(rows.area));
  const __m128 low = _mm_cvtpd_ps(variance(rows, x, mean, area));
  const __m128 high = _mm_cvtpd_ps(variance(rows, x + 2, _mm_movehl_ps(mean, mean), area));
  _mm_storeu_ps(dst + x, _mm_sqrt_ps(_mm_movelh_ps(low, high)));
}

void stdDevRow(const DeviationRows& rows, Ipp32f* dst, int count) {
  int x = 0;
  for (; x + 4 <= count; x += 4) deviations(rows, x, dst);
  for (; x < count; x++) dst[x] = deviationAt(rows, x);
}

}  // namespace

void fillHaarKernelsSse41(HaarKernels& table) {
  table.integralRow = integralRow;
  table.stdDevRow = stdDevRow;
  table.stageBlocks = stageBlocks;
}
