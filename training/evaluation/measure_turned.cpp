#include <cmath>
#include <cstdio>

#include "image/TIppiImage.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/measures.h"
#include "training/evaluation/parallel.h"
#include "training/evaluation/turning.h"

namespace evaluation {

namespace {

constexpr int kFirstTurn = -22;  // degrees
constexpr int kTurnStep = 4;
constexpr int kTurnCount = 12;

int turnOf(int index) { return kFirstTurn + index * kTurnStep; }

struct TurnOutcome {
  Tally tallies[kTurnCount];
  // Sums for the slope of the detected over the true upright angle: 1 when the sense is right.
  double products = 0;
  double squares = 0;
};

void measureTurn(const Setting& setting, const std::string& name, TIppiImage& gray, const FaceSquare& square, int index,
                 TurnOutcome& outcome) {
  const int turn = turnOf(index);
  TIppiImage turned;
  turnPicture(gray, turn, square.xc, square.yc, turned);
  const FaceSquare truth = turnedSquare(square, turn);
  const PictureResult result = judge(truth, detectAll(*setting.detector, turned).faces, setting.criterion);
  outcome.tallies[index].add(truth, result);
  if (result.found) {
    outcome.products += result.found->angle * -truth.roll;
    outcome.squares += truth.roll * truth.roll;
  }
  setting.findings->add("turned", name + (turn < 0 ? "" : "+") + std::to_string(turn), turned, truth, result);
}

void printTurns(const TurnOutcome& sum) {
  Tally all;
  std::printf(
      "\nturned: turn (degrees, clockwise), found, error of the angle (degrees, signed and absolute), "
      "false faces\n");
  for (int k = 0; k < kTurnCount; ++k) {
    const Tally& tally = sum.tallies[k];
    std::printf("  %+3d  %4d / %4d  %6.2f %%  %+6.2f  %5.2f  %5d\n", turnOf(k), tally.found, tally.faces,
                100 * tally.share(), tally.mean().angle, tally.meanAbsAngle(), tally.falseFaces);
    all.add(tally);
  }
  std::printf("  all  %4d / %4d  %6.2f %%  %+6.2f  %5.2f  %5d\n", all.found, all.faces, 100 * all.share(),
              all.mean().angle, all.meanAbsAngle(), all.falseFaces);
  std::printf("  slope of the detected over the true angle: %.3f\n",
              sum.squares > 0 ? sum.products / sum.squares : 0.0);
}

// The turns come on top of the roll that the face has already; faces within the search range apart.
void printInRange(const std::vector<FaceLabel>& faces, const std::vector<TurnOutcome>& outcomes) {
  Tally inRange;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    for (int k = 0; k < kTurnCount; ++k) {
      if (std::abs(faces[i].roll + turnOf(k)) <= -kFirstTurn) inRange.add(outcomes[i].tallies[k]);
    }
  }
  std::printf("  of these with a whole roll within %d degrees: %d / %d  %.2f %%, error %+.2f, %.2f\n", -kFirstTurn,
              inRange.found, inRange.faces, 100 * inRange.share(), inRange.mean().angle, inRange.meanAbsAngle());
}

}  // namespace

void measureTurnedFaces(const Setting& setting, const std::string& folder, const std::vector<FaceLabel>& faces) {
  std::vector<TurnOutcome> outcomes(faces.size());
  forEachIndex(faces.size(), setting.threads, [&](std::size_t i) {
    TIppiImage gray;
    loadGray(folder + "/" + faces[i].file, gray);
    const FaceSquare square = faceSquare(faces[i]);
    for (int k = 0; k < kTurnCount; ++k) measureTurn(setting, faces[i].file, gray, square, k, outcomes[i]);
  });
  TurnOutcome sum;
  for (const TurnOutcome& outcome : outcomes) {
    for (int k = 0; k < kTurnCount; ++k) sum.tallies[k].add(outcome.tallies[k]);
    sum.products += outcome.products;
    sum.squares += outcome.squares;
  }
  printTurns(sum);
  printInRange(faces, outcomes);
}

}  // namespace evaluation
