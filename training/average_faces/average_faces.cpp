// Makes the sample pictures: average faces, which show nobody, and the truth about where they stand.
//
//   average_faces DATA OUTPUT
//
// DATA holds faces/labels.csv and the pictures below faces/; OUTPUT is tests/data of the source tree.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/vizl_api.h"
#include "training/average_faces/appearance_groups.h"
#include "training/average_faces/face_average.h"
#include "training/average_faces/group_picture.h"

namespace {

constexpr std::size_t kGroups = 8;
constexpr std::size_t kUsedGroups = 6;
constexpr std::size_t kGroupSize = 60;
constexpr std::size_t kLeastFaces = 40;   // fewer would leave traits of single people
constexpr double kLeastEyeDistance = 60;  // pixels; smaller faces would only blur the mean

constexpr int kJpegQuality = 80;

using Faces = std::vector<const FaceLabel*>;

// Photos of the training split; synthetic pictures are not used. Portraits from before 1930 are gray and
// make a group of their own.
Faces photos(const std::vector<FaceLabel>& labels, bool old) {
  Faces faces;
  for (const FaceLabel& label : labels) {
    if (label.validation || label.source.ends_with("synthetic") || label.iod < kLeastEyeDistance) continue;
    if ((label.source == "voteview-wiki-old") == old) faces.push_back(&label);
  }
  return faces;
}

std::vector<Faces> groupsOf(const std::vector<FaceLabel>& labels, const std::string& folder) {
  std::vector<Faces> groups = appearanceGroups(photos(labels, false), folder, kGroups, kUsedGroups, kGroupSize);
  groups.push_back(appearanceGroups(photos(labels, true), folder, 1, 1, kGroupSize)[0]);
  return groups;
}

// One row of the truth. The angle is the one to turn the picture by, clockwise, to set the face upright.
void writeTruth(std::FILE* file, const std::string& name, const FaceLabel& label, int count) {
  const FaceSquare square = faceSquare(label);
  std::fprintf(file, "%s,%.2f,%.2f,%.2f,%.2f,%.2f,%.2f,%.2f,%.2f,%d\n", name.c_str(), square.xc, square.yc, square.w,
               0.0 - square.roll, label.nodes[0].x, label.nodes[0].y, label.nodes[1].x, label.nodes[1].y, count);
}

void writeSingle(std::FILE* truth, const FaceAverage& average, const std::string& output, std::size_t number) {
  const std::string name = "average_face_" + std::to_string(number) + ".jpg";
  savePicture(average.picture, output + "/" + name);
  FaceLabel label{};
  std::copy(average.shape.begin(), average.shape.end(), label.nodes.begin());
  writeTruth(truth, name, label, average.count);
}

void writeGroup(std::FILE* truth, const std::vector<FaceAverage>& averages, const std::string& output) {
  const std::vector<Placement> places{{525, 112, 92, 0},  {385, 108, 92, -10}, {95, 120, 118, 0},  {250, 88, 68, 12},
                                      {92, 322, 68, -10}, {268, 284, 118, 12}, {452, 312, 92, -10}};
  std::vector<FaceLabel> labels;
  const Picture picture = groupPicture(averages, places, 600, 420, labels);
  savePicture(picture, output + "/average_faces.png");
  for (std::size_t k = 0; k < labels.size(); ++k) {
    writeTruth(truth, "average_faces.png", labels[k], averages[k].count);
  }
}

void makePictures(const std::string& data, const std::string& output) {
  const std::string folder = data + "/faces";
  const std::vector<FaceLabel> labels = readFaceLabels(folder + "/labels.csv");
  std::vector<FaceAverage> averages;
  for (const Faces& faces : groupsOf(labels, folder)) {
    if (faces.size() < kLeastFaces) throw std::runtime_error("a group has too few faces");
    std::printf("group %zu: mean of %zu faces\n", averages.size() + 1, faces.size());
    averages.push_back(averageFaces(faces, folder));
  }
  std::FILE* truth = std::fopen((output + "/average_faces.csv").c_str(), "w");
  if (truth == nullptr) throw std::runtime_error("cannot write to " + output);
  std::fputs("file,xc,yc,w,angle,left_eye_x,left_eye_y,right_eye_x,right_eye_y,faces\n", truth);
  writeGroup(truth, averages, output);
  for (std::size_t k = 0; k < averages.size(); ++k) writeSingle(truth, averages[k], output, k + 1);
  std::fclose(truth);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: average_faces DATA OUTPUT\n");
    return 2;
  }
  try {
    VIZL_Initialize(nullptr);
    VIZL_SetJpegCompressionQuality(kJpegQuality);
    makePictures(argv[1], argv[2]);
    VIZL_Finalize();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "average_faces: %s\n", failure.what());
    return 1;
  }
  return 0;
}
