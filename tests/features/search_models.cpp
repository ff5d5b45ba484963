#include "tests/features/search_models.h"

#include <algorithm>
#include <bit>
#include <cmath>

void putWord(std::vector<unsigned char>& stream, std::uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) stream.push_back(static_cast<unsigned char>(word >> shift));
}

void putRecordCount(std::vector<unsigned char>& stream, std::uint32_t count) { putWord(stream, count ^ 0x3C9A71E5); }

void putRecord(std::vector<unsigned char>& stream, const PlainNetwork& network, std::uint32_t tableLength) {
  const auto putWeight = [&](float weight) { putWord(stream, std::bit_cast<std::uint32_t>(weight) ^ 0x5D82C6B3); };
  putWord(stream, tableLength ^ 0xA1F04B26);
  for (std::uint32_t k = 0; k < tableLength; ++k) putWord(stream, 0xFFFFFFFF);
  for (const auto& neuron : network.hidden) {
    putWord(stream, 0x7FC00000);  // skipped, and not a number if it were not
    for (const float weight : neuron) putWeight(weight);
  }
  putWord(stream, 0x7FC00000);
  for (const float weight : network.output) putWeight(weight);
}

PlainNetwork makeNetwork(std::mt19937& random) {
  PlainNetwork network;
  std::normal_distribution<float> normal;
  for (auto& neuron : network.hidden) {
    for (float& weight : neuron) weight = 0.15F * normal(random);
  }
  for (float& weight : network.output) weight = normal(random);
  return network;
}

SearchModel makeSearchModel(unsigned seed) {
  SearchModel model;
  std::mt19937 random(seed);
  for (int n = 0; n < kNodes; ++n) {
    model.networks.push_back(makeNetwork(random));
    putRecordCount(model.stream, 1);
    putRecord(model.stream, model.networks.back(), static_cast<std::uint32_t>(n % 3));
  }
  // Rows of a cosine transform are orthonormal.
  for (int m = 0; m < kDeformations; ++m) {
    for (int k = 0; k < kCoordinates; ++k) {
      model.deformations.push_back(
          static_cast<float>(std::sqrt(2.0 / kCoordinates) * std::cos(M_PI * (k + 0.5) * (m + 1) / kCoordinates)));
    }
  }
  return model;
}

void fillFace(TIppiImage& face, int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  face.Mode = imGray8;
  face.AllocNew(width, height);
  const double phase = seed, fx = 0.05 + 0.01 * (seed % 5), fy = 0.08 - 0.01 * (seed % 3);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double value =
          120 + 60 * std::sin(fx * x + phase) + 50 * std::cos(fy * y + 0.02 * x) + static_cast<double>(random() % 20);
      facePixel(face, x, y) = static_cast<unsigned char>(std::clamp(value, 0.0, 255.0));
    }
  }
}
