#include <algorithm>
#include <cstdio>

#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/grouping.h"
#include "training/evaluation/measures.h"
#include "training/evaluation/parallel.h"
#include "training/evaluation/raw_list.h"

namespace evaluation {

namespace {

struct Count {
  int found = 0;
  int falseFaces = 0;
  int repeats = 0;

  void add(const Count& other) {
    found += other.found;
    falseFaces += other.falseFaces;
    repeats += other.repeats;
  }
};

// One entry per threshold, from 1 upwards, for each way of grouping.
struct RawOutcome {
  std::vector<Count> library;
  std::vector<Count> relative;
  std::size_t hits = 0;
};

Count countFaces(const std::vector<FaceSquare>& truths, const std::vector<Detection>& faces,
                 const Criterion& criterion) {
  Count count;
  for (const FaceSquare& truth : truths) {
    count.found +=
        std::any_of(faces.begin(), faces.end(), [&](const Detection& face) { return matches(truth, face, criterion); });
  }
  for (const Detection& face : faces) {
    count.falseFaces += std::none_of(truths.begin(), truths.end(),
                                     [&](const FaceSquare& truth) { return matches(truth, face, criterion); });
  }
  count.repeats = std::max(static_cast<int>(faces.size()) - count.falseFaces - count.found, 0);
  return count;
}

std::vector<Detection> withEnoughHits(const std::vector<HitGroup>& groups, int threshold) {
  std::vector<Detection> faces;
  for (const HitGroup& group : groups) {
    if (group.hits >= threshold) faces.push_back(group.face);
  }
  return faces;
}

RawOutcome scanPicture(const Setting& setting, const ListedPicture& picture, int maxThreshold) {
  TIppiImage gray;
  loadGray(picture.file, gray);
  std::vector<TRectangle> hits;
  setting.detector->DetectFaceRaw(gray, hits, 1.0f);
  const std::vector<HitGroup> groups = relativeGroups(hits);
  RawOutcome outcome;
  outcome.hits = hits.size();
  for (int t = 1; t <= maxThreshold; ++t) {
    outcome.library.push_back(countFaces(picture.faces, libraryGroups(*setting.detector, hits, t), setting.criterion));
    outcome.relative.push_back(countFaces(picture.faces, withEnoughHits(groups, t), setting.criterion));
  }
  return outcome;
}

void printCount(const Count& count, double faces) {
  std::printf("   %5d  %6.2f %%  %6d  %6d", count.found, faces > 0 ? 100 * count.found / faces : 0.0, count.falseFaces,
              count.repeats);
}

}  // namespace

void measureRawScan(const Setting& setting, const std::string& listFile, int maxThreshold) {
  const std::vector<ListedPicture> pictures = readPictureList(listFile);
  std::vector<RawOutcome> outcomes(pictures.size());
  forEachIndex(pictures.size(), setting.threads,
               [&](std::size_t i) { outcomes[i] = scanPicture(setting, pictures[i], maxThreshold); });
  std::size_t faces = 0;
  std::size_t hits = 0;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    faces += pictures[i].faces.size();
    hits += outcomes[i].hits;
  }
  std::printf("\nraw scan: %zu pictures, %zu faces, %zu windows passed; by threshold the faces found, false and\n",
              pictures.size(), faces, hits);
  std::printf("repeated faces, for the library's grouping and for one relative to the size of each hit\n");
  for (int t = 1; t <= maxThreshold; ++t) {
    Count library, relative;
    for (const RawOutcome& outcome : outcomes) {
      library.add(outcome.library[static_cast<std::size_t>(t - 1)]);
      relative.add(outcome.relative[static_cast<std::size_t>(t - 1)]);
    }
    std::printf("  %3d", t);
    printCount(library, static_cast<double>(faces));
    printCount(relative, static_cast<double>(faces));
    std::printf("\n");
  }
}

}  // namespace evaluation
