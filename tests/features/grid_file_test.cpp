#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "features/TGrid.h"

namespace {

class GridFile : public testing::Test {
 protected:
  void SetUp() override { path = testing::TempDir() + "portraitcut_grid_" + std::to_string(getpid()) + ".txt"; }
  void TearDown() override { std::remove(path.c_str()); }

  // The result of loading a file of this content into `grid`.
  int load(const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
    return grid.LoadFromFileInt(path.c_str(), width, height);
  }

  std::string path;
  TGrid grid;
  int width = -7, height = -7;
};

TEST_F(GridFile, HasLinesOfTextInOrder) {
  grid.AddNode({1.5f, -2});
  grid.AddNode({97, 0.0000005f});
  ASSERT_EQ(grid.SaveToFileInt(path.c_str(), 256, -1), 0);
  std::ifstream file(path);
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(content, "2\n1.500000 -2.000000\n97.000000 0.000000\nSize\n256 -1\n");
}

TEST_F(GridFile, ComesBackToSixDecimals) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> place(-500, 500);
  for (int n = 0; n < 200; ++n) grid.AddNode({place(random), place(random)});
  ASSERT_EQ(grid.SaveToFileInt(path.c_str(), 640, 480), 0);
  TGrid loaded;
  loaded.AddNode({1, 1});
  ASSERT_EQ(loaded.LoadFromFileInt(path.c_str(), width, height), 0);
  ASSERT_EQ(loaded.NodeCount(), 200);
  for (std::size_t n = 0; n < 200; ++n) {
    EXPECT_NEAR(loaded.Nodes[n].x, grid.Nodes[n].x, 1e-6);
    EXPECT_NEAR(loaded.Nodes[n].y, grid.Nodes[n].y, 1e-6);
  }
  EXPECT_EQ(width, 640);
  EXPECT_EQ(height, 480);
}

TEST_F(GridFile, TheSizeWordHasAnyCaseAndMayBeMissing) {
  for (const char* word : {"Size", "SIZE", "size", "\t siZE"}) {
    width = height = -7;
    EXPECT_EQ(load(std::string("1\n3 4\n") + word + "\n30 40\n"), 0);
    EXPECT_EQ(width, 30) << word;
    EXPECT_EQ(height, 40) << word;
  }
  for (const char* rest : {"", "\n", "Sizes 30 40", "Siz", "30 40", "Size", "Size x"}) {
    width = height = -7;
    EXPECT_EQ(load(std::string("1\n3 4\n") + rest), 0);
    ASSERT_EQ(grid.NodeCount(), 1) << rest;
    EXPECT_EQ(grid.Nodes[0].y, 4) << rest;
    EXPECT_EQ(width, -7) << rest;
  }
  EXPECT_EQ(load("0\n" + std::string(5000, 's') + " Size 3 4"), 0) << "longer than any word that counts";
  EXPECT_EQ(width, -7);
}

TEST_F(GridFile, OneThatEndsEarlyStillGivesAsManyNodes) {
  EXPECT_EQ(load("1000\n1 2\n3"), 0);
  ASSERT_EQ(grid.NodeCount(), 1000);
  EXPECT_EQ(grid.Nodes[0].y, 2);
  EXPECT_EQ(grid.Nodes[999].x, 0);
  EXPECT_EQ(load("3\n1 2\nwords instead\n"), 0);
  EXPECT_EQ(grid.NodeCount(), 3);
  for (const char* none : {"", "x", "-5\n1 2\n", "0"}) {
    EXPECT_EQ(load(none), 0) << none;
    EXPECT_EQ(grid.NodeCount(), 0) << none;
  }
}

TEST_F(GridFile, ACountThatNoGridHasIsRefused) {
  grid.AddNode({5, 6});
  for (const char* count : {"1000001", "2147483647", "4294967297", "99999999999999999999999"}) {
    EXPECT_EQ(load(std::string(count) + "\n1 2\nSize\n3 4\n"), -1) << count;
    ASSERT_EQ(grid.NodeCount(), 1) << count;
    EXPECT_EQ(grid.Nodes[0].x, 5);
    EXPECT_EQ(width, -7);
  }
  EXPECT_EQ(load("1000000\n1 2\n"), 0);
  EXPECT_EQ(grid.NodeCount(), 1000000);
}

TEST_F(GridFile, OneThatCantBeOpenedLeavesTheGrid) {
  grid.AddNode({5, 6});
  const std::string nowhere = path + "/none/grid.txt";
  EXPECT_EQ(grid.LoadFromFileInt(nowhere.c_str(), width, height), -1);
  EXPECT_EQ(grid.SaveToFileInt(nowhere.c_str(), 1, 1), -1);
  EXPECT_EQ(grid.NodeCount(), 1);
  EXPECT_EQ(width, -7);
  if (access("/dev/full", W_OK) == 0) {
    EXPECT_EQ(grid.SaveToFileInt("/dev/full", 1, 1), -1) << "nothing was written";
  }
}

}  // namespace
