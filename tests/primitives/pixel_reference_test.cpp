// Every pixel primitive against one line that says what a destination byte is, on random pictures of sizes
// around the vector lengths, in every kind of row layout. The whole destination is compared, padding
// included; sources must come out unchanged.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "primitives/ippi.h"
#include "tests/primitives/guarded_picture.h"

namespace {

using Picture = GuardedPicture;
using ColorFill = const Ipp8u[4];

constexpr int kOrders3[][3] = {{2, 1, 0}, {1, 1, 0}, {0, 1, 2}};
constexpr int kOrders4[][4] = {{2, 1, 0, 3}, {3, 3, 1, 0}};
constexpr Ipp32f kCoefficients[3] = {0.114f, 0.25f, 0.5f};
constexpr ColorFill kFill = {9, 200, 31, 77};
constexpr ColorFill kZero = {0, 0, 0, 0};

// Sizes and layouts of one operation, and both ways to do it. `expected` starts as the destination was.
struct Operation {
  const char* name;
  int srcBytes;  // a pixel, 0 without a source
  int dstBytes;  // a pixel
  std::function<IppStatus(const Picture& src, const Picture& dst, IppiSize size)> run;
  std::function<void(const Picture& src, const Picture& expected, IppiSize size)> reference;
  // Sources that stand side by side in the source picture.
  int sources = 1;
  std::function<IppiSize(IppiSize)> dstSize = [](IppiSize size) { return size; };
  // Floats stand at multiples of four bytes.
  int dstUnit = 1;
};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

using TwoImages = IppStatus (*)(const Ipp8u*, int, Ipp8u*, int, IppiSize);
using InPlace = IppStatus (*)(Ipp8u*, int, IppiSize, int);

auto call(TwoImages function) {
  return [=](const Picture& s, const Picture& d, IppiSize n) {
    return function(s.pixels(), s.step(), d.pixels(), d.step(), n);
  };
}

// Calls visit(x, y, k) for each channel of each pixel.
template <class Visit>
void forEach(IppiSize n, int channels, Visit visit) {
  for (int y = 0; y < n.height; ++y) {
    for (int x = 0; x < n.width; ++x) {
      for (int k = 0; k < channels; ++k) visit(x, y, k);
    }
  }
}

// A reference from what each channel of a destination pixel is.
template <class Value>
auto eachByte(int channels, Value value) {
  return [=](const Picture& s, const Picture& d, IppiSize n) {
    forEach(n, channels, [&](int x, int y, int k) { d.at(x, y, k) = static_cast<Ipp8u>(value(s, x, y, k, n)); });
  };
}

auto sameChannel = [](const Picture& s, int x, int y, int k, IppiSize) { return s.at(x, y, k); };

// The source picture holds its planes or operands side by side.
auto planeOf = [](const Picture& s, int x, int y, int k, IppiSize n) { return s.at(x + k * n.width, y, 0); };
auto grayOf = [](const Picture& s, int x, int y, int, IppiSize) { return s.at(x, y, 0); };

// Nothing of a picture that is none.
Ipp8u* placeOf(const Picture& picture, int offset) {
  return picture.pixels() == nullptr ? nullptr : picture.pixels() + offset;
}

// Where planes and operands beside each other begin; sizes that are to be refused have none.
Ipp8u* sourceOf(const Picture& picture, int index, IppiSize size) {
  return placeOf(picture, size.width > 0 ? index * size.width : 0);
}

template <int planes>
auto joinPlanes(IppStatus (*function)(const Ipp8u* const*, int, Ipp8u*, int, IppiSize), bool equal) {
  return [=](const Picture& s, const Picture& d, IppiSize n) {
    const Ipp8u* pointers[planes];
    for (int k = 0; k < planes; ++k) pointers[k] = sourceOf(s, equal ? 0 : k, n);
    return function(pointers, s.step(), d.pixels(), d.step(), n);
  };
}

Operation joined3(const char* name, bool equal) {
  if (equal) return {name, 1, 3, joinPlanes<3>(ippiCopy_8u_P3C3R, true), eachByte(3, grayOf)};
  return {name, 1, 3, joinPlanes<3>(ippiCopy_8u_P3C3R, false), eachByte(3, planeOf), 3};
}

Operation joined4(const char* name, bool equal) {
  if (equal) return {name, 1, 4, joinPlanes<4>(ippiCopy_8u_P4C4R, true), eachByte(4, grayOf)};
  return {name, 1, 4, joinPlanes<4>(ippiCopy_8u_P4C4R, false), eachByte(4, planeOf), 4};
}

Operation copyIntoChannel(const char* name, int channel) {
  return {name, 1, 4,
          [=](const Picture& s, const Picture& d, IppiSize n) {
            return ippiCopy_8u_C1C4R(s.pixels(), s.step(), placeOf(d, channel), d.step(), n);
          },
          [=](const Picture& s, const Picture& d, IppiSize n) {
            forEach(n, 1, [&](int x, int y, int) { d.at(x, y, channel) = s.at(x, y, 0); });
          }};
}

Operation setChannel(const char* name, int channel, Ipp8u value) {
  return {name, 0, 4,
          [=](const Picture&, const Picture& d, IppiSize n) {
            return ippiSet_8u_C4CR(value, placeOf(d, channel), d.step(), n);
          },
          [=](const Picture&, const Picture& d, IppiSize n) {
            forEach(n, 1, [&](int x, int y, int) { d.at(x, y, channel) = value; });
          }};
}

template <class Function>
Operation converted(const char* name, int channels, Function function) {
  Operation operation{name, channels, 4 * channels,
                      [=](const Picture& s, const Picture& d, IppiSize n) {
                        return function(s.pixels(), s.step(), reinterpret_cast<Ipp32f*>(d.pixels()), d.step(), n);
                      },
                      [=](const Picture& s, const Picture& d, IppiSize n) {
                        forEach(n, channels, [&](int x, int y, int k) {
                          const Ipp32f value = s.at(x, y, k);
                          std::memcpy(&d.at(x, y, 4 * k), &value, 4);
                        });
                      }};
  operation.dstUnit = 4;
  return operation;
}

Operation swapped3(const char* name, const int* order) {
  return {name, 3, 3,
          [=](const Picture& s, const Picture& d, IppiSize n) {
            return ippiSwapChannels_8u_C3R(s.pixels(), s.step(), d.pixels(), d.step(), n, order);
          },
          eachByte(3, [=](const Picture& s, int x, int y, int k, IppiSize) { return s.at(x, y, order[k]); })};
}

// In-place operations have no source picture: their reference reads a copy of the destination.
template <class Value>
auto eachByteInPlace(int pixelBytes, int channels, Value value) {
  return [=](const Picture&, const Picture& d, IppiSize n) {
    std::mt19937 random;
    const Picture before(n, pixelBytes, {0, Against::pageAfter, false}, random);
    forEach(n, pixelBytes, [&](int x, int y, int k) { before.at(x, y, k) = d.at(x, y, k); });
    eachByte(channels, value)(before, d, n);
  };
}

Operation swapped4(const char* name, const int* order) {
  return {name, 0, 4,
          [=](const Picture&, const Picture& d, IppiSize n) {
            return ippiSwapChannels_8u_C4IR(d.pixels(), d.step(), n, order);
          },
          eachByteInPlace(4, 4, [=](const Picture& s, int x, int y, int k, IppiSize) { return s.at(x, y, order[k]); })};
}

Ipp8u mirrored(const Picture& s, int x, int y, int k, IppiSize n, int flip) {
  return flip == ippAxsHorizontal ? s.at(x, n.height - 1 - y, k) : s.at(n.width - 1 - x, y, k);
}

Operation mirror(const char* name, int pixelBytes, int channels, InPlace function, int flip) {
  return {name, 0, pixelBytes,
          [=](const Picture&, const Picture& d, IppiSize n) { return function(d.pixels(), d.step(), n, flip); },
          eachByteInPlace(pixelBytes, channels, [=](const Picture& s, int x, int y, int k, IppiSize n) {
            return mirrored(s, x, y, k, n, flip);
          })};
}

Operation mirrorCopy(const char* name, int flip) {
  return {
      name, 1, 1,
      [=](const Picture& s, const Picture& d, IppiSize n) {
        return ippiMirror_8u_C1R(s.pixels(), s.step(), d.pixels(), d.step(), n, flip);
      },
      eachByte(1, [=](const Picture& s, int x, int y, int k, IppiSize n) { return mirrored(s, x, y, k, n, flip); })};
}

Operation transpose(const char* name, int channels, TwoImages function) {
  return {name,
          channels,
          channels,
          call(function),
          [=](const Picture& s, const Picture& d, IppiSize n) {
            forEach(n, channels, [&](int x, int y, int k) { d.at(y, x, k) = s.at(x, y, k); });
          },
          1,
          [](IppiSize n) {
            return IppiSize{n.height, n.width};
          }};
}

// Borders in pixels round the source.
struct Border {
  int top, left, bottom, right;
};

// `fill` null means that the edge is extended.
template <class Run>
Operation bordered(const char* name, int channels, Border border, const Ipp8u* fill, Run run) {
  return {name,
          channels,
          channels,
          [=](const Picture& s, const Picture& d, IppiSize n) { return run(s, n, d, border); },
          [=](const Picture& s, const Picture& d, IppiSize n) {
            const auto inside = [&](int x, int y) { return x >= 0 && y >= 0 && x < n.width && y < n.height; };
            forEach(d.size(), channels, [&](int x, int y, int k) {
              const int sx = x - border.left, sy = y - border.top;
              const Ipp8u edge = s.at(std::clamp(sx, 0, n.width - 1), std::clamp(sy, 0, n.height - 1), k);
              d.at(x, y, k) = inside(sx, sy) || fill == nullptr ? edge : fill[k];
            });
          },
          1,
          [=](IppiSize n) {
            return IppiSize{n.width + border.left + border.right, n.height + border.top + border.bottom};
          }};
}

template <class Function, class Fill>
Operation constBorder(const char* name, int channels, Border border, const Ipp8u* fill, Function function, Fill value) {
  return bordered(name, channels, border, fill, [=](const Picture& s, IppiSize n, const Picture& d, Border b) {
    return function(s.pixels(), s.step(), n, d.pixels(), d.step(), d.size(), b.top, b.left, value);
  });
}

template <class Function>
Operation replicateBorder(const char* name, int channels, Border border, Function function) {
  return bordered(name, channels, border, nullptr, [=](const Picture& s, IppiSize n, const Picture& d, Border b) {
    return function(s.pixels(), s.step(), n, d.pixels(), d.step(), d.size(), b.top, b.left);
  });
}

auto grayBy(int w0, int w1, int w2) {
  return eachByte(1, [=](const Picture& s, int x, int y, int, IppiSize) {
    return (w0 * s.at(x, y, 0) + w1 * s.at(x, y, 1) + w2 * s.at(x, y, 2)) / 4096;
  });
}

template <class Function>
Operation grayed(const char* name, int pixelBytes, Function function) {
  // 0.114 of 4096 is 466.9, 0.25 and 0.5 are 1024 and 2048.
  return {name, pixelBytes, 1,
          [=](const Picture& s, const Picture& d, IppiSize n) {
            return function(s.pixels(), s.step(), d.pixels(), d.step(), n, kCoefficients);
          },
          grayBy(467, 1024, 2048)};
}

int mul(int u, int v) { return (u * v + u * v / 256 + 1) / 256; }

Ipp8u over(const Ipp8u* a, const Ipp8u* b, int k) {
  const int rest = 255 - a[3];
  const int sum = k == 3 ? a[3] + mul(rest, b[3]) : mul(a[3], a[k]) + mul(rest, mul(b[3], b[k]));
  return static_cast<Ipp8u>(std::min(sum, 255));
}

// Both operands from the source, then once with the destination as the lower and once as the upper one.
std::vector<Operation> compositions() {
  const auto comp = [](const Ipp8u* a, int aStep, const Ipp8u* b, int bStep, const Picture& d, IppiSize n) {
    return ippiAlphaComp_8u_AC4R(a, aStep, b, bStep, d.pixels(), d.step(), n, ippAlphaOver);
  };
  const auto pixel = [](const Picture& s, int x, int y) { return &s.at(x, y, 0); };
  return {{"AlphaComp", 4, 4,
           [=](const Picture& s, const Picture& d, IppiSize n) {
             return comp(s.pixels(), s.step(), placeOf(s, n.width > 0 ? 4 * n.width : 0), s.step(), d, n);
           },
           eachByte(4, [=](const Picture& s, int x, int y, int k,
                           IppiSize n) { return over(pixel(s, x, y), pixel(s, x + n.width, y), k); }),
           2},
          {"AlphaCompOntoLower", 4, 4,
           [=](const Picture& s, const Picture& d, IppiSize n) {
             return comp(s.pixels(), s.step(), d.pixels(), d.step(), d, n);
           },
           [=](const Picture& s, const Picture& d, IppiSize n) {
             // Alpha last: the colours need its old value.
             eachByte(4, [&](const Picture&, int x, int y, int k, IppiSize) {
               return over(pixel(s, x, y), pixel(d, x, y), k);
             })(s, d, n);
           }},
          {"AlphaCompOntoUpper", 4, 4,
           [=](const Picture& s, const Picture& d, IppiSize n) {
             return comp(d.pixels(), d.step(), s.pixels(), s.step(), d, n);
           },
           [=](const Picture& s, const Picture& d, IppiSize n) {
             eachByte(4, [&](const Picture&, int x, int y, int k, IppiSize) {
               return over(pixel(d, x, y), pixel(s, x, y), k);
             })(s, d, n);
           }}};
}

std::vector<Operation> operations() {
  std::vector<Operation> all = {
      {"CopyC1", 1, 1, call(ippiCopy_8u_C1R), eachByte(1, sameChannel)},
      {"CopyC3", 3, 3, call(ippiCopy_8u_C3R), eachByte(3, sameChannel)},
      {"CopyC4", 4, 4, call(ippiCopy_8u_C4R), eachByte(4, sameChannel)},
      {"CopyAC4", 4, 4, call(ippiCopy_8u_AC4R), eachByte(3, sameChannel)},
      {"CopyAC4C3", 4, 3, call(ippiCopy_8u_AC4C3R), eachByte(3, sameChannel)},
      {"CopyC3AC4", 3, 4, call(ippiCopy_8u_C3AC4R), eachByte(3, sameChannel)},
      copyIntoChannel("CopyC1C4First", 0),
      copyIntoChannel("CopyC1C4Alpha", 3),
      joined3("CopyP3C3", false),
      joined3("CopyP3C3OnePlane", true),
      joined4("CopyP4C4", false),
      joined4("CopyP4C4OnePlane", true),
      converted("ConvertC1", 1, ippiConvert_8u32f_C1R),
      converted("ConvertC3", 3, ippiConvert_8u32f_C3R),
      converted("ConvertC4", 4, ippiConvert_8u32f_C4R),
      {"SetC1", 0, 1,
       [](const Picture&, const Picture& d, IppiSize n) { return ippiSet_8u_C1R(201, d.pixels(), d.step(), n); },
       eachByte(1, [](const Picture&, int, int, int, IppiSize) { return 201; })},
      setChannel("SetC4First", 0, 3),
      setChannel("SetC4Alpha", 3, 255),
      swapped3("SwapC3", kOrders3[0]),
      swapped3("SwapC3Repeating", kOrders3[1]),
      swapped3("SwapC3Keeping", kOrders3[2]),
      swapped4("SwapC4", kOrders4[0]),
      swapped4("SwapC4Repeating", kOrders4[1]),
      mirror("MirrorRowsC1", 1, 1, ippiMirror_8u_C1IR, ippAxsHorizontal),
      mirror("MirrorRowsC3", 3, 3, ippiMirror_8u_C3IR, ippAxsHorizontal),
      mirror("MirrorRowsC4", 4, 4, ippiMirror_8u_C4IR, ippAxsHorizontal),
      mirror("MirrorRowsAC4", 4, 3, ippiMirror_8u_AC4IR, ippAxsHorizontal),
      mirror("MirrorColumnsC1", 1, 1, ippiMirror_8u_C1IR, ippAxsVertical),
      mirror("MirrorColumnsC3", 3, 3, ippiMirror_8u_C3IR, ippAxsVertical),
      mirror("MirrorColumnsC4", 4, 4, ippiMirror_8u_C4IR, ippAxsVertical),
      mirror("MirrorColumnsAC4", 4, 3, ippiMirror_8u_AC4IR, ippAxsVertical),
      mirrorCopy("MirrorCopyRows", ippAxsHorizontal),
      mirrorCopy("MirrorCopyColumns", ippAxsVertical),
      transpose("TransposeC1", 1, ippiTranspose_8u_C1R),
      transpose("TransposeC3", 3, ippiTranspose_8u_C3R),
      transpose("TransposeC4", 4, ippiTranspose_8u_C4R),
      constBorder("ConstBorderC1", 1, {1, 2, 3, 4}, kFill, ippiCopyConstBorder_8u_C1R, kFill[0]),
      constBorder("ConstBorderC3", 3, {0, 5, 2, 0}, kFill, ippiCopyConstBorder_8u_C3R, kFill),
      constBorder("ConstBorderC3Zero", 3, {3, 3, 3, 3}, kZero, ippiCopyConstBorder_8u_C3R, kZero),
      constBorder("ConstBorderC4", 4, {4, 4, 0, 0}, kFill, ippiCopyConstBorder_8u_C4R, kFill),
      replicateBorder("ReplicateBorderC1", 1, {2, 2, 1, 3}, ippiCopyReplicateBorder_8u_C1R),
      replicateBorder("ReplicateBorderC3", 3, {0, 3, 2, 0}, ippiCopyReplicateBorder_8u_C3R),
      replicateBorder("ReplicateBorderC4", 4, {3, 0, 0, 2}, ippiCopyReplicateBorder_8u_C4R),
      {"RGBToGrayC3", 3, 1, call(ippiRGBToGray_8u_C3C1R), grayBy(1225, 2404, 467)},
      {"RGBToGrayAC4", 4, 1, call(ippiRGBToGray_8u_AC4C1R), grayBy(1225, 2404, 467)},
      grayed("ColorToGrayC3", 3, ippiColorToGray_8u_C3C1R),
      grayed("ColorToGrayAC4", 4, ippiColorToGray_8u_AC4C1R),
  };
  for (Operation& composition : compositions()) all.push_back(std::move(composition));
  return all;
}

class PixelOperation : public testing::TestWithParam<Operation> {
 protected:
  void compare(IppiSize size, Layout layout) {
    const Operation& operation = GetParam();
    const IppiSize srcSize{size.width * operation.sources, size.height};
    const Picture src(srcSize, std::max(operation.srcBytes, 1), layout, random_);
    layout.padding *= operation.dstUnit;
    const Picture dst(operation.dstSize(size), operation.dstBytes, layout, random_);
    Picture expected(operation.dstSize(size), operation.dstBytes, layout, random_);
    expected.setBytes(dst.bytes());
    const std::vector<Ipp8u> srcBefore = src.bytes();
    operation.reference(src, expected, size);
    ASSERT_EQ(operation.run(src, dst, size), ippStsNoErr);
    ASSERT_TRUE(dst.bytes() == expected.bytes())
        << size.width << " by " << size.height << ", padding " << layout.padding;
    ASSERT_TRUE(src.bytes() == srcBefore);
  }

