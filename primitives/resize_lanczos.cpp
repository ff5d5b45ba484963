// Six-tap Lanczos resize: every source row is widened once to a row of floats, kept while the destination
// rows around it need it.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "primitives/kernels.h"
#include "primitives/resize.h"

namespace {

constexpr int kLobes = 3;
constexpr int kTapsBefore = kLobes - 1;
constexpr int kTableSteps = 100;
// Two entries beyond the last lobe: interpolation looks one further, and 100 * |t| may round up.
constexpr int kTableSize = kLobes * kTableSteps + 2;

double sinc(double x) {
  const double angle = std::numbers::pi * x;
  return std::sin(angle) / angle;
}

std::array<float, kTableSize> makeKernelTable() {
  std::array<float, kTableSize> table{};
  table[0] = 1.0F;
  for (int k = 1; k < kLobes * kTableSteps; ++k) {
    // Exact zeros at whole distances, where sin(pi x) is only nearly 0.
    if (k % kTableSteps == 0) continue;
    const double x = static_cast<double>(k) / kTableSteps;
    table[static_cast<std::size_t>(k)] = static_cast<float>(sinc(x) * sinc(x / kLobes));
  }
  return table;
}

double kernelAt(double distance) {
  static const std::array<float, kTableSize> table = makeKernelTable();
  if (distance >= kLobes) return 0.0;
  const double place = kTableSteps * distance;
  const auto index = static_cast<std::size_t>(place);
  const double fraction = place - static_cast<double>(index);
  return static_cast<double>(table[index]) * (1.0 - fraction) + static_cast<double>(table[index + 1]) * fraction;
}

// For each output the source pixel left of its position and six weights that sum to 1.
struct LanczosAxis {
  std::vector<std::int32_t> first;
  std::vector<float> weights;

  LanczosAxis(int count, double factor, int side) {
    first.reserve(static_cast<std::size_t>(count));
    weights.reserve(static_cast<std::size_t>(count) * kLanczosTaps);
    for (int i = 0; i < count; ++i) {
      const double position = std::min(i / factor, static_cast<double>(side));
      const double whole = std::min(std::floor(position), side - 1.0);
      first.push_back(static_cast<std::int32_t>(whole));
      addWeights(position - whole);
    }
  }

  void addWeights(double fraction) {
    double taps[kLanczosTaps];
    double sum = 0.0;
    for (int t = 0; t < kLanczosTaps; ++t) {
      taps[t] = kernelAt(std::abs(t - kTapsBefore - fraction));
      sum += taps[t];
    }
    for (double tap : taps) weights.push_back(static_cast<float>(tap / sum));
  }
};

template <class T>
class LanczosResizer {
 public:
  explicit LanczosResizer(const ResizeJob<T>& job)
      : job_(job),
        channels_(static_cast<std::size_t>(job.channels)),
        across_(job.dstSize.width, job.xFactor, job.srcSize.width),
        down_(job.dstSize.height, job.yFactor, job.srcSize.height),
        padded_((static_cast<std::size_t>(job.srcSize.width) + kLanczosTaps) * channels_ + 4) {
    for (auto& row : wide_) row.resize(static_cast<std::size_t>(job.dstSize.width) * channels_);
    held_.fill(-1);
  }

  void run() {
    for (int y = 0; y < job_.dstSize.height; ++y) {
      const float* rows[kLanczosTaps];
      const int first = down_.first[static_cast<std::size_t>(y)] - kTapsBefore;
      for (int t = 0; t < kLanczosTaps; ++t) rows[t] = wideRow(first + t);
      writeRow(rows, down_.weights.data() + static_cast<std::ptrdiff_t>(y) * kLanczosTaps, y);
    }
  }

 private:
  // Six neighbouring rows never share a slot.
  const float* wideRow(int y) {
    y = std::clamp(y, 0, job_.srcSize.height - 1);
    const auto slot = static_cast<std::size_t>(y % kLanczosTaps);
    if (held_[slot] != y) {
      padRow(job_.srcRow(y));
      kernels().resample.lanczosRow[resampleChannelIndex(job_.channels)](
          padded_.data(), across_.first.data(), across_.weights.data(), wide_[slot].data(), job_.dstSize.width);
      held_[slot] = y;
    }
    return wide_[slot].data();
  }

  // Repeats the edge pixels, so that the taps need no clamping.
  void padRow(const T* row) {
    const auto width = static_cast<std::size_t>(job_.srcSize.width);
    float* out = padded_.data();
    for (int k = 0; k < kTapsBefore; ++k) out = std::copy_n(row, channels_, out);
    out = std::copy_n(row, width * channels_, out);
    for (int k = 0; k < kLobes; ++k) out = std::copy_n(row + (width - 1) * channels_, channels_, out);
  }

  void writeRow(const float* const rows[kLanczosTaps], const float* weights, int y) {
    const int samples = job_.dstSize.width * job_.channels;
    if constexpr (sizeof(T) == 1) {
      kernels().resample.lanczosColumns8u(rows, weights, job_.dstRow(y), samples);
    } else {
      kernels().resample.lanczosColumns32f(rows, weights, job_.dstRow(y), samples);
    }
  }

  const ResizeJob<T>& job_;
  std::size_t channels_;
  LanczosAxis across_;
  LanczosAxis down_;
  std::vector<float> padded_;
  std::array<std::vector<float>, kLanczosTaps> wide_;
  std::array<int, kLanczosTaps> held_{};
};

}  // namespace

void resizeLanczos(const ResizeJob<Ipp8u>& job) { LanczosResizer<Ipp8u>(job).run(); }
void resizeLanczos(const ResizeJob<Ipp32f>& job) { LanczosResizer<Ipp32f>(job).run(); }
