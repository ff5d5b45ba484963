// Lists of pictures with any number of upright faces.
#pragma once

#include <string>
#include <vector>

#include "training/face_labels.h"

namespace evaluation {

struct ListedPicture {
  std::string file;
  std::vector<FaceSquare> faces;
};

// Rows of path,x,y,w: the top left corner and side (pixels) of the square that the detector should report; a
// row with the path alone names a picture without faces, several rows with one path a picture with several
// faces. Relative paths start at the list's folder. Throws std::runtime_error.
std::vector<ListedPicture> readPictureList(const std::string& listFile);

}  // namespace evaluation
