#include "primitives/haar_scan.h"

#include <algorithm>

#include "primitives/kernels.h"

namespace {

// Rows of positions that go through all stages together: enough blocks to fill the kernels in the later
// stages, few enough that the band stays in the cache.
constexpr int kBandRows = 32;

}  // namespace

HaarScan::HaarScan(HaarCascade& cascade, IppiSize window, IppiRect deviation, float offset)
    : cascade_(cascade),
      window_(window),
      deviation_(deviation),
      area_(static_cast<float>(deviation.width * deviation.height)),
      offset_(offset),
      sqrRows_(window.height + 1) {}

void HaarScan::Run(const Ipp8u* src, std::ptrdiff_t step, IppiSize size,
                   std::vector<HaarCascade::Position>& survivors) {
  survivors.clear();
  const IppiSize roi = {size.width - window_.width + 1, size.height - window_.height + 1};
  if (roi.width <= 0 || roi.height <= 0) return;
  Fit(size.width);
  Start(size.width);
  for (int top = 0; top < roi.height; top += kBandRows) {
    MoveTo(top);
    const int rows = std::min(kBandRows, roi.height - top);
    for (int y = top; y < top + rows; y++) {
      Integrate(src, step, size.width, y + deviation_.y + deviation_.height);
      Deviate(y, roi.width);
    }
    Integrate(src, step, size.width, top + rows - 1 + window_.height);
    cascade_.Scan(sum_.get(), norm_.get(), {roi.width, rows}, top, survivors);
  }
}

// The pitch stays that of the widest picture so far, since the cascade is laid out for it.
void HaarScan::Fit(int width) {
  if (width + 1 <= pitch_) return;
  pitch_ = 0;
  const std::size_t pitch = static_cast<std::size_t>(width) + 1;
  const auto sumRows = static_cast<std::size_t>(kBandRows + window_.height);
  sum_.reset(new float[pitch * sumRows + HaarCascade::kSlack]);
  norm_.reset(new float[pitch * kBandRows + HaarCascade::kSlack]);
  sqr_.reset(new double[pitch * static_cast<std::size_t>(sqrRows_)]);
  pitch_ = width + 1;
  cascade_.SetPitch(pitch_);
}

void HaarScan::Start(int width) {
  top_ = 0;
  std::fill_n(SumRow(0), width + 1, offset_);
  std::fill_n(SqrRow(0), width + 1, 0.0);
  made_ = 1;
}

void HaarScan::Integrate(const Ipp8u* src, std::ptrdiff_t step, int width, int last) {
  for (int r = made_; r <= last; r++) {
    const IntegralRow row = {src + (r - 1) * step, SumRow(r - 1), SumRow(r), SqrRow(r - 1), SqrRow(r)};
    kernels().haar.integralRow(row, width);
  }
  made_ = std::max(made_, last + 1);
}

void HaarScan::Deviate(int y, int width) {
  const int top = y + deviation_.y;
  const int bottom = top + deviation_.height;
  const int x = deviation_.x;
  const DeviationRows rows = {SumRow(top) + x,    SumRow(bottom) + x, SqrRow(top) + x,
                              SqrRow(bottom) + x, deviation_.width,   area_};
  kernels().haar.stdDevRow(rows, NormRow(y), width);
}

void HaarScan::MoveTo(int top) {
  if (top > top_) std::copy(SumRow(top), SumRow(made_), sum_.get());
  top_ = top;
}
