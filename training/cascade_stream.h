// A cascade while it is being trained, and its stream form (the form of models/class_dat.bin).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

constexpr int kWindowSide = 20;

// A rectangle of the 20 by 20 window, rows from the top, and the weight of its pixel sum.
struct HaarRect {
  std::int32_t x, y, width, height;
  float weight;
};

struct WeakClassifier {
  std::vector<HaarRect> rects;  // the whole with weight -1, then its inner parts
  float threshold = 0;          // of the value divided by the window's standard deviation
  float left = 0;               // added when the value lies below the threshold
  float right = 0;
};

struct Stage {
  float threshold = 0;
  std::vector<WeakClassifier> classifiers;
};

using Cascade = std::vector<Stage>;

std::vector<unsigned char> cascadeToStream(const Cascade& cascade);
Cascade cascadeFromStream(const std::vector<unsigned char>& stream);

std::vector<unsigned char> readFile(const std::string& name);
// Writes beside the file and renames, so that a training that is stopped leaves a whole file.
void writeFile(const std::string& name, const std::vector<unsigned char>& bytes);
