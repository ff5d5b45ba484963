#include "features/hex_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "features/TGrid.h"

namespace {

TEST(HexText, WritesAndReadsEveryByte) {
  for (int value = 0; value < 256; ++value) {
    char expected[3];
    std::snprintf(expected, sizeof(expected), "%02X", static_cast<unsigned>(value));
    const std::unique_ptr<char[]> text(byte2hex(static_cast<unsigned char>(value)));
    EXPECT_STREQ(text.get(), expected);
    EXPECT_EQ(static_cast<unsigned char>(hex2byte(text.get())), value);
  }
}

TEST(HexText, NumbersHaveSixteenBitsAndASign) {
  EXPECT_EQ(hex2int("0061"), 97);
  EXPECT_EQ(hex2int("FFE3"), -29);
  EXPECT_EQ(hex2int("7FFF"), 32767);
  EXPECT_EQ(hex2int("8000"), -32768);
  EXPECT_EQ(hex2int("00FF"), 255) << "the low byte has no sign of its own";
}

TEST(GridText, HoldsACountAndPairs) {
  TGrid grid;
  ASSERT_EQ(grid.LoadFromString("0002FFE3FFEE00610081and what follows"), 1);
  ASSERT_EQ(grid.NodeCount(), 2);
  EXPECT_EQ(grid.Nodes[0].x, -29);
  EXPECT_EQ(grid.Nodes[0].y, -18);
  EXPECT_EQ(grid.Nodes[1].x, 97);
  EXPECT_EQ(grid.Nodes[1].y, 129);
}

TEST(GridText, OnesThatEndEarlyAreRefused) {
  const std::string whole = "0002FFE3FFEE00610081";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    TGrid grid;
    grid.AddNode({5, 6});
    EXPECT_EQ(grid.LoadFromString(whole.substr(0, length).c_str()), -1) << length;
    EXPECT_EQ(grid.NodeCount(), length < 4 ? 1 : 0) << length;
  }
  for (const char* empty : {"0000", "FFFF", "8000"}) {
    TGrid grid;
    grid.AddNode({5, 6});
    EXPECT_EQ(grid.LoadFromString(empty), 1) << empty;
    EXPECT_EQ(grid.NodeCount(), 0) << empty;
  }
  EXPECT_EQ(TGrid().LoadFromString("7FFF"), -1);
  EXPECT_EQ(TGrid().LoadFromBinary(), -1);
}

}  // namespace
