#include "training/evaluation/face_set.h"

#include <gtest/gtest.h>

namespace evaluation {
namespace {

FaceLabel labelOf(const char* file, bool validation) {
  FaceLabel label{};
  label.file = file;
  label.validation = validation;
  return label;
}

// The same people on every computer and in every program: expected values of FNV-1a by another program.
TEST(KeptForChoices, DependsOnTheNameAlone) {
  std::vector<int> kept;
  for (int i = 0; i < 100; ++i) {
    if (keptForChoices("person-" + std::to_string(i))) kept.push_back(i);
  }
  EXPECT_EQ(kept, (std::vector<int>{0, 15, 20, 29, 30, 40, 53, 58, 77, 84}));
}

TEST(ChoiceFaces, AreTrainingFacesOfTheKeptPeople) {
  std::vector<FaceLabel> labels;
  for (int i = 0; i < 100; ++i) {
    for (const char* file : {"images/x.jpg", "lowres/x.jpg"}) {
      for (const bool validation : {false, true}) {
        labels.push_back(labelOf(file, validation));
        labels.back().person = "person-" + std::to_string(i);
      }
    }
  }
  const auto chosen = choiceFaces(labels, "images/");
  EXPECT_EQ(chosen.size(), 10u);
  for (const FaceLabel& label : chosen) {
    EXPECT_FALSE(label.validation);
    EXPECT_TRUE(keptForChoices(label.person));
    EXPECT_EQ(label.file, "images/x.jpg");
  }
}

}  // namespace
}  // namespace evaluation
