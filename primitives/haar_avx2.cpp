#include <immintrin.h>

#include "primitives/haar_rows.h"
#include "primitives/haar_vector.h"

namespace {

struct Floats8 {
  static constexpr int kLanes = 8;
  using Type = __m256;
  static Type load(const float* p) { return _mm256_loadu_ps(p); }
  static Type set(float value) { return _mm256_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm256_add_ps(a, b); }
  static Type sub(Type a, Type b) { return _mm256_sub_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm256_mul_ps(a, b); }
  static Type greater(Type a, Type b) { return _mm256_cmp_ps(a, b, _CMP_GT_OQ); }
  static Type select(Type mask, Type a, Type b) { return _mm256_blendv_ps(b, a, mask); }
  static unsigned mask(Type a) { return static_cast<unsigned>(_mm256_movemask_ps(a)); }
};

void stageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  runStageBlocks<Floats8, 4>(stage, sum, norm, blocks, count);
}

// Running sums of a row, eight pixels at a time. Sums of squares within the eight fit in 32 bits; added up
// in double precision they stay exact integers, so the order does not show.
struct RowSums {
  __m256i sum = _mm256_setzero_si256();
  __m256d sqr = _mm256_setzero_pd();

  void Add(const IntegralRow& row, int c) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row.src + c));
    const __m128i p = _mm_cvtepu8_epi16(bytes);
    __m128i s = _mm_add_epi16(p, _mm_slli_si128(p, 2));
    s = _mm_add_epi16(s, _mm_slli_si128(s, 4));
    s = _mm_add_epi16(s, _mm_slli_si128(s, 8));
    const __m256i sums = _mm256_add_epi32(_mm256_cvtepu16_epi32(s), sum);
    _mm256_storeu_ps(row.sum + c + 1, _mm256_add_ps(_mm256_cvtepi32_ps(sums), _mm256_loadu_ps(row.above + c + 1)));
    sum = _mm256_permutevar8x32_epi32(sums, _mm256_set1_epi32(7));
    AddSquares(row, c, _mm256_cvtepu16_epi32(_mm_mullo_epi16(p, p)));
  }

 private:
  // The shifts work within each half of four.
  void AddSquares(const IntegralRow& row, int c, __m256i q) {
    q = _mm256_add_epi32(q, _mm256_slli_si256(q, 4));
    q = _mm256_add_epi32(q, _mm256_slli_si256(q, 8));
    AddHalf(row, c, _mm256_castsi256_si128(q));
    AddHalf(row, c + 4, _mm256_extracti128_si256(q, 1));
  }

  void AddHalf(const IntegralRow& row, int c, __m128i q) {
    const __m256d sums = _mm256_add_pd(sqr, _mm256_cvtepi32_pd(q));
    _mm256_storeu_pd(row.sqr + c + 1, _mm256_add_pd(_mm256_loadu_pd(row.aboveSqr + c + 1), sums));
    sqr = _mm256_permute4x64_pd(sums, 0xff);
  }
};

void integralRow(const IntegralRow& row, int width) {
  row.sum[0] = row.above[0];
  row.sqr[0] = row.aboveSqr[0];
  RowSums sums;
  int c = 0;
  for (; c + 8 <= width; c += 8) sums.Add(row, c);
  integrateColumns(row, c, width, _mm256_cvtsi256_si32(sums.sum), _mm256_cvtsd_f64(sums.sqr));
}

// Variance of four positions; negative values become 0.
inline __m128 variance(const DeviationRows& rows, int x, __m128 mean, __m256d area) {
  const int right = x + rows.rectWidth;
  __m256d v = _mm256_sub_pd(_mm256_loadu_pd(rows.bottomSqr + right), _mm256_loadu_pd(rows.topSqr + right));
  v = _mm256_sub_pd(v, _mm256_loadu_pd(rows.bottomSqr + x));
  v = _mm256_add_pd(v, _mm256_loadu_pd(rows.topSqr + x));
  const __m256d wide = _mm256_cvtps_pd(mean);
  v = _mm256_sub_pd(_mm256_div_pd(v, area), _mm256_mul_pd(wide, wide));
  return _mm256_cvtpd_ps(_mm256_max_pd(_mm256_setzero_pd(), v));
}

inline void deviations(const DeviationRows& rows, int x, Ipp32f* dst) {
  const int right = x + rows.rectWidth;
  __m256 mean = _mm256_sub_ps(_mm256_loadu_ps(rows.bottom + right), _mm256_loadu_ps(rows.top + right));
  mean = _mm256_sub_ps(mean, _mm256_loadu_ps(rows.bottom + x));
  mean = _mm256_add_ps(mean, _mm256_loadu_ps(rows.top + x));
  mean = _mm256_div_ps(mean, _mm256_set1_ps(rows.area));
  const __m256d area = _mm256_set1_pd(static_cast<double>(rows.area));
  const __m128 low = variance(rows, x, _mm256_castps256_ps128(mean), area);
  const __m128 high = variance(rows, x + 4, _mm256_extractf128_ps(mean, 1), area);
  _mm256_storeu_ps(dst + x, _mm256_sqrt_ps(_mm256_set_m128(high, low)));
}

void stdDevRow(const DeviationRows& rows, Ipp32f* dst, int count) {
  int x = 0;
  for (; x + 8 <= count; x += 8) deviations(rows, x, dst);
  for (; x < count; x++) dst[x] = deviationAt(rows, x);
}

}  // namespace

void fillHaarKernelsAvx2(HaarKernels& table) {
  table.integralRow = integralRow;
  table.stdDevRow = stdDevRow;
  table.stageBlocks = stageBlocks;
}
