#include "framing/portrait_frame.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <optional>
#include <ostream>
#include <random>

#include "api/vizl_api.h"

bool operator==(const TPortraitFrame& a, const TPortraitFrame& b) {
  return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2;
}
std::ostream& operator<<(std::ostream& out, const TPortraitFrame& f) {
  return out << "(" << f.x1 << ", " << f.y1 << ")-(" << f.x2 << ", " << f.y2 << ")";
}

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TFacePosition face(int xc, int yc, int w) { return {xc, yc, w, 0, 0.0}; }

std::optional<TPortraitFrame> calculate(const TFacePosition& position, int imageWidth, int imageHeight,
                                        const TPortraitWish& wish) {
  TPortraitFrame frame = {};
  if (!CalculatePortraitFrame(position, imageWidth, imageHeight, wish, frame)) return std::nullopt;
  return frame;
}

// One axis of the placing and fitting, kept as plain as can be: everything a double, in the order of the rules.
struct Axis {
  double half, centre;
  float room;
};

Axis axisOf(double half, int faceCentre, double shift, int side) {
  const double wanted = std::trunc(faceCentre + 2 * half * shift);
  const double low = std::fmin(0.83 * half, std::trunc(side / 2.0));
  const double high = std::fmin(side - 1 - 0.83 * half, wanted);
  const double centre = std::trunc(std::fmax(low, high));
  const double before = (centre + 0.9) / half;
  const double after = (side - centre - 0.1) / half;
  return {half, centre, static_cast<float>(std::fmin(before, after))};
}

TPortraitFrame plainFrame(const TFacePosition& position, int imageWidth, int imageHeight, const TPortraitWish& wish) {
  const double aspect = 1.0 * wish.width / wish.height;
  const double base = position.w * 0.6;
  double halfWidth = std::trunc(base), halfHeight = std::trunc(base);
  if (aspect < 1) {
    halfHeight = std::trunc(base * (1 / aspect));
  } else {
    halfWidth = std::trunc(static_cast<double>(static_cast<float>(aspect)) * base);
  }
  const Axis x = axisOf(halfWidth, position.xc, wish.shiftX, imageWidth);
  const Axis y = axisOf(halfHeight, position.yc, wish.shiftY, imageHeight);
  float factor = std::fmin(x.room, y.room);
  if (1 / wish.faceScale < static_cast<double>(factor)) factor = static_cast<float>(1 / wish.faceScale);
  const double xReach = std::trunc(static_cast<float>(x.half) * factor);
  const double yReach = std::trunc(static_cast<float>(y.half) * factor);
  return {static_cast<int>(x.centre - xReach), static_cast<int>(y.centre - yReach), static_cast<int>(x.centre + xReach),
          static_cast<int>(y.centre + yReach)};
}

struct KnownFrame {
  const char* what;
  TFacePosition face;
  int imageWidth, imageHeight;
  TPortraitWish wish;
  TPortraitFrame frame;
};

void PrintTo(const KnownFrame& known, std::ostream* out) { *out << known.what; }

class PortraitFrameKnown : public testing::TestWithParam<KnownFrame> {};

TEST_P(PortraitFrameKnown, IsAsWorkedOutByHand) {
  const KnownFrame& known = GetParam();
  const auto frame = calculate(known.face, known.imageWidth, known.imageHeight, known.wish);
  ASSERT_TRUE(frame.has_value()) << known.what;
  EXPECT_EQ(*frame, known.frame) << known.what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PortraitFrameKnown,
    testing::Values(
        KnownFrame{"tall: the height grows", face(500, 400, 100), 1000, 1000, {60, 80, 1, 0, 0}, {440, 320, 560, 480}},
        KnownFrame{
            "scale 0.5 stops at the edge", face(500, 400, 100), 1000, 481, {50, 50, 0.5, 0, 0}, {420, 320, 580, 480}},
        KnownFrame{
            "shift in full sides", face(500, 400, 100), 1000, 1000, {50, 50, 1, 0.25, -0.5}, {470, 280, 590, 400}},
        // 0.83 * 60 = 49.8: the centre is held at 49, and (49 + 0.9) / 60 leaves 49 pixels to each side.
        KnownFrame{"corner", face(3, 2, 100), 1000, 1000, {50, 50, 1, 0, 0}, {0, 0, 98, 98}},
        KnownFrame{"larger than the image", face(30, 90, 4000), 101, 101, {50, 50, 1, 0, 0}, {0, 0, 100, 100}},
        KnownFrame{"a face of one pixel has no half size", face(7, 9, 1), 30, 30, {50, 50, 1, 0, 0}, {7, 9, 7, 9}}));

