// Which rectangles of a list lie near each other, without comparing every pair: a picture full of texture
// can give tens of thousands of hits.
#pragma once

#include <vector>

#include "detect/TRectangle.h"

// The list in bands of y1, each band sorted by x1.
class NeighbourIndex {
 public:
  // `reach` is the largest difference of x1 or y1 that will be asked for, in pixels.
  NeighbourIndex(const std::vector<TRectangle>& rects, int reach);

  // Calls visit(j) for at least every j whose x1 and y1 differ from those of `rect` by at most the reach.
  template <typename Visit>
  void Near(const TRectangle& rect, Visit visit) const;

 private:
  struct Entry {
    long long band;
    int x1;
    int index;
  };
  static bool Before(const Entry& a, const Entry& b);
  long long BandOf(const TRectangle& rect) const;
  std::size_t FirstAt(long long band, long long x1) const;

  long long reach_;
  std::vector<Entry> entries_;
};

template <typename Visit>
void NeighbourIndex::Near(const TRectangle& rect, Visit visit) const {
  const long long band = BandOf(rect);
  for (long long b = band - 1; b <= band + 1; b++) {
    for (std::size_t i = FirstAt(b, rect.x1 - reach_); i < entries_.size(); i++) {
      if (entries_[i].band != b || entries_[i].x1 > rect.x1 + reach_) break;
      visit(entries_[i].index);
    }
  }
}

// The indices, in list order, of the rectangles that have at least Threshold2 neighbours (themselves
// included): rectangles whose four coordinates each differ by less than a third of the mean width, the
// mean taken over the rectangles that share their width, within 30 pixels, with at least Threshold1.
std::vector<int> FindSupported(const std::vector<TRectangle>& rects, int context);
