#include "detect/neighbours.h"

#include <algorithm>
#include <cstdlib>

#include "image/params.h"

namespace {

// Widths that differ by no more than this are alike, in pixels of the list whatever the size of the faces.
constexpr long long kLikeWidth = 30;

long long widthOf(const TRectangle& r) { return static_cast<long long>(r.x2) - r.x1; }

bool within(int a, int b, long long distance) { return std::llabs(static_cast<long long>(a) - b) < distance; }

bool closerThan(const TRectangle& a, const TRectangle& b, long long distance) {
  return within(a.x1, b.x1, distance) && within(a.y1, b.y1, distance) && within(a.x2, b.x2, distance) &&
         within(a.y2, b.y2, distance);
}

// False if no width has `threshold` like it.
bool meanOfCommonWidths(const std::vector<TRectangle>& rects, int threshold, long long& mean) {
  std::vector<long long> widths(rects.size());
  std::transform(rects.begin(), rects.end(), widths.begin(), widthOf);
  std::sort(widths.begin(), widths.end());
  long long sum = 0;
  long long count = 0;
  for (const long long width : widths) {
    const auto low = std::lower_bound(widths.begin(), widths.end(), width - kLikeWidth);
    const auto high = std::upper_bound(low, widths.end(), width + kLikeWidth);
    if (high - low < threshold) continue;
    sum += width;
    count++;
  }
  if (count == 0) return false;
  mean = sum / count;
  return true;
}

}  // namespace

NeighbourIndex::NeighbourIndex(const std::vector<TRectangle>& rects, int reach) : reach_(std::max(reach, 1)) {
  entries_.reserve(rects.size());
  for (const TRectangle& r : rects) entries_.push_back({BandOf(r), r.x1, static_cast<int>(entries_.size())});
  std::sort(entries_.begin(), entries_.end(), Before);
}

bool NeighbourIndex::Before(const Entry& a, const Entry& b) {
  if (a.band != b.band) return a.band < b.band;
  return a.x1 != b.x1 ? a.x1 < b.x1 : a.index < b.index;
}

long long NeighbourIndex::BandOf(const TRectangle& rect) const {
  const long long band = rect.y1 / reach_;
  return rect.y1 % reach_ < 0 ? band - 1 : band;
}

std::size_t NeighbourIndex::FirstAt(long long band, long long x1) const {
  const auto before = [band, x1](const Entry& e, int) { return e.band != band ? e.band < band : e.x1 < x1; };
  return static_cast<std::size_t>(std::lower_bound(entries_.begin(), entries_.end(), 0, before) - entries_.begin());
}

std::vector<int> FindSupported(const std::vector<TRectangle>& rects, int context) {
  std::vector<int> supported;
  long long mean = 0;
  if (!meanOfCommonWidths(rects, ContextThreshold1(context), mean)) return supported;
  const long long distance = mean / 3;
  const int threshold = ContextThreshold2(context);
  const NeighbourIndex index(rects, static_cast<int>(std::clamp(distance, 0LL, 1LL << 30)));
  for (std::size_t i = 0; i < rects.size(); i++) {
    int neighbours = 0;
    index.Near(rects[i], [&](int j) {
      if (closerThan(rects[i], rects[static_cast<std::size_t>(j)], distance)) neighbours++;
    });
    if (neighbours >= threshold) supported.push_back(static_cast<int>(i));
  }
  return supported;
}
