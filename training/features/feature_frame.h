// A training face as the search for facial points sees it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "training/evaluation/face_views.h"

constexpr int kFrameSide = 256;

enum class FrameKind : std::uint8_t {
  Detected = 0,  // by the detector's own result
  Jittered = 1,  // by the labelled square, moved at random
  Turned = 2,    // the picture turned, then by the detector's result
  Reduced = 3    // the picture reduced, then the same
};

// The face picture that TFaceImage cuts, and the labels in it.
struct FeatureFrame {
  std::array<float, 80> points;  // x and y in turn, the forehead as placeForehead has it; pixel i spans i .. i + 1
  std::int32_t face;             // index of the labelled face
  FrameKind kind;
  bool mirrored;
  bool choice;  // of a person who is kept out of training
  std::uint8_t unused;
  std::array<std::uint8_t, kFrameSide * kFrameSide> pixels;  // top row first
};

// False for a place that the library refuses.
bool cutFeatureFrame(evaluation::FaceView& view, const TFacePosition& place, FeatureFrame& frame);

double pupilDistance(const FeatureFrame& frame);

// The frame as an image for the search.
void toImage(const FeatureFrame& frame, TIppiImage& image);

// All frames of a file, one after another. Throw std::runtime_error.
void writeFeatureFrames(const std::string& file, const std::vector<FeatureFrame>& frames);
std::vector<FeatureFrame> readFeatureFrames(const std::string& file);
