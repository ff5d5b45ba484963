// What the tests of the exported functions share.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "api/pc_api.h"
#include "api/vizl_api.h"
#include "tests/files/files.h"

// A library that is ready, with the default settings; none of either is left behind.
class LibraryTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

// With the detector of UseDiscDetector and one upright scan of a small picture, where it matters what is found and not
// how.
class DiscTest : public LibraryTest {
 protected:
  void SetUp() override;
};

// Raw pixels, top row first and without padding.
struct TPicture {
  int width;
  int height;
  int channels;
  std::vector<unsigned char> pixels;

  VIZL_IMAGEMODE mode() const { return channels == 1 ? 0 : channels == 3 ? 1 : 2; }
  const unsigned char* at(int x, int y) const {
    return pixels.data() +
           (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) *
               static_cast<std::size_t>(channels);
  }
};

bool operator==(const TPicture& a, const TPicture& b);

TPicture RandomPicture(int width, int height, int channels, unsigned seed = 1);
TPicture PlainPicture(int width, int height, int channels, unsigned char value);
// A bright disc on a black ground, which the detector of UseDiscDetector takes for a face. Black, as the scan puts
// black around a picture: on any other ground the whole picture would be a disc of its own.
TPicture DiscPicture(int width, int height, int xCentre, int yCentre, int diameter);

HImage EmptyImage();
HImage ImageOf(const TPicture& picture);
// What VIZL_SaveImageToBuffer gives for this many channels.
TPicture PictureOf(HImage image, int channels);
// What VIZL_GetImageData tells.
struct TView {
  unsigned char* data = nullptr;
  int width = -1, height = -1, scanLine = -1;
  VIZL_IMAGEMODE mode = -1;
};
TView ViewOf(HImage image);
int WidthOf(HImage image);
int HeightOf(HImage image);
bool IsValid(HImage image);

// Puts a small cascade for bright discs in the place of the library's own, until VIZL_Finalize. With it tests of
// what follows a detection know what is found, whatever the trained cascade is like.
void UseDiscDetector();

// A path in a folder that ends with the process, where nothing is yet.
std::string TemporaryPath(const std::string& name);
// The path of a file there of this picture, in the format that the name tells.
std::string SavedPicture(const TPicture& picture, const std::string& name);
