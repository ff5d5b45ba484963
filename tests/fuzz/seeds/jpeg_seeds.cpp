// JPEG files of every form that libjpeg writes, and the same with their segments moved, doubled, lost and lying.
#include <cstdlib>
#include <functional>
#include <utility>

#include "codecs/jpeg_library.h"
#include "tests/fuzz/seeds/seeds.h"

namespace {

enum Marker : std::uint8_t {
  kFrame0 = 0xC0,
  kHuffman = 0xC4,
  kStart = 0xD8,
  kEnd = 0xD9,
  kScan = 0xDA,
  kTables = 0xDB
};

struct Form {
  int components = 3;
  J_COLOR_SPACE space = JCS_YCbCr;
  bool progressive = false, arithmetic = false, optimised = false;
  int horizontal = 2, vertical = 2;  // sampling of the first component
  unsigned restart = 0;              // in MCUs
  int quality = 80;
  unsigned width = 19, height = 21;
};

J_COLOR_SPACE inputSpace(int components) {
  if (components == 1) return JCS_GRAYSCALE;
  return components == 3 ? JCS_RGB : components == 4 ? JCS_CMYK : JCS_UNKNOWN;
}

void setUp(jpeg_compress_struct& info, const Form& form) {
  info.image_width = form.width;
  info.image_height = form.height;
  info.input_components = form.components;
  info.in_color_space = inputSpace(form.components);
  jpeg_set_defaults(&info);
  if (form.components >= 3) jpeg_set_colorspace(&info, form.space);
  jpeg_set_quality(&info, form.quality, TRUE);
  info.comp_info[0].h_samp_factor = form.horizontal;
  info.comp_info[0].v_samp_factor = form.vertical;
  info.restart_interval = form.restart;
  info.arith_code = form.arithmetic;
  info.optimize_coding = form.optimised;
  if (form.progressive) jpeg_simple_progression(&info);
}

void writeRows(jpeg_compress_struct& info, const Form& form) {
  Bytes row(form.width * static_cast<std::size_t>(form.components));
  for (unsigned y = 0; y < form.height; ++y) {
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>(i * 11 + y * 7 + (i * y) % 29);
    JSAMPROW rows[1] = {row.data()};
    jpeg_write_scanlines(&info, rows, 1);
  }
}

// `segments` may write some of its own behind the start.
Bytes write(const Form& form, const std::function<void(jpeg_compress_struct&)>& segments = {}) {
  jpeg_compress_struct info = {};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &memory, &size);
  setUp(info, form);
  jpeg_start_compress(&info, TRUE);
  if (segments) segments(info);
  writeRows(info, form);
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  Bytes bytes(memory, memory + size);
  std::free(memory);
  return bytes;
}

// A segment with its marker, or, of a scan, all up to the next marker.
using Segments = std::vector<Bytes>;

bool endsScan(const Bytes& file, std::size_t at) {
  return file[at] == 0xFF && file[at + 1] != 0 && (file[at + 1] < 0xD0 || file[at + 1] > 0xD7);
}

Segments split(const Bytes& file) {
  Segments segments;
  const auto take = [&](std::size_t from, std::size_t to) {
    segments.emplace_back(file.begin() + static_cast<std::ptrdiff_t>(from),
                          file.begin() + static_cast<std::ptrdiff_t>(to));
  };
  std::size_t at = 2;
  take(0, at);
  while (at + 4 <= file.size()) {
    std::size_t end = at + 2 + static_cast<std::size_t>(file[at + 2] << 8 | file[at + 3]);
    if (file[at + 1] == kScan) {
      while (end + 2 < file.size() && !endsScan(file, end)) ++end;
    }
    take(at, end);
    at = end;
  }
  take(at, file.size());
  return segments;
}

Bytes join(const Segments& segments) {
  Bytes file;
  for (const Bytes& segment : segments) file.insert(file.end(), segment.begin(), segment.end());
  return file;
}

