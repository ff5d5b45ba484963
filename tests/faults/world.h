// What the tests of faults act on: pictures, contexts and outputs whose whole content can be told and compared.
#pragma once

#include "api/pc_api.h"
#include "api/vizl_api.h"
#include "tests/files/files.h"

// All that the exported functions write, filled with a pattern that none of them writes.
struct TOutputs {
  HImage handle = 0x5A5A5A5A;
  ContextID context = 0x5A5A5A5A;
  int32_t count = 0x5A5A5A5A;
  int32_t corners[4] = {0x5A5A5A5A, 0x5A5A5A5A, 0x5A5A5A5A, 0x5A5A5A5A};
  TFacePosition faces[16] = {};
  TPoint points[40] = {};
  float confidences[40] = {};
};

// A ready library with the pictures below and a context that detects quickly.
class TWorld {
 public:
  // Handles. Each call under test may make more of them; they come after these.
  static constexpr HImage kFace = 0;     // colour, one face, never detected in
  static constexpr HImage kTarget = 1;   // colour, 5 by 4
  static constexpr HImage kOverlay = 2;  // with alpha, 40 by 30
  static constexpr HImage kGround = 3;   // with alpha, 60 by 50
  static constexpr HImage kFresh = 4;    // made by Prepare: a copy of the face, in which no detection has run
  static constexpr HImage kMade = 5;     // what a call under test makes first
  static constexpr ContextID kQuick = 1;
  static constexpr ContextID kFreshContext = 2;  // made by Prepare

  TOutputs out;
  const Folder folder;
  // Made beforehand, as strings that a call under test made would take memory.
  std::string jpegFile, pngFile, bmpFile;
  std::string jpegOutput, pngOutput, bmpOutput;
  std::vector<unsigned char> jpeg, png;
  TFacePosition face = {};
  TPoint points[40] = {};

  TWorld();
  ~TWorld();
  TWorld(const TWorld&) = delete;
  TWorld& operator=(const TWorld&) = delete;

  // Makes kFresh and kFreshContext, and clears the outputs.
  void Prepare();
  // Frees what was made since, and gives kTarget its picture back.
  void Restore();
  // What every handle holds, pixels and padding included.
  std::vector<std::string> Pictures() const;
  std::string Outputs() const;
  // The files that calls under test write.
  std::string Files() const;

 private:
  void MakePictures();
  void FillTarget();
};
