#include "features/TNodeScores.h"

#include <algorithm>
#include <new>

#include "primitives/kernels.h"

namespace {

constexpr std::size_t kCells = std::size_t{4} * kNodes * kScoreTableSize;
// In the place of a score that is noted but not found yet; no score is above 1.5.
constexpr float kNoted = 2.0F;
constexpr std::size_t kAtOnce = 64;

}  // namespace

void TNodeScores::Begin(const TIppiImage& face) {
  if (!scores_) {
    scores_.reset(static_cast<float*>(std::calloc(kCells, sizeof(float))));
    if (!scores_) throw std::bad_alloc();
  }
  for (const Visit& visit : noted_) scores_[visit.cell] = 0.0F;
  for (const std::uint32_t cell : known_) scores_[cell] = 0.0F;
  noted_.clear();
  known_.clear();
  image_.Assign(face);
}

void TNodeScores::Note(std::uint32_t cell, int node, int x, int y) {
  noted_.push_back({cell, static_cast<std::uint8_t>(node), static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y)});
  scores_[cell] = kNoted;
}

float TNodeScores::Evaluated(int node, int x, int y) {
  const std::uint32_t cell = Cell(node, x, y);
  Note(cell, node, x, y);
  Evaluate();
  return scores_[cell];
}

void TNodeScores::Evaluate() {
  for (std::size_t first = 0; first < noted_.size(); first += kAtOnce) {
    EvaluateSome(noted_.data() + first, std::min(kAtOnce, noted_.size() - first));
  }
  for (const Visit& visit : noted_) known_.push_back(visit.cell);
  noted_.clear();
}

void TNodeScores::EvaluateSome(const Visit* visits, std::size_t count) {
  float hidden[kAtOnce * kHiddenNeurons], output[kAtOnce];
  for (std::size_t i = 0; i < count; ++i) {
    networks_[visits[i].node].HiddenSums(image_, visits[i].x - TPatchImage::kBefore, visits[i].y - TPatchImage::kBefore,
                                         hidden + i * kHiddenNeurons);
  }
  const auto halfTanh = kernels().patch.halfTanh;
  halfTanh(hidden, hidden, count * kHiddenNeurons);
  for (std::size_t i = 0; i < count; ++i) {
    output[i] = networks_[visits[i].node].OutputSum(hidden + i * kHiddenNeurons);
  }
  halfTanh(output, output, count);
  for (std::size_t i = 0; i < count; ++i) scores_[visits[i].cell] = 1.0F - output[i];
}