  void compareLayouts(IppiSize size) {
    for (const int padding : {0, 13}) {
      for (const Against against : {Against::pageBefore, Against::pageAfter}) {
        for (const bool lastRowFirst : {false, true}) {
          ASSERT_NO_FATAL_FAILURE(compare(size, {padding, against, lastRowFirst}));
        }
      }
    }
  }

  std::mt19937 random_{20240607};
};

TEST_P(PixelOperation, NarrowSizesAgree) {
  for (int width = 1; width <= 70; ++width) ASSERT_NO_FATAL_FAILURE(compareLayouts({width, 1 + width % 5}));
}

TEST_P(PixelOperation, TallAndWideSizesAgree) {
  for (const IppiSize size : {IppiSize{3, 67}, {35, 64}, {64, 33}, {511, 2}, {513, 1}, {1031, 3}}) {
    ASSERT_NO_FATAL_FAILURE(compareLayouts(size));
  }
}

TEST_P(PixelOperation, NullPointersAndSizesBelowOneAreRefused) {
  const Operation& operation = GetParam();
  constexpr Layout kTight{0, Against::pageAfter, false};
  constexpr IppiSize kGood{4, 4};
  const Picture none(64);
  const Picture src({kGood.width * operation.sources, 4}, std::max(operation.srcBytes, 1), kTight, random_);
  const Picture dst(operation.dstSize(kGood), operation.dstBytes, kTight, random_);
  const std::vector<Ipp8u> before = dst.bytes();
  if (operation.srcBytes > 0) {
    EXPECT_EQ(operation.run(none, dst, kGood), ippStsNullPtrErr);
  }
  EXPECT_EQ(operation.run(src, none, kGood), ippStsNullPtrErr);
  for (const IppiSize size : {IppiSize{0, 4}, {4, 0}, {-1, 4}, {4, -1}, {INT_MIN, INT_MIN}, {0, 0}}) {
    EXPECT_EQ(operation.run(src, dst, size), ippStsSizeErr) << size.width << " by " << size.height;
  }
  EXPECT_EQ(dst.bytes(), before);
}

INSTANTIATE_TEST_SUITE_P(All, PixelOperation, testing::ValuesIn(operations()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
