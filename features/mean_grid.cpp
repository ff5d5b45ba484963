#include "features/mean_grid.h"

#include <memory>
#include <new>

#include "features/TNeuroLocator.h"
#include "image/never_destroyed.h"
#include "models/models.h"

namespace {

class TMeanGridOfLibrary {
 public:
  // What is thrown here would end the process.
  TMeanGridOfLibrary() {
    try {
      Load();
    } catch (const std::bad_alloc&) {
    }
  }
  // Runs when the process ends or the library is unloaded: between start and end of the library only the former, maybe
  // while other threads search.
  ~TMeanGridOfLibrary() {
    if (NeuroLocator == nullptr) std::destroy_at(&Grid());
  }
  TGrid& Grid() { return grid_.value(); }
  // All nodes or none.
  void Load() {
    TGrid loaded;
    loaded.LoadFromString(mean_grid_40_text);
    Grid().Nodes.swap(loaded.Nodes);
  }

 private:
  TNeverDestroyed<TGrid> grid_;
};

TMeanGridOfLibrary meanGrid;

}  // namespace

const TGrid& MeanGrid40 = meanGrid.Grid();

void LoadMeanGrid40() {
  if (MeanGrid40.NodeCount() == 0) meanGrid.Load();
}
