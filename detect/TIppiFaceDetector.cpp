#include "detect/TIppiFaceDetector.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "detect/cascade_stream.h"
#include "models/models.h"

TIppiFaceDetector* IppiFaceDetector = nullptr;

namespace {

// The window inside its margin of one pixel a side must have an area.
constexpr int kMinWindowSide = 3;
// Far above any trained window; keeps every product of coordinates small.
constexpr int kMaxWindowSide = 1024;

void require(bool condition, const char* what) {
  if (!condition) throw std::invalid_argument(what);
}

IppiRect readRect(CascadeStream& in, int windowWidth, int windowHeight) {
  IppiRect r;
  r.x = in.IntWithin(0, windowWidth - 1);
  r.y = in.IntWithin(0, windowHeight - 1);
  r.width = in.IntWithin(1, windowWidth - r.x);
  r.height = in.IntWithin(1, windowHeight - r.y);
  return r;
}

}  // namespace

TIppiFaceDetector::TIppiFaceDetector() {
  try {
    LoadHaarClassifierStream();
  } catch (...) {
    Release();
    throw;
  }
}

TIppiFaceDetector::TIppiFaceDetector(const unsigned char* stream, unsigned size) {
  try {
    LoadStream(stream, size);
  } catch (...) {
    Release();
    throw;
  }
}

TIppiFaceDetector::~TIppiFaceDetector() { Release(); }

void TIppiFaceDetector::Release() {
  for (int s = 0; StageClassifiers != nullptr && s < kMaxStages; s++) {
    if (StageClassifiers[s] != nullptr) ippiHaarClassifierFree_32f(StageClassifiers[s]);
  }
  delete[] StageClassifiers;
  delete[] StageThreshold;
  delete[] StageClassifierCount;
  delete[] StageFeatureCount;
  delete[] StageFirstClassifier;
  delete[] StageFirstFeature;
}

void TIppiFaceDetector::LoadHaarClassifierStream() {
  LoadStream(class_dat, static_cast<unsigned>(class_dat_end - class_dat));
}

void TIppiFaceDetector::LoadStream(const unsigned char* stream, unsigned size) {
  StageClassifiers = new IppiHaarClassifier_32f*[kMaxStages]();
  CascadeStream in(stream, size);
  ReadStages(in);
  ScaleWeights();
  for (int s = 0; s < StageCount; s++) StageThreshold[s] -= ThresholdBias;
  // Stored rows run bottom first.
  for (int f = 0; f < FeatureCount; f++) FeatureRect[f].y = WindowHeight - FeatureRect[f].y - FeatureRect[f].height;
  BuildStages();
}

void TIppiFaceDetector::ReadStages(CascadeStream& in) {
  WindowWidth = in.IntWithin(kMinWindowSide, kMaxWindowSide);
  WindowHeight = in.IntWithin(kMinWindowSide, kMaxWindowSide);
  StageCount = in.IntWithin(1, kMaxStages);
  ClassifierCount = in.IntWithin(1, kMaxClassifiers);
  FeatureCount = in.IntWithin(1, kMaxFeatures);
  const unsigned stages = static_cast<unsigned>(StageCount);
  StageThreshold = new float[stages]();
  StageClassifierCount = new int[stages]();
  StageFeatureCount = new int[stages]();
  StageFirstClassifier = new int[stages]();
  StageFirstFeature = new int[stages]();
  int c = 0;
  int f = 0;
  for (int s = 0; s < StageCount; s++) ReadStage(in, s, c, f);
  require(c == ClassifierCount && f == FeatureCount, "cascade counts differ from the header");
  require(in.BytesLeft() == 0, "cascade stream goes on past its end");
}

void TIppiFaceDetector::ReadStage(CascadeStream& in, int s, int& c, int& f) {
  StageClassifierCount[s] = in.IntWithin(1, ClassifierCount - c);
  StageThreshold[s] = in.Float();
  StageFirstClassifier[s] = c;
  StageFirstFeature[s] = f;
  for (const int end = c + StageClassifierCount[s]; c < end; c++) {
    ClassifierFeatureCount[c] = in.IntWithin(1, FeatureCount - f);
    StageFeatureCount[s] += ClassifierFeatureCount[c];
    for (const int last = f + ClassifierFeatureCount[c]; f < last; f++) {
      FeatureRect[f] = readRect(in, WindowWidth, WindowHeight);
      FeatureWeight[f] = in.Float();
    }
    ClassifierThreshold[c] = in.Float();
    ClassifierLeft[c] = in.Float();
    ClassifierRight[c] = in.Float();
  }
}

void TIppiFaceDetector::ScaleWeights() {
  const float b = WindowMargin;
  const float width = static_cast<float>(WindowWidth) - b - b;
  const float height = static_cast<float>(WindowHeight) - b - b;
  const float factor = 1.0f / (width * height);
  for (int f = 0; f < FeatureCount; f++) FeatureWeight[f] *= factor;
}

void TIppiFaceDetector::BuildStages() {
  ClassifierWidth = 0;
  ClassifierHeight = 0;
  for (int s = 0; s < StageCount; s++) {
    const int f = StageFirstFeature[s];
    const int c = StageFirstClassifier[s];
    const IppStatus status = ippiHaarClassifierInitAlloc_32f(
        &StageClassifiers[s], FeatureRect + f, FeatureWeight + f, ClassifierThreshold + c, ClassifierLeft + c,
        ClassifierRight + c, ClassifierFeatureCount + c, StageClassifierCount[s]);
    if (status != ippStsNoErr) throw std::bad_alloc();
    IppiSize size = {0, 0};
    ippiGetHaarClassifierSize_32f(StageClassifiers[s], &size);
    ClassifierWidth = std::max(ClassifierWidth, size.width);
    ClassifierHeight = std::max(ClassifierHeight, size.height);
  }
}
