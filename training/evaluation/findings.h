// What a person should look at: missed faces and false faces, as a table and as pictures.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "training/evaluation/matching.h"

class TIppiImage;

namespace evaluation {

class Findings {
 public:
  // Either name may be empty: then that output is not made.
  Findings(std::string csvFile, std::string pictureFolder)
      : csvFile_(std::move(csvFile)), pictureFolder_(std::move(pictureFolder)) {}

  // Keeps the misses and false faces of one picture; any thread. `name` tells the picture and how it was changed.
  void add(const std::string& part, const std::string& name, TIppiImage& gray, const FaceSquare& truth,
           const PictureResult& result);
  // The same for a picture without faces.
  void addFalse(const std::string& part, const std::string& name, TIppiImage& gray,
                const std::vector<Detection>& falseFaces);

  // Writes the table, sorted. Throws std::runtime_error.
  void write();

 private:
  void keep(const std::string& part, const std::string& name, const std::string& kind, const Detection& place);
  void savePicture(const std::string& part, const std::string& name, TIppiImage& gray, const FaceSquare* truth,
                   const std::vector<Detection>& falseFaces);

  std::string csvFile_;
  std::string pictureFolder_;
  std::mutex guard_;
  std::vector<std::string> rows_;
};

}  // namespace evaluation
