#include <climits>
#include <functional>
#include <limits>
#include <ostream>

#include "library_fixture.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Operation {
  const char* name;
  int32_t (*run)(HImage source, HImage dest);
};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

// One of each, with arguments that change the picture.
const Operation kOperations[] = {
    {"copy", [](HImage s, HImage d) { return VIZL_CopyImage(s, d); }},
    {"reduce", [](HImage s, HImage d) { return VIZL_ResizeImage(s, 0.5, d); }},
    {"enlarge", [](HImage s, HImage d) { return VIZL_ResizeImage(s, 1.7, d); }},
    {"rotate", [](HImage s, HImage d) { return VIZL_RotateImage(s, 33, d); }},
    {"rotate about a point", [](HImage s, HImage d) { return VIZL_RotateImageCenter(s, -70, 3, 9, d); }},
    {"cut", [](HImage s, HImage d) { return VIZL_CopyRect(s, -4, 3, 60, 20, d); }}};

class Geometry : public LibraryTest, public testing::WithParamInterface<Operation> {};

INSTANTIATE_TEST_SUITE_P(Operations, Geometry, testing::ValuesIn(kOperations));

TEST_P(Geometry, WorksFromAHandleIntoItself) {
  for (int channels : {3, 4}) {
    const TPicture picture = RandomPicture(41, 23, channels);
    const HImage source = ImageOf(picture), same = ImageOf(picture), dest = EmptyImage();
    ASSERT_EQ(GetParam().run(source, dest), VIZLE_OK);
    ASSERT_EQ(GetParam().run(same, same), VIZLE_OK);
    EXPECT_TRUE(PictureOf(same, channels) == PictureOf(dest, channels));
    EXPECT_TRUE(PictureOf(source, channels) == picture) << "the source stays";
  }
}

TEST_P(Geometry, GivesTheDestinationTheLayoutOfTheSource) {
  const HImage source = ImageOf(RandomPicture(41, 23, 4)), dest = ImageOf(RandomPicture(3, 3, 3));
  ASSERT_EQ(GetParam().run(source, dest), VIZLE_OK);
  EXPECT_EQ(ViewOf(dest).mode, VIZL_IMAGE_COLOR32);
}

TEST_P(Geometry, TakesAnEmptySource) {
  const HImage source = EmptyImage(), dest = ImageOf(RandomPicture(3, 3, 3));
  EXPECT_EQ(GetParam().run(source, dest), VIZLE_OK);
  // Only a cut has a size of its own; it shows what lies beyond every picture.
  if (std::string(GetParam().name) == "cut") {
    EXPECT_TRUE(PictureOf(dest, 3) == PlainPicture(65, 18, 3, 0));
  } else {
    EXPECT_TRUE(WidthOf(dest) == 0 && HeightOf(dest) == 0);
  }
}

class GeometryCalls : public LibraryTest {
 protected:
  void expectRefused(const std::function<int32_t(HImage)>& call) {
    const HImage image = ImageOf(RandomPicture(9, 7, 3));
    EXPECT_EQ(call(image), VIZLE_INVALID_ARGUMENT);
    EXPECT_TRUE(PictureOf(image, 3) == RandomPicture(9, 7, 3)) << "the image stays as it was";
  }
};

TEST_F(GeometryCalls, RefuseNumbersThatAreNotFinite) {
  for (double bad : {kNaN, kInfinity, -kInfinity}) {
    expectRefused([=](HImage i) { return VIZL_ResizeImage(i, bad, i); });
    expectRefused([=](HImage i) { return VIZL_RotateImage(i, bad, i); });
    expectRefused([=](HImage i) { return VIZL_RotateImageCenter(i, bad, 1, 1, i); });
    expectRefused([=](HImage i) { return VIZL_RotateImageCenter(i, 1, bad, 1, i); });
    expectRefused([=](HImage i) { return VIZL_RotateImageCenter(i, 1, 1, bad, i); });
  }
}

TEST_F(GeometryCalls, RefuseResultsThatAreTooLarge) {
  for (double ratio : {1e4, 1e9, 1e300}) expectRefused([=](HImage i) { return VIZL_ResizeImage(i, ratio, i); });
  expectRefused([](HImage i) { return VIZL_CopyRect(i, 0, 0, 65535, 0, i); });
  expectRefused([](HImage i) { return VIZL_CopyRect(i, 0, 0, 60000, 60000, i); });
  expectRefused([](HImage i) { return VIZL_CopyRect(i, INT_MIN, INT_MIN, INT_MAX, INT_MAX, i); });
}

// One bright pixel shows the sense of the angle and the centre.
TEST_F(GeometryCalls, PositiveAnglesTurnClockwise) {
  TPicture picture = PlainPicture(21, 21, 3, 0);
  picture.pixels[(10 * 21 + 15) * 3] = 255;
  const HImage source = ImageOf(picture), dest = EmptyImage();
  ASSERT_EQ(VIZL_RotateImage(source, 90, dest), VIZLE_OK);
  EXPECT_GT(PictureOf(dest, 3).at(10, 15)[0], 250);
  ASSERT_EQ(VIZL_RotateImage(source, -90, dest), VIZLE_OK);
  EXPECT_GT(PictureOf(dest, 3).at(10, 5)[0], 250);
  ASSERT_EQ(VIZL_RotateImageCenter(source, 90, 15, 12, dest), VIZLE_OK);
  EXPECT_GT(PictureOf(dest, 3).at(17, 12)[0], 250) << "two above the point comes to lie two to its right";
}

TEST_F(GeometryCalls, RectanglesCountRowsFromTheTop) {
  const TPicture picture = RandomPicture(12, 10, 3);
  const HImage source = ImageOf(picture), dest = EmptyImage();
  ASSERT_EQ(VIZL_CopyRect(source, 3, 1, 6, 2, dest), VIZLE_OK);
  const TPicture cut = PictureOf(dest, 3);
  ASSERT_EQ(cut.width, 4);
  ASSERT_EQ(cut.height, 2);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(cut.at(i % 4, i / 4)[1], picture.at(3 + i % 4, 1 + i / 4)[1]);
}

}  // namespace
