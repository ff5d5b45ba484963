#include <algorithm>
#include <climits>
#include <cstring>
#include <exception>

#include "codecs/file.h"
#include "codecs/jpeg_errors.h"
#include "codecs/jpeg_source.h"
#include "codecs/row_convert.h"
#include "image/TIppiImage.h"

namespace {

// Rows asked of libjpeg at a time; it gives one or two of them, as its upsampling goes.
constexpr int kRowsAtOnce = 16;

// Up to this many pixels a file cut short is decoded as far as it goes. Above, one that can't hold the least that
// Huffman codes take is refused, so that a header alone does not cost gigabytes: two bits for each block of 8 by 8, or
// one in the first scan of a progressive file. Arithmetic coding can do with less, but only for pictures of one colour.
constexpr long long kTrustedPixels = 1LL << 26;

// Each scan of a progressive file walks over the blocks of its components, however few bytes it has. Encoders write
// about ten scans, most of one component, which come to five walks over the whole picture. So ten are always allowed,
// and more until the visits of blocks reach 2^26, some half a second: more than a hundred walks over 12 megapixels.
constexpr long long kVisitsAllowed = 1LL << 26;
constexpr long long kWalksAllowed = 10;
// What a scan costs besides its blocks counts where these are few.
constexpr int kScansAllowed = 500;

struct JpegProgress {
  jpeg_progress_mgr base;
  long long visits;  // of blocks, by all scans so far
};

// Holds the decoder. Its functions that call into libjpeg are where an error jumps to, so they hold nothing
// with a destructor.
class JpegDecoder {
 public:
  JpegDecoder() { info_.err = installJpegErrors(errors_); }
  ~JpegDecoder() { jpeg_destroy_decompress(&info_); }
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;

  const jpeg_decompress_struct& Info() const { return info_; }

  // From a file, or from a buffer where `file` is null.
  bool ReadHeader(std::FILE* file, const unsigned char* data, int size);
  bool Start();
  bool ReadRows(TIppiImage& image);

 private:
  static void CountVisits(j_common_ptr codec);
  void ReadDirect(TIppiImage& image);
  void ReadConverted(TIppiImage& image);

  jpeg_decompress_struct info_ = {};
  JpegErrors errors_ = {};
  JpegProgress progress_ = {};
};

// Of all components.
long long blocksOf(const jpeg_decompress_struct& info) {
  long long blocks = 0;
  for (int i = 0; i < info.num_components; ++i) {
    blocks += 1LL * info.comp_info[i].width_in_blocks * info.comp_info[i].height_in_blocks;
  }
  return blocks;
}

// libjpeg calls it before each row of MCUs, of every scan.
void JpegDecoder::CountVisits(j_common_ptr codec) {
  const auto* const info = reinterpret_cast<j_decompress_ptr>(codec);
  long long& visits = reinterpret_cast<JpegProgress*>(info->progress)->visits;
  for (int i = 0; i < info->comps_in_scan; ++i) {
    const jpeg_component_info& component = *info->cur_comp_info[i];
    visits += 1LL * component.width_in_blocks * component.v_samp_factor;
  }
  const long long allowed = std::max(kVisitsAllowed, kWalksAllowed * blocksOf(*info));
  if (visits > allowed || info->input_scan_number > kScansAllowed) codec->err->error_exit(codec);
}

bool JpegDecoder::ReadHeader(std::FILE* file, const unsigned char* data, int size) {
  if (setjmp(errors_.jump) != 0) return false;
  jpeg_create_decompress(&info_);
  // Coefficients of a progressive file take 16 bits a sample: twice the largest image.
  info_.mem->max_memory_to_use = 2 * kMaxImageBytes;
  progress_.base.progress_monitor = CountVisits;
  info_.progress = &progress_.base;
  if (file != nullptr) {
    jpeg_stdio_src(&info_, file);
  } else {
    jpeg_myreader_src(&info_, data, size);
  }
  // An empty buffer suspends here and fails at the start.
  jpeg_read_header(&info_, TRUE);
  return true;
}

bool JpegDecoder::Start() {
  if (setjmp(errors_.jump) != 0) return false;
  const bool started = jpeg_start_decompress(&info_) != FALSE;
  // All scans have been read; libjpeg would go on to tell of the rows that it gives out.
  info_.progress = nullptr;
  return started;
}

bool JpegDecoder::ReadRows(TIppiImage& image) {
  if (setjmp(errors_.jump) != 0) return false;
  if (sameLayout(info_.output_components, image.Mode)) {
    ReadDirect(image);
  } else {
    ReadConverted(image);
  }
  jpeg_finish_decompress(&info_);
  return true;
}

void JpegDecoder::ReadDirect(TIppiImage& image) {
  while (info_.output_scanline < info_.output_height) {
    JSAMPROW rows[kRowsAtOnce];
    const int y = static_cast<int>(info_.output_scanline);
    const int count = std::min(kRowsAtOnce, image.Height - y);
    for (int i = 0; i < count; ++i) rows[i] = pictureRow(image, y + i);
    if (jpeg_read_scanlines(&info_, rows, static_cast<JDIMENSION>(count)) == 0) return;
  }
}

void JpegDecoder::ReadConverted(TIppiImage& image) {
  const JDIMENSION rowBytes = info_.output_width * static_cast<JDIMENSION>(info_.output_components);
  JSAMPARRAY const rows = info_.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info_), JPOOL_IMAGE, rowBytes, 1);
  while (info_.output_scanline < info_.output_height) {
    const int y = static_cast<int>(info_.output_scanline);
    if (jpeg_read_scanlines(&info_, rows, 1) == 0) return;
    convertRows({rows[0], static_cast<int>(rowBytes), info_.output_components, 1}, image, y, false);
  }
}

