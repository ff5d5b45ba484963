#include <memory>

#include "api/vizl_api.h"
#include "detect/TIppiFaceDetector.h"
#include "detect/TMultiFaceDetector.h"
#include "detect/face_window.h"
#include "image/TIppiImage.h"
#include "image/params.h"

namespace {

// From the working image, or from the crop, to the image: both round to the nearest integer, unlike the
// search for a single face.
TRectangle fromWorking(const TRectangle& r, double ratio) {
  return {RoundToInt(r.x1 / ratio), RoundToInt(r.y1 / ratio), RoundToInt(r.x2 / ratio), RoundToInt(r.y2 / ratio)};
}

TRectangle fromCrop(const TRectangle& r, const FaceWindow& face) {
  const auto place = [&face](int c, int centre) {
    return RoundToInt(2 * ((c / kCropSide) * face.w)) + (centre - face.w);
  };
  return {place(r.x1, face.xc), place(r.y1, face.yc), place(r.x2, face.xc), place(r.y2, face.yc)};
}

bool roomFor(int records, int maxSizeInBytes) {
  return maxSizeInBytes >= static_cast<long long>(records) * static_cast<long long>(sizeof(TFacePosition));
}

// Reserved stays as the caller had it.
void writeRecord(TFacePosition& record, const FaceWindow& face, double angle) {
  record.xc = face.xc;
  record.yc = face.yc;
  record.w = face.w;
  record.angle = angle;
}

}  // namespace

void TIppiFaceDetector::DetectMultipleFaces(TIppiImage& image, TIppiImage*, int& count, TFacePosition* faces,
                                            int maxSizeInBytes, int context) {
  const int steps = ContextDetermineFaceRotationAngle(context) ? kFineSteps : 0;
  const double ratio = WorkingRatio(image, context);
  TIppiImage working;
  image.Resize(working, ratio);
  std::vector<TRectangle> candidates;
  int* passesOut = nullptr;
  int* countsOut = nullptr;
  TMultiFaceDetector(this).ResultDetectFaces(working, candidates, passesOut, countsOut, context);
  const std::unique_ptr<int[]> passes(passesOut);
  const std::unique_ptr<int[]> counts(countsOut);
  working.FreeImage();
  int found = 0;
  for (std::size_t i = 0; i < candidates.size(); i++) {
    const FaceWindow face = WindowOf(fromWorking(candidates[i], ratio));
    const FineResult fine = SearchAngles(*this, image, face, CoarseAngle(passes[i]), steps, context);
    if (fine.count == 0) continue;
    if (!roomFor(found + 1, maxSizeInBytes)) break;
    writeRecord(faces[found], WindowOf(fromCrop(fine.rect, face)), fine.angle);
    found++;
  }
  count = found;
}
