#include "training/average_faces/appearance_groups.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

#include "training/average_faces/face_average.h"

namespace {

using Features = std::vector<float>;

constexpr unsigned kSeed = 20;
constexpr int kRounds = 50;
constexpr int kStep = 9;  // pixels of the frame between two samples

// Head and hair: an ellipse of 2.8 by 4 eye distances about the middle of the face.
bool onHead(double x, double y) {
  const double dx = (x - kFrameEyeMiddle.x) / (1.4 * kFrameEyeDistance);
  const double dy = (y - kFrameEyeMiddle.y - 0.1 * kFrameEyeDistance) / (2.0 * kFrameEyeDistance);
  return dx * dx + dy * dy < 1.0;
}

// Mean colour of a block of the frame, four samples along each side.
Colour blockColour(const Picture& picture, const Similarity& toPicture, int x, int y) {
  constexpr int kSide = 4;
  Colour sum{};
  for (int k = 0; k < kSide * kSide; ++k) {
    const double dx = (k % kSide + 0.5) * kStep / kSide;
    const double dy = (k / kSide + 0.5) * kStep / kSide;
    const LabelledPoint p = toPicture({x + dx, y + dy});
    const Colour colour = sample(picture, p.x, p.y);
    for (std::size_t c = 0; c < 3; ++c) sum[c] += colour[c] / (kSide * kSide);
  }
  return sum;
}

Features featuresOf(const FaceLabel& face, const std::string& folder) {
  const Picture picture = loadJpeg(folder + "/" + face.file);
  const Similarity toPicture = eyesToFrame(shapeOf(face)).inverse();
  Features features;
  for (int y = 0; y < kFrameHeight; y += kStep) {
    for (int x = 0; x < kFrameWidth; x += kStep) {
      if (!onHead(x + 0.5 * kStep, y + 0.5 * kStep)) continue;
      const Colour colour = blockColour(picture, toPicture, x, y);
      features.insert(features.end(), colour.begin(), colour.end());
    }
  }
  return features;
}

double squareDistance(const Features& a, const Features& b) {
  return std::transform_reduce(a.begin(), a.end(), b.begin(), 0.0, std::plus<>(),
                               [](double p, double q) { return (p - q) * (p - q); });
}

std::pair<std::size_t, double> nearest(const Features& face, const std::vector<Features>& centres) {
  std::pair<std::size_t, double> best{0, std::numeric_limits<double>::max()};
  for (std::size_t k = 0; k < centres.size(); ++k) {
    const double distance = squareDistance(face, centres[k]);
    if (distance < best.second) best = {k, distance};
  }
  return best;
}

// First centres far apart: each is drawn with a chance in proportion to its distance from those before.
std::vector<Features> firstCentres(const std::vector<Features>& faces, std::size_t count) {
  std::mt19937 random(kSeed);
  std::vector<Features> centres{faces[random() % faces.size()]};
  while (centres.size() < count) {
    std::vector<double> upTo;
    double sum = 0;
    for (const Features& face : faces) upTo.push_back(sum += nearest(face, centres).second);
    const double drawn = sum * static_cast<double>(random()) / 4294967296.0;
    const auto chosen = std::upper_bound(upTo.begin(), upTo.end(), drawn) - upTo.begin();
    centres.push_back(faces[static_cast<std::size_t>(chosen)]);
  }
  return centres;
}

void moveCentres(const std::vector<Features>& faces, std::vector<Features>& centres) {
  std::vector<Features> sums(centres.size(), Features(centres[0].size()));
  std::vector<float> counts(centres.size());
  for (const Features& face : faces) {
    const std::size_t group = nearest(face, centres).first;
    counts[group] += 1;
    std::transform(face.begin(), face.end(), sums[group].begin(), sums[group].begin(), std::plus<>());
  }
  for (std::size_t k = 0; k < centres.size(); ++k) {
    if (counts[k] == 0) continue;
    for (float& value : sums[k]) value /= counts[k];
    centres[k] = sums[k];
  }
}

using Members = std::vector<std::pair<double, const FaceLabel*>>;

// The `wanted` centres that lie farthest apart, so that no two groups look much the same.
std::vector<Features> mostDifferent(const std::vector<Features>& centres, std::size_t wanted) {
  const auto darkest = std::min_element(centres.begin(), centres.end(), [](const Features& a, const Features& b) {
    return std::accumulate(a.begin(), a.end(), 0.0) < std::accumulate(b.begin(), b.end(), 0.0);
  });
  std::vector<Features> chosen{*darkest};
  while (chosen.size() < wanted) {
    chosen.push_back(*std::max_element(centres.begin(), centres.end(), [&](const Features& a, const Features& b) {
      return nearest(a, chosen).second < nearest(b, chosen).second;
    }));
  }
  return chosen;
}

std::vector<const FaceLabel*> nearestFaces(Members members, std::size_t count) {
  std::stable_sort(members.begin(), members.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<const FaceLabel*> faces;
  for (std::size_t k = 0; k < std::min(count, members.size()); ++k) faces.push_back(members[k].second);
  return faces;
}

}  // namespace

std::vector<std::vector<const FaceLabel*>> appearanceGroups(const std::vector<const FaceLabel*>& faces,
                                                            const std::string& folder, std::size_t groupCount,
                                                            std::size_t wanted, std::size_t groupSize) {
  std::vector<Features> features;
  for (const FaceLabel* face : faces) features.push_back(featuresOf(*face, folder));
  std::vector<Features> centres = firstCentres(features, groupCount);
  for (int round = 0; round < kRounds; ++round) moveCentres(features, centres);

  std::vector<std::vector<const FaceLabel*>> groups;
  for (const Features& chosen : mostDifferent(centres, wanted)) {
    Members members;
    for (std::size_t k = 0; k < faces.size(); ++k) {
      const auto [group, distance] = nearest(features[k], centres);
      if (centres[group] == chosen) members.emplace_back(distance, faces[k]);
    }
    groups.push_back(nearestFaces(members, groupSize));
  }
  return groups;
}
