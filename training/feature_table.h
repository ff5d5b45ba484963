// Values of many Haar features on many windows, quantised to one byte each, so that a boosting round is one
// histogram per feature.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "training/candidate_features.h"
#include "training/window_samples.h"

// Bytes that are not cleared first, in huge pages where the system has them: some gigabytes are filled anew for
// each stage.
class ByteStore {
 public:
  void reserve(std::size_t bytes);
  std::uint8_t* data() const { return bytes_.get(); }

 private:
  struct Free {
    void operator()(std::uint8_t* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<std::uint8_t, Free> bytes_;
  std::size_t capacity_ = 0;
};

class FeatureTable {
 public:
  static constexpr int kBins = 256;

  // Rows are `features`, which must outlive the table.
  explicit FeatureTable(const std::vector<CandidateFeature>& features);

  // Columns become `windows` in the order given. Takes features x windows bytes.
  void fill(const std::vector<Window>& windows, unsigned threads);

  const std::uint8_t* bins(std::size_t feature) const { return bins_.data() + feature * stride_; }
  std::size_t windows() const { return windows_; }

  // The value (feature sum over 324, divided by the window's deviation) between bin and bin + 1.
  float thresholdAbove(std::size_t feature, int bin) const {
    return low_[feature] + static_cast<float>(bin + 1) * width_[feature];
  }

 private:
  const std::vector<CandidateFeature>& features_;
  std::size_t windows_ = 0;
  std::size_t stride_ = 0;
  std::vector<float> low_;    // lower end of bin 0
  std::vector<float> width_;  // of one bin
  ByteStore bins_;
};
