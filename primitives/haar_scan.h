// A whole picture through a cascade: integrals, deviations and stages band by band in buffers of a few
// rows, which stay in the cache where maps of the whole picture would not. The bits are those of
// ippiSqrIntegral_8u32f64f_C1R, ippiRectStdDev_32f_C1R and ippiApplyHaarClassifier_32f_C1R on such maps.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "primitives/haar_cascade.h"

class HaarScan {
 public:
  // `window` is the smallest picture with a position and holds `deviation`, the rectangle of the standard
  // deviation. The integral starts at `offset`. The cascade must outlive the scan.
  HaarScan(HaarCascade& cascade, IppiSize window, IppiRect deviation, float offset);

  // Replaces `survivors` by the positions that pass all stages, row by row.
  void Run(const Ipp8u* src, std::ptrdiff_t step, IppiSize size, std::vector<HaarCascade::Position>& survivors);

 private:
  void Fit(int width);
  void Start(int width);
  // Makes the integral rows up to and with `last`.
  void Integrate(const Ipp8u* src, std::ptrdiff_t step, int width, int last);
  void Deviate(int y, int width);
  // Moves the band's start to `top`, keeping the rows from there on.
  void MoveTo(int top);
  float* SumRow(int r) { return sum_.get() + static_cast<std::ptrdiff_t>(r - top_) * pitch_; }
  double* SqrRow(int r) { return sqr_.get() + static_cast<std::ptrdiff_t>(r % sqrRows_) * pitch_; }
  float* NormRow(int y) { return norm_.get() + static_cast<std::ptrdiff_t>(y - top_) * pitch_; }

  HaarCascade& cascade_;
  const IppiSize window_;
  const IppiRect deviation_;
  const float area_;
  const float offset_;
  const int sqrRows_;
  int pitch_ = 0;  // elements from row to row of all three buffers
  int top_ = 0;    // picture row of the band's first row
  int made_ = 0;   // integral rows made so far
  std::unique_ptr<float[]> sum_;
  std::unique_ptr<float[]> norm_;
  std::unique_ptr<double[]> sqr_;  // a ring of sqrRows_ rows
};
