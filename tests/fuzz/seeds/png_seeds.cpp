// PNG files put together chunk by chunk: every depth, type and interlacing, chunks in every order, and the damage that
// a writer by the rules would never do.
#include <algorithm>
#include <random>

#include "tests/files/png_files.h"
#include "tests/fuzz/seeds/seeds.h"

namespace {

constexpr std::uint8_t kDepths[] = {1, 2, 4, 8, 16}, kInterlacings[] = {0, 1};

// Each with another filter, in every pass anew.
Bytes rowsOf(const PngLayout& layout) {
  Bytes rows;
  for (const auto& [width, height] : layout.Passes()) {
    std::mt19937 random(7);
    for (std::uint32_t y = 0; width != 0 && y < height; ++y) {
      rows.push_back(static_cast<std::uint8_t>(y % 5));
      for (std::size_t i = 0; i < layout.RowBytes(width); ++i)
        rows.push_back(static_cast<std::uint8_t>(random() % 4 == 0 ? random() : i * 3));
    }
  }
  return rows;
}

PngChunk palette(std::size_t entries) {
  Bytes data;
  for (std::size_t i = 0; i < entries * 3; ++i) data.push_back(static_cast<std::uint8_t>(i * 5));
  return {"PLTE", data};
}

PngChunks chunksOf(const PngLayout& layout, int level = 9) {
  PngChunks chunks = {pngHeader(layout)};
  if (layout.type == kPalette) chunks.push_back(palette(std::size_t{1} << std::min<int>(layout.depth, 8)));
  chunks.push_back({"IDAT", packed(rowsOf(layout), level)});
  chunks.push_back({"IEND", {}});
  return chunks;
}

// Those that no rule allows too.
void addLayouts(Seeds& seeds) {
  for (const std::uint8_t type : {kGray, kColour, kPalette, kGrayAlpha, kColourAlpha}) {
    for (const std::uint8_t depth : kDepths) {
      for (const std::uint8_t interlaced : kInterlacings) {
        const PngLayout layout{9, 7, depth, type, interlaced};
        const std::string name =
            std::to_string(type) + "_" + std::to_string(depth) + (interlaced != 0 ? "_interlaced" : "");
        seeds.push_back({"layout_" + name, joinPng(chunksOf(layout))});
      }
    }
  }
  for (const std::uint32_t side : {1U, 2U, 33U}) {
    for (const std::uint8_t interlaced : kInterlacings) {
      const std::string name = std::to_string(side) + (interlaced != 0 ? "_interlaced" : "");
      seeds.push_back({"square_" + name, joinPng(chunksOf({side, side, 8, kColourAlpha, interlaced}))});
      seeds.push_back({"strip_" + name, joinPng(chunksOf({side * 40, 1, 8, kGray, interlaced}))});
      seeds.push_back({"pole_" + name, joinPng(chunksOf({1, side * 40, 8, kColour, interlaced}))});
    }
  }
}

Bytes textBytes(const std::string& text) { return {text.begin(), text.end()}; }

PngChunks extraChunks() {
  const Bytes compressed = packed(textBytes(std::string(300, 'x')));
  Bytes profile = textBytes(std::string("name") + '\0' + '\0'), words = profile, international = textBytes("key");
  for (Bytes* bytes : {&profile, &words}) append(*bytes, compressed);
  international.insert(international.end(), {0, 1, 0, 'e', 'n', 0, 'k', 0});
  append(international, compressed);
  return {{"gAMA", {0, 0, 0xB1, 0x8F}},
          {"cHRM", Bytes(32, 1)},
          {"sRGB", {0}},
          {"iCCP", profile},
          {"sBIT", {5, 6, 5}},
          {"tRNS", {0, 1, 0, 2, 0, 3}},
          {"bKGD", {0, 9, 0, 9, 0, 9}},
          {"hIST", Bytes(16, 0)},
          {"pHYs", {0, 0, 1, 0, 0, 0, 1, 0, 1}},
          {"tIME", {7, 230, 1, 2, 3, 4, 5}},
          {"zTXt", words},
          {"tEXt", textBytes(std::string("a") + '\0' + "b")},
          {"iTXt", international},
          {"eXIf", {'I', 'I', 42, 0}},
          {"sPLT", textBytes(std::string("p") + '\0' + '\b')},
          {"oFFs", Bytes(9, 0)},
          {"abCd", {1, 2, 3}},
          {"ABCD", {1, 2, 3}}};
}

void addExtras(Seeds& seeds) {
  PngChunks all = chunksOf({});
  for (const PngChunk& extra : extraChunks()) {
    PngChunks before = chunksOf({}), after = before, empty = before, long_ = before;
    before.insert(before.begin() + 1, extra);
    after.insert(after.end() - 1, extra);
    empty.insert(empty.begin() + 1, {extra.type, {}});
    long_.insert(long_.begin() + 1, {extra.type, Bytes(700, 0x41)});
    seeds.push_back({"before_" + extra.type, joinPng(before)});
    seeds.push_back({"after_" + extra.type, joinPng(after)});
    seeds.push_back({"empty_" + extra.type, joinPng(empty)});
    seeds.push_back({"long_" + extra.type, joinPng(long_)});
    if (extra.type != "ABCD") all.insert(all.begin() + 1, extra);
  }
  seeds.push_back({"all_extras", joinPng(all)});
}

void addOrders(Seeds& seeds) {
  const PngChunks whole = chunksOf({9, 7, 8, kColourAlpha, 1});
  const auto add = [&](const std::string& name, const PngChunks& chunks) { seeds.push_back({name, joinPng(chunks)}); };
  add("no_header", {whole[1], whole[2]});
  add("two_headers", {whole[0], whole[0], whole[1], whole[2]});
  add("no_pixels", {whole[0], whole[2]});
  add("no_end", {whole[0], whole[1]});
  add("end_first", {whole[2], whole[0], whole[1]});
  add("header_last", {whole[1], whole[0], whole[2]});
  add("palette_late", {whole[0], whole[1], palette(4), whole[2]});
  add("palette_large", {whole[0], {"PLTE", Bytes(900, 1)}, whole[1], whole[2]});
  add("palette_odd", {whole[0], {"PLTE", Bytes(10, 1)}, whole[1], whole[2]});
  add("pixels_twice", {whole[0], whole[1], whole[1], whole[2]});
  PngChunks pieces = {whole[0]};
  for (const std::uint8_t byte : whole[1].data) {
    pieces.push_back({"IDAT", {byte}});
    pieces.push_back({"IDAT", {}});
  }
  pieces.push_back(whole[2]);
  add("pieces", pieces);
  pieces.insert(pieces.begin() + 5, {"tIME", Bytes(7, 1)});
  add("pieces_parted", pieces);
}

void addPixelDamage(Seeds& seeds) {
  for (const std::uint8_t interlaced : kInterlacings) {
    const PngLayout layout{12, 9, 8, kColour, interlaced};
    const std::string name = interlaced != 0 ? "interlaced_" : "plain_";
    const Bytes rows = rowsOf(layout);
    Bytes few(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(rows.size() / 2)), many = rows, filters = rows;
    many.resize(rows.size() * 9);
    for (std::uint8_t& byte : filters) byte = static_cast<std::uint8_t>(byte | 7);
    Bytes cut = packed(rows), window = packed(rows), dictionary = packed(rows);
    cut.resize(cut.size() / 2);
    window[0] = 0xF8;
    dictionary[1] = 0xBB;
    const Bytes bad[] = {packed(few), packed(many), packed(filters), cut, window, dictionary, {}, packed(rows, 0)};
    for (std::size_t i = 0; i < std::size(bad); ++i) {
      seeds.push_back(
          {name + "pixels_" + std::to_string(i), joinPng({pngHeader(layout), {"IDAT", bad[i]}, {"IEND", {}}})});
    }
  }
}

void addHeaders(Seeds& seeds) {
  for (const std::uint32_t side : {0U, 65535U, 65536U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    PngChunks wide = chunksOf({}), high = wide;
    wide[0] = pngHeader({side, 1});
    high[0] = pngHeader({1, side});
    seeds.push_back({"wide_" + std::to_string(side), joinPng(wide)});
    seeds.push_back({"high_" + std::to_string(side), joinPng(high)});
  }
  for (const std::size_t field : {8U, 9U, 10U, 11U, 12U}) {
    PngChunks chunks = chunksOf({});
    chunks[0].data[field] = 5;
    seeds.push_back({"field_" + std::to_string(field), joinPng(chunks)});
  }
  PngChunks short_ = chunksOf({});
  short_[0].data.resize(12);
  seeds.push_back({"short_header", joinPng(short_)});
}

}  // namespace

Seeds pngSeeds() {
  Seeds seeds;
  addLayouts(seeds);
  addExtras(seeds);
  addOrders(seeds);
  addPixelDamage(seeds);
  addHeaders(seeds);
  const Bytes whole = joinPng(chunksOf({20, 15, 8, kColourAlpha, 1}, 0));
  addDamaged(seeds, {"whole", whole});
  for (const int length : {0, 0x7F, 0xFF}) {
    Bytes lying = joinPng(chunksOf({}));
    lying[33] = static_cast<std::uint8_t>(length);
    lying[36] = 1;
    seeds.push_back({"length_" + std::to_string(length), lying});
  }
  seeds.push_back({"signature_only", {whole.begin(), whole.begin() + 8}});
  return seeds;
}
