#include "training/evaluation/raw_list.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace evaluation {
namespace {

class PictureList : public testing::Test {
 protected:
  std::vector<ListedPicture> read(const std::string& text) {
    std::ofstream(file_) << text;
    return readPictureList(file_);
  }
  ~PictureList() override { std::filesystem::remove(file_); }

  std::string file_ = testing::TempDir() + "picture_list_test.csv";
};

TEST_F(PictureList, GathersTheFacesOfAPicture) {
  const auto pictures = read("path,x,y,w\na.png,10,20,40\nempty.png\r\na.png,100,50.5,21\n/else/b.png,0,0,2\n");
  ASSERT_EQ(pictures.size(), 3u);
  EXPECT_EQ(pictures[0].file, (std::filesystem::path(file_).parent_path() / "a.png").string());
  ASSERT_EQ(pictures[0].faces.size(), 2u);
  EXPECT_EQ(pictures[0].faces[0].xc, 30);
  EXPECT_EQ(pictures[0].faces[0].yc, 40);
  EXPECT_EQ(pictures[0].faces[0].w, 40);
  EXPECT_EQ(pictures[0].faces[1].yc, 61);
  EXPECT_TRUE(pictures[1].faces.empty());
  EXPECT_EQ(pictures[2].file, "/else/b.png");
}

TEST_F(PictureList, RefusesBrokenRows) {
  for (const char* text : {"a.png,1,2\n", "a.png,1,2,3,4\n", "a.png,1,2,x\n", "a.png,1,2,3x\n", "a.png,1,2,0\n",
                           "a.png,1,2,nan\n", "a.png,1,,3\n"}) {
    EXPECT_THROW(read(text), std::runtime_error) << text;
  }
  std::filesystem::remove(file_);
  EXPECT_THROW(readPictureList(file_), std::runtime_error);
}

}  // namespace
}  // namespace evaluation
