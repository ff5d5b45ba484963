#include <algorithm>
#include <cstdint>
#include <exception>
#include <vector>

#include "codecs/file.h"
#include "codecs/png_common.h"
#include "codecs/png_source.h"
#include "codecs/row_convert.h"
#include "image/TIppiImage.h"

namespace {

constexpr int kSignatureBytes = 8;
// Rows decoded before they are converted together.
constexpr int kRowsAtOnce = 16;
// Deflate can't give more than this many bytes for one.
constexpr long long kDeflateRatio = 1032;
// What a file may bring with its last row besides the row itself, which deflate can't make much longer. libpng would
// unpack all that follows, a thousand times its bytes, to drop it.
constexpr std::uint64_t kTailBytes = 1 << 16;

// What each failure is told as; a file and a buffer have their own numbers.
struct PngCodes {
  int noRead;
  int noInfo;
  int header;
  int pixels;
  int type;
};

constexpr PngCodes kBufferCodes = {-2, -3, -6, -6, -7};
constexpr PngCodes kFileCodes = {-3, -4, -5, -6, -7};

// Holds the decoder. Its functions that call into libpng are where an error jumps to, so they hold nothing
// with a destructor.
class PngDecoder {
 public:
  PngDecoder() : png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, pngJumpOut, pngDropWarning)) {
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngDecoder() {
    if (png_ != nullptr) png_destroy_read_struct(&png_, &info_, nullptr);
  }
  PngDecoder(const PngDecoder&) = delete;
  PngDecoder& operator=(const PngDecoder&) = delete;

  bool HasRead() const { return png_ != nullptr; }
  bool HasInfo() const { return info_ != nullptr; }
  int Width() const { return static_cast<int>(png_get_image_width(png_, info_)); }
  int Height() const { return static_cast<int>(png_get_image_height(png_, info_)); }
  bool Interlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }
  // 1, 3 or 4, or 0 for the layouts that are refused.
  int Channels() const;

  // From a file whose signature has been read, or from a buffer where `file` is null. The buffer stays in use.
  bool ReadHeader(std::FILE* file, my_png_buffer_* buffer);
  // The next `count` rows; of an interlaced file all rows at once.
  bool ReadRows(unsigned char* first, std::ptrdiff_t step, int count);

 private:
  void LimitTail();
  bool StoppedInTail() const;

  png_structp png_;
  png_infop info_ = nullptr;
  int passes_ = 1;
  PngFile file_ = {nullptr, UINT64_MAX, false};
  my_png_buffer_* buffer_ = nullptr;
  long long rowsLeft_ = 0;  // to be read, those of all passes
  bool bufferLimited_ = false;
};

int PngDecoder::Channels() const {
  if (png_get_bit_depth(png_, info_) != 8) return 0;
  switch (png_get_color_type(png_, info_)) {
    case PNG_COLOR_TYPE_GRAY:
      return 1;
    case PNG_COLOR_TYPE_RGB:
      return 3;
    case PNG_COLOR_TYPE_RGB_ALPHA:
      return 4;
    default:
      return 0;
  }
}

bool PngDecoder::ReadHeader(std::FILE* file, my_png_buffer_* buffer) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_set_user_limits(png_, kMaxImageSide, kMaxImageSide);
#ifdef PNG_HANDLE_AS_UNKNOWN_SUPPORTED
  // Texts, colour profiles and chunks that it does not know are of no use here, and libpng would take and
  // clear as much memory for one as a hostile file declares.
  png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
#endif
  if (file != nullptr) {
    file_.file = file;
    png_set_read_fn(png_, &file_, pngReadFile);
    png_set_sig_bytes(png_, kSignatureBytes);
  } else {
    buffer_ = buffer;
    png_data_read(png_, buffer);
  }
  png_read_info(png_, info_);
  passes_ = png_set_interlace_handling(png_);
  png_read_update_info(png_, info_);
  rowsLeft_ = 1LL * passes_ * Height();
  return true;
}

