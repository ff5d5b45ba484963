// The eyes of a face behind the exported functions.
#include <algorithm>
#include <climits>
#include <cmath>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include "library_fixture.h"

namespace {

constexpr TPoint kMark = {-77, -77};

struct TEyePoints {
  TPoint points[40];
  TEyePoints() { std::fill(std::begin(points), std::end(points), kMark); }
  bool marked(std::size_t i) const { return points[i].x == kMark.x && points[i].y == kMark.y; }
  // How many of the entries from `first` on are as they were.
  long markedFrom(std::size_t first) const {
    long count = 0;
    for (std::size_t i = first; i < 40; ++i) count += marked(i);
    return count;
  }
};

class Eyes : public LibraryTest {};

TEST_F(Eyes, OnlyTheFirstTwoPointsAreWrittenAndTheInputsStay) {
  const TPicture picture = RandomPicture(200, 160, 3);
  const HImage image = ImageOf(picture);
  const TFacePosition given = {90, 80, 100, 4711, 3.5};
  TFacePosition face = given;
  TEyePoints found, again;
  ASSERT_EQ(VIZL_DetectEyesInRegion(image, &face, &found.points), VIZLE_OK);
  EXPECT_FALSE(found.marked(0));
  EXPECT_FALSE(found.marked(1));
  EXPECT_EQ(found.markedFrom(2), 38);
  EXPECT_TRUE(PictureOf(image, 3) == picture);
  EXPECT_TRUE(face.xc == given.xc && face.yc == given.yc && face.w == given.w && face.Reserved == 4711);

  ASSERT_EQ(VIZL_DetectEyesInRegion_C(image, &face, &again.points, 12345), VIZLE_OK) << "the context has no effect";
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(again.points[i].x, found.points[i].x);
    EXPECT_EQ(again.points[i].y, found.points[i].y);
  }
}

TEST_F(Eyes, BadArgumentsWriteNothing) {
  const HImage image = ImageOf(RandomPicture(60, 50, 1)), empty = EmptyImage();
  const TFacePosition face = {30, 25, 30, 0, 0};
  TEyePoints found;
  EXPECT_EQ(VIZL_DetectEyesInRegion(image + 100, &face, &found.points), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_DetectEyesInRegion(image, nullptr, &found.points), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_DetectEyesInRegion(image, &face, nullptr), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_DetectEyesInRegion(empty, &face, &found.points), VIZLE_INVALID_ARGUMENT);
  for (const TFacePosition& bad : {TFacePosition{30, 25, -5, 0, 0}, TFacePosition{30, 25, INT_MAX, 0, 0},
                                   TFacePosition{INT_MIN, INT_MIN, 30, 0, 0}, TFacePosition{0, 0, 1000000, 0, NAN}}) {
    EXPECT_EQ(VIZL_DetectEyesInRegion(image, &bad, &found.points), VIZLE_INVALID_ARGUMENT);
  }
  VIZL_FreeImage(image);
  EXPECT_EQ(VIZL_DetectEyesInRegion(image, &face, &found.points), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(found.markedFrom(0), 40);
}

TEST_F(Eyes, FacesAtTheBorderGivePointsInside) {
  const HImage image = ImageOf(RandomPicture(60, 50, 3));
  for (const TFacePosition& face : {TFacePosition{0, 0, 80, 0, 0}, TFacePosition{59, 49, 80, 0, 0},
                                    TFacePosition{-500, 25, 60, 0, 0}, TFacePosition{30, 25, 0, 0, 0}}) {
    TEyePoints found;
    ASSERT_EQ(VIZL_DetectEyesInRegion(image, &face, &found.points), VIZLE_OK);
    for (std::size_t i = 0; i < 2; ++i) {
      EXPECT_TRUE(found.points[i].x >= 0 && found.points[i].x < 60) << found.points[i].x;
      EXPECT_TRUE(found.points[i].y >= 0 && found.points[i].y < 50) << found.points[i].y;
    }
  }
}

TEST_F(Eyes, ThreadsShareOneImage) {
  const HImage image = ImageOf(RandomPicture(200, 160, 3));
  const TFacePosition face = {90, 80, 100, 0, 0};
  std::vector<TEyePoints> found(4);
  std::vector<std::thread> threads;
  for (TEyePoints& one : found) {
    threads.emplace_back([&] {
      for (int i = 0; i < 3; ++i) VIZL_DetectEyesInRegion(image, &face, &one.points);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const TEyePoints& one : found) {
    EXPECT_EQ(one.points[0].x, found[0].points[0].x);
    EXPECT_EQ(one.points[1].y, found[0].points[1].y);
    EXPECT_FALSE(one.marked(0));
  }
}

struct TLabelledFace {
  double xc, yc, w, angle, eyes[4];
};

std::vector<TLabelledFace> labelledFaces(const std::string& picture) {
  std::ifstream in(std::string(TEST_DATA) + "/average_faces.csv");
  std::vector<TLabelledFace> faces;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(picture + ",", 0) != 0) continue;
    std::replace(line.begin(), line.end(), ',', ' ');
    std::istringstream values(line);
    std::string name;
    TLabelledFace face{};
    values >> name >> face.xc >> face.yc >> face.w >> face.angle;
    for (double& value : face.eyes) values >> value;
    faces.push_back(face);
  }
  return faces;
}

// The one test that sees the trained model: faces of all kinds, tilted by up to 12 degrees.
TEST_F(Eyes, OfTheSamplePictureAreFound) {
  HImage image = 0;
  ASSERT_EQ(VIZL_LoadImageFromFile(&image, TEST_DATA "/average_faces.png"), VIZLE_OK);
  const std::vector<TLabelledFace> faces = labelledFaces("average_faces.png");
  ASSERT_EQ(faces.size(), 7u);
  for (const TLabelledFace& label : faces) {
    const TFacePosition face = {static_cast<int>(label.xc), static_cast<int>(label.yc), static_cast<int>(label.w), 0,
                                label.angle};
    TEyePoints found;
    ASSERT_EQ(VIZL_DetectEyesInRegion(image, &face, &found.points), VIZLE_OK);
    const double distance = label.w / 2.54;
    for (std::size_t i = 0; i < 2; ++i) {
      const double error =
          std::hypot(found.points[i].x - label.eyes[2 * i], found.points[i].y - label.eyes[2 * i + 1]) / distance;
      EXPECT_LT(error, 0.12) << "eye " << i << " of the face at " << label.xc << ", " << label.yc;
    }
  }
}

}  // namespace
