// Windows of 20 by 20 pixels cut from training pictures by the library's own image operations.
#pragma once

#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "image/TIppiImage.h"
#include "training/cascade_stream.h"
#include "training/face_labels.h"

// Gray values, picture order (top row first).
using Window = std::array<unsigned char, kWindowSide * kWindowSide>;

// A gray picture and, if it shows one, its labelled face (w = 0 for none).
struct TrainingPicture {
  std::unique_ptr<TIppiImage> gray;
  FaceSquare face;
};

// Loads by the library's JPEG or PNG loader as colour, then converts to gray as detection does. Null if
// the file cannot be read.
std::unique_ptr<TIppiImage> loadGray(const std::string& file);

// How the copies of one face vary; every picture of training is jittered by these.
struct FaceJitter {
  double turnMean = 0.0;       // degrees clockwise, of the face against the window
  double turnDeviation = 4.5;  // degrees
  double turnLimit = 9.0;      // degrees
  double logScale = 0.10;      // uniform, +- natural log of the size ratio
  double shift = 0.75;         // uniform, +- pixels of the 20 pixel window
  // Where windows stand against the face, in widths. The fine search truncates coordinates in a crop of 80 pixels
  // and loses that crop's top row, which moves its results left and up; windows trained to stand right of and below the
  // face bring the reported square back onto it.
  double shiftRight = 0.0;
  double shiftDown = 0.0;
};

// Gaussian noise of this deviation, in gray levels.
void addNoise(TIppiImage& gray, double deviation, std::mt19937& random);

// Contrast about middle gray times `factor`: a flat print, whose gray levels are few.
void flatten(TIppiImage& gray, double factor);

// One jittered window of the picture's face: working size, turn, scale, place, mirror, light, noise. False when the
// window does not lie inside the picture's extended crop.
bool makeFaceWindow(TrainingPicture& picture, const FaceJitter& jitter, std::mt19937& random, Window& window);

// A copy of the window of `image` whose lower left corner in stored rows is (x, row).
Window windowAt(const TIppiImage& image, int x, int row);
