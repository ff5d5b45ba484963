#include "training/training_set.h"

#include <algorithm>
#include <filesystem>
#include <thread>

std::vector<TrainingPicture> loadBackgrounds(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path().string());
  std::sort(files.begin(), files.end());
  std::vector<TrainingPicture> pictures;
  for (std::size_t k = 0; k < files.size(); ++k) {
    if (k % 10 == 0) continue;
    if (auto gray = loadGray(files[k])) pictures.push_back({std::move(gray), {}});
  }
  return pictures;
}

std::vector<TrainingPicture> loadPortraits(const std::string& folder) {
  std::vector<TrainingPicture> pictures;
  for (const FaceLabel& label : readFaceLabels(folder + "/labels.csv")) {
    if (label.validation) continue;
    if (auto gray = loadGray(folder + "/" + label.file)) pictures.push_back({std::move(gray), faceSquare(label)});
  }
  return pictures;
}

std::vector<Window> makePositives(std::vector<TrainingPicture>& portraits, const FaceJitter& jitter, int copies,
                                  std::uint32_t seed, unsigned threads) {
  std::vector<std::vector<Window>> perPicture(portraits.size());
  std::vector<std::thread> workers;
  for (unsigned t = 0; t < threads; ++t) {
    workers.emplace_back([&, t] {
      for (std::size_t k = t; k < portraits.size(); k += threads) {
        std::mt19937 random(seed * 1000003u + static_cast<std::uint32_t>(k));
        Window window;
        for (int copy = 0; copy < copies; ++copy) {
          if (makeFaceWindow(portraits[k], jitter, random, window)) perPicture[k].push_back(window);
        }
      }
    });
  }
  for (std::thread& worker : workers) worker.join();
  std::vector<Window> windows;
  for (const auto& some : perPicture) windows.insert(windows.end(), some.begin(), some.end());
  return windows;
}
