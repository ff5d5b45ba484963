// PNG files put together chunk by chunk: every depth, type and interlacing, chunks in every order, and the damage that
// a writer by the rules would never do.
#include <zlib.h>

#include <algorithm>
#include <random>

#include "tests/fuzz/seeds/seeds.h"

namespace {

enum Type : std::uint8_t { kGray = 0, kColour = 2, kPalette = 3, kGrayAlpha = 4, kColourAlpha = 6 };
constexpr std::uint8_t kDepths[] = {1, 2, 4, 8, 16}, kInterlacings[] = {0, 1};

struct Chunk {
  std::string type;
  Bytes data;
};
using Chunks = std::vector<Chunk>;

struct Layout {
  std::uint32_t width = 9, height = 7;
  std::uint8_t depth = 8, type = kColour, interlaced = 0;
};

void putBigEndian(Bytes& bytes, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

Bytes chunkBytes(const Chunk& chunk) {
  Bytes bytes;
  putBigEndian(bytes, static_cast<std::uint32_t>(chunk.data.size()));
  bytes.insert(bytes.end(), chunk.type.begin(), chunk.type.end());
  bytes.insert(bytes.end(), chunk.data.begin(), chunk.data.end());
  putBigEndian(bytes, static_cast<std::uint32_t>(crc32(0, bytes.data() + 4, static_cast<uInt>(bytes.size() - 4))));
  return bytes;
}

Bytes join(const Chunks& chunks) {
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  for (const Chunk& chunk : chunks) {
    const Bytes bytes = chunkBytes(chunk);
    file.insert(file.end(), bytes.begin(), bytes.end());
  }
  return file;
}

Chunk header(const Layout& layout) {
  Bytes data;
  putBigEndian(data, layout.width);
  putBigEndian(data, layout.height);
  data.insert(data.end(), {layout.depth, layout.type, 0, 0, layout.interlaced});
  return {"IHDR", data};
}

std::uint32_t samplesOf(std::uint8_t type) {
  if (type == kColour) return 3;
  if (type == kColourAlpha) return 4;
  return type == kGrayAlpha ? 2 : 1;
}

// Rows of one pass, each with another filter.
void addRows(Bytes& rows, std::uint32_t width, std::uint32_t height, const Layout& layout) {
  std::mt19937 random(7);
  if (width == 0) return;
  const std::uint32_t bytes = (width * samplesOf(layout.type) * layout.depth + 7) / 8;
  for (std::uint32_t y = 0; y < height; ++y) {
    rows.push_back(static_cast<std::uint8_t>(y % 5));
    for (std::uint32_t i = 0; i < bytes; ++i)
      rows.push_back(static_cast<std::uint8_t>(random() % 4 == 0 ? random() : i * 3));
  }
}

Bytes rowsOf(const Layout& layout) {
  static constexpr std::uint32_t kFirstX[] = {0, 4, 0, 2, 0, 1, 0}, kFirstY[] = {0, 0, 4, 0, 2, 0, 1};
  static constexpr std::uint32_t kStepX[] = {8, 8, 4, 4, 2, 2, 1}, kStepY[] = {8, 8, 8, 4, 4, 2, 2};
  Bytes rows;
  if (layout.interlaced == 0) addRows(rows, layout.width, layout.height, layout);
  for (int pass = 0; layout.interlaced != 0 && pass < 7; ++pass) {
    const auto count = [](std::uint32_t side, std::uint32_t first, std::uint32_t step) {
      return side <= first ? 0 : (side - first + step - 1) / step;
    };
    addRows(rows, count(layout.width, kFirstX[pass], kStepX[pass]), count(layout.height, kFirstY[pass], kStepY[pass]),
            layout);
  }
  return rows;
}

Bytes packed(const Bytes& rows, int level = 9) {
  uLongf size = compressBound(static_cast<uLong>(rows.size()));
  Bytes bytes(size);
  compress2(bytes.data(), &size, rows.data(), static_cast<uLong>(rows.size()), level);
  bytes.resize(size);
  return bytes;
}

Chunk palette(std::size_t entries) {
  Bytes data;
  for (std::size_t i = 0; i < entries * 3; ++i) data.push_back(static_cast<std::uint8_t>(i * 5));
  return {"PLTE", data};
}

Chunks chunksOf(const Layout& layout, int level = 9) {
  Chunks chunks = {header(layout)};
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
        const Layout layout{9, 7, depth, type, interlaced};
        const std::string name =
            std::to_string(type) + "_" + std::to_string(depth) + (interlaced != 0 ? "_interlaced" : "");
        seeds.push_back({"layout_" + name, join(chunksOf(layout))});
      }
    }
  }
  for (const std::uint32_t side : {1U, 2U, 33U}) {
    for (const std::uint8_t interlaced : kInterlacings) {
      const std::string name = std::to_string(side) + (interlaced != 0 ? "_interlaced" : "");
      seeds.push_back({"square_" + name, join(chunksOf({side, side, 8, kColourAlpha, interlaced}))});
      seeds.push_back({"strip_" + name, join(chunksOf({side * 40, 1, 8, kGray, interlaced}))});
      seeds.push_back({"pole_" + name, join(chunksOf({1, side * 40, 8, kColour, interlaced}))});
    }
  }
}

