// Small random models and faces, so that the tests of the search don't depend on what was trained.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "features/TNeuroLocator.h"
#include "image/TIppiImage.h"

struct PlainNetwork {
  float hidden[3][1025];
  float output[4];
};

struct SearchModel {
  std::vector<PlainNetwork> networks;
  std::vector<float> deformations;    // 32 orthonormal rows of 80
  std::vector<unsigned char> stream;  // of the networks

  TNeuroData Data() const {
    TNeuroData data;
    data.Networks = stream.data();
    data.NetworksEnd = stream.data() + stream.size();
    data.EigenGrids = deformations.data();
    return data;
  }
};

SearchModel makeSearchModel(unsigned seed);

// Masked words of a stream, for streams that are put together by hand.
void putWord(std::vector<unsigned char>& stream, std::uint32_t word);
void putRecordCount(std::vector<unsigned char>& stream, std::uint32_t count);
// One record with a table of so many words.
void putRecord(std::vector<unsigned char>& stream, const PlainNetwork& network, std::uint32_t tableLength);

PlainNetwork makeNetwork(std::mt19937& random);

// Smooth blobs with noise, rows bottom first as everywhere.
void fillFace(TIppiImage& face, int width, int height, unsigned seed);

inline unsigned char& facePixel(TIppiImage& face, int x, int y) {
  return face.Pixels[static_cast<std::ptrdiff_t>(face.Height - 1 - y) * face.Step + x];
}
