// The stream of the networks: a record count, then records of a table that is skipped and four neurons, each with a
// word before it that is skipped. 32-bit little-endian words, masked; the last record of a network stands.
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "features/TNeuralNetwork.h"

namespace {

constexpr std::uint32_t kRecordCountMask = 0x3C9A71E5, kTableLengthMask = 0xA1F04B26, kWeightMask = 0x5D82C6B3;
constexpr std::ptrdiff_t kWordBytes = 4;

class NetworkStream {
 public:
  NetworkStream(const unsigned char* next, const unsigned char* end) : next_(next), end_(end) {}

  bool Read(std::uint32_t mask, std::uint32_t& value) {
    if (end_ - next_ < kWordBytes) return false;
    value = (static_cast<std::uint32_t>(next_[0]) | static_cast<std::uint32_t>(next_[1]) << 8 |
             static_cast<std::uint32_t>(next_[2]) << 16 | static_cast<std::uint32_t>(next_[3]) << 24) ^
            mask;
    next_ += kWordBytes;
    return true;
  }

  bool Skip(std::uint32_t words) {
    if ((end_ - next_) / kWordBytes < static_cast<std::ptrdiff_t>(words)) return false;
    next_ += static_cast<std::ptrdiff_t>(words) * kWordBytes;
    return true;
  }

  bool ReadNeuron(TNeuron& neuron, int weights) {
    if (!Skip(1)) return false;
    for (int i = 0; i < weights; ++i) {
      std::uint32_t bits;
      if (!Read(kWeightMask, bits)) return false;
      neuron.Weights[i] = std::bit_cast<float>(bits);
      if (!std::isfinite(neuron.Weights[i])) return false;
    }
    return true;
  }

  bool ReadRecord(TNeuralNetwork& network) {
    std::uint32_t tableLength;
    if (!Read(kTableLengthMask, tableLength) || !Skip(tableLength)) return false;
    for (TNeuron& neuron : network.Hidden) {
      if (!ReadNeuron(neuron, 1 + kPatchPixels)) return false;
    }
    return ReadNeuron(network.OutputNeuron, 1 + kHiddenNeurons);
  }

  const unsigned char* Next() const { return next_; }

 private:
  const unsigned char* next_;
  const unsigned char* end_;
};

}  // namespace

int TNeuralNetwork::LoadFromStream(const unsigned char** stream, const unsigned char* end) {
  NetworkStream words(*stream, end);
  std::uint32_t records;
  // Without a record there would be no weights.
  if (!words.Read(kRecordCountMask, records) || records == 0) return -1;
  for (std::uint32_t r = 0; r < records; ++r) {
    if (!words.ReadRecord(*this)) return -1;
  }
  *stream = words.Next();
  return 0;
}
