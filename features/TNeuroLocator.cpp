#include "features/TNeuroLocator.h"

#include <stdexcept>

#include "features/mean_grid.h"

TNeuroLocator* NeuroLocator = nullptr;

namespace {

std::shared_ptr<const TNeuralNetwork[]> loadNetworks(const unsigned char* stream, const unsigned char* end) {
  auto networks = std::make_shared<TNeuralNetwork[]>(kNodes);
  for (std::ptrdiff_t n = 0; n < kNodes; ++n) {
    if (networks[n].LoadFromStream(&stream, end) != 0) throw std::invalid_argument("damaged networks");
  }
  if (stream != end) throw std::invalid_argument("more than forty networks");
  return networks;
}

}  // namespace

TNeuroLocator::TNeuroLocator(const TNeuroData& data)
    : EigenGrids(data.EigenGrids),
      EigenRanges(data.EigenRanges),
      Networks(loadNetworks(data.Networks, data.NetworksEnd)),
      Scores(Networks) {
  LoadMeanGrid40();
  Prepare();
}

TNeuroLocator::TNeuroLocator(const TNeuroLocator& source)
    : EigenGrids(source.EigenGrids), EigenRanges(source.EigenRanges), Networks(source.Networks), Scores(Networks) {
  Prepare();
}

void TNeuroLocator::Prepare() {
  BaseGrid.LoadFromString(base_grid_text);
  for (std::size_t k = 0; k < kNodes; ++k) {
    MeanNodes[2 * k] = MeanGrid40.Nodes[k].x;
    MeanNodes[2 * k + 1] = MeanGrid40.Nodes[k].y;
  }
}
