#include "tests/features/reference_search.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "features/mean_grid.h"
#include "features/shape_tables.h"

namespace {

double uniform() { return std::rand() / 2147483647.0; }

double normal(float sigma) {
  for (;;) {
    const double u = 2.0 * uniform() - 1.0, v = 2.0 * uniform() - 1.0, s = u * u + v * v;
    if (s < 1.0) return std::sqrt(-2.0 * std::log(s) / s) * u * sigma + 0.0;
  }
}

float activation(float sum) { return static_cast<float>(0.5 * std::tanh(static_cast<double>(sum))); }

bool linked(int i, int j) { return GraphLinks[static_cast<std::size_t>(40 * i + j)] != 0; }

float square(ReferencePoint a, ReferencePoint b) {
  const float dx = a.x - b.x, dy = a.y - b.y;
  return dx * dx + dy * dy;
}

ReferenceGrid baseGrid() {
  TGrid grid;
  grid.LoadFromString(base_grid_text);
  ReferenceGrid base;
  for (std::size_t k = 0; k < 40; ++k) base[k] = {grid.Nodes[k].x, grid.Nodes[k].y};
  return base;
}

}  // namespace

void referenceSort(std::vector<float>& values, std::vector<int>& companions, int left, int right) {
  const auto value = [&](int k) -> float& { return values[static_cast<std::size_t>(k)]; };
one:
  int i = left, j = right;
  const float pivot = value((left + right) / 2);
two:
  while (value(i) > pivot) i++;
  while (value(j) < pivot) j--;
  if (j >= i) {
    std::swap(value(i), value(j));
    std::swap(companions[static_cast<std::size_t>(i)], companions[static_cast<std::size_t>(j)]);
    i++;
    j--;
    if (j >= i) goto two;
  }
  if (left < j) referenceSort(values, companions, left, j);
  if (i < right) {
    left = i;
    goto one;
  }
}

ReferenceSearch::ReferenceSearch(const SearchModel& model, TIppiImage& face)
    : model_(model), width_(face.Width), height_(face.Height) {
  for (int y = 0; y < height_; ++y) {
    for (int x = 0; x < width_; ++x) pixels_.push_back(facePixel(face, x, y));
  }
}

// Rows are counted as if the face had 256 of them, the last at the bottom.
int ReferenceSearch::Pixel(int x, int y) const {
  y += height_ - 256;
  return x < 0 || x >= width_ || y < 0 || y >= height_ ? 0 : pixels_[static_cast<std::size_t>(y * width_ + x)];
}

std::pair<int, int> ReferenceSearch::Range(int left, int top) {
  const std::pair<int, int> centre((left + left + 31) / 2, (top + top + 31) / 2);
  if (const auto known = ranges_.find(centre); known != ranges_.end()) return known->second;
  int counts[256] = {};
  for (int y = top; y < top + 32; ++y) {
    for (int x = left; x < left + 32; ++x) counts[Pixel(x, y)]++;
  }
  int low = -1, high = 256;
  for (int running = 0; running <= 4;) running += counts[++low];
  for (int running = 0; running <= 4;) running += counts[--high];
  return ranges_[centre] = {low, high};
}

float ReferenceSearch::Network(int node, int left, int top) {
  const auto [low, high] = Range(left, top);
  const auto l = static_cast<float>(low), span = static_cast<float>(high - low);
  const PlainNetwork& network = model_.networks[static_cast<std::size_t>(node)];
  float output = network.output[0];
  for (int h = 0; h < 3; ++h) {
    float sums[16] = {};
    for (int i = 0; i < 1024; ++i) {
      const auto pixel = static_cast<float>(Pixel(left + i % 32, top + i / 32));
      float input = low == high ? l / 255.0F - 0.5F : pixel * (1.0F / span) + (-l / span - 0.5F);
      input = std::clamp(input, -0.5F, 0.5F);
      sums[i % 16] += network.hidden[h][i + 1] * input;
    }
    for (int half : {8, 4, 2, 1}) {
      for (int k = 0; k < half; ++k) sums[k] += sums[k + half];
    }
    output += network.output[h + 1] * activation(sums[0] + network.hidden[h][0]);
  }
  return activation(output);
}

