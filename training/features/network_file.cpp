#include "training/features/network_file.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <stdexcept>

#include "features/TNeuralNetwork.h"
#include "features/shape_tables.h"

namespace {

constexpr std::uint32_t kRecordCountMask = 0x3C9A71E5, kTableLengthMask = 0xA1F04B26, kWeightMask = 0x5D82C6B3;
// Words of the table that the loader skips: the size of the whole stream is fixed and takes two lengths.
constexpr std::size_t kShortTables = 32;
constexpr std::uint32_t kShortTable = 84, kLongTable = 85;

class Words {
 public:
  void put(std::uint32_t value, std::uint32_t mask) {
    value ^= mask;
    for (int shift = 0; shift < 32; shift += 8) bytes_.push_back(static_cast<unsigned char>(value >> shift & 255));
  }
  void skip(std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) put(0, 0);
  }
  void putNeuron(float bias, const float* weights, int count) {
    skip(1);
    put(std::bit_cast<std::uint32_t>(bias), kWeightMask);
    for (int i = 0; i < count; ++i) put(std::bit_cast<std::uint32_t>(weights[i]), kWeightMask);
  }
  std::vector<unsigned char> take() { return std::move(bytes_); }

 private:
  std::vector<unsigned char> bytes_;
};

NodeNetwork fromLibrary(const TNeuralNetwork& network) {
  NodeNetwork result;
  for (int k = 0; k < kHiddenNeurons; ++k) {
    const float* const weights = network.Hidden[k].Weights;
    result.biases[k] = weights[0];
    std::copy_n(weights + 1, kPatchPixels, result.weights[k]);
  }
  std::copy_n(network.OutputNeuron.Weights, 1 + kHiddenNeurons, result.output);
  return result;
}

}  // namespace

std::vector<unsigned char> networksToStream(const std::vector<NodeNetwork>& networks) {
  Words words;
  for (std::size_t n = 0; n < networks.size(); ++n) {
    const NodeNetwork& network = networks[n];
    const std::uint32_t table = n < kShortTables ? kShortTable : kLongTable;
    words.put(1, kRecordCountMask);
    words.put(table, kTableLengthMask);
    words.skip(table);
    for (int k = 0; k < kHiddenNeurons; ++k) words.putNeuron(network.biases[k], network.weights[k], kPatchPixels);
    words.putNeuron(network.output[0], network.output + 1, kHiddenNeurons);
  }
  return words.take();
}

std::vector<NodeNetwork> networksFromStream(const std::vector<unsigned char>& stream) {
  const unsigned char* next = stream.data();
  const unsigned char* const end = next + stream.size();
  std::vector<NodeNetwork> networks;
  TNeuralNetwork network;
  while (next != end && networks.size() < kNodes) {
    if (network.LoadFromStream(&next, end) != 0) throw std::runtime_error("damaged networks");
    networks.push_back(fromLibrary(network));
  }
  if (next != end || networks.size() != kNodes) throw std::runtime_error("not forty networks");
  return networks;
}

void writeBytes(const std::string& file, const void* data, std::size_t size) {
  std::ofstream out(file, std::ios::binary);
  out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}
