#include "features/TGenetic.h"

#include <algorithm>
#include <cmath>

#include "api/vizl_api.h"
#include "features/TNeuroLocator.h"
#include "features/sort_ranked.h"

namespace {

constexpr int kLastGeneration = 10;

// Parents whose ordered pairs are about four times the population; few for tiny populations.
std::size_t parentCount(std::size_t population) {
  const double count = (std::sqrt(16.0 * static_cast<double>(population) + 1.0) + 1.0) * 0.5;
  return std::min(static_cast<std::size_t>(count), population);
}

// Sorts by value, so far that the first `wanted` members of the range stand where a whole sort puts them.
void sortMembers(TNeuroChromosome** members, int left, int right, int wanted) {
  std::vector<RankedMember> ranked(static_cast<std::size_t>(right + 1));
  for (int i = left; i <= right; ++i) ranked[static_cast<std::size_t>(i)] = {members[i]->Value, members[i]};
  SortRanked(ranked.data(), left, right, wanted);
  for (int i = left; i <= right; ++i) members[i] = ranked[static_cast<std::size_t>(i)].member;
}

}  // namespace

TGenetic::TGenetic(int populationSize, TNeuroLocator* locator) : Locator(locator) {
  GenerateInitialPopulation(populationSize);
}

void TGenetic::GenerateInitialPopulation(int populationSize) {
  if (populationSize > 0) AddMembers(Population, static_cast<std::size_t>(populationSize));
}

void TGenetic::AddMembers(Members& members, std::size_t count) {
  blocks_.push_back(std::make_unique<TNeuroChromosome[]>(count));
  for (std::size_t i = 0; i < count; ++i) {
    blocks_.back()[i].Owner = this;
    members.push_back(&blocks_.back()[i]);
  }
}

void TGenetic::Solve(float) {
  Generation = 0;
  if (Population.empty()) return;
  const std::size_t parents = parentCount(Population.size());
  Members children;
  AddMembers(children, parents * (parents - 1));
  for (TNeuroChromosome* member : Population) member->Randomize();
  Evaluate(Population);
  SortPopulation(&Population, 0, static_cast<int>(Population.size()) - 1);
  do {
    Breed(children);
    Evaluate(children);
    KeepBest(children);
    ++Generation;
    Population[0]->CalcValue();
    Locator->CopyGridFromGrid1L();
  } while (Generation <= kLastGeneration && !NeedInterrupt);
}

// Values draw no random numbers, so they may wait until all members are made.
void TGenetic::Evaluate(const Members& members) {
  for (std::size_t first = 0; first < members.size(); first += kShapeLanes) {
    const int count = static_cast<int>(std::min<std::size_t>(kShapeLanes, members.size() - first));
    const float* parameters[kShapeLanes];
    float values[kShapeLanes];
    for (int i = 0; i < count; ++i) parameters[i] = members[first + static_cast<std::size_t>(i)]->Parameters.data();
    Locator->ShapeSimilarities(parameters, count, values);
    for (int i = 0; i < count; ++i) members[first + static_cast<std::size_t>(i)]->Value = values[i];
  }
}

// The first of the population in all ordered pairs, as many as give the children.
void TGenetic::Breed(const Members& children) {
  auto child = children.begin();
  for (std::size_t a = 0; child != children.end(); ++a) {
    const std::size_t parents = parentCount(Population.size());
    for (std::size_t b = 0; b < parents; ++b) {
      if (a == b) continue;
      (*child)->Copy(Population[a]);
      (*child)->Crossingover(Population[b]);
      (*child)->Mutate();
      ++child;
    }
  }
}

// Survival by rank alone; the others become the next children, in any order, since those are made anew.
void TGenetic::KeepBest(Members& children) {
  const auto size = static_cast<std::ptrdiff_t>(Population.size());
  Population.insert(Population.end(), children.begin(), children.end());
  sortMembers(Population.data(), 0, static_cast<int>(Population.size()) - 1, static_cast<int>(size));
  std::copy(Population.begin() + size, Population.end(), children.begin());
  Population.resize(static_cast<std::size_t>(size));
}

void TGenetic::SortPopulation(std::vector<TNeuroChromosome*>* population, int left, int right) {
  sortMembers(population->data(), left, right, right + 1);
}
