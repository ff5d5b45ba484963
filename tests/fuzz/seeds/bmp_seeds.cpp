// BMP files of every depth, palette and mask, and with every field of the header wrong in turn.
#include "tests/files/bmp_files.h"
#include "tests/fuzz/seeds/seeds.h"

namespace {

struct Bitmap {
  int width = 11, height = 6;  // from the top if negative
  int depth = 24, compression = 0;
  int palette = 0;  // entries
  bool masks = false;
  int gap = 0;  // bytes before the pixels
};

Bytes write(const Bitmap& bitmap) {
  std::mt19937 random(static_cast<unsigned>(bitmap.depth));
  const int before = kBmpHeaderBytes + 4 * bitmap.palette + (bitmap.masks ? 12 : 0) + bitmap.gap;
  const int pixelBytes = bmpRowSize(bitmap.width, bitmap.depth) * std::abs(bitmap.height);
  Bytes bytes = bmpHeader({.width = bitmap.width,
                           .height = bitmap.height,
                           .depth = bitmap.depth,
                           .compression = bitmap.compression,
                           .offBits = before,
                           .fileBytes = static_cast<std::uint32_t>(before + pixelBytes),
                           .pixelBytes = static_cast<std::uint32_t>(pixelBytes),
                           .verticalResolution = 2835,
                           .colours = static_cast<std::uint32_t>(bitmap.palette)});
  if (bitmap.masks) putBmpMasks(bytes);
  for (int i = 0; i < bitmap.palette; ++i) putLittleEndian(bytes, static_cast<std::uint32_t>(i) * 0x010305, 4);
  putRandom(bytes, bitmap.gap + pixelBytes, random);
  return bytes;
}

}  // namespace

Seeds bmpSeeds() {
  Seeds seeds;
  for (const int depth : {1, 4, 8, 16, 24, 32}) {
    const int palette = depth < 16 ? 1 << depth : 0;
    const std::string name = "depth_" + std::to_string(depth);
    seeds.push_back({name, write({.depth = depth, .palette = palette})});
    seeds.push_back({name + "_gap", write({.depth = depth, .palette = palette, .gap = 30})});
    seeds.push_back({name + "_few_colours", write({.depth = depth, .palette = palette / 3})});
    seeds.push_back({name + "_top_down", write({.height = -6, .depth = depth, .palette = palette})});
    seeds.push_back({name + "_masks", write({.depth = depth, .compression = 3, .palette = palette, .masks = true})});
    seeds.push_back({name + "_no_masks", write({.depth = depth, .compression = 3, .palette = palette})});
    seeds.push_back({name + "_packed", write({.depth = depth, .compression = depth == 4 ? 2 : 1, .palette = palette})});
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
