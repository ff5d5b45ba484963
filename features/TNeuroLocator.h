// The search for the forty points of a face in a gray image of at most 256 by 256 pixels.
#pragma once

#include <memory>

#include "features/TGrid.h"
#include "features/TNeuralNetwork.h"
#include "features/TNodeScores.h"
#include "features/shape_tables.h"
#include "image/TIppiImage.h"
#include "models/models.h"

// The trained data that a locator searches with; the library's own unless told otherwise.
struct TNeuroData {
  const unsigned char* Networks = neuro_dat;
  const unsigned char* NetworksEnd = neuro_dat_end;
  const float* EigenGrids = eigengrids;    // 32 rows of 80, not copied
  const float* EigenRanges = eigenvalues;  // 32, not copied
};

// LocateGrid slides the mean face over the image, fits shape and pose by a genetic search at half resolution, and then
// lets each node move by itself, held by links to its neighbours.
//
// One object serves one search at a time, any number of them one after another. The library keeps a master that never
// searches, so that any number of threads may copy it at once.
class TNeuroLocator {
 public:
  static constexpr int kSide = TPatchImage::kSide;

  int ImageWidth = 0;
  int ImageHeight = 0;
  TGrid BaseGrid;                 // the mean face about its centre
  float MeanNodes[kCoordinates];  // the mean face in the frame, x and y in turn
  TGrid* Result = nullptr;        // the caller's; always holds the best grid so far
  TGrid Grid1;                    // the grid being placed or refined
  float Grid1L[kCoordinates];     // the grid last made from parameters
  TGrid Grid2;                    // what lengths of links are compared with
  const float* EigenGrids;
  const float* EigenRanges;
  std::shared_ptr<const TNeuralNetwork[]> Networks;  // forty, shared with all copies
  TNodeScores Scores;
  bool EvenCoordinates = false;  // scores stand for blocks of 2 by 2 positions
  float LinkWeight = 0.0F;
  float NodeConfidence[kNodes] = {};

  // Throws std::invalid_argument if the stream is damaged or longer than forty networks.
  explicit TNeuroLocator(const TNeuroData& data = {});
  // A working copy, which takes little time and memory before its first search. `source` is only read.
  TNeuroLocator(const TNeuroLocator& source);
  TNeuroLocator& operator=(const TNeuroLocator&) = delete;
  virtual ~TNeuroLocator() = default;

  // Fills the grid at Result with the nodes in pixels of the face, y from the top, and NodeConfidence with their
  // scores (higher is better, 1.5 the best). Returns GridSimilarity of the result. Reseeds the C library's random
  // sequence; NeedInterrupt shortens the search. Throws std::invalid_argument without Result or unless the face is
  // gray and its sides 1 to 256 pixels; heights other than 256 read patches of the wrong rows.
  float LocateGrid(TIppiImage& face);

  // 0.5 to 1.5, how well the node's place on a face matches (x, y), higher is better. Truncated position inside the
  // frame.
  float NodeSimilarity(float x, float y, int node);
  // Mean over the nodes that are more than 3 pixels inside the image, 0 without any.
  float GridSimilarityL(const float* nodes);
  // The same, less LinkWeight times the mean squared relative stretch of the links against Grid2.
  float GridSimilarity(TGrid grid);
  // The mean face, bent by 32 shape parameters, moved, and scaled and turned about its centroid plus the shift.
  void GenerateGridP(float* nodes, const float* b, float tx, float ty, float sx, float sy, float angle);
  // GridSimilarityL of the grids from `count` rows of the 37 parameters of a chromosome, 1 to 8 of them. In
  // EvenCoordinates side by side, which takes a third of the time and gives the same scores; Grid1L then stays.
  void ShapeSimilarities(const float* const* parameters, int count, float* similarities);
  // Puts BaseGrid into `grid`, which has as many nodes; true if no node had to be moved into the image.
  bool PositionAndScale(TGrid* grid, float tx, float ty, float sx, float sy);
  void CopyGridFromGrid1();
  void CopyGridFromGrid1L();

 private:
  struct Place {
    int x = 0, y = 0;
    float score = -1e10F;
  };

  void Prepare();
  void BeginSearch(TIppiImage& face);
  TSPoint PlacedNode(std::size_t node, float tx, float ty, float sx, float sy) const;
  bool Counts(float x, float y) const;
  void WantColumn(int x, int firstY, int lastY, int step);
  void TryPlace(int x, int y, Place& best);
  void CoarseSlide(Place& best);
  void FineSlide(Place& best);
  void GeneticStage();
  void WantMissing(const ShapeRow* nodes, const unsigned char* missing);
  void BendShapes(const ShapeRow* parameters, ShapeRow* nodes) const;
  void RefinePass(int step);
  void RefineNode(int node, int step);
  float LinkCharge(int node, TSPoint place) const;
};

// The master, from the library's start to its end.
extern TNeuroLocator* NeuroLocator;
