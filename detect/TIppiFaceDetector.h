// The cascade of boosted Haar stages: loaded once from its stream, then only read.
#pragma once

#include <vector>

#include "detect/TRectangle.h"
#include "primitives/ippi.h"

class CascadeStream;
class TIppiImage;
struct TFacePosition;

class TIppiFaceDetector {
 public:
  static constexpr int kMaxStages = 31;
  static constexpr int kMaxClassifiers = 2301;
  static constexpr int kMaxFeatures = 5001;

  int StageCount = 0;
  int ClassifierCount = 0;
  int FeatureCount = 0;
  float* StageThreshold = nullptr;  // after the bias
  int* StageClassifierCount = nullptr;
  int* StageFeatureCount = nullptr;
  int* StageFirstClassifier = nullptr;
  int* StageFirstFeature = nullptr;
  int ClassifierFeatureCount[kMaxClassifiers];
  float ClassifierThreshold[kMaxClassifiers];
  float ClassifierLeft[kMaxClassifiers];
  float ClassifierRight[kMaxClassifiers];
  IppiRect FeatureRect[kMaxFeatures];  // y turned over for rows stored bottom first
  float FeatureWeight[kMaxFeatures];   // divided by the area of the window inside its margin
  IppiHaarClassifier_32f** StageClassifiers = nullptr;
  float ThresholdBias = 0.0001f;
  float WindowMargin = 1.0f;
  int WindowWidth = 0;
  int WindowHeight = 0;
  int ClassifierWidth = 0;
  int ClassifierHeight = 0;

  // Loads the cascade that is compiled into the library.
  TIppiFaceDetector();
  // Loads another stream of the same format, for training and tests. A stream that is cut short, breaks
  // a capacity or holds a rectangle outside its window makes it throw std::invalid_argument.
  TIppiFaceDetector(const unsigned char* stream, unsigned size);
  TIppiFaceDetector(const TIppiFaceDetector&) = delete;
  TIppiFaceDetector& operator=(const TIppiFaceDetector&) = delete;
  virtual ~TIppiFaceDetector();

  // Every window of the gray `image` that passes all stages, at the scales scale, scale / 1.18, ...
  // `rects` is cleared first; largest scale (smallest windows) first.
  void DetectFaceRaw(TIppiImage& image, std::vector<TRectangle>& rects, float scale);

  // Mean of the rectangles that have at least Threshold2 neighbours, and their number; zeros if none.
  void ClusterFace(std::vector<TRectangle>& rects, int& x1, int& y1, int& x2, int& y2, int& count, int context);

  // The strongest face of the gray `image`; w is 0 if there is none. `output` is not used.
  void DetectFace(TIppiImage& image, TIppiImage* output, int& xc, int& yc, int& w, double& angle, int& confidence,
                  int context);

  // Every face, in the order of the candidates, as far as `maxSizeInBytes` has room.
  void DetectMultipleFaces(TIppiImage& image, TIppiImage* output, int& count, TFacePosition* faces, int maxSizeInBytes,
                           int context);

 private:
  void LoadHaarClassifierStream();
  void LoadStream(const unsigned char* stream, unsigned size);
  void ReadStages(CascadeStream& in);
  void ReadStage(CascadeStream& in, int s, int& c, int& f);
  void ScaleWeights();
  void BuildStages();
  void Release();
};

extern TIppiFaceDetector* IppiFaceDetector;
