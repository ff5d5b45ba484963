#include "training/evaluation/face_set.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>

namespace evaluation {

namespace {

constexpr std::size_t kHeldOutStep = 10;

}  // namespace

std::vector<FaceLabel> validationFaces(const std::vector<FaceLabel>& labels, const std::string& folder) {
  std::vector<FaceLabel> chosen;
  std::copy_if(labels.begin(), labels.end(), std::back_inserter(chosen),
               [&](const FaceLabel& label) { return label.validation && label.file.starts_with(folder); });
  return chosen;
}

std::vector<std::string> heldOutBackgrounds(const std::string& folder) {
  std::error_code error;
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) files.push_back(entry.path().string());
  if (error) throw std::runtime_error("cannot read the folder " + folder);
  std::sort(files.begin(), files.end());
  std::vector<std::string> chosen;
  for (std::size_t i = 0; i < files.size(); i += kHeldOutStep) chosen.push_back(files[i]);
  return chosen;
}

}  // namespace evaluation
