#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>

#include "features/TNeuralNetwork.h"
#include "features/TNeuroLocator.h"
#include "features/TPatchImage.h"
#include "tests/features/reference_search.h"

namespace {

std::unique_ptr<TNeuralNetwork> load(const PlainNetwork& plain) {
  std::vector<unsigned char> stream;
  putRecordCount(stream, 1);
  putRecord(stream, plain, 0);
  auto network = std::make_unique<TNeuralNetwork>();
  const unsigned char* cursor = stream.data();
  EXPECT_EQ(network->LoadFromStream(&cursor, stream.data() + stream.size()), 0);
  return network;
}

class NetworkStream : public testing::Test {
 protected:
  int Load(const std::vector<unsigned char>& stream) {
    const unsigned char* cursor = stream.data();
    const int result = network_.LoadFromStream(&cursor, stream.data() + stream.size());
    read_ = cursor - stream.data();
    return result;
  }

  std::mt19937 random_{5};
  TNeuralNetwork network_;
  std::ptrdiff_t read_ = 0;
};

TEST_F(NetworkStream, LastRecordStandsAndTheCursorMovesBehindIt) {
  const PlainNetwork networks[] = {makeNetwork(random_), makeNetwork(random_), makeNetwork(random_)};
  std::vector<unsigned char> stream;
  putRecordCount(stream, 3);
  putRecord(stream, networks[0], 0);
  putRecord(stream, networks[1], 85);
  putRecord(stream, networks[2], 1);
  const auto end = static_cast<std::ptrdiff_t>(stream.size());
  stream.insert(stream.end(), 10, 0xEE);
  ASSERT_EQ(Load(stream), 0);
  EXPECT_EQ(read_, end);
  for (int h = 0; h < 3; ++h) {
    for (int i = 0; i < 1025; ++i) ASSERT_EQ(network_.Hidden[h].Weights[i], networks[2].hidden[h][i]);
  }
  for (int i = 0; i < 4; ++i) EXPECT_EQ(network_.OutputNeuron.Weights[i], networks[2].output[i]);
}

TEST_F(NetworkStream, RefusesEveryCut) {
  std::vector<unsigned char> stream;
  putRecordCount(stream, 2);
  putRecord(stream, makeNetwork(random_), 2);
  putRecord(stream, makeNetwork(random_), 0);
  for (std::size_t size = 0; size < stream.size(); size += size < 40 || size + 40 > stream.size() ? 1 : 97) {
    // A copy of its own, so that a sanitizer sees a read behind the end.
    EXPECT_EQ(Load({stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size)}), -1) << size;
    EXPECT_EQ(read_, 0);
  }
  EXPECT_EQ(Load(stream), 0);
}

