#include "training/features/search_round.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "features/TGenetic.h"
#include "features/TNeuroLocator.h"
#include "features/mean_grid.h"
#include "training/evaluation/processes.h"
#include "training/features/network_file.h"

namespace {

constexpr int kPopulation = 800;
constexpr int kParents = 57;
constexpr int kGenerations = 11;

SearchGrid toSearchGrid(const TGrid& grid) {
  SearchGrid result;
  for (std::size_t n = 0; n < kNodes; ++n) {
    result[2 * n] = grid.Nodes[n].x;
    result[2 * n + 1] = grid.Nodes[n].y;
  }
  return result;
}

// The generations of TGenetic once more, on random numbers of their own, with some members of each handed out: what a
// search meets on its way is where the networks must not be wrong.
class SampledSearch {
 public:
  SampledSearch(TNeuroLocator& locator, int samples) : locator_(locator), genetic_(kPopulation, &locator) {
    wanted_ = samples;
    children_.resize(kParents * (kParents - 1));
    for (TNeuroChromosome& child : children_) child.Owner = &genetic_;
  }

  std::vector<SearchGrid> run() {
    std::vector<TNeuroChromosome*> members = genetic_.Population;
    for (TNeuroChromosome* member : members) member->Randomize();
    evaluate(members);
    genetic_.SortPopulation(&members, 0, kPopulation - 1);
    for (TNeuroChromosome& child : children_) members.push_back(&child);
    for (int generation = 0; generation < kGenerations; ++generation) {
      breed(members);
      evaluate({members.begin() + kPopulation, members.end()});
      genetic_.SortPopulation(&members, 0, static_cast<int>(members.size()) - 1);
      // The first generations are wide: their best quarter tells more.
      const int top = generation < 3 ? kPopulation / 4 : kPopulation;
      const int until = wanted_ * (generation + 1) / kGenerations;
      while (static_cast<int>(taken_.size()) < until) take(*members[static_cast<std::size_t>(std::rand() % top)]);
    }
    return taken_;
  }

 private:
  void evaluate(const std::vector<TNeuroChromosome*>& members) {
    for (std::size_t first = 0; first < members.size(); first += kShapeLanes) {
      const std::size_t count = std::min<std::size_t>(kShapeLanes, members.size() - first);
      const float* parameters[kShapeLanes];
      float values[kShapeLanes];
      for (std::size_t i = 0; i < count; ++i) parameters[i] = members[first + i]->Parameters.data();
      locator_.ShapeSimilarities(parameters, static_cast<int>(count), values);
      for (std::size_t i = 0; i < count; ++i) members[first + i]->Value = values[i];
    }
  }

  static void breed(const std::vector<TNeuroChromosome*>& members) {
    auto child = members.begin() + kPopulation;
    for (std::size_t a = 0; a < kParents; ++a) {
      for (std::size_t b = 0; b < kParents; ++b) {
        if (a == b) continue;
        (*child)->Copy(members[a]);
        (*child)->Crossingover(members[b]);
        (*child)->Mutate();
        ++child;
      }
    }
  }

  void take(const TNeuroChromosome& member) {
    const float* const p = member.Parameters.data();
    locator_.GenerateGridP(taken_.emplace_back().data(), p, p[32], p[33], p[34], p[35], p[36]);
  }

  TNeuroLocator& locator_;
  TGenetic genetic_;
  int wanted_ = 0;
  std::vector<TNeuroChromosome> children_;
  std::vector<SearchGrid> taken_;
};

// The result, the best generated grid, then the samples.
std::string searchFrame(const TNeuroLocator& master, const FeatureFrame& frame, std::size_t index,
                        const SearchOptions& options) {
  TNeuroLocator locator(master);
  TIppiImage image;
  toImage(frame, image);
  TGrid grid = MeanGrid40;
  locator.Result = &grid;
  locator.LocateGrid(image);
  std::vector<SearchGrid> grids = {toSearchGrid(grid), toSearchGrid(locator.Grid2)};
  if (options.samples > 0) {
    locator.EvenCoordinates = true;
    locator.LinkWeight = 0;
    std::srand(options.seed * 1000003u + static_cast<unsigned>(index));
    const auto samples = SampledSearch(locator, options.samples).run();
    grids.insert(grids.end(), samples.begin(), samples.end());
  }
  return evaluation::bytesOf(grids);
}

}  // namespace

std::vector<SearchedFrame> searchFrames(const std::vector<FeatureFrame>& frames, const std::vector<std::size_t>& chosen,
                                        const std::vector<NodeNetwork>& networks, const std::vector<float>& eigenGrids,
                                        const SearchOptions& options) {
  const std::vector<unsigned char> stream = networksToStream(networks);
  TNeuroData data;
  data.Networks = stream.data();
  data.NetworksEnd = stream.data() + stream.size();
  data.EigenGrids = eigenGrids.data();
  const TNeuroLocator master(data);
  const auto bytes = evaluation::forEachIndexInProcesses(chosen.size(), options.processes, [&](std::size_t i) {
    return searchFrame(master, frames[chosen[i]], chosen[i], options);
  });
  std::vector<SearchedFrame> searched;
  for (const std::string& row : bytes) {
    const auto grids = evaluation::recordsOf<SearchGrid>(row);
    searched.push_back({grids.at(0), grids.at(1), {grids.begin() + 2, grids.end()}});
  }
  return searched;
}

std::array<double, 80> meanErrorsOf(const std::vector<FeatureFrame>& frames, const std::vector<std::size_t>& chosen,
                                    const std::vector<SearchedFrame>& searched) {
  std::array<double, 80> means{};
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    const auto& truth = frames[chosen[i]].points;
    for (std::size_t k = 0; k < means.size(); ++k) means[k] += static_cast<double>(searched[i].result[k] - truth[k]);
  }
  for (double& mean : means) mean /= static_cast<double>(std::max<std::size_t>(1, chosen.size()));
  return means;
}

double innerErrorOf(const std::vector<FeatureFrame>& frames, const std::vector<std::size_t>& chosen,
                    const std::vector<SearchedFrame>& searched, double truncation) {
  double sum = 0;
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    const FeatureFrame& frame = frames[chosen[i]];
    for (const std::size_t n : evaluation::kInnerNodes) {
      const double dx = static_cast<double>(searched[i].result[2 * n] - frame.points[2 * n]) - truncation;
      const double dy = static_cast<double>(searched[i].result[2 * n + 1] - frame.points[2 * n + 1]) - truncation;
      sum += std::hypot(dx, dy) / pupilDistance(frame);
    }
  }
  return sum / static_cast<double>(std::max<std::size_t>(1, chosen.size() * evaluation::kInnerNodes.size()));
}
