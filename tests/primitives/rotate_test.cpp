#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "primitives/ippi.h"
#include "tests/primitives/guarded_picture.h"
#include "tests/primitives/resample_reference.h"

namespace {

using Rotate = IppStatus (*)(const Ipp8u*, IppiSize, int, IppiRect, Ipp8u*, int, IppiRect, double, double, double,
                             unsigned);

Rotate rotateOf(int channels) {
  return channels == 1 ? ippiRotateCenter_8u_C1R : channels == 3 ? ippiRotateCenter_8u_C3R : ippiRotateCenter_8u_C4R;
}

constexpr unsigned kSmooth = IPPI_INTER_LINEAR | IPPI_SMOOTH_EDGE;
constexpr Layout kTight{0, Against::pageAfter, false};

IppStatus turn(const GuardedPicture& source, const GuardedPicture& out, int channels, double angle, double xCenter,
               double yCenter, unsigned interpolation = kSmooth) {
  return rotateOf(channels)(source.pixels(), source.size(), source.step(),
                            {0, 0, source.size().width, source.size().height}, out.pixels(), out.step(),
                            {0, 0, out.size().width, out.size().height}, angle, xCenter, yCenter, interpolation);
}

// How many samples are not the nearest to the exact ones; none may be farther off than 0.55.
long countDifferent(const GuardedPicture& source, const GuardedPicture& out, const GuardedPicture& old, int channels,
                    double angle, double xc, double yc) {
  const double radians = angle * std::numbers::pi / 180.0, c = std::cos(radians), s = std::sin(radians);
  long different = 0;
  for (int y = 0; y < out.size().height; ++y) {
    for (int x = 0; x < out.size().width; ++x) {
      const double u = xc + (x - xc) * c - (y - yc) * s, v = yc + (x - xc) * s + (y - yc) * c;
      for (int k = 0; k < channels; ++k) {
        const auto pixel = [&](int px, int py) -> double { return source.at(px, py, k); };
        const double expected =
            referenceBilinear(pixel, source.size().width, source.size().height, u, v, old.at(x, y, k));
        EXPECT_NEAR(out.at(x, y, k), expected, 0.55) << angle << " at " << x << " " << y;
        different += out.at(x, y, k) != std::floor(expected + 0.5);
      }
    }
  }
  return different;
}

class RotateChannels : public testing::TestWithParam<int> {
 protected:
  std::mt19937 random_{99};
};

TEST_P(RotateChannels, BilinearWithTheOldContentAround) {
  const int channels = GetParam();
  long samples = 0, different = 0;
  for (int round = 0; round < 120; ++round) {
    const auto side = [&] { return 1 + static_cast<int>(random_() % 90); };
    const Layout layout{static_cast<int>(random_() % 5), round % 2 != 0 ? Against::pageAfter : Against::pageBefore,
                        random_() % 2 != 0};
    const GuardedPicture source({side(), side()}, channels, layout, random_);
    const GuardedPicture out({side(), side()}, channels, layout, random_);
    GuardedPicture old(out.size(), channels, layout, random_);
    old.setBytes(out.bytes());
    const double angle = std::uniform_real_distribution<double>(-720.0, 720.0)(random_);
    const double xc = std::uniform_real_distribution<double>(-10.0, 90.0)(random_), yc = source.size().height / 2.0;
    ASSERT_EQ(ippStsNoErr, turn(source, out, channels, angle, xc, yc));

    different += countDifferent(source, out, old, channels, angle, xc, yc);
    samples += long{out.size().width} * out.size().height * channels;
  }
  EXPECT_LT(different, samples / 100);
}

// Turning by quarters about the middle of a square has no interpolation error: rows become columns.
TEST_P(RotateChannels, QuartersOfASquareAreExact) {
  const int channels = GetParam();
  constexpr int kSide = 77;
  const GuardedPicture source({kSide, kSide}, channels, kTight, random_);
  const double middle = (kSide - 1) / 2.0;
  for (const double angle : {0.0, 90.0, 180.0, 270.0, 360.0, -90.0, 450.0, -360.0, 720.0}) {
    const GuardedPicture out({kSide, kSide}, channels, kTight, random_);
    ASSERT_EQ(ippStsNoErr, turn(source, out, channels, angle, middle, middle));
    const int quarters = ((static_cast<int>(angle) / 90) % 4 + 4) % 4;
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x) {
        // Where the source pixel (x, y) must be: counter-clockwise with rows growing downward.
        int tx = x, ty = y;
        for (int q = 0; q < quarters; ++q) {
          const int previous = tx;
          tx = ty;
          ty = kSide - 1 - previous;
        }
        for (int k = 0; k < channels; ++k) ASSERT_EQ(out.at(tx, ty, k), source.at(x, y, k)) << angle;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Channels, RotateChannels, testing::Values(1, 3, 4),
                         [](const auto& instance) { return std::string("C").append(std::to_string(instance.param)); });

// A half turn about 0.25 maps destination 0 to 0.5 and destination 1 to -0.5.
TEST(RotateEdge, BlendsHalfwayWithTheOldContent) {
  const Ipp8u source[3] = {100, 200, 50};
  const auto run = [&](unsigned interpolation) {
    std::vector<Ipp8u> out{7, 20, 9};
    ippiRotateCenter_8u_C1R(source, {3, 1}, 3, {0, 0, 3, 1}, out.data(), 3, {0, 0, 3, 1}, 180.0, 0.25, 0.0,
                            interpolation);
    return out;
  };
  EXPECT_EQ(run(kSmooth), (std::vector<Ipp8u>{150, 60, 9}));
  EXPECT_EQ(run(IPPI_INTER_LINEAR), (std::vector<Ipp8u>{150, 20, 9}));
}

TEST(RotateRegion, PlacesCountInTheBuffers) {
  std::mt19937 random(3);
  const GuardedPicture source({30, 30}, 1, kTight, random);
  const GuardedPicture out({30, 30}, 1, kTight, random);
  const std::vector<Ipp8u> old = out.bytes();
  // Only source columns 5 to 14 and rows 8 to 20, only destination columns 10 and on.
  ASSERT_EQ(ippStsNoErr, ippiRotateCenter_8u_C1R(source.pixels(), {30, 30}, 30, {5, 8, 10, 13}, out.pixels(), 30,
                                                 {10, 0, 20, 30}, 90.0, 15.0, 15.0, kSmooth));
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 30; ++x) {
      // The destination pixel of a quarter turn about (15, 15) looks at (30 - y, x).
      const int u = 30 - y, v = x;
      const bool seen = x >= 10 && u >= 5 && u < 15 && v >= 8 && v < 21;
      ASSERT_EQ(out.at(x, y, 0), seen ? source.at(u, v, 0) : old[static_cast<std::size_t>(y * 30 + x)])
          << x << " " << y;
    }
  }
}

