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
int WidthOf(HImage image);
int HeightOf(HImage image);
bool IsValid(HImage image);

// Puts a small cascade for bright discs in the place of the library's own, until VIZL_Finalize. With it tests of
// what follows a detection know what is found, whatever the trained cascade is like.
void UseDiscDetector();

// A path in a folder that ends with the process, where nothing is yet.
std::string TemporaryPath(const std::string& name);
