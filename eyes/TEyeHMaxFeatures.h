// Oriented edge maps of a small gray window, in two layers: S1, cosine gratings under a disc whose responses are
// divided by the local contrast, and C1, the largest of them nearby, compared between orientations.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

struct IppiFFTSpec_R_32f;

class TEyeHMaxFeatures {
 public:
  static constexpr int kSide = 32;  // of the window, of every map and of the transforms; all wrap around
  static constexpr int kArea = kSide * kSide;
  static constexpr int kOrientations = 8;  // orientation k is k pi / 8
  static constexpr int kScales = 4;
  static constexpr int kBands = 2;  // band b joins scales 2b and 2b + 1

  using TMap = std::array<float, kArea>;  // pixel (x, y) is element x + kSide * y, y from the top

  // Transforms of kernels whose centre is pixel (0, 0). Made once; copies of an instance share them.
  struct TBank {
    TMap s1Filters[kOrientations][kScales] = {};
    TMap discMasks[kScales] = {};
    int32_t discAreas[kScales] = {};  // pixels inside each disc
  };

  TEyeHMaxFeatures();
  // The filters of `other`, but no picture and no features. Throws std::bad_alloc.
  TEyeHMaxFeatures(const TEyeHMaxFeatures& other);
  TEyeHMaxFeatures& operator=(const TEyeHMaxFeatures&) = delete;
  ~TEyeHMaxFeatures();

  void CreateS1Filters();
  // Takes the top left part of the bytes; what a smaller picture lacks is 0.
  void SetPic(const unsigned char* bytes, int width, int height);
  // Fills s1Responses. Needs filters and a picture.
  void ApplyS1Filters();
  // Fills c1Features from s1Responses, then compares both between orientations: values from 0 to 1 in c1Features and in
  // scales 0 and 2 of s1Responses. Once after each ApplyS1Filters.
  void ComputeC1Features();
  // The 64 values at a pixel, orientation * 8 + band; bands from kBands on are 0.
  std::vector<float> GetC1Features(int x, int y) const;
  void FreeC1Features();

  const TBank& bank() const { return *bank_; }
  const TMap& s1Response(int orientation, int scale) const { return maps_->s1Responses[orientation][scale]; }
  const TMap& localEnergy(int scale) const { return maps_->localEnergy[scale]; }
  // False from the start and after FreeC1Features.
  bool hasC1Features() const { return !c1Features_.empty(); }
  const TMap& c1Feature(int orientation, int band) const {
    return c1Features_[static_cast<std::size_t>(orientation * kBands + band)];
  }

 private:
  struct TMaps {
    TMap picture;               // 0 to 255
    TMap localEnergy[kScales];  // sum of squared deviations from the mean over each pixel's disc
    TMap s1Responses[kOrientations][kScales];
  };

  void makeTransform();
  void toSpectrum(TMap& map) const;
  // The picture of the product of two spectra.
  void filter(const TMap& spectrum, const TMap& kernel, TMap& result) const;
  void computeLocalEnergy(const TMap& picture, const TMap& squares);
  void poolBand(int orientation, int band, TMap& pooled);
  void normalise(int band);

  std::shared_ptr<const TBank> bank_;
  std::unique_ptr<TMaps> maps_;
  std::vector<TMap> c1Features_;
  IppiFFTSpec_R_32f* fftSpec_ = nullptr;  // owned
};