// Long rows: positions must not drift, and tiles must meet.
TEST(RotateAccuracy, LongestRowsStayExact) {
  constexpr int kWidth = 65535;
  std::mt19937 random(5);
  const GuardedPicture source({kWidth, 3}, 1, kTight, random);
  const GuardedPicture out({kWidth, 3}, 1, kTight, random);
  GuardedPicture old({kWidth, 3}, 1, kTight, random);
  old.setBytes(out.bytes());
  constexpr double kAngle = 0.001;
  ASSERT_EQ(ippStsNoErr, turn(source, out, 1, kAngle, 100.0, 1.0));
  EXPECT_LT(countDifferent(source, out, old, 1, kAngle, 100.0, 1.0), 3 * kWidth / 100);
}

struct RefusedTurn {
  const char* name;
  double angle;
  double xCenter;
  double yCenter;
  IppStatus expected;
};

class RotateRefusal : public testing::TestWithParam<RefusedTurn> {};

// Numbers far out are no error, but nothing of the source arrives.
TEST_P(RotateRefusal, NothingIsWritten) {
  const RefusedTurn& c = GetParam();
  std::mt19937 random(1);
  const GuardedPicture source({20, 20}, 3, kTight, random), out({20, 20}, 3, kTight, random);
  const std::vector<Ipp8u> old = out.bytes();
  EXPECT_EQ(c.expected, turn(source, out, 3, c.angle, c.xCenter, c.yCenter));
  EXPECT_EQ(out.bytes(), old);
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kMax = std::numeric_limits<double>::max();

INSTANTIATE_TEST_SUITE_P(Numbers, RotateRefusal,
                         testing::Values(RefusedTurn{"AngleNan", kNan, 10, 10, ippStsBadArgErr},
                                         RefusedTurn{"AngleInfinite", -kInfinity, 10, 10, ippStsBadArgErr},
                                         RefusedTurn{"CentreNan", 5, kNan, 10, ippStsBadArgErr},
                                         RefusedTurn{"CentreInfinite", 5, 10, kInfinity, ippStsBadArgErr},
                                         RefusedTurn{"CentreFar", 45, 1e6, -1e6, ippStsNoErr},
                                         RefusedTurn{"CentreVeryFar", 180, 1e300, 1e300, ippStsNoErr},
                                         RefusedTurn{"CentreLargest", 135, kMax, -kMax, ippStsNoErr}),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(RotateStatus, SizesAndPointers) {
  Ipp8u a[16] = {}, b[16] = {};
  const IppiSize four{4, 4};
  const IppiRect whole{0, 0, 4, 4};
  const auto run = [&](const Ipp8u* src, IppiSize size, IppiRect from, Ipp8u* dst, IppiRect to) {
    return ippiRotateCenter_8u_C1R(src, size, 4, from, dst, 4, to, 10.0, 2.0, 2.0, kSmooth);
  };
  EXPECT_EQ(ippStsNullPtrErr, run(nullptr, four, whole, b, whole));
  EXPECT_EQ(ippStsNullPtrErr, run(a, four, whole, nullptr, whole));
  EXPECT_EQ(ippStsSizeErr, run(a, {0, 4}, whole, b, whole));
  EXPECT_EQ(ippStsSizeErr, run(a, four, {0, 0, 4, 0}, b, whole));
  EXPECT_EQ(ippStsSizeErr, run(a, four, {4, 0, 4, 4}, b, whole));
  EXPECT_EQ(ippStsSizeErr, run(a, four, whole, b, {0, 0, -1, 4}));
  EXPECT_EQ(ippStsSizeErr, run(a, four, whole, b, {-1, 0, 4, 4}));
  EXPECT_EQ(ippStsSizeErr, run(a, {70000, 1}, {0, 0, 70000, 1}, b, whole));
  // An angle that is finite but far beyond whole turns that a double can tell apart.
  EXPECT_EQ(ippStsNoErr, ippiRotateCenter_8u_C1R(a, four, 4, whole, b, 4, whole, 1e300, 2.0, 2.0, kSmooth));
}

}  // namespace
