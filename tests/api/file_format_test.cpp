#include "api/file_format.h"

#include <gtest/gtest.h>

namespace {

TEST(FileFormat, IsToldByTheLastLettersInAnyCase) {
  for (const char* name : {"a.bmp", "A.BMP", "bmp", "xbMp"}) EXPECT_EQ(FileFormatOf(name), TFileFormat::bmp) << name;
  for (const char* name : {"a.jpg", "a.JPG", "a.jpe", "a.jpeg", "a.JFIF", "photojpg", "jpe", "a.png.jfif"}) {
    EXPECT_EQ(FileFormatOf(name), TFileFormat::jpeg) << name;
  }
  for (const char* name : {"a.png", "a.PnG", "png", "\xC4\xD6png"}) {
    EXPECT_EQ(FileFormatOf(name), TFileFormat::png) << name;
  }
}

TEST(FileFormat, IsUnknownForAllOtherNames) {
  for (const char* name :
       {"", "g", "ng", "peg", "a.png ", "a.jp", "a.tif", "a.bmp/x", "jfi", "\xFF\xFE\xFD", "a.pn\xE7"}) {
    EXPECT_EQ(FileFormatOf(name), TFileFormat::unknown) << name;
  }
}

}  // namespace
