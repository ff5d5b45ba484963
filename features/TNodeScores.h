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
  std::size_t Evaluations() const { return known_.size(); }

 private:
  static constexpr std::uint32_t kEvenCells = kNodes * kScoreTableSize;

  struct Visit {
    std::uint32_t cell;
    std::uint8_t node, x, y;
  };
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };

  // The even positions, which the search reads more than a million times, have a table of their own. The others are
  // asked for near a node's place only, and lie together in tiles of 32 by 32 positions: the search touches 2 MB of the
  // 10, and the first touch of a page costs as much as many evaluations.
  static std::uint32_t Cell(int node, int x, int y) {
    if (((x | y) & 1) == 0) {
      return static_cast<std::uint32_t>((node * kScoreTableSide + (x >> 1)) * kScoreTableSide + (y >> 1));
    }
    const int tile = (node * 8 + (x >> 5)) * 8 + (y >> 5), parity = (x & 1) * 2 + (y & 1) - 1;
    return kEvenCells + static_cast<std::uint32_t>(((tile * 3 + parity) * 16 + (x >> 1) % 16) * 16 + (y >> 1) % 16);
  }
  float Evaluated(int node, int x, int y);
  void Note(std::uint32_t cell, int node, int x, int y);
  void EvaluateSome(const Visit* visits, std::size_t count);

  std::shared_ptr<const TNeuralNetwork[]> networks_;
  TPatchImage image_;
  std::unique_ptr<float[], Free> scores_;
  std::vector<Visit> noted_;
  std::vector<std::uint32_t> known_;  // cells of scores_ that are not 0
};
