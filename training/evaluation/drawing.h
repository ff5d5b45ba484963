// Squares drawn onto a colour copy of a gray picture.
#pragma once

#include <array>

#include "training/face_labels.h"

class TIppiImage;

namespace evaluation {

using Color = std::array<unsigned char, 3>;
constexpr Color kGreen{0, 220, 0};
constexpr Color kRed{255, 0, 0};

void colorCanvas(TIppiImage& gray, TIppiImage& canvas);

void drawLine(TIppiImage& canvas, LabelledPoint from, LabelledPoint to, const Color& color);

// The outline of the turned square, with a mark at its upper side. Parts outside the canvas are left out.
void drawSquare(TIppiImage& canvas, const FaceSquare& square, const Color& color);

}  // namespace evaluation
