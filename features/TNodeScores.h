// How well each node fits each position of one face, evaluated where asked for and kept.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "features/TNeuralNetwork.h"
#include "features/TPatchImage.h"
#include "features/shape_tables.h"

class TNodeScores {
 public:
  explicit TNodeScores(std::shared_ptr<const TNeuralNetwork[]> networks) : networks_(std::move(networks)) {}

  // Forgets all scores and takes a gray face of at most 256 by 256 pixels.
  void Begin(const TIppiImage& face);

  // 1 less the node's network at (x, y): 0.5 to 1.5, the higher the better.
  float At(int node, int x, int y) {
    const float score = scores_[Cell(node, x, y)];
    return score != 0.0F ? score : Evaluated(node, x, y);
  }

  // Notes a position unless its score is known. Evaluate then finds all noted ones at once, which is faster; fastest
  // if the positions of a node come one after another.
  void Want(int node, int x, int y) {
    const std::uint32_t cell = Cell(node, x, y);
    if (scores_[cell] == 0.0F) Note(cell, node, x, y);
  }
  void Evaluate();

  // The positions with two even coordinates: [node][x / 2][y / 2], 0 where not known.
  const float* Even() const { return scores_.get(); }
  // Networks evaluated since Begin.
  std::size_t Evaluations() const { return visits_.size(); }

 private:
  struct Visit {
    std::uint32_t cell;
    std::uint8_t node, x, y;
  };
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };

  // Four tables, one for each parity of x and y: the search reads the even one more than a million times, and so
  // finds it in few pages.
  static std::uint32_t Cell(int node, int x, int y) {
    const int table = ((x & 1) * 2 + (y & 1)) * kNodes + node;
    return static_cast<std::uint32_t>((table * kScoreTableSide + (x >> 1)) * kScoreTableSide + (y >> 1));
  }
  float Evaluated(int node, int x, int y);
  void Note(std::uint32_t cell, int node, int x, int y);
  void EvaluateSome(const Visit* visits, std::size_t count);

  std::shared_ptr<const TNeuralNetwork[]> networks_;
  TPatchImage image_;
  std::unique_ptr<float[], Free> scores_;  // 10 MB, of which a search touches the pages of the positions it visits
  std::vector<Visit> visits_;
  std::size_t evaluated_ = 0;  // so many of the visits
};
