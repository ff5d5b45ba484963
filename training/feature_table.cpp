#include "training/feature_table.h"

#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <thread>

namespace {

constexpr int kIntegralSide = kWindowSide + 1;
constexpr std::size_t kCorners = kIntegralSide * kIntegralSide;
constexpr std::size_t kBlock = 512;         // windows evaluated together: their integrals fit the cache
constexpr std::size_t kRangeSample = 4096;  // windows that set the range of the bins
constexpr double kRangeDeviations = 3.2;    // the 256 bins span so many deviations to either side of the mean

// Integral images of one block of windows, corner by corner, scaled so that a rectangle sum comes out divided by
// 324 and by the window's standard deviation.
class IntegralBlock {
 public:
  IntegralBlock() : data_(kCorners * kBlock) {}

  void fill(const std::vector<Window>& windows, const std::vector<std::size_t>& indices, std::size_t first,
            std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) fillOne(windows[indices.empty() ? first + k : indices[first + k]], k);
  }

  const float* corner(int x, int y) const {
    return data_.data() + static_cast<std::size_t>(y * kIntegralSide + x) * kBlock;
  }

 private:
  void fillOne(const Window& window, std::size_t column) {
    int integral[kCorners] = {};
    double sum = 0;
    double square = 0;
    for (int y = 0; y < kWindowSide; ++y) {
      int row = 0;
      for (int x = 0; x < kWindowSide; ++x) {
        const int pixel = window[static_cast<std::size_t>(y * kWindowSide + x)];
        row += pixel;
        integral[(y + 1) * kIntegralSide + x + 1] = integral[y * kIntegralSide + x + 1] + row;
        if (x >= 1 && x <= 18 && y >= 1 && y <= 18) {
          sum += pixel;
          square += static_cast<double>(pixel) * pixel;
        }
      }
    }
    const double mean = sum / 324.0;
    const double deviation = std::sqrt(std::max(square / 324.0 - mean * mean, 1.0));
    for (std::size_t k = 0; k < kCorners; ++k) {
      data_[k * kBlock + column] = static_cast<float>(integral[k] / (324.0 * deviation));
    }
  }

  std::vector<float> data_;
};

// Sum of the rectangles times their weights for `count` windows, then the bin of each.
template <int rects>
void binFeature(const IntegralBlock& block, const CandidateFeature& feature, std::size_t count, float low, float width,
                float* __restrict values, std::uint8_t* __restrict bins) {
  const float* corner[rects][4];
  float weight[rects];
  for (int r = 0; r < rects; ++r) {
    const HaarRect& rect = feature.rects[r];
    corner[r][0] = block.corner(rect.x + rect.width, rect.y + rect.height);
    corner[r][1] = block.corner(rect.x, rect.y + rect.height);
    corner[r][2] = block.corner(rect.x + rect.width, rect.y);
    corner[r][3] = block.corner(rect.x, rect.y);
    weight[r] = rect.weight;
  }
  const float scale = 1.0f / width;
  for (std::size_t k = 0; k < count; ++k) {
    float value = 0;
    for (int r = 0; r < rects; ++r) {
      value += (corner[r][0][k] - corner[r][1][k] - corner[r][2][k] + corner[r][3][k]) * weight[r];
    }
    values[k] = value;
    const float bin = std::min(std::max((value - low) * scale, 0.0f), 255.0f);
    bins[k] = static_cast<std::uint8_t>(static_cast<int>(bin));
  }
}

void binFeature(const IntegralBlock& block, const CandidateFeature& feature, std::size_t count, float low, float width,
                float* values, std::uint8_t* bins) {
  if (feature.count == 2) {
    binFeature<2>(block, feature, count, low, width, values, bins);
  } else {
    binFeature<3>(block, feature, count, low, width, values, bins);
  }
}

template <typename Work>
void parallel(unsigned threads, Work work) {
  std::vector<std::thread> workers;
  for (unsigned t = 0; t < threads; ++t) workers.emplace_back(work, t);
  for (std::thread& worker : workers) worker.join();
}

}  // namespace

void ByteStore::reserve(std::size_t bytes) {
  constexpr std::size_t kHugePage = std::size_t{1} << 21;
  if (bytes <= capacity_) return;
  bytes_.reset();
  capacity_ = (bytes + kHugePage - 1) / kHugePage * kHugePage;
  bytes_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(kHugePage, capacity_)));
  if (bytes_ == nullptr) throw std::bad_alloc();
  madvise(bytes_.get(), capacity_, MADV_HUGEPAGE);
}

FeatureTable::FeatureTable(const std::vector<CandidateFeature>& features)
    : features_(features), low_(features.size()), width_(features.size()) {}

void FeatureTable::fill(const std::vector<Window>& windows, unsigned threads) {
  const std::vector<CandidateFeature>& features = features_;
  windows_ = windows.size();
  stride_ = (windows.size() + 63) / 64 * 64;
  bins_.reserve(features.size() * stride_);
  // Evenly spread windows stand for all when the range of each feature is found.
  std::vector<std::size_t> sample;
  const std::size_t sampleSize = std::min(kRangeSample, windows.size());
  for (std::size_t k = 0; k < sampleSize; ++k) sample.push_back(k * windows.size() / sampleSize);
  std::vector<IntegralBlock> blocks((sampleSize + kBlock - 1) / kBlock);
  for (std::size_t b = 0; b < blocks.size(); ++b) {
    blocks[b].fill(windows, sample, b * kBlock, std::min(kBlock, sampleSize - b * kBlock));
  }
  parallel(threads, [&](unsigned t) {
    std::vector<float> values(kBlock);
    std::vector<std::uint8_t> unused(kBlock);
    for (std::size_t f = t; f < features.size(); f += threads) {
      double sum = 0;
      double square = 0;
      for (std::size_t b = 0; b < blocks.size(); ++b) {
        const std::size_t count = std::min(kBlock, sampleSize - b * kBlock);
        binFeature(blocks[b], features[f], count, 0.0f, 1.0f, values.data(), unused.data());
        for (std::size_t k = 0; k < count; ++k) {
          sum += values[k];
          square += static_cast<double>(values[k]) * values[k];
        }
      }
      const double n = static_cast<double>(sampleSize);
      const double deviation = std::sqrt(std::max(square / n - (sum / n) * (sum / n), 1e-8));
      low_[f] = static_cast<float>(sum / n - kRangeDeviations * deviation);
      width_[f] = static_cast<float>(2.0 * kRangeDeviations * deviation / kBins);
    }
  });
  parallel(threads, [&](unsigned t) {
    IntegralBlock block;
    std::vector<float> values(kBlock);
    for (std::size_t first = t * kBlock; first < windows.size(); first += threads * kBlock) {
      const std::size_t count = std::min(kBlock, windows.size() - first);
      block.fill(windows, {}, first, count);
      for (std::size_t f = 0; f < features.size(); ++f) {
        binFeature(block, features[f], count, low_[f], width_[f], values.data(), bins_.data() + f * stride_ + first);
      }
    }
  });
}
