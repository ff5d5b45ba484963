#include "features/TNeuroLocator.h"

#include <algorithm>
#include <stdexcept>

#include "features/mean_grid.h"

TNeuroLocator* NeuroLocator = nullptr;

namespace {

constexpr std::size_t kTableBytes = std::size_t{TNeuroLocator::kSide} * TNeuroLocator::kSide;

void copyWeights(const TNeuron& from, TNeuron& to) {
  std::copy(std::begin(from.Weights), std::end(from.Weights), to.Weights);
}

}  // namespace

TNeuroLocator::TNeuroLocator(const TNeuroData& data) : EigenGrids(data.EigenGrids), EigenRanges(data.EigenRanges) {
  Prepare();
  const unsigned char* cursor = data.Networks;
  for (TNeuralNetwork& network : Networks) {
    if (network.LoadFromStream(&cursor, data.NetworksEnd) != 0) throw std::invalid_argument("damaged networks");
  }
  if (cursor != data.NetworksEnd) throw std::invalid_argument("more than forty networks");
}

TNeuroLocator::TNeuroLocator(TNeuroLocator& source) : EigenGrids(source.EigenGrids), EigenRanges(source.EigenRanges) {
  Prepare();
  for (int n = 0; n < kNodes; ++n) {
    for (int j = 0; j < kHiddenNeurons; ++j) copyWeights(source.Networks[n].Hidden[j], Networks[n].Hidden[j]);
    std::copy_n(source.Networks[n].OutputNeuron.Weights, 1 + kHiddenNeurons, Networks[n].OutputNeuron.Weights);
  }
}

void TNeuroLocator::Prepare() {
  Image.Mode = imGray8;
  SimilarityCache = std::make_unique<float[]>(kTableBytes * kNodes);
  PatchTables = std::make_unique<unsigned char[]>(kTableBytes * 3);
  for (std::size_t x = 0; x < kSide; ++x) {
    PatchLowRows[x] = PatchTables.get() + x * kSide;
    PatchHighRows[x] = PatchLowRows[x] + kTableBytes;
    PatchKnownRows[x] = PatchHighRows[x] + kTableBytes;
  }
  BaseGrid.LoadFromString(base_grid_text);
  for (std::size_t k = 0; k < kNodes; ++k) {
    MeanNodes[2 * k] = MeanGrid40.Nodes[k].x;
    MeanNodes[2 * k + 1] = MeanGrid40.Nodes[k].y;
  }
  for (TNeuralNetwork& network : Networks) {
    network.PatchLow = PatchLowRows;
    network.PatchHigh = PatchHighRows;
    network.PatchKnown = PatchKnownRows;
  }
}