TEST(PortraitFrame, AgreesWithThePlainRulesOnRandomFaces) {
  std::mt19937 random(20240117);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  const auto real = [&](double low, double high) { return std::uniform_real_distribution<double>(low, high)(random); };
  for (int i = 0; i < 200000; ++i) {
    const int imageWidth = pick(20, i % 2 ? 300 : 8000);
    const int imageHeight = pick(20, i % 2 ? 300 : 8000);
    const TFacePosition position = face(pick(-50, imageWidth + 50), pick(-50, imageHeight + 50), pick(2, imageWidth));
    const TPortraitWish wish = {pick(1, 900), pick(1, 900), std::exp(real(-3, 3)), real(-1, 1), real(-1, 1)};
    const auto frame = calculate(position, imageWidth, imageHeight, wish);
    ASSERT_TRUE(frame.has_value());
    ASSERT_EQ(*frame, plainFrame(position, imageWidth, imageHeight, wish))
        << "face " << position.xc << " " << position.yc << " " << position.w << " in " << imageWidth << " x "
        << imageHeight;
    ASSERT_TRUE(frame->x1 >= 0 && frame->y1 >= 0 && frame->x1 <= frame->x2 && frame->y1 <= frame->y2 &&
                frame->x2 < imageWidth && frame->y2 < imageHeight)
        << *frame;
  }
}

struct BadNumbers {
  const char* what;
  TFacePosition face;
  TPortraitWish wish;
};

void PrintTo(const BadNumbers& bad, std::ostream* out) { *out << bad.what; }

class PortraitFrameRefuses : public testing::TestWithParam<BadNumbers> {};

TEST_P(PortraitFrameRefuses, AndLeavesTheFrame) {
  TPortraitFrame frame = {1, 2, 3, 4};
  EXPECT_FALSE(CalculatePortraitFrame(GetParam().face, 640, 480, GetParam().wish, frame)) << GetParam().what;
  EXPECT_EQ(frame, (TPortraitFrame{1, 2, 3, 4}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PortraitFrameRefuses,
    testing::Values(BadNumbers{"shift that no int holds", face(9, 9, 50), {10, 10, 1, 1e9, 0}},
                    BadNumbers{"shift that no int holds, up", face(9, 9, 50), {10, 10, 1, 0, -1e9}},
                    BadNumbers{"shift that overflows a double", face(9, 9, 50), {10, 10, 1, DBL_MAX, 0}},
                    BadNumbers{"shift that is no number", face(9, 9, 50), {10, 10, 1, kNaN, 0}},
                    BadNumbers{"nothing times infinity", face(9, 9, 1), {10, 10, 1, kInfinity, 0}},
                    BadNumbers{"frame wider than an int", face(9, 9, 60000), {INT_MAX, 1, 1, 0, 0}},
                    BadNumbers{"frame higher than an int", face(9, 9, 60000), {1, INT_MAX, 1, 0, 0}},
                    BadNumbers{"infinite zoom of a frame without size", face(9, 9, 1), {10, 10, 5e-324, 0, 0}},
                    BadNumbers{"zoom beyond a float", face(9, 9, 1), {10, 10, 1e-200, 0, 0}}));

TEST(PortraitFrame, ZoomBeyondAFloatIsHarmlessWhereTheImageLimits) {
  EXPECT_EQ(calculate(face(50, 50, 40), 101, 101, {10, 10, 5e-324, 0, 0}), (TPortraitFrame{0, 0, 100, 100}));
}

TEST(PortraitFrame, AnImageOverwrittenByAnEmptyOneGivesOnePixel) {
  EXPECT_EQ(calculate(face(50, 50, 40), 0, 0, {10, 10, 1, 0, 0}), (TPortraitFrame{0, 0, 0, 0}));
}

TEST(PortraitWish, KnowsWhatCanBeCut) {
  EXPECT_TRUE((TPortraitWish{1, 1, DBL_MIN, 0, 0}.valid()));
  for (const TPortraitWish& bad :
       {TPortraitWish{0, 1, 1, 0, 0}, TPortraitWish{1, -1, 1, 0, 0}, TPortraitWish{1, 1, 0, 0, 0},
        TPortraitWish{1, 1, -1, 0, 0}, TPortraitWish{1, 1, kNaN, 0, 0}, TPortraitWish{1, 1, kInfinity, 0, 0},
        TPortraitWish{1, 1, 1, kNaN, 0}, TPortraitWish{1, 1, 1, 0, -kInfinity}}) {
    EXPECT_FALSE(bad.valid());
  }
}

TEST(LargestFace, IsTheFirstOfEquals) {
  const TFacePosition faces[] = {face(1, 0, 20), face(2, 0, 31), face(3, 0, 30), face(4, 0, 31)};
  EXPECT_EQ(LargestFace(faces, 4).xc, 2);
  EXPECT_EQ(LargestFace(faces, 1).xc, 1);
}

TEST(FaceByEyes, LiesBetweenThemAndIsTruncated) {
  const auto byEyes = [](TPoint left, TPoint right) { return FaceByEyes({1, 2, 3, 4, 5.5}, left, right); };
  const TFacePosition level = byEyes({100, 50}, {151, 50});
  EXPECT_EQ(level.xc, 125);
  EXPECT_EQ(level.yc, 50);
  EXPECT_EQ(level.w, 122) << "of 122.4";
  EXPECT_EQ(level.angle, 5.5);
  EXPECT_EQ(byEyes({0, 0}, {3, -4}).w, 12);
  EXPECT_EQ(byEyes({0, 0}, {3, -5}).yc, -2) << "towards zero";
  EXPECT_EQ(byEyes({7, 7}, {7, 7}).w, 0);
  EXPECT_NEAR(byEyes({0, 0}, {65534, 65534}).w, 222429, 1) << "squares beyond an int";
}

}  // namespace
