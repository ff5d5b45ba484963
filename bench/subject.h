// The picture that the whole-pipeline benchmarks work on, in the sizes that they need.
#pragma once

#include <string>

#include "image/TIppiImage.h"

// A picture of 12 megapixels with faces where there is one to be had: the file named by PORTRAITCUT_BENCH_PICTURE
// (a photo, say), else the average faces of the tests with camera-like noise, else synthetic texture alone.
class BenchSubject {
 public:
  static constexpr int kWidth = 4000;
  static constexpr int kHeight = 3000;

  // Made at the first call and kept. Throws std::runtime_error.
  static BenchSubject& instance();

  TIppiImage color{imRGB24};         // 4000 by 3000
  TIppiImage gray;                   // the same
  TIppiImage colorQuarter{imRGB24};  // about 1000 by 750
  TIppiImage grayQuarter;
  TIppiImage working;    // 384 by 256, the size of one scan of a detection
  TIppiImage texture;    // the same size, no faces: structure everywhere
  std::string jpegFile;  // `color` at quality 90, removed at the end

  BenchSubject(const BenchSubject&) = delete;
  BenchSubject& operator=(const BenchSubject&) = delete;

 private:
  BenchSubject();
  ~BenchSubject();
};

// A file name in a temporary folder that no other process uses.
std::string temporaryFile(const std::string& ending);
