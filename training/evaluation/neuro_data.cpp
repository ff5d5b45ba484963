#include "training/evaluation/neuro_data.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace evaluation {

std::vector<unsigned char> readBytes(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + file);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

LocatorData::LocatorData(const std::string& networksFile, const std::string& eigenGridsFile) {
  if (!networksFile.empty()) networks_ = readBytes(networksFile);
  if (eigenGridsFile.empty()) return;
  const std::vector<unsigned char> bytes = readBytes(eigenGridsFile);
  eigenGrids_.resize(kDeformations * kCoordinates);
  if (bytes.size() != eigenGrids_.size() * sizeof(float))
    throw std::runtime_error("no deformations: " + eigenGridsFile);
  std::memcpy(eigenGrids_.data(), bytes.data(), bytes.size());
}

TNeuroData LocatorData::data() const {
  TNeuroData data;
  if (!networks_.empty()) {
    data.Networks = networks_.data();
    data.NetworksEnd = networks_.data() + networks_.size();
  }
  if (!eigenGrids_.empty()) data.EigenGrids = eigenGrids_.data();
  return data;
}

void searchWith(const LocatorData& data) {
  auto locator = std::make_unique<TNeuroLocator>(data.data());
  delete NeuroLocator;
  NeuroLocator = locator.release();
}

}  // namespace evaluation
