// Cascades made for tests, as their maker sees them: rectangles with rows from the top, weights as stored.
#pragma once

#include <cstring>
#include <random>
#include <vector>

#include "tests/primitives/haar_reference.h"

struct TestCascade {
  int windowWidth = 20;
  int windowHeight = 20;
  std::vector<StageData> stages;
  std::vector<float> thresholds;

  // The stream of this cascade.
  std::vector<unsigned char> Stream() const;
};

// Appends a 32-bit word, or a record of them, as it lies in memory (little-endian).
template <typename T>
void putWords(std::vector<unsigned char>& stream, const T& value) {
  unsigned char bytes[sizeof(T)];
  std::memcpy(bytes, &value, sizeof(T));
  stream.insert(stream.end(), bytes, bytes + sizeof(T));
}

// Fires on bright squares that fill the middle half of the window: each of four classifiers asks that one
// side be darker than the middle.
TestCascade squareCascade();

// `stages` stages of random features, some classifiers with 1, 4 or 5 of them; the first feature of all
// spans the window.
TestCascade randomCascade(int windowWidth, int windowHeight, int stages, std::mt19937& random);
