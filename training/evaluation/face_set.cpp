#include "training/evaluation/face_set.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <stdexcept>

namespace evaluation {

namespace {

constexpr std::size_t kHeldOutStep = 10;
constexpr std::uint64_t kChoicePercent = 8;

// FNV-1a, which stays the same wherever the program is built.
std::uint64_t stableHash(const std::string& text) {
  std::uint64_t hash = 14695981039346656037u;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
  return hash;
}

}  // namespace

std::vector<FaceLabel> validationFaces(const std::vector<FaceLabel>& labels, const std::string& folder) {
  std::vector<FaceLabel> chosen;
  std::copy_if(labels.begin(), labels.end(), std::back_inserter(chosen),
               [&](const FaceLabel& label) { return label.validation && label.file.starts_with(folder); });
  return chosen;
}

bool keptForChoices(const std::string& person) { return stableHash(person) % 100 < kChoicePercent; }

std::vector<FaceLabel> choiceFaces(const std::vector<FaceLabel>& labels, const std::string& folder) {
  std::vector<FaceLabel> chosen;
  std::copy_if(labels.begin(), labels.end(), std::back_inserter(chosen), [&](const FaceLabel& label) {
    return !label.validation && label.file.starts_with(folder) && keptForChoices(label.person);
  });
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
