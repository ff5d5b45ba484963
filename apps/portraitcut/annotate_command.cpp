#include <algorithm>
#include <cmath>

#include "canvas.h"
#include "commands.h"
#include "deliver.h"
#include "faces.h"
#include "failure.h"
#include "place_portrait.h"

namespace {

constexpr Colour kFaceColour = {60, 220, 80};
constexpr Colour kFrameColour = {250, 210, 40};

// A square that stands as the face does, and a line from its middle to its upper side.
void drawFace(Canvas& canvas, const TFacePosition& face) {
  // The face leans the other way than the turn that sets it upright.
  const double lean = -face.angle * std::acos(-1.0) / 180.0;
  const double half = 0.5 * face.w;
  const auto at = [&](double x, double y) {
    return Spot{face.xc + half * (x * std::cos(lean) - y * std::sin(lean)),
                face.yc + half * (x * std::sin(lean) + y * std::cos(lean))};
  };
  canvas.drawOutline({at(-1, -1), at(1, -1), at(1, 1), at(-1, 1)}, kFaceColour);
  canvas.drawLine(at(0, 0), at(0, -1), kFaceColour);
}

// Red below the first, blue above the second confidence, mixed between.
Colour colourOf(float confidence) {
  constexpr double kUnsure = 0.8;
  constexpr double kSure = 1.25;
  const double share = std::clamp((double{confidence} - kUnsure) / (kSure - kUnsure), 0.0, 1.0);
  return {static_cast<uint8_t>(240 - 200 * share), static_cast<uint8_t>(50 + 110 * share),
          static_cast<uint8_t>(40 + 210 * share)};
}

void drawPoints(Canvas& canvas, const FacePoints& found) {
  for (size_t k = 0; k < kPointCount; ++k) {
    canvas.drawDot({double(found.points[k].x), double(found.points[k].y)}, colourOf(found.confidences[k]));
  }
}

void drawFrame(Canvas& canvas, const Frame& frame) {
  const double x1 = frame.x1, y1 = frame.y1, x2 = frame.x2, y2 = frame.y2;
  canvas.drawOutline({{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}}, kFrameColour);
}

}  // namespace

void runAnnotate(const Options& options, const Job& job, const Picture& picture, Result& result) {
  CutOptions cut = options.cut;
  // A frame that the cut would refuse is the one to look at.
  if (cut.padding == Padding::kRefuse) cut.padding = Padding::kFill;
  runFeatures(options, picture, result);
  if (result.faces.empty()) requireOk(VIZLE_NO_FACE, "");
  Canvas canvas(picture);
  for (size_t k = 0; k < result.faces.size(); ++k) {
    FaceResult& found = result.faces[k];
    drawFace(canvas, found.face);
    drawPoints(canvas, *found.points);
    if (cut.face != 0 && static_cast<size_t>(cut.face) != k + 1) continue;
    placePortrait(cut, picture, found);
    drawFrame(canvas, *found.frame);
  }
  deliver(options, job.output, canvas.picture());
  result.output = job.output;
}