Bytes textBytes(const std::string& text) { return {text.begin(), text.end()}; }

Chunks extraChunks() {
  const Bytes compressed = packed(textBytes(std::string(300, 'x')));
  Bytes profile = textBytes(std::string("name") + '\0' + '\0'), words = profile, international = textBytes("key");
  for (Bytes* bytes : {&profile, &words}) bytes->insert(bytes->end(), compressed.begin(), compressed.end());
  international.insert(international.end(), {0, 1, 0, 'e', 'n', 0, 'k', 0});
  international.insert(international.end(), compressed.begin(), compressed.end());
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
  Chunks all = chunksOf({});
  for (const Chunk& extra : extraChunks()) {
    Chunks before = chunksOf({}), after = before, empty = before, long_ = before;
    before.insert(before.begin() + 1, extra);
    after.insert(after.end() - 1, extra);
    empty.insert(empty.begin() + 1, {extra.type, {}});
    long_.insert(long_.begin() + 1, {extra.type, Bytes(700, 0x41)});
    seeds.push_back({"before_" + extra.type, join(before)});
    seeds.push_back({"after_" + extra.type, join(after)});
    seeds.push_back({"empty_" + extra.type, join(empty)});
    seeds.push_back({"long_" + extra.type, join(long_)});
    if (extra.type != "ABCD") all.insert(all.begin() + 1, extra);
  }
  seeds.push_back({"all_extras", join(all)});
}

void addOrders(Seeds& seeds) {
  const Chunks whole = chunksOf({9, 7, 8, kColourAlpha, 1});
  const auto add = [&](const std::string& name, const Chunks& chunks) { seeds.push_back({name, join(chunks)}); };
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
  Chunks pieces = {whole[0]};
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
    const Layout layout{12, 9, 8, kColour, interlaced};
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
      seeds.push_back({name + "pixels_" + std::to_string(i), join({header(layout), {"IDAT", bad[i]}, {"IEND", {}}})});
    }
  }
}

void addHeaders(Seeds& seeds) {
  for (const std::uint32_t side : {0U, 65535U, 65536U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    Chunks wide = chunksOf({}), high = wide;
    wide[0] = header({side, 1});
    high[0] = header({1, side});
    seeds.push_back({"wide_" + std::to_string(side), join(wide)});
    seeds.push_back({"high_" + std::to_string(side), join(high)});
  }
  for (const std::size_t field : {8U, 9U, 10U, 11U, 12U}) {
    Chunks chunks = chunksOf({});
    chunks[0].data[field] = 5;
    seeds.push_back({"field_" + std::to_string(field), join(chunks)});
  }
  Chunks short_ = chunksOf({});
  short_[0].data.resize(12);
  seeds.push_back({"short_header", join(short_)});
}

}  // namespace

Seeds pngSeeds() {
  Seeds seeds;
  addLayouts(seeds);
  addExtras(seeds);
  addOrders(seeds);
  addPixelDamage(seeds);
  addHeaders(seeds);
  const Bytes whole = join(chunksOf({20, 15, 8, kColourAlpha, 1}, 0));
  addDamaged(seeds, {"whole", whole});
  for (const int length : {0, 0x7F, 0xFF}) {
    Bytes lying = join(chunksOf({}));
    lying[33] = static_cast<std::uint8_t>(length);
    lying[36] = 1;
    seeds.push_back({"length_" + std::to_string(length), lying});
  }
  seeds.push_back({"signature_only", {whole.begin(), whole.begin() + 8}});
  return seeds;
}
