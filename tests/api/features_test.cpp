// The forty points of a face, and the picture that is cut out by them.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "library_fixture.h"

bool operator==(const TPoint& a, const TPoint& b) { return a.x == b.x && a.y == b.y; }

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// What a search writes, with marks that tell what it left alone.
struct TFound {
  TPoint points[40];
  float confidences[40];

  TFound() {
    std::fill(std::begin(points), std::end(points), TPoint{-77, -77});
    std::fill(std::begin(confidences), std::end(confidences), -77.0f);
  }
  bool Untouched() const { return *this == TFound(); }
  bool operator==(const TFound& other) const {
    return std::equal(std::begin(points), std::end(points), other.points) &&
           std::equal(std::begin(confidences), std::end(confidences), other.confidences);
  }
  bool Inside(int width, int height) const {
    return std::all_of(std::begin(points), std::end(points),
                       [=](TPoint p) { return p.x >= 0 && p.y >= 0 && p.x < width && p.y < height; });
  }
};

int32_t searchInRegion(HImage image, const TFacePosition& face, TFound& found) {
  return VIZL_DetectFacialFeaturesInRegionEx(image, &face, &found.points, &found.confidences);
}

class Features : public DiscTest {
 protected:
  void TearDown() override {
    NeedInterrupt = 0;
    LibraryTest::TearDown();
  }
};

TEST_F(Features, RepeatAndLeaveTheirInputs) {
  const TPicture picture = RandomPicture(300, 240, 3);
  const HImage image = ImageOf(picture);
  const TFacePosition face = {150, 120, 110, 4711, 7.5};
  TFacePosition given = face;
  TFound first, second;
  ASSERT_EQ(searchInRegion(image, given, first), VIZLE_OK);
  EXPECT_TRUE(first.Inside(300, 240));
  EXPECT_TRUE(std::none_of(std::begin(first.confidences), std::end(first.confidences),
                           [](float c) { return c == -77.0f || !std::isfinite(c); }));
  ASSERT_EQ(searchInRegion(image, given, second), VIZLE_OK);
  EXPECT_TRUE(first == second);
  EXPECT_TRUE(PictureOf(image, 3) == picture);
  EXPECT_TRUE(given.xc == face.xc && given.yc == face.yc && given.w == face.w && given.Reserved == 4711 &&
              given.angle == face.angle);

  // The other forms are the same search.
  TFound plain, withContext;
  ASSERT_EQ(VIZL_DetectFacialFeaturesInRegion(image, &face, &plain.points), VIZLE_OK);
  ASSERT_EQ(VIZL_DetectFacialFeaturesInRegionEx_C(image, &face, &withContext.points, nullptr, 4711), VIZLE_OK);
  EXPECT_TRUE(std::equal(std::begin(plain.points), std::end(plain.points), first.points));
  EXPECT_TRUE(std::equal(std::begin(withContext.points), std::end(withContext.points), first.points));
}

TEST_F(Features, OfTheStrongestFaceAreThoseOfItsRegion) {
  const HImage image = ImageOf(DiscPicture(640, 480, 300, 200, 60));
  TFacePosition face;
  ASSERT_EQ(VIZL_DetectFace(image, &face), VIZLE_OK);
  TFound found, inRegion;
  ASSERT_EQ(VIZL_DetectFacialFeaturesEx(image, &found.points, &found.confidences), VIZLE_OK);
  ASSERT_EQ(searchInRegion(image, face, inRegion), VIZLE_OK);
  EXPECT_TRUE(found == inRegion);
  EXPECT_NEAR(found.points[2].x, 300, 60);
  EXPECT_NEAR(found.points[2].y, 200, 60);
}

TEST_F(Features, WithoutAFaceArePointsOfZeros) {
  const HImage image = ImageOf(PlainPicture(90, 90, 3, 0));
  TFound found;
  EXPECT_EQ(VIZL_DetectFacialFeaturesEx(image, &found.points, &found.confidences), VIZLE_NO_FACE);
  for (const TPoint& point : found.points) EXPECT_EQ(point, (TPoint{0, 0}));
  for (float confidence : found.confidences) EXPECT_EQ(confidence, -77.0f);

  ContextID context;
  ASSERT_EQ(VIZL_CreateContext_ID(&context), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold_C(1000000, context), VIZLE_OK);
  const HImage disc = ImageOf(DiscPicture(640, 480, 300, 200, 60));
  EXPECT_EQ(VIZL_DetectFacialFeatures_C(disc, &found.points, context), VIZLE_NO_FACE) << "the context's threshold";
  EXPECT_EQ(VIZL_FreeContext_ID(context), VIZLE_OK);
}

TEST_F(Features, OfASmallImageAreSearchedInARegionOnly) {
  const HImage image = ImageOf(RandomPicture(19, 100, 1));
  TFound found;
  EXPECT_EQ(VIZL_DetectFacialFeaturesEx(image, &found.points, &found.confidences), VIZLE_IMAGE_TOO_SMALL);
  EXPECT_TRUE(found.Untouched());
  EXPECT_EQ(searchInRegion(image, {9, 50, 30, 0, 0}, found), VIZLE_OK);
  EXPECT_TRUE(found.Inside(19, 100));
}

TEST_F(Features, StayInsideTheImageWhereverTheRegionIs) {
  const HImage image = ImageOf(RandomPicture(120, 90, 3));
  const TFacePosition faces[] = {{0, 0, 80, 0, 10},     {119, 89, 80, 0, -10}, {60, 45, 0, 0, 0},
                                 {60, 45, 900, 0, 180}, {-300, 500, 40, 0, 0}, {60, 45, 1, 0, 0}};
  for (const TFacePosition& face : faces) {
    TFound found;
    EXPECT_EQ(searchInRegion(image, face, found), VIZLE_OK) << face.xc << ", " << face.w;
    EXPECT_TRUE(found.Inside(120, 90)) << face.xc << ", " << face.w;
  }
}

TEST_F(Features, BadRegionsAreRefused) {
  const HImage image = ImageOf(RandomPicture(120, 90, 3));
  for (const TFacePosition& face : {TFacePosition{60, 45, -1, 0, 0}, TFacePosition{60, 45, 40, 0, kNaN}}) {
    TFound found;
    EXPECT_EQ(searchInRegion(image, face, found), VIZLE_INVALID_ARGUMENT) << face.w;
    EXPECT_TRUE(found.Untouched());
  }
}

TEST_F(Features, AnInterruptEndsTheSearchEarlyWithPointsInTheImage) {
  const HImage image = ImageOf(RandomPicture(120, 90, 3));
  const TFacePosition face = {60, 45, 50, 0, 0};
  TFound whole, cutShort, again;
  ASSERT_EQ(searchInRegion(image, face, whole), VIZLE_OK);
  NeedInterrupt = 1;
  ASSERT_EQ(searchInRegion(image, face, cutShort), VIZLE_OK);
  EXPECT_EQ(NeedInterrupt, 1) << "only the application clears it";
  EXPECT_TRUE(cutShort.Inside(120, 90));
  for (float confidence : cutShort.confidences) EXPECT_EQ(confidence, 0) << "no node was refined";
  NeedInterrupt = 0;
  ASSERT_EQ(searchInRegion(image, face, again), VIZLE_OK);
  EXPECT_TRUE(whole == again);
}

}  // namespace