bool canBeFilled(const jpeg_decompress_struct& info, long long bytes) {
  if (bytes == kUnknownBytes) return true;
  const long long pixels = static_cast<long long>(info.image_width) * info.image_height;
  return pixels <= kTrustedPixels || blocksOf(info) * (info.progressive_mode ? 1 : 2) <= bytes * 8;
}

// Decoded rows fill these modes; they bring no alpha, and no floats.
bool isFilled(TIppiImageMode mode) { return mode == imGray8 || mode == imRGB24; }

void allocPicture(TIppiImage& image, int width, int height) {
  if (isFilled(image.Mode)) {
    image.AllocToFill(width, height);
  } else {
    image.AllocNew(width, height);
  }
}

// Rows that a failed load has not reached are black.
void clearFrom(TIppiImage& image, int y) {
  if (image.Pixels == nullptr || !isFilled(image.Mode)) return;
  const int rows = std::max(image.Height - y, 0);
  std::memset(image.Pixels, 0, static_cast<std::size_t>(rows) * static_cast<std::size_t>(image.Step));
}

int decode(TIppiImage& image, std::FILE* file, const unsigned char* data, int size) {
  JpegDecoder decoder;
  if (!decoder.ReadHeader(file, data, size)) return -1;
  const jpeg_decompress_struct& info = decoder.Info();
  if (!canBeFilled(info, file != nullptr ? fileBytes(file) : size)) return -1;
  if (info.image_width > INT_MAX || info.image_height > INT_MAX) return -1;
  // Before the start, where a progressive file is read whole: the limits come first.
  allocPicture(image, static_cast<int>(info.image_width), static_cast<int>(info.image_height));
  if (!decoder.Start()) {
    // Black by fresh memory: to write it would cost seconds where a file of no worth declares gigabytes.
    if (isFilled(image.Mode)) image.AllocNew(image.Width, image.Height);
    return -1;
  }
  const int components = info.output_components;
  if (components != 1 && components != 3 && components != 4) {
    image.FreeImage();
    return -2;
  }
  if (decoder.ReadRows(image)) return 0;
  clearFrom(image, static_cast<int>(info.output_scanline));
  return -1;
}

}  // namespace

int TIppiImage::LoadFromJpegBuffer(const unsigned char* data, unsigned int size) {
  if (size > INT_MAX || (data == nullptr && size > 0)) return -1;
  try {
    return decode(*this, nullptr, data, static_cast<int>(size));
  } catch (const std::exception&) {
    return -1;
  }
}

int TIppiImage::LoadFromJpegFile(const char* fileName) {
  const File file = openFile(fileName, "rbe");
  if (file == nullptr) return -1;
  try {
    const int code = decode(*this, file.get(), nullptr, 0);
    // libjpeg takes what can't be read for the end of a file cut short, which it carries on with.
    return code == 0 && std::ferror(file.get()) != 0 ? -1 : code;
  } catch (const std::exception&) {
    return -1;
  }
}
