// The search once more, step by step and without haste: every patch is cut out and measured by itself, every shape is
// scored alone, members are sorted whole. Draws from the C library's rand as the library does.
#pragma once

#include <array>
#include <map>
#include <utility>
#include <vector>

#include "tests/features/search_models.h"

struct ReferencePoint {
  float x, y;
};
using ReferenceGrid = std::array<ReferencePoint, 40>;

// Index steps of the sort; `values` and what goes with them change places together.
void referenceSort(std::vector<float>& values, std::vector<int>& companions, int left, int right);

class ReferenceSearch {
 public:
  ReferenceSearch(const SearchModel& model, TIppiImage& face);

  float Locate();
  float Network(int node, int left, int top);
  float Similarity(float x, float y, int node);
  float GridScore(const ReferenceGrid& grid);
  ReferenceGrid Generate(const float* parameters) const;

  ReferenceGrid result{}, reference{};
  std::array<float, 40> confidence{};
  bool even = false;
  int slidePlaces = 0, evaluations = 0;

 private:
  struct Member {
    std::array<float, 37> parameters;
    float value;
  };
  struct Best {
    float score = -1e10F;
    int x = 0, y = 0;
  };

  int Pixel(int x, int y) const;
  std::pair<int, int> Range(int left, int top);
  void Try(int x, int y, Best& best);
  void Slide();
  void Draw(Member& member, int index) const;
  void Sort(std::vector<Member>& members) const;
  void Evolve();
  void Refine(float step);
  float Charge(int node, ReferencePoint at) const;
  float LinkTerm() const;

  const SearchModel& model_;
  int width_, height_;
  std::vector<int> pixels_;  // top row first
  std::map<std::pair<int, int>, std::pair<int, int>> ranges_;
  std::vector<float> scores_ = std::vector<float>(256 * 256 * 40);  // 0 where not known
};
