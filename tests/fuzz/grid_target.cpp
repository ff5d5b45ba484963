// The two text forms of a grid, and what is computed from grids that were read.
#include <string>

#include "features/TGrid.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/scratch.h"

namespace {

void moveAbout(TGrid grid, FuzzInput& in) {
  int cx = 0, cy = 0;
  grid.FindCenter(&cx, &cy);
  grid.Shift(static_cast<float>(in.Number()), static_cast<float>(in.Number()));
  grid.Scale(static_cast<float>(in.Number()));
  grid.Rotate(in.Within(1, 65535), in.Within(1, 65535), static_cast<float>(in.Number()));
  grid.FindCenter(&cx, &cy);
}

void readString(FuzzInput& in) {
  const auto bytes = in.Bytes(in.Left());
  const std::string text(bytes.begin(), bytes.end());
  TGrid grid;
  grid.AddNode({1, 2});
  const int code = grid.LoadFromString(text.c_str());
  require(code == 1 || code == -1, "a code of a text");
  require(code == 1 || grid.NodeCount() <= 1, "nothing half read");
  FuzzInput moves(bytes.data(), bytes.size());
  moveAbout(grid, moves);
}

void readFile(FuzzInput& in) {
  const auto bytes = in.Bytes(in.Left());
  int width = -1, height = -1;
  TGrid grid;
  if (grid.LoadFromFileInt(writeScratch("in.grid", bytes.data(), bytes.size()).c_str(), width, height) != 0) return;
  // A count alone makes a million nodes.
  if (grid.NodeCount() > 1000) return;
  const std::string path = scratchPath("saved.grid");
  require(grid.SaveToFileInt(path.c_str(), width, height) == 0, "saving");
  TGrid again;
  int widthAgain = 0, heightAgain = 0;
  require(again.LoadFromFileInt(path.c_str(), widthAgain, heightAgain) == 0, "loading what was saved");
  require(again.NodeCount() == grid.NodeCount(), "as many nodes as were saved");
  require(widthAgain == width && heightAgain == height, "the sizes that were saved");
  FuzzInput moves(bytes.data(), bytes.size());
  moveAbout(grid, moves);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput in(data, size);
  if (in.Flag()) {
    readFile(in);
  } else {
    readString(in);
  }
  return 0;
}
