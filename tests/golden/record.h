// What a run of the pipeline gave, as lines of text.
#pragma once

#include <string>
#include <vector>

#include "vizl_api.h"

class TRecord {
 public:
  // "name: text". Numbers of real type go in as hexadecimal floats, which lose no bit.
  void Add(const std::string& name, const std::string& text) { Lines.push_back(name + ": " + text); }
  void AddFace(const std::string& name, const TFacePosition& face);
  void AddPoints(const std::string& name, const TPoint (&points)[40], int count);
  void AddConfidences(const std::string& name, const float (&confidences)[40]);
  // Size and hash of the pixels. Frees the image.
  void AddImageAndFree(const std::string& name, HImage image);

  const std::vector<std::string>& All() const { return Lines; }

 private:
  std::vector<std::string> Lines;
};

// Ends the program with the call's name unless the code is VIZLE_OK.
void require(int32_t code, const char* call);

// All that the library works out from the picture of a PNG file.
TRecord recordOf(const std::string& pngFile);