float ReferenceSearch::Similarity(float x, float y, int node) {
  int column = static_cast<int>(x), row = static_cast<int>(y);
  if (even) {
    column -= column % 2;
    row -= row % 2;
  }
  float& score = scores_[static_cast<std::size_t>((column * 256 + row) * 40 + node)];
  if (score == 0.0F) {
    evaluations++;
    score = 1.0F - Network(node, column - 16, row - 16);
  }
  return score;
}

float ReferenceSearch::GridScore(const ReferenceGrid& grid) {
  float sum = 0.0F, count = 0.0F;
  for (int n = 0; n < 40; ++n) {
    const auto [x, y] = grid[static_cast<std::size_t>(n)];
    if (x <= 3 || y <= 3 || x >= static_cast<float>(width_ - 3) || y >= static_cast<float>(height_ - 3)) continue;
    sum += Similarity(x, y, n);
    count++;
  }
  return count > 0 ? sum / count : 0.0F;
}

ReferenceGrid ReferenceSearch::Generate(const float* p) const {
  ReferenceGrid grid;
  float sumX = 0.0F, sumY = 0.0F;
  for (std::size_t k = 0; k < 40; ++k) {
    float x = MeanGrid40.Nodes[k].x, y = MeanGrid40.Nodes[k].y;
    for (std::size_t m = 0; m < 32; ++m) {
      x += p[m] * model_.deformations[80 * m + 2 * k];
      y += p[m] * model_.deformations[80 * m + 2 * k + 1];
    }
    grid[k] = {x + p[32], y + p[33]};
    sumX += grid[k].x;
    sumY += grid[k].y;
  }
  const float pivotX = p[32] + sumX / 40, pivotY = p[33] + sumY / 40;
  const float c = cosf(p[36]), s = sinf(p[36]);
  for (auto& node : grid) {
    const float dx = (node.x - pivotX) * p[34], dy = (node.y - pivotY) * p[35];
    node.x = std::clamp(c * dx - s * dy + pivotX, 0.0F, 255.0F);
    node.y = std::clamp(s * dx + c * dy + pivotY, 0.0F, 255.0F);
  }
  return grid;
}

void ReferenceSearch::Try(int x, int y, Best& best) {
  ReferenceGrid placed = baseGrid();
  for (auto& node : placed) {
    node.x += static_cast<float>(x);
    node.y += static_cast<float>(y);
    node.x = node.x < 0 ? 0 : node.x >= static_cast<float>(width_) ? static_cast<float>(width_ - 1) : node.x;
    node.y = node.y < 0 ? 0 : node.y >= static_cast<float>(height_) ? static_cast<float>(height_ - 1) : node.y;
  }
  slidePlaces++;
  if (const float score = GridScore(placed); score > best.score) {
    best = {score, x, y};
    result = placed;
  }
}

void ReferenceSearch::Slide() {
  Best best;
  for (int i = (width_ >> 3) - (width_ >> 5); i <= (width_ >> 3) + (width_ >> 5); ++i) {
    for (int j = (height_ >> 3) - (height_ >> 5); j <= (height_ >> 3) + (height_ >> 5); ++j) Try(4 * i, 4 * j, best);
  }
  const int left = best.x - 4, top = best.y - 4;
  for (int x = left; x <= left + 8; ++x) {
    for (int y = top; y <= top + 8; ++y) {
      if (x != best.x || y != best.y) Try(x, y, best);
    }
  }
}

void ReferenceSearch::Draw(Member& member, int index) const {
  double value = 0;
  if (index < 32) {
    const double range = eigenvalues[index];
    value = 2 * range * uniform() - range;
  } else if (index < 34) {
    value = normal(4.8F);
  } else if (index < 36) {
    value = 1 + normal(0.21F);
  } else {
    value = normal(10.5F) * 3.1415927410125732 / 180;
  }
  member.parameters[static_cast<std::size_t>(index)] = static_cast<float>(value);
}