TEST_F(NetworkStream, RefusesHostileCountsAndWeights) {
  const PlainNetwork good = makeNetwork(random_);
  const auto streamWith = [&](std::uint32_t records, std::uint32_t length, const PlainNetwork& network) {
    std::vector<unsigned char> stream;
    putRecordCount(stream, records);
    putRecord(stream, network, 0);
    for (int k = 0; k < 4; ++k) stream[static_cast<std::size_t>(4 + k)] ^= static_cast<unsigned char>(length >> 8 * k);
    return stream;
  };
  EXPECT_EQ(Load(streamWith(1, 0, good)), 0);
  EXPECT_EQ(Load(streamWith(0, 0, good)), -1) << "no record, no weights";
  for (const std::uint32_t count : {2U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(Load(streamWith(count, 0, good)), -1) << count;
  }
  for (const std::uint32_t length : {1U, 3083U, 0x3FFFFFFFU, 0x40000000U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(Load(streamWith(1, length, good)), -1) << length;
  }
  for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
    PlainNetwork network = good;
    network.hidden[2][1024] = bad;
    EXPECT_EQ(Load(streamWith(1, 0, network)), -1);
    network = good;
    network.output[3] = bad;
    EXPECT_EQ(Load(streamWith(1, 0, network)), -1);
  }
}

TEST_F(NetworkStream, LocatorTakesExactlyFortyNetworks) {
  SearchModel model = makeSearchModel(1);
  EXPECT_NO_THROW(TNeuroLocator(model.Data()));
  const std::vector<unsigned char> whole = model.stream;
  model.stream.insert(model.stream.end(), 4, 0);
  EXPECT_THROW(TNeuroLocator(model.Data()), std::invalid_argument);
  model.stream.assign(whole.begin(), whole.end() - 4);
  EXPECT_THROW(TNeuroLocator(model.Data()), std::invalid_argument);
  model.stream.clear();
  EXPECT_THROW(TNeuroLocator(model.Data()), std::invalid_argument);
}

// The one way reads the picture, with the ranges of all patches found at once; the other is that of training.
TEST(NetworkOnPatches, SameBitsFromNormalisedInputs) {
  std::mt19937 random(8);
  const auto network = load(makeNetwork(random));
  TIppiImage face;
  fillFace(face, 256, 256, 6);
  TPatchImage image;
  image.Assign(face);
  for (int round = 0; round < 50; ++round) {
    const int left = 1 + static_cast<int>(random() % 220), top = 1 + static_cast<int>(random() % 220);
    unsigned char patch[1024];
    for (int i = 0; i < 1024; ++i) patch[i] = facePixel(face, left + i % 32, top + i / 32);
    float inputs[1024];
    NormalisePatch(patch, FindPatchRange(patch), inputs);
    EXPECT_EQ(network->FastPropagate_I(inputs), network->PropagateImageI(image, left, top));
  }
}

TEST(NetworkOnPatches, FlatPatchesKeepTheirGray) {
  PlainNetwork sum{};
  for (int i = 1; i <= 1024; ++i) sum.hidden[1][i] = 1.0F / 1024.0F;
  sum.output[2] = 1.0F;
  const auto adder = load(sum);
  for (const int gray : {0, 1, 77, 128, 255}) {
    TIppiImage flat(imGray8);
    flat.AllocNew(256, 256);
    std::fill_n(flat.Pixels, flat.SizeBytes, static_cast<unsigned char>(gray));
    // Up to four outliers to either side are left out of the range, and then have no value of their own.
    for (int k = 0; k < 4; ++k) facePixel(flat, 110 + k, 110) = 0, facePixel(flat, 110 + k, 112) = 255;
    TPatchImage image;
    image.Assign(flat);
    const double expected = 0.5 * std::tanh(0.5 * std::tanh(gray / 255.0 - 0.5));
    EXPECT_NEAR(adder->PropagateImageI(image, 100, 100), expected, 1e-6) << gray;
  }
}

// Positions 0 and 1 have one centre on an axis; who comes first gives the range for both.
TEST(PatchImage, FirstVisitorGivesTheRangeOfASharedCentre) {
  TIppiImage face;
  fillFace(face, 256, 256, 4);
  // Column 16 is seen from position 1 only, row 16 likewise.
  for (int k = 0; k < 256; ++k) facePixel(face, 16, k) = static_cast<unsigned char>(200 + k % 50);
  for (int k = 17; k < 256; ++k) facePixel(face, k, 16) = static_cast<unsigned char>(150 + k % 30);
  const auto same = [](TPatchRange a, TPatchRange b) { return a.Low == b.Low && a.High == b.High; };
  TPatchImage image;
  const auto fresh = [&](int x, int y) {
    image.Assign(face);
    return image.Range(x - 16, y - 16);
  };
  ASSERT_FALSE(same(fresh(0, 100), fresh(1, 100)));
  ASSERT_FALSE(same(fresh(0, 0), fresh(1, 1)));
  for (const auto& [a, b] : {std::pair{std::pair{0, 100}, std::pair{1, 100}},
                             {{200, 0}, {200, 1}},
                             {{0, 0}, {1, 1}},
                             {{1, 0}, {0, 1}},
                             {{0, 1}, {0, 0}}}) {
    for (const bool swapped : {false, true}) {
      const auto& first = swapped ? b : a;
      const auto& second = swapped ? a : b;
      const TPatchRange expected = fresh(first.first, first.second);
      EXPECT_TRUE(same(image.Range(second.first - 16, second.second - 16), expected));
      EXPECT_TRUE(same(image.Range(first.first - 16, first.second - 16), expected));
    }
  }
  // The neighbours have centres of their own.
  const TPatchRange second = fresh(2, 100);
  image.Assign(face);
  image.Range(1 - 16, 100 - 16);
  EXPECT_TRUE(same(image.Range(2 - 16, 100 - 16), second));
}

}  // namespace
