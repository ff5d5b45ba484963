#include "training/evaluation/face_set.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace evaluation {
namespace {

FaceLabel labelOf(const char* file, bool validation) {
  FaceLabel label{};
  label.file = file;
  label.validation = validation;
  return label;
}

TEST(ValidationFaces, LeaveOutTrainingFacesAndOtherFolders) {
  const std::vector<FaceLabel> labels = {labelOf("images/a.jpg", true), labelOf("images/b.jpg", false),
                                         labelOf("lowres/c.jpg", true), labelOf("images/d.jpg", true)};
  const auto chosen = validationFaces(labels, "images/");
  ASSERT_EQ(chosen.size(), 2u);
  EXPECT_EQ(chosen[0].file, "images/a.jpg");
  EXPECT_EQ(chosen[1].file, "images/d.jpg");
}

TEST(Thinned, SpreadsOverTheWholeList) {
  const std::vector<int> all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  EXPECT_EQ(thinned(all, 0), all);
  EXPECT_EQ(thinned(all, 10), all);
  EXPECT_EQ(thinned(all, 3), (std::vector<int>{0, 3, 6}));
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

TEST(HeldOutBackgrounds, AreEveryTenthInSortedOrder) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "held_out_backgrounds";
  std::filesystem::create_directories(folder);
  for (char c = 'z'; c >= 'a'; --c) std::ofstream(folder / (std::string(1, c) + ".jpg")) << c;
  const auto files = heldOutBackgrounds(folder.string());
  ASSERT_EQ(files.size(), 3u);
  EXPECT_EQ(std::filesystem::path(files[0]).filename(), "a.jpg");
  EXPECT_EQ(std::filesystem::path(files[1]).filename(), "k.jpg");
  EXPECT_EQ(std::filesystem::path(files[2]).filename(), "u.jpg");
  std::filesystem::remove_all(folder);
  EXPECT_THROW(heldOutBackgrounds(folder.string()), std::runtime_error);
}

}  // namespace
}  // namespace evaluation
