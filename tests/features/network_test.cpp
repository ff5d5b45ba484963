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

TEST_F(NetworkStream, OwnBlobHoldsFortyNetworks) {
  EXPECT_EQ(neuro_dat_end - neuro_dat, 507072);
  EXPECT_NO_THROW(TNeuroLocator());
}

class NetworkOnPatches : public testing::Test {
 protected:
  void SetUp() override {
    fillFace(face_, 256, 256, 6);
    image_.Assign(face_);
  }

  // In double precision, from the pixels as they stand in the picture.
  double Evaluate(int left, int top) {
    double inputs[1024];
    const TPatchRange range = image_.Range(left, top);
    for (int i = 0; i < 1024; ++i) {
      const int x = left + i % 32, y = top + i / 32;
      const double gray = x < 0 || x > 255 || y < 0 || y > 255 ? 0 : facePixel(face_, x, y);
      const double scaled = (gray - range.Low) / (range.High - range.Low) - 0.5;
      inputs[i] = range.Low == range.High ? range.Low / 255.0 - 0.5 : std::fmin(std::fmax(scaled, -0.5), 0.5);
    }
    double sum = plain_.output[0];
    for (int h = 0; h < 3; ++h) {
      double hidden = plain_.hidden[h][0];
      for (int i = 0; i < 1024; ++i) hidden += static_cast<double>(plain_.hidden[h][i + 1]) * inputs[i];
      sum += plain_.output[h + 1] * 0.5 * std::tanh(hidden);
    }
    return 0.5 * std::tanh(sum);
  }

  std::mt19937 random_{8};
  PlainNetwork plain_ = makeNetwork(random_);
  std::unique_ptr<TNeuralNetwork> network_ = load(plain_);
  TIppiImage face_;
  TPatchImage image_;
};

TEST_F(NetworkOnPatches, AgreesWithDoublePrecisionInsideAndOverTheEdges) {
  for (int round = 0; round < 400; ++round) {
    const int left = static_cast<int>(random_() % 256) - 16, top = static_cast<int>(random_() % 256) - 16;
    const float output = network_->PropagateImageI(image_, left, top);
    EXPECT_NEAR(output, Evaluate(left, top), 2e-5) << left << ", " << top;
    EXPECT_GE(output, -0.5F);
    EXPECT_LE(output, 0.5F);
  }
}

TEST_F(NetworkOnPatches, SameBitsFromNormalisedInputs) {
  for (int round = 0; round < 50; ++round) {
    const int left = 1 + static_cast<int>(random_() % 220), top = 1 + static_cast<int>(random_() % 220);
    unsigned char patch[1024];
    for (int i = 0; i < 1024; ++i) patch[i] = facePixel(face_, left + i % 32, top + i / 32);
    float inputs[1024];
    NormalisePatch(patch, FindPatchRange(patch), inputs);
    EXPECT_EQ(network_->FastPropagate_I(inputs), network_->PropagateImageI(image_, left, top));
  }
}

// One weight at a time: which pixel does it listen to?
TEST_F(NetworkOnPatches, ReadsThePatchRowByRowFromTheTop) {
  for (const int index : {0, 1, 31, 32, 33, 517, 991, 1023}) {
    PlainNetwork one{};
    one.hidden[0][1 + index] = 1.0F;
    one.output[1] = 1.0F;
    const auto listener = load(one);
    TIppiImage picture;
    fillFace(picture, 256, 256, 2);
    const int x = 100 + index % 32, y = 60 + index / 32;
    facePixel(picture, x, y) = 0;
    image_.Assign(picture);
    const float dark = listener->PropagateImageI(image_, 100, 60);
    facePixel(picture, x, y) = 255;
    image_.Assign(picture);
    // Both values lie outside the range and so at the ends of the inputs.
    const auto end = static_cast<float>(0.5 * std::tanh(0.5 * std::tanh(0.5)));
    EXPECT_FLOAT_EQ(dark, -end);
    EXPECT_FLOAT_EQ(listener->PropagateImageI(image_, 100, 60), end);
  }
}

TEST_F(NetworkOnPatches, FlatPatchesKeepTheirGray) {
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
    image_.Assign(flat);
    const double expected = 0.5 * std::tanh(0.5 * std::tanh(gray / 255.0 - 0.5));
    EXPECT_NEAR(adder->PropagateImageI(image_, 100, 100), expected, 1e-6) << gray;
  }
}

TEST(PatchImage, RangesAreThoseOfTheHistogram) {
  SearchModel model = makeSearchModel(1);
  for (const auto& [width, height] : {std::pair{256, 256}, {255, 255}, {100, 256}, {256, 90}, {3, 5}}) {
    TIppiImage face;
    fillFace(face, width, height, static_cast<unsigned>(width + height));
    TPatchImage image;
    image.Assign(face);
    for (int y = 2; y < 256; y += 3) {
      for (int x = 2; x < 256; x += 5) {
        unsigned char patch[1024];
        for (int i = 0; i < 1024; ++i) {
          const int px = x - 16 + i % 32, py = y - 16 + i / 32 + height - 256;
          patch[i] = px < 0 || px >= width || py < 0 || py >= height ? 0 : facePixel(face, px, py);
          ASSERT_EQ(patch[i], image.Patch(x - 16, y - 16)[i / 32 * TPatchImage::kStep + i % 32]);
        }
        const TPatchRange expected = FindPatchRange(patch), range = image.Range(x - 16, y - 16);
        ASSERT_EQ(range.Low, expected.Low) << x << ", " << y;
        ASSERT_EQ(range.High, expected.High) << x << ", " << y;
      }
    }
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
