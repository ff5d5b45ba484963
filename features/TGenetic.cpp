#include "features/TGenetic.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "api/vizl_api.h"
#include "features/TNeuroLocator.h"

namespace {

constexpr int kLastGeneration = 10;

// Parents whose ordered pairs are about four times the population; few for tiny populations.
std::size_t parentCount(std::size_t population) {
  const double count = (std::sqrt(16.0 * static_cast<double>(population) + 1.0) + 1.0) * 0.5;
  return std::min(static_cast<std::size_t>(count), population);
}

}  // namespace

TGenetic::TGenetic(int populationSize, TNeuroLocator* locator) : Locator(locator) {
  GenerateInitialPopulation(populationSize);
}

TGenetic::~TGenetic() {
  for (TNeuroChromosome* member : Population) delete member;
}

void TGenetic::GenerateInitialPopulation(int populationSize) {
  for (int i = 0; i < populationSize; ++i) Population.push_back(std::make_unique<TNeuroChromosome>(this).release());
}

void TGenetic::Solve(float) {
  Generation = 0;
  const std::size_t size = Population.size(), parents = parentCount(size);
  if (size == 0) return;
  std::vector<TNeuroChromosome*> spare;
  for (std::size_t c = 0; c < parents * (parents - 1); ++c) spare.push_back(new TNeuroChromosome(this));
  for (TNeuroChromosome* member : Population) {
    member->Randomize();
    member->CalcValue();
  }
  SortPopulation(&Population, 0, static_cast<int>(size) - 1);
  do {
    std::size_t c = 0;
    for (std::size_t a = 0; a < parents; ++a) {
      for (std::size_t b = 0; b < parents; ++b) {
        if (a == b) continue;
        TNeuroChromosome& child = *spare[c++];
        child.Copy(Population[a]);
        child.Crossingover(Population[b]);
        child.Mutate();
        child.CalcValue();
      }
    }
    Population.insert(Population.end(), spare.begin(), spare.end());
    SortPopulation(&Population, 0, static_cast<int>(Population.size()) - 1);
    std::copy(Population.begin() + static_cast<std::ptrdiff_t>(size), Population.end(), spare.begin());
    Population.resize(size);
    ++Generation;
    Population[0]->CalcValue();
    Locator->CopyGridFromGrid1L();
  } while (Generation <= kLastGeneration && !NeedInterrupt);
  for (TNeuroChromosome* child : spare) delete child;
}

void TGenetic::SortPopulation(std::vector<TNeuroChromosome*>* population, int left, int right) {
  const auto at = [&](int i) -> TNeuroChromosome*& { return (*population)[static_cast<std::size_t>(i)]; };
  for (;;) {
    int i = left, j = right;
    const float pivot = at((left + right) / 2)->Value;
    do {
      while (at(i)->Value > pivot) ++i;
      while (at(j)->Value < pivot) --j;
      if (j < i) break;
      std::swap(at(i), at(j));
      ++i;
      --j;
    } while (j >= i);
    if (left < j) SortPopulation(population, left, j);
    if (i >= right) return;
    left = i;
  }
}
