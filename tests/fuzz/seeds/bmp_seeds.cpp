// BMP files of every depth, palette and mask, and with every field of the header wrong in turn.
#include <random>

#include "tests/fuzz/seeds/seeds.h"

namespace {

struct Bitmap {
  std::int32_t width = 11, height = 6;
  std::uint32_t depth = 24, compression = 0;
  std::uint32_t palette = 0;  // entries
  bool masks = false;
  std::uint32_t gap = 0;  // bytes before the pixels
};

void put(Bytes& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

Bytes write(const Bitmap& bitmap) {
  std::mt19937 random(bitmap.depth);
  const std::uint32_t before = 54 + 4 * bitmap.palette + (bitmap.masks ? 12 : 0) + bitmap.gap;
  const std::uint32_t rowBytes = (bitmap.depth * static_cast<std::uint32_t>(bitmap.width) + 31) / 32 * 4;
  const std::uint32_t pixelBytes =
      rowBytes * static_cast<std::uint32_t>(bitmap.height < 0 ? -bitmap.height : bitmap.height);
  Bytes bytes = {'B', 'M'};
  for (const std::uint32_t word : {before + pixelBytes, 0U, before, 40U, static_cast<std::uint32_t>(bitmap.width),
                                   static_cast<std::uint32_t>(bitmap.height)}) {
    put(bytes, word, 4);
  }
  put(bytes, 1, 2);
  put(bytes, bitmap.depth, 2);
  for (const std::uint32_t word : {bitmap.compression, pixelBytes, 2835U, 2835U, bitmap.palette, 0U})
    put(bytes, word, 4);
  if (bitmap.masks) {
    for (const std::uint32_t mask : {0xF800U, 0x07E0U, 0x001FU}) put(bytes, mask, 4);
  }
  for (std::uint32_t i = 0; i < bitmap.palette; ++i) put(bytes, i * 0x010305, 4);
  for (std::uint32_t i = 0; i < bitmap.gap + pixelBytes; ++i) put(bytes, static_cast<std::uint32_t>(random()), 1);
  return bytes;
}

}  // namespace

Seeds bmpSeeds() {
  Seeds seeds;
  for (const std::uint32_t depth : {1U, 4U, 8U, 16U, 24U, 32U}) {
    const std::uint32_t palette = depth < 16 ? 1U << depth : 0;
    const std::string name = "depth_" + std::to_string(depth);
    seeds.push_back({name, write({.depth = depth, .palette = palette})});
    seeds.push_back({name + "_gap", write({.depth = depth, .palette = palette, .gap = 30})});
    seeds.push_back({name + "_few_colours", write({.depth = depth, .palette = palette / 3})});
    seeds.push_back({name + "_top_down", write({.height = -6, .depth = depth, .palette = palette})});
    seeds.push_back({name + "_masks", write({.depth = depth, .compression = 3, .palette = palette, .masks = true})});
    seeds.push_back({name + "_no_masks", write({.depth = depth, .compression = 3, .palette = palette})});
    seeds.push_back(
        {name + "_packed", write({.depth = depth, .compression = depth == 4 ? 2U : 1U, .palette = palette})});
    seeds.push_back({name + "_one_pixel", write({.width = 1, .height = 1, .depth = depth, .palette = palette})});
    seeds.push_back({name + "_strip", write({.width = 200, .height = 1, .depth = depth, .palette = palette})});
    seeds.push_back({name + "_pole", write({.width = 1, .height = 200, .depth = depth, .palette = palette})});
    addDamaged(seeds, seeds[seeds.size() - 10]);
  }
  const Bytes whole = write({.depth = 16, .compression = 3, .masks = true});
  for (std::size_t at = 0; at < 66; at += at < 26 || at >= 30 ? 4 : 2) {
    for (const int value : {0, 1, 127, 255}) {
      Bytes changed = whole;
      for (std::size_t i = at; i < at + 4; ++i) changed[i] = static_cast<std::uint8_t>(value);
      seeds.push_back({"field_" + std::to_string(at) + "_" + std::to_string(value), changed});
    }
  }
  return seeds;
}
