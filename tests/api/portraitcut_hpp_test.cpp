// The C++ header: what it owns ends exactly once, whatever fails or moves. Handles and contexts are given out lowest
// number first, so their numbers tell what is still there.
#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "api/portraitcut.hpp"
#include "library_fixture.h"

namespace {

using portraitcut::Context;
using portraitcut::Error;
using portraitcut::Image;
using portraitcut::Layout;
using portraitcut::Library;

int liveHandles() {
  int count = 0;
  for (HImage handle = 0; handle < 64; ++handle) count += IsValid(handle);
  return count;
}

bool isReady() { return VIZL_resData("MW") != nullptr; }

Image imageOf(const TPicture& p) {
  return Image::fromPixels(p.pixels, {p.width, p.height}, static_cast<Layout>(p.mode()));
}

TEST(PortraitcutHppLibrary, TheLastOneEndsItUnlessCodeInCStartedIt) {
  ASSERT_FALSE(isReady());
  {
    const Library outer;
    { const Library inner; }
    EXPECT_TRUE(isReady());
  }
  EXPECT_FALSE(isReady());
  ASSERT_EQ(VIZL_Initialize(nullptr), VIZLE_OK);
  const HImage kept = EmptyImage();
  { const Library library; }
  EXPECT_TRUE(IsValid(kept));
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
  EXPECT_THROW(Image(), Error);
}

class PortraitcutHpp : public LibraryTest {};

TEST_F(PortraitcutHpp, FailuresTellTheirCodeAndLeaveNoHandle) {
  const std::string noPicture = TemporaryPath("no_picture.png");
  const std::string otherName = TemporaryPath("picture.tiff");
  writeFile(noPicture, {1, 2, 3});
  writeFile(otherName, {1, 2, 3});
  const std::vector<unsigned char> damaged(100, 7);
  const Image plain = imageOf(PlainPicture(60, 60, 3, 90));
  const Image small = imageOf(PlainPicture(10, 10, 3, 90));
  const std::pair<int32_t, std::function<void()>> failures[] = {
      {VIZLE_CANNOT_OPEN_FILE, [] { Image::load("no/such/file.png"); }},
      {VIZLE_UNKNOWN_EXTENSION, [&] { Image::load(otherName); }},
      {VIZLE_BAD_IMAGE_FILE, [&] { Image::load(noPicture); }},
      {VIZLE_BAD_IMAGE_FILE, [&] { Image::load(noPicture, portraitcut::Alpha::keep); }},
      {VIZLE_INVALID_ARGUMENT, [&] { Image::load(noPicture + std::string("\0.jpg", 5)); }},
      {VIZLE_IMAGE_IO_FAILED, [&] { Image::decodeJpeg(damaged); }},
      {VIZLE_IMAGE_IO_FAILED, [&] { Image::decodePng(damaged); }},
      {VIZLE_INVALID_ARGUMENT, [&] { Image::decodePng({}); }},
      {VIZLE_INVALID_ARGUMENT,
       [&] {
         Image::fromPixels(damaged, {70000, 1}, Layout::gray, 1);
       }},
      {VIZLE_INVALID_ARGUMENT, [&] { plain.resized(NAN); }},
      {VIZLE_INVALID_ARGUMENT,
       [&] {
         plain.cropped({0, 0, 100000, 1});
       }},
      {VIZLE_INVALID_ARGUMENT, [&] { plain.placedOn(plain, 0, 0); }},
      {VIZLE_INVALID_ARGUMENT, [&] { plain.extractFace(portraitcut::Features{}, 100); }},
      {VIZLE_NO_FACE,
       [&] {
         plain.portrait({30, 40});
       }},
      {VIZLE_IMAGE_TOO_SMALL, [&] { small.faces(); }},
      {VIZLE_CANNOT_CREATE_FILE, [&] { plain.save("no/such/folder.png"); }},
      {VIZLE_BUFFER_TOO_SMALL, [&] { plain.faces(std::span<portraitcut::Face>()); }},
  };
  for (std::size_t k = 0; k < std::size(failures); ++k) {
    SCOPED_TRACE(k);
    try {
      failures[k].second();
      ADD_FAILURE() << "nothing thrown";
    } catch (const Error& error) {
      EXPECT_EQ(error.code(), failures[k].first);
      EXPECT_NE(std::string(error.what()).find(portraitcut::describe(error.code())), std::string::npos);
    }
    EXPECT_EQ(liveHandles(), 2);
  }
}

TEST_F(PortraitcutHpp, MovesKeepOneOwner) {
  {
    Image first, second;
    const HImage handle = first.handle();
    second = std::move(first);
    EXPECT_EQ(second.handle(), handle);
    EXPECT_EQ(liveHandles(), 1);
    Image& self = second;
    second = std::move(self);
    EXPECT_EQ(second.handle(), handle);
    std::vector<Image> many;
    many.push_back(std::move(second));
    for (int k = 0; k < 20; ++k) many.emplace_back();
    EXPECT_EQ(liveHandles(), 21);
    many.erase(many.begin() + 3, many.end());
    EXPECT_EQ(liveHandles(), 3);
    first = Image::adopt(many[0].release());
    EXPECT_EQ(first.handle(), handle);
    EXPECT_EQ(liveHandles(), 3);
  }
  EXPECT_EQ(liveHandles(), 0);
}

TEST_F(PortraitcutHpp, ContextsEndOnceAndTheSharedOneNever) {
  const auto next = [] { return Context().id(); };
  const ContextID lowest = next();
  {
    Context a;
    a.setPerformance(PcPerformanceFast).setThreshold(2).setJpegQuality(50);
    EXPECT_THROW(a.setThreshold(0), Error);
    Context b = std::move(a);
    EXPECT_THROW(a.setThreshold(1), Error);  // NOLINT(bugprone-use-after-move): it must not reach other settings
    b = Context();
    EXPECT_EQ(b.id(), lowest + 1);
  }
  { Context::shared().setThreshold(3); }
  EXPECT_EQ(next(), lowest);
}

TEST_F(PortraitcutHpp, PixelsGoInAndOutWithAnyStride) {
  const TPicture picture = RandomPicture(37, 21, 4);
  const std::vector<unsigned char>& pixels = picture.pixels;
  const Image image = Image::fromPixels(pixels, {37, 21}, Layout::rgba);
  EXPECT_EQ(image.copyPixels(Layout::rgba), pixels);
  const Image turnedOver = Image::fromPixels(pixels, {37, 21}, Layout::rgba, -37 * 4);
  for (int y = 0; y < 21; ++y) {
    const auto row = image.pixels().row(y), mirrored = turnedOver.pixels().row(20 - y);
    ASSERT_TRUE(std::equal(row.begin(), row.end(), picture.at(0, y), picture.at(0, y) + 37 * 4)) << y;
    ASSERT_TRUE(std::equal(row.begin(), row.end(), mirrored.begin(), mirrored.end())) << y;
  }
  // The last row needs no padding behind it.
  const std::span<const unsigned char> all(pixels);
  EXPECT_NO_THROW(Image::fromPixels(all.first(20 * 148 + 30 * 4), {30, 21}, Layout::rgba, 148));
  EXPECT_THROW(Image::fromPixels(all.first(20 * 148 + 30 * 4 - 1), {30, 21}, Layout::rgba, 148), Error);
  EXPECT_THROW(Image::fromPixels(all.first(20 * 148 + 30 * 4 - 1), {30, 21}, Layout::rgba, -148), Error);
  std::vector<unsigned char> shortOne(37 * 21 - 1);
  EXPECT_THROW(image.copyPixels(shortOne, Layout::gray), Error);
  EXPECT_TRUE(Image().copyPixels(Layout::rgb).empty());
  EXPECT_EQ(Image().pixels().top, nullptr);
}

TEST_F(PortraitcutHpp, AllFacesComeHoweverMany) {
  UseDiscDetector();
  TPicture picture = PlainPicture(720, 720, 3, 0);
  const TPicture disc = DiscPicture(36, 36, 18, 18, 14);
  for (int y = 0; y < 720; ++y) {
    for (int x = 0; x < 720 * 3; ++x) {
      picture.pixels[static_cast<std::size_t>(y) * 2160 + static_cast<std::size_t>(x)] =
          *(disc.at(0, y % 36) + x % 108);
    }
  }
  const Image image = imageOf(picture);
  Context context;
  context.setDetection(false, false, 1080).setThreshold(1);
  const std::vector<portraitcut::Face> found = image.faces(context);
  EXPECT_EQ(found.size(), 400U);
  std::vector<portraitcut::Face> room(7);
  EXPECT_EQ(image.faces(std::span(room), context).size(), 7U);
}

TEST_F(PortraitcutHpp, AnswersAreThoseOfTheCFunctions) {
  UseDiscDetector();
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(false, false, 200), VIZLE_OK);
  const TPicture picture = DiscPicture(900, 700, 450, 350, 60);
  const HImage handle = ImageOf(picture);
  const Image image = imageOf(picture);

  TPoint points[40];
  float confidences[40];
  ASSERT_EQ(VIZL_DetectFacialFeaturesEx(handle, &points, &confidences), VIZLE_OK);
  const auto features = image.features();
  ASSERT_TRUE(features.has_value());
  for (int k = 0; k < 40; ++k) {
    EXPECT_EQ(features->points[k].x, points[k].x);
    EXPECT_EQ(features->points[k].y, points[k].y);
    EXPECT_EQ(features->confidences[k], confidences[k]);
  }

  const HImage cut = EmptyImage();
  ASSERT_EQ(VIZL_PortraitCut(handle, 60, 80, 1.5, 0.1, -0.2, true, cut), VIZLE_OK);
  const portraitcut::Framing framing{.scale = 1.5, .shiftX = 0.1, .shiftY = -0.2, .byEyes = true};
  EXPECT_EQ(image.portrait({60, 80}, framing).copyPixels(Layout::rgb), PictureOf(cut, 3).pixels);

  const portraitcut::FaceImage face = image.extractFace(*features, 90);
  EXPECT_NEAR(face.image.width(), 90, 1);
  EXPECT_FALSE(imageOf(PlainPicture(60, 60, 3, 90)).face().has_value());
}

}  // namespace
