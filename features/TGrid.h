// The points of a face as floats, and what moves and measures them.
#pragma once

#include <vector>

struct TSPoint {
  float x;
  float y;
};

// A list of points in a fixed order. Of a face there are forty:
//   0, 1 eye centres              2 nose tip                    3, 4 mouth corners
//   5 top of the forehead         6, 7 upper forehead           8, 9 temples
//   10, 11 sides at eye height    12, 13 jaw                    14, 15 sides of the chin
//   16, 19 outer ends of brows    17, 18 inner ends of brows    20, 21 middle of upper, lower lip
//   22 bridge of the nose         23, 26 outer eye corners      24, 25 inner eye corners
//   27, 28 nostrils               29 chin                       30, 31 lower cheeks
//   32, 33 sides at nose height   34, 35 middle of brows        36, 37 upper lip    38, 39 lower lip
// Of a pair the first is the one with the smaller x while the face is upright. y grows downwards; angles are in
// radians, and a positive one turns x towards y.
class TGrid {
 public:
  // More than any grid has use for, and 8 MB: the count in a file is not to be trusted.
  static constexpr int kMaxNodesInFile = 1000000;

  std::vector<TSPoint> Nodes;

  TGrid() = default;
  TGrid(const TGrid&) = default;
  TGrid& operator=(const TGrid&) = default;
  virtual ~TGrid() = default;

  void Assign(TGrid source);
  void AddNode(TSPoint point) { Nodes.push_back(point); }
  void Clear() { Nodes.clear(); }
  int NodeCount() const { return static_cast<int>(Nodes.size()); }

  void Shift(float dx, float dy);
  // About the origin.
  void Scale(float factor);
  // About (cx, cy).
  void Scale(float sx, float sy, float cx, float cy);
  // About (cx, cy); nodes may leave every image.
  void RotateNB(int cx, int cy, float angle);
  // The same, but then each node is moved into the image of width by height pixels.
  void Rotate(int cx, int cy, int width, int height, float angle);
  // About the centre that FindCenter tells.
  void Rotate(int width, int height, float angle);
  // The middle of the box around the nodes, each truncated to whole pixels; right for nodes from -10000 to 10000.
  // (0, 0) without nodes.
  void FindCenter(int* cx, int* cy) const;

  // A text file: the count, a line for each node, the word "Size" and the two sizes. In the numbers' format of the
  // process's locale. 0, or -1 if the file can't be opened or written.
  int SaveToFileInt(const char* path, int width, int height) const;
  // 0, or -1 if the file can't be opened or claims more than kMaxNodesInFile nodes; the grid is then as before.
  // Nodes for which the file has no numbers are (0, 0). Without the sizes, width and height stay.
  int LoadFromFileInt(const char* path, int& width, int& height);
  // Hexadecimal text: four digits for the count and, for each node, four for x and four for y, all signed 16-bit
  // numbers in upper case. 1, or -1 if the text is too short: without a count the grid is as before, else empty.
  int LoadFromString(const char* text);
  // There is no binary form: -1.
  int LoadFromBinary() { return -1; }
};