void addForms(Seeds& seeds) {
  seeds.push_back({"colour", write({})});
  seeds.push_back({"gray", write({.components = 1, .horizontal = 1, .vertical = 1})});
  seeds.push_back({"gray_sampled", write({.components = 1, .horizontal = 2, .vertical = 2})});
  seeds.push_back({"unknown_two", write({.components = 2, .horizontal = 1, .vertical = 1})});
  seeds.push_back({"red_green_blue", write({.space = JCS_RGB, .horizontal = 1, .vertical = 1})});
  seeds.push_back({"cmyk", write({.components = 4, .space = JCS_CMYK, .horizontal = 1, .vertical = 1})});
  seeds.push_back({"ycck", write({.components = 4, .space = JCS_YCCK})});
  for (const auto& [h, v] : {std::pair{1, 1}, {2, 1}, {1, 2}, {4, 1}, {1, 4}, {4, 2}, {3, 1}}) {
    const std::string sampling = std::to_string(h) + std::to_string(v);
    seeds.push_back({"sampled_" + sampling, write({.horizontal = h, .vertical = v})});
    seeds.push_back({"progressive_" + sampling, write({.progressive = true, .horizontal = h, .vertical = v})});
  }
  seeds.push_back({"progressive_gray", write({.components = 1, .progressive = true, .horizontal = 1, .vertical = 1})});
  seeds.push_back({"arithmetic", write({.arithmetic = true})});
  seeds.push_back({"arithmetic_progressive", write({.progressive = true, .arithmetic = true})});
  seeds.push_back({"optimised", write({.optimised = true})});
  seeds.push_back({"restarts", write({.restart = 1})});
  seeds.push_back({"restarts_progressive", write({.progressive = true, .restart = 3})});
  seeds.push_back({"worst_quality", write({.quality = 1})});
  seeds.push_back({"best_quality", write({.quality = 100})});
  seeds.push_back({"one_pixel", write({.width = 1, .height = 1})});
  seeds.push_back({"strip", write({.width = 300, .height = 1})});
  seeds.push_back({"pole", write({
                               .width = 1,
                               .height = 300,
                           })});
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
  const Segments whole = split(file);
  const auto add = [&](const std::string& what, const Segments& segments) {
    seeds.push_back({name + "_" + what, join(segments)});
  };
  for (const Marker marker : {kFrame0, kHuffman, kTables, kScan, kEnd}) {
    Segments without, twice;
    for (const Bytes& segment : whole) {
      const bool is = segment.size() > 1 && segment[1] == marker;
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
  const Segments whole = split(file);
  for (std::size_t i = 1; i + 1 < whole.size(); ++i) {
    for (const std::uint8_t length : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{3}, std::uint8_t{255}}) {
      Segments lying = whole;
      lying[i][3] = length;
      if (length == 255) lying[i][2] = 255;
      seeds.push_back({"length_" + std::to_string(i) + "_" + std::to_string(length), join(lying)});
    }
  }
}

// Width, height, precision and counts of the frame that no file should have. Offsets from the frame's marker.
void addFrames(Seeds& seeds, const std::string& name, const Bytes& file) {
  Segments whole = split(file);
  for (Bytes& segment : whole) {
    if (segment[1] < kFrame0 || segment[1] > kFrame0 + 2) continue;
    const Bytes kept = segment;
    for (const auto& [at, value] : {std::pair{4, 0},
                                    {4, 12},
                                    {4, 16},
                                    {5, 1},
                                    {6, 0},
                                    {7, 1},
                                    {8, 0},
                                    {9, 0},
                                    {9, 4},
                                    {9, 10},
                                    {10, 2},
                                    {11, 0},
                                    {11, 0x55},
                                    {11, 0x44},
                                    {12, 7}}) {
      segment[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(value);
      seeds.push_back({name + "_frame_" + std::to_string(at) + "_" + std::to_string(value), join(whole)});
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
  const Segments whole = split(plain);
  seeds.push_back({"start_only", whole.front()});
  seeds.push_back({"no_pixels", join({whole.front(), whole.back()})});
  seeds.push_back({"two_files", join({plain, progressive})});
  return seeds;
}
