#include "training/features/frame_collector.h"

#include <algorithm>
#include <cmath>

#include "detect/TIppiFaceDetector.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/face_set.h"
#include "training/evaluation/parallel.h"

namespace {

using evaluation::FaceView;

double uniform(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

double clampedNormal(std::mt19937& random, double deviation, double limit) {
  return std::clamp(std::normal_distribution<double>(0, deviation)(random), -limit, limit);
}

// A frame whose pupils are this near or far apart shows no face as the search meets it.
constexpr double kLeastPupilDistance = 20, kLargestPupilDistance = 140;

class FaceFrames {
 public:
  FaceFrames(const CollectorOptions& options, TIppiFaceDetector& detector, unsigned seed)
      : options_(options), detector_(detector), random_(seed) {}

  // The random numbers of a kind are drawn whether or not it is wanted, so that each kind stays the same.
  void add(FaceView& view, const FeatureFrame& head) {
    head_ = head;
    addDetected(view, FrameKind::Detected);
    const TFacePosition place = jitteredPlace(evaluation::squareOf(view.points), options_.jitter, random_);
    if (wanted(FrameKind::Jittered)) cut(view, place, FrameKind::Jittered);
    FaceView changed;
    const double turn = uniform(random_, -options_.maxTurn, options_.maxTurn);
    if (wanted(FrameKind::Turned)) {
      evaluation::turnView(view, turn, changed);
      addDetected(changed, FrameKind::Turned);
    }
    const double width = uniform(random_, options_.smallestWidth, options_.largestWidth);
    if (wanted(FrameKind::Reduced) && evaluation::reduceView(view, width, changed)) {
      addDetected(changed, FrameKind::Reduced);
    }
  }

  std::vector<FeatureFrame> take() { return std::move(frames_); }

 private:
  bool wanted(FrameKind kind) const {
    return std::count(options_.kinds.begin(), options_.kinds.end(), static_cast<int>(kind)) > 0;
  }

  void addDetected(FaceView& view, FrameKind kind) {
    if (!wanted(kind)) return;
    const auto place = evaluation::detectedFace(detector_, view.picture, evaluation::squareOf(view.points));
    if (place) cut(view, *place, kind);
  }

  void cut(FaceView& view, const TFacePosition& place, FrameKind kind) {
    FeatureFrame& frame = frames_.emplace_back(head_);
    frame.kind = kind;
    const bool good = cutFeatureFrame(view, place, frame);
    const double distance = pupilDistance(frame);
    if (!good || distance < kLeastPupilDistance || distance > kLargestPupilDistance) frames_.pop_back();
  }

  const CollectorOptions& options_;
  TIppiFaceDetector& detector_;
  std::mt19937 random_;
  FeatureFrame head_{};
  std::vector<FeatureFrame> frames_;
};

}  // namespace

// The position's angle turns the face upright, the square's roll is the face's own.
TFacePosition jitteredPlace(const FaceSquare& square, const PlaceJitter& jitter, std::mt19937& random) {
  const double xc = square.xc + clampedNormal(random, jitter.shift, jitter.shiftLimit) * square.w;
  const double yc = square.yc + clampedNormal(random, jitter.shift, jitter.shiftLimit) * square.w;
  const double w = square.w * (jitter.width + clampedNormal(random, jitter.scale, jitter.scaleLimit));
  const double angle = -square.roll + clampedNormal(random, jitter.turn, jitter.turnLimit);
  return {static_cast<int>(std::lround(xc)), static_cast<int>(std::lround(yc)), static_cast<int>(std::lround(w)), 0,
          angle};
}

std::vector<FeatureFrame> collectFrames(const std::string& folder, const std::vector<FaceLabel>& faces,
                                        const CollectorOptions& options) {
  TIppiFaceDetector detector;
  std::vector<std::vector<FeatureFrame>> byFace(faces.size());
  evaluation::forEachIndex(faces.size(), options.threads, [&](std::size_t i) {
    FaceView view, mirrored;
    evaluation::loadGray(folder + "/" + faces[i].file, view.picture);
    view.points = faces[i].nodes;
    evaluation::mirrorView(view, mirrored);
    FeatureFrame head{};
    head.face = static_cast<std::int32_t>(i);
    head.choice = evaluation::keptForChoices(faces[i].person);
    FaceFrames frames(options, detector, options.seed * 1000003u + static_cast<unsigned>(i));
    frames.add(view, head);
    head.mirrored = true;
    frames.add(mirrored, head);
    byFace[i] = frames.take();
  });
  // Reserved at once: with a vector's growth there would be two or three times the gigabyte and a half of all faces.
  std::size_t count = 0;
  for (const auto& frames : byFace) count += frames.size();
  std::vector<FeatureFrame> all;
  all.reserve(count);
  for (auto& frames : byFace) {
    all.insert(all.end(), frames.begin(), frames.end());
    std::vector<FeatureFrame>().swap(frames);
  }
  return all;
}
