// JPEG files of every form that libjpeg writes, and the same with their segments moved, doubled, lost and lying.
#include <utility>

#include "tests/files/jpeg_files.h"
#include "tests/fuzz/seeds/seeds.h"

namespace {

Bytes write(const JpegForm& form, const std::function<void(jpeg_compress_struct&)>& segments = {}, int quality = 80) {
  const auto fill = [](int line, Bytes& row) {
    const auto y = static_cast<std::size_t>(line);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>(i * 11 + y * 7 + (i * y) % 29);
  };
  return writeJpeg(form, quality, fill, segments);
}

void addForms(Seeds& seeds) {
  seeds.push_back({"colour", write({})});
  seeds.push_back({"gray", write({.components = 1})});
  seeds.push_back({"gray_sampled", write({.components = 1, .horizontal = 2, .vertical = 2})});
  seeds.push_back({"unknown_two", write({.components = 2})});
  seeds.push_back({"red_green_blue", write({.space = JCS_RGB})});
  seeds.push_back({"cmyk", write({.components = 4})});
  seeds.push_back({"ycck", write({.components = 4, .space = JCS_YCCK})});
  for (const auto& [h, v] : {std::pair{1, 1}, {2, 1}, {1, 2}, {4, 1}, {1, 4}, {4, 2}, {3, 1}}) {
    const std::string sampling = std::to_string(h) + std::to_string(v);
    seeds.push_back({"sampled_" + sampling, write({.horizontal = h, .vertical = v})});
    seeds.push_back({"progressive_" + sampling, write({.progressive = true, .horizontal = h, .vertical = v})});
  }
  seeds.push_back({"progressive_gray", write({.components = 1, .progressive = true})});
  seeds.push_back({"arithmetic", write({.arithmetic = true})});
  seeds.push_back({"arithmetic_progressive", write({.progressive = true, .arithmetic = true})});
  seeds.push_back({"optimised", write({.optimised = true})});
  seeds.push_back({"restarts", write({.restart = 1})});
  seeds.push_back({"restarts_progressive", write({.progressive = true, .restart = 3})});
  seeds.push_back({"worst_quality", write({}, {}, 1)});
  seeds.push_back({"best_quality", write({}, {}, 100)});
  seeds.push_back({"one_pixel", write({.width = 1, .height = 1})});
  seeds.push_back({"strip", write({.width = 300, .height = 1})});
  seeds.push_back({"pole", write({.width = 1, .height = 300})});
}

// Orientation 6 as cameras write it, with a little-endian directory; a colour profile in two parts; a comment.
void addSegments(Seeds& seeds) {
  static const Bytes exif = {'E',  'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0,
                             0x12, 1,   3,   0,   1, 0, 0,   0,   6,  0, 0, 0, 0, 0, 0, 0};
  const auto put = [](jpeg_compress_struct& info, int marker, const Bytes& bytes) {
    jpeg_write_marker(&info, marker, bytes.data(), static_cast<unsigned>(bytes.size()));
  };
  seeds.push_back({"exif", write({}, [&](auto& info) { put(info, JPEG_APP0 + 1, exif); })});
  seeds.push_back({"profile", write({}, [&](auto& info) {
                     Bytes part(60, 'p');
                     for (std::uint8_t i = 1; i <= 2; ++i) {
                       const Bytes head = {'I', 'C', 'C', '_', 'P', 'R', 'O', 'F', 'I', 'L', 'E', 0, i, 2};
                       std::copy(head.begin(), head.end(), part.begin());
                       put(info, JPEG_APP0 + 2, part);
                     }
                   })});
  seeds.push_back({"comment", write({}, [&](auto& info) { put(info, JPEG_COM, Bytes(200, 'c')); })});
  seeds.push_back({"adobe_lies", write({}, [&](auto& info) {
                     put(info, JPEG_APP0 + 14, {'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 0});
                   })});
}

void addOrders(Seeds& seeds, const std::string& name, const Bytes& file) {
  const Segments whole = splitJpeg(file);
  const auto add = [&](const std::string& what, const Segments& segments) {
    seeds.push_back({name + "_" + what, joinJpeg(segments)});
  };
  for (const JpegMarker marker : {kFrame0, kHuffman, kTables, kScan, kEnd}) {
    Segments without, twice;
    for (const Bytes& segment : whole) {
      const bool is = isOf(segment, marker);
      if (!is) without.push_back(segment);
      twice.push_back(segment);
      if (is) twice.push_back(segment);
    }
    add("without_" + std::to_string(marker), without);
    add("twice_" + std::to_string(marker), twice);
  }
  Segments turned = whole;
  std::swap(turned[1], turned[turned.size() - 3]);
  add("turned", turned);
  Segments padded = whole;
  for (Bytes& segment : padded) segment.insert(segment.begin(), {0xFF, 0xFF});
  add("padded", padded);
  Segments rubbish = whole;
  for (Bytes& segment : rubbish) segment.insert(segment.end(), {0, 1, 2, 0xFF, 0});
  add("rubbish", rubbish);
  Segments scans = whole;
  for (int i = 0; i < 40; ++i) scans.insert(scans.end() - 1, whole[whole.size() - 2]);
  add("many_scans", scans);
}

// A length of each segment that is too short, too long, or none.
void addLengths(Seeds& seeds, const Bytes& file) {
  const Segments whole = splitJpeg(file);
  for (std::size_t i = 1; i + 1 < whole.size(); ++i) {
    for (const std::uint8_t length : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{3}, std::uint8_t{255}}) {
      Segments lying = whole;
      lying[i][3] = length;
      if (length == 255) lying[i][2] = 255;
      seeds.push_back({"length_" + std::to_string(i) + "_" + std::to_string(length), joinJpeg(lying)});
    }
  }
}

// Width, height, precision and counts of the frame that no file should have. Offsets from the frame's marker.
void addFrames(Seeds& seeds, const std::string& name, const Bytes& file) {
  static constexpr std::pair<int, int> kWrong[] = {{4, 0},  {4, 12}, {4, 16},    {5, 1},     {6, 0},
                                                   {7, 1},  {8, 0},  {9, 0},     {9, 4},     {9, 10},
                                                   {10, 2}, {11, 0}, {11, 0x55}, {11, 0x44}, {12, 7}};
  Segments whole = splitJpeg(file);
  for (Bytes& segment : whole) {
    if (segment[1] < kFrame0 || segment[1] > kFrame0 + 2) continue;
    const Bytes kept = segment;
    for (const auto& [at, value] : kWrong) {
      segment[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(value);
      seeds.push_back({name + "_frame_" + std::to_string(at) + "_" + std::to_string(value), joinJpeg(whole)});
      segment = kept;
    }
  }
}

}  // namespace

Seeds jpegSeeds() {
  Seeds seeds;
  addForms(seeds);
  addSegments(seeds);
  const Bytes plain = write({}), progressive = write({.progressive = true, .restart = 2});
  addOrders(seeds, "plain", plain);
  addOrders(seeds, "progressive", progressive);
  addLengths(seeds, plain);
  addFrames(seeds, "plain", plain);
  addFrames(seeds, "progressive", progressive);
  addDamaged(seeds, {"plain", plain});
  addDamaged(seeds, {"progressive", progressive});
  addDamaged(seeds, {"arithmetic", write({.progressive = true, .arithmetic = true, .restart = 1})});
  const Segments whole = splitJpeg(plain);
  seeds.push_back({"start_only", whole.front()});
  seeds.push_back({"no_pixels", joinJpeg({whole.front(), whole.back()})});
  seeds.push_back({"two_files", joinJpeg({plain, progressive})});
  return seeds;
}
