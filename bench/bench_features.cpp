// The search for facial points and its parts, with random networks: the time hardly depends on what they know.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include "api/vizl_api.h"
#include "bench/subject.h"
#include "features/TGenetic.h"
#include "features/TNeuroLocator.h"
#include "tests/features/reference_search.h"

namespace {

TIppiImage& face() {
  static TIppiImage image;
  if (image.Pixels == nullptr) fillFace(image, TNeuroLocator::kSide, TNeuroLocator::kSide, 1);
  return image;
}

const SearchModel& model() {
  static const SearchModel made = makeSearchModel(1);
  return made;
}

const TNeuroLocator& master() {
  static const TNeuroLocator made(model().Data());
  return made;
}

// As a call of the library makes it: with a new working copy each time.
void locateGrid(benchmark::State& state) {
  std::size_t evaluations = 0;
  for (auto _ : state) {
    TGrid grid;
    TNeuroLocator locator(master());
    locator.Result = &grid;
    benchmark::DoNotOptimize(locator.LocateGrid(face()));
    evaluations = locator.Scores.Evaluations();
  }
  state.counters["evaluations"] = static_cast<double>(evaluations);
}
BENCHMARK(locateGrid)->Unit(benchmark::kMillisecond);

// The same search with every patch cut out and every shape made by itself.
void locateGridPlain(benchmark::State& state) {
  for (auto _ : state) {
    auto plain = std::make_unique<ReferenceSearch>(model(), face());
    benchmark::DoNotOptimize(plain->Locate());
  }
}
BENCHMARK(locateGridPlain)->Unit(benchmark::kMillisecond)->Iterations(2);

void patchRanges(benchmark::State& state) {
  TPatchImage image;
  for (auto _ : state) image.Assign(face());
}
BENCHMARK(patchRanges)->Unit(benchmark::kMicrosecond);

// One network after the other at places all over the face.
void networkEvaluation(benchmark::State& state) {
  TPatchImage image;
  image.Assign(face());
  std::size_t at = 0;
  for (auto _ : state) {
    ++at;
    const int left = static_cast<int>(at * 37 % 220), top = static_cast<int>(at * 91 % 220);
    benchmark::DoNotOptimize(master().Networks[at % kNodes].PropagateImageI(image, left, top));
  }
}
BENCHMARK(networkEvaluation);

class Population {
 public:
  Population() {
    locator.Result = &grid;
    locator.LocateGrid(face());
    locator.EvenCoordinates = true;
    std::srand(1);
    for (TNeuroChromosome* member : genetic.Population) {
      member->Randomize();
      member->CalcValue();
    }
  }

  TGrid grid;
  TNeuroLocator locator{master()};
  TGenetic genetic{4000, &locator};
};

// Eight at a time; the time of one.
void shapeScores(benchmark::State& state) {
  Population population;
  std::size_t first = 0;
  for (auto _ : state) {
    const float* rows[kShapeLanes];
    float scores[kShapeLanes];
    for (std::size_t i = 0; i < kShapeLanes; ++i) rows[i] = population.genetic.Population[first + i]->Parameters.data();
    population.locator.ShapeSimilarities(rows, kShapeLanes, scores);
    benchmark::DoNotOptimize(scores);
    first = (first + kShapeLanes) % 4000;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kShapeLanes);
}
BENCHMARK(shapeScores);

void gridGeneration(benchmark::State& state) {
  TNeuroLocator locator(master());
  std::vector<float> b(kDeformations, 1.0F);
  for (auto _ : state) {
    locator.GenerateGridP(locator.Grid1L, b.data(), 1, 2, 1.1F, 0.9F, 0.1F);
    benchmark::DoNotOptimize(locator.Grid1L);
  }
}
BENCHMARK(gridGeneration);

void sortPopulation(benchmark::State& state) {
  Population population;
  const std::vector<TNeuroChromosome*> unsorted = population.genetic.Population;
  for (auto _ : state) {
    std::vector<TNeuroChromosome*> members = unsorted;
    population.genetic.SortPopulation(&members, 0, static_cast<int>(members.size()) - 1);
    benchmark::DoNotOptimize(members.data());
  }
}
BENCHMARK(sortPopulation)->Unit(benchmark::kMicrosecond);

// With the networks of the library, on a face as found or one in the middle of the picture.
void featuresInRegion(benchmark::State& state) {
  VIZL_Initialize("");
  HImage image = 0;
  VIZL_LoadImageFromFile(&image, BenchSubject::instance().jpegFile.c_str());
  TFacePosition position{};
  if (VIZL_DetectFace(image, &position) != VIZLE_OK) position = {2000, 1500, 800, 0, 0.0};
  TPoint points[40];
  int32_t code = VIZLE_OK;
  for (auto _ : state) code = VIZL_DetectFacialFeaturesInRegion(image, &position, &points);
  if (code != VIZLE_OK) state.SkipWithError("no points");
  VIZL_Finalize();
}
BENCHMARK(featuresInRegion)->Unit(benchmark::kMillisecond);

}  // namespace
