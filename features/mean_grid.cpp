#include "features/mean_grid.h"

#include "models/models.h"

namespace {

const TGrid& loadMeanGrid() {
  TGrid& grid = *new TGrid;
  grid.LoadFromString(mean_grid_40_text);
  return grid;
}

}  // namespace

const TGrid& MeanGrid40 = loadMeanGrid();