bool PngDecoder::ReadRows(unsigned char* first, std::ptrdiff_t step, int count) {
  // Where the limit stops libpng behind the last row, nothing is wrong with the picture.
  if (setjmp(png_jmpbuf(png_)) != 0) return StoppedInTail();
  for (int pass = 0; pass < passes_; ++pass) {
    for (int i = 0; i < count; ++i) {
      if (rowsLeft_ == 1) LimitTail();
      png_read_row(png_, first + i * step, nullptr);
      --rowsLeft_;
    }
  }
  return true;
}

void PngDecoder::LimitTail() {
  const std::uint64_t allowed = 2 * png_get_rowbytes(png_, info_) + kTailBytes;
  file_.left = allowed;
  if (buffer_ == nullptr || buffer_->size - buffer_->position <= allowed) return;
  buffer_->size = buffer_->position + allowed;
  bufferLimited_ = true;
}

// libpng counts a row before it looks for the end of the packed data.
bool PngDecoder::StoppedInTail() const {
  constexpr int kAllPasses = 7;
  if (!bufferLimited_ && !file_.stopped) return false;
  if (Interlaced()) return png_get_current_pass_number(png_) == kAllPasses;
  return png_get_current_row_number(png_) == png_get_image_height(png_, info_);
}

bool readDirect(PngDecoder& decoder, TIppiImage& image) {
  return decoder.ReadRows(pictureRow(image, 0), -static_cast<std::ptrdiff_t>(image.Step), image.Height);
}

bool readConverted(PngDecoder& decoder, TIppiImage& image) {
  const int channels = decoder.Channels();
  const int step = image.Width * channels;
  const int rowsAtOnce = decoder.Interlaced() ? image.Height : std::min(kRowsAtOnce, image.Height);
  std::vector<unsigned char> rows(static_cast<std::size_t>(step) * static_cast<std::size_t>(rowsAtOnce));
  for (int y = 0; y < image.Height; y += rowsAtOnce) {
    const int count = std::min(rowsAtOnce, image.Height - y);
    if (!decoder.ReadRows(rows.data(), step, count)) return false;
    convertRows({rows.data(), step, channels, count}, image, y, true);
  }
  return true;
}

bool canBeFilled(const PngDecoder& decoder, long long bytes) {
  const long long needed = static_cast<long long>(decoder.Width()) * decoder.Height() * decoder.Channels();
  return needed <= kMaxImageBytes && (bytes == kUnknownBytes || needed / kDeflateRatio <= bytes);
}

int decode(TIppiImage& image, std::FILE* file, my_png_buffer_* buffer, long long bytes, const PngCodes& codes) {
  PngDecoder decoder;
  if (!decoder.HasRead()) return codes.noRead;
  if (!decoder.HasInfo()) return codes.noInfo;
  if (!decoder.ReadHeader(file, buffer)) return codes.header;
  if (!canBeFilled(decoder, bytes)) return codes.pixels;
  const int channels = decoder.Channels();
  if (channels == 0) {
    image.AllocNew(decoder.Width(), decoder.Height());
    image.FreeImage();
    return codes.type;
  }
  image.AllocNew(decoder.Width(), decoder.Height());
  const bool direct = sameLayout(channels, image.Mode) || (channels == 4 && image.Mode == imRGBA32);
  return (direct ? readDirect : readConverted)(decoder, image) ? 0 : codes.pixels;
}

}  // namespace

int TIppiImage::LoadFromPngBuffer(const unsigned char* data, unsigned int size) {
  if (data == nullptr || size < kSignatureBytes || png_sig_cmp(data, 0, kSignatureBytes) != 0) return -1;
  my_png_buffer_ buffer = {data, size, 0};
  try {
    return decode(*this, nullptr, &buffer, size, kBufferCodes);
  } catch (const std::exception&) {
    return kBufferCodes.pixels;
  }
}

int TIppiImage::LoadFromPngFile(const char* fileName) {
  const File file = openFile(fileName, "rbe");
  if (file == nullptr) return -1;
  unsigned char signature[kSignatureBytes];
  if (std::fread(signature, 1, kSignatureBytes, file.get()) != kSignatureBytes) return -2;
  if (png_sig_cmp(signature, 0, kSignatureBytes) != 0) return -2;
  try {
    return decode(*this, file.get(), nullptr, fileBytes(file.get()), kFileCodes);
  } catch (const std::exception&) {
    return kFileCodes.pixels;
  }
}