void ReferenceSearch::Sort(std::vector<Member>& members) const {
  std::vector<float> values;
  std::vector<int> order;
  for (const Member& member : members) {
    values.push_back(member.value);
    order.push_back(static_cast<int>(order.size()));
  }
  referenceSort(values, order, 0, static_cast<int>(order.size()) - 1);
  std::vector<Member> sorted;
  for (const int index : order) sorted.push_back(members[static_cast<std::size_t>(index)]);
  members = sorted;
}

void ReferenceSearch::Evolve() {
  std::srand(1929280975);
  even = true;
  std::vector<Member> population(800);
  for (Member& member : population) {
    for (int i = 0; i < 37; ++i) Draw(member, i);
    member.value = GridScore(Generate(member.parameters.data()));
  }
  Sort(population);
  for (int generation = 0; generation < 11; ++generation) {
    std::vector<Member> all = population;
    for (std::size_t a = 0; a < 57; ++a) {
      for (std::size_t b = 0; b < 57; ++b) {
        if (a == b) continue;
        Member child = population[a];
        const auto t = static_cast<float>(uniform());
        for (std::size_t i = 0; i < 37; ++i) {
          child.parameters[i] = (1 - t) * population[b].parameters[i] + t * child.parameters[i];
        }
        Draw(child, static_cast<int>(36 * uniform()));
        child.value = GridScore(Generate(child.parameters.data()));
        all.push_back(child);
      }
    }
    Sort(all);
    population.assign(all.begin(), all.begin() + 800);
  }
  result = Generate(population[0].parameters.data());
  even = false;
}

float ReferenceSearch::Charge(int node, ReferencePoint at) const {
  float sum = 0.0F;
  int count = 0;
  for (int j = 0; j < 40; ++j) {
    if (!linked(node, j)) continue;
    count++;
    const auto n = static_cast<std::size_t>(node), other = static_cast<std::size_t>(j);
    const float squared = square(reference[n], reference[other]);
    if (squared <= 1e-10F) continue;
    const double stretch = std::sqrt(static_cast<double>(square(at, result[other]))) - std::sqrt(double{squared});
    sum = static_cast<float>(sum + stretch * stretch / squared);
  }
  return count > 0 ? sum * 5.0F / static_cast<float>(count) : 0.0F;
}

void ReferenceSearch::Refine(float step) {
  for (int n = 0; n < 40; ++n) {
    ReferencePoint& node = result[static_cast<std::size_t>(n)];
    ReferencePoint kept = node;
    float best = -1e10F;
    for (float dx : {-step, 0.0F, step}) {
      for (float dy : {-step, 0.0F, step}) {
        const ReferencePoint c{node.x + dx, node.y + dy};
        if (c.x < 0 || c.y < 0 || c.x >= static_cast<float>(width_) || c.y >= static_cast<float>(height_)) continue;
        if (const float score = Similarity(c.x, c.y, n) - Charge(n, c); score > best) {
          best = score;
          kept = c;
        }
      }
    }
    confidence[static_cast<std::size_t>(n)] = best;
    node = kept;
  }
}

float ReferenceSearch::LinkTerm() const {
  double sum = 0;
  int count = 0;
  for (std::size_t i = 0; i < 40; ++i) {
    for (std::size_t j = 0; j < 40; ++j) {
      if (!linked(static_cast<int>(i), static_cast<int>(j))) continue;
      const auto d = static_cast<double>(lrintf(square(result[i], result[j])));
      const auto r = static_cast<double>(lrintf(square(reference[i], reference[j])));
      if (r == 0) continue;
      sum += (std::sqrt(d) - std::sqrt(r)) * (std::sqrt(d) - std::sqrt(r)) / r;
      count++;
    }
  }
  return count > 0 ? static_cast<float>(5.0 / count * sum) : 0.0F;
}

float ReferenceSearch::Locate() {
  Slide();
  Evolve();
  reference = result;
  Refine(0.0F);
  Refine(1.0F);
  return GridScore(result) - LinkTerm();
}
