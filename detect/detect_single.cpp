#include <memory>

#include "detect/TIppiFaceDetector.h"
#include "detect/TMultiFaceDetector.h"
#include "detect/face_window.h"
#include "image/TIppiImage.h"
#include "image/params.h"

namespace {

struct Candidate {
  TRectangle rect;
  int pass;
  int count;
};

// The first of the candidates with the most members. False if there is none.
bool strongestCandidate(TIppiFaceDetector& detector, TIppiImage& working, int context, Candidate& best) {
  std::vector<TRectangle> faces;
  int* passesOut = nullptr;
  int* countsOut = nullptr;
  TMultiFaceDetector(&detector).ResultDetectFaces(working, faces, passesOut, countsOut, context);
  const std::unique_ptr<int[]> passes(passesOut);
  const std::unique_ptr<int[]> counts(countsOut);
  if (faces.empty()) return false;
  std::size_t chosen = 0;
  for (std::size_t i = 1; i < faces.size(); i++) {
    if (counts[i] > counts[chosen]) chosen = i;
  }
  best = {faces[chosen], passes[chosen], counts[chosen]};
  return true;
}

// From the working image, or from the crop, to the image: both truncate towards zero.
TRectangle fromWorking(const TRectangle& r, double ratio) {
  return {TruncateToInt(r.x1 / ratio), TruncateToInt(r.y1 / ratio), TruncateToInt(r.x2 / ratio),
          TruncateToInt(r.y2 / ratio)};
}

TRectangle fromCrop(const TRectangle& r, const FaceWindow& face) {
  const auto place = [&face](int c, int centre) {
    return TruncateToInt(2 * ((c / kCropSide) * face.w) + (centre - face.w));
  };
  return {place(r.x1, face.xc), place(r.y1, face.yc), place(r.x2, face.xc), place(r.y2, face.yc)};
}

}  // namespace

void TIppiFaceDetector::DetectFace(TIppiImage& image, TIppiImage*, int& xc, int& yc, int& w, double& angle,
                                   int& confidence, int context) {
  const double ratio = WorkingRatio(image, context);
  TIppiImage working;
  image.Resize(working, ratio);
  Candidate candidate = {};
  if (!strongestCandidate(*this, working, context, candidate)) {
    xc = yc = w = 0;
    angle = 0.0;
    return;
  }
  working.FreeImage();
  FaceWindow face = WindowOf(fromWorking(candidate.rect, ratio));
  FineResult fine;
  fine.count = candidate.count;
  fine.angle = CoarseAngle(candidate.pass);
  if (ContextDetermineFaceRotationAngle(context)) {
    fine = SearchAngles(*this, image, face, fine.angle, kFineSteps, context);
    face = WindowOf(fromCrop(fine.rect, face));
  }
  xc = face.xc;
  yc = face.yc;
  w = face.w;
  angle = fine.angle;
  confidence = fine.count;
}
