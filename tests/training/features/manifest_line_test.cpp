#include "training/features/manifest_line.h"

#include <gtest/gtest.h>

namespace {

std::vector<unsigned char> bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

// The examples of FIPS 180-4; the second takes two blocks.
TEST(Sha256, GivesTheKnownAnswers) {
  EXPECT_EQ(sha256(bytesOf("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(sha256(bytesOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq")),
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  EXPECT_EQ(sha256({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(ManifestLine, NamesNoFolderOfThisMachine) {
  const char* const arguments[] = {"/a/b/train_features", "--data", "/secret/data", "--output",
                                   "/x/neuro_dat.bin",    "--rate", "0.001"};
  const std::string command = commandOf(7, arguments);
  EXPECT_EQ(command, "train_features --data DATA --output neuro_dat.bin --rate 0.001");
  EXPECT_EQ(manifestLine("m.bin", bytesOf("abc"), command),
            "m.bin 3 ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad " + command);
}

}  // namespace
