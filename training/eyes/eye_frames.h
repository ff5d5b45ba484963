// Face crops for training the eye models, as the eye search sees them, with the true places of the eyes.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "training/face_labels.h"

class TIppiImage;
struct TFacePosition;

struct EyeFrame {
  std::int32_t person = 0;  // number of the person, to keep people apart
  std::int32_t plain = 0;   // 1 if the face is where the detector reported it and the picture was not made worse
  // Smaller x first, pixels of the frame, whole numbers at the centres of pixels. Half a pixel further right and down
  // is the place that the search has to choose for its truncated result to be right on average. The eye's picture lies
  // 0.4 pixels above: the crop's side is 128.4 pixels before it is floored, and rows are dropped at the top.
  std::array<LabelledPoint, 2> eyes;
  std::array<std::uint8_t, 128 * 128> pixels;  // row by row from the top

  // The frame as the search takes it.
  void toImage(TIppiImage& image) const;
};

// The crop of a face in a gray picture whose eyes are known. Throws std::runtime_error for a face without a crop.
EyeFrame cutEyeFrame(TIppiImage& gray, const std::array<LabelledPoint, 2>& eyes, const TFacePosition& face);

// Both throw std::runtime_error on failure. The file is for this processor and build only.
void writeEyeFrames(const std::string& file, const std::vector<EyeFrame>& frames);
std::vector<EyeFrame> readEyeFrames(const std::string& file);
