// Trained data for the search of facial points from files.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "features/TNeuroLocator.h"

namespace evaluation {

std::vector<unsigned char> readBytes(const std::string& file);

// What the files hold; an empty name stands for the library's own. The memory outlives every locator made of it.
class LocatorData {
 public:
  // Throws std::runtime_error if a file can't be read or has a wrong size.
  LocatorData(const std::string& networksFile, const std::string& eigenGridsFile);
  TNeuroData data() const;

 private:
  std::vector<unsigned char> networks_;
  std::vector<float> eigenGrids_;
};

// Makes the library search with the data, from the next call on.
void searchWith(const LocatorData& data);

}  // namespace evaluation
