#include <exception>
#include <utility>
#include <vector>

#include "codecs/file.h"
#include "codecs/png_common.h"
#include "codecs/row_convert.h"
#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

constexpr int kNoFile = -1;
constexpr int kNoWrite = -2;
constexpr int kNoInfo = -3;
constexpr int kInitFailed = -4;
constexpr int kHeaderFailed = -5;
constexpr int kPixelsFailed = -6;
constexpr int kEndFailed = -7;

// Holds the encoder. Its functions that call into libpng are where an error jumps to, so they hold nothing
// with a destructor.
class PngEncoder {
 public:
  PngEncoder() : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, pngJumpOut, pngDropWarning)) {
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngEncoder() {
    if (png_ != nullptr) png_destroy_write_struct(&png_, &info_);
  }
  PngEncoder(const PngEncoder&) = delete;
  PngEncoder& operator=(const PngEncoder&) = delete;

  bool HasWrite() const { return png_ != nullptr; }
  bool HasInfo() const { return info_ != nullptr; }
  bool Init(std::FILE* file);
  bool WriteHeader(int width, int height);
  // `row` has room for one row of red, green, blue and alpha.
  bool WriteRows(const TIppiImage& image, unsigned char* row);
  bool End();

 private:
  png_structp png_;
  png_infop info_ = nullptr;
};

// The row as red, green, blue, alpha: the image's own where it has that layout, else a conversion in
// `row`, whose alpha bytes hold 255. Not inline, so that none of its variables live in the frame that is
// jumped to.
[[gnu::noinline]] const unsigned char* alphaRow(const TIppiImage& image, int y, unsigned char* row) {
  const unsigned char* const source = pictureRow(image, y);
  const IppiSize roi = {image.Width, 1};
  const int rowBytes = image.Width * 4;
  if (image.Mode == imGray8) {
    const Ipp8u* const planes[4] = {source, source, source, source};
    ippiCopy_8u_P4C4R(planes, image.Step, row, rowBytes, roi);
    ippiSet_8u_C4CR(255, row + 3, rowBytes, roi);
    return row;
  }
  if (image.Mode == imRGB24) {
    ippiCopy_8u_C3AC4R(source, image.Step, row, rowBytes, roi);
    return row;
  }
  return source;
}

bool PngEncoder::Init(std::FILE* file) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_init_io(png_, file);
  return true;
}

bool PngEncoder::WriteHeader(int width, int height) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_set_IHDR(png_, info_, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
               PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png_, info_);
  return true;
}

bool PngEncoder::WriteRows(const TIppiImage& image, unsigned char* row) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  for (int y = 0; y < image.Height; ++y) png_write_row(png_, alphaRow(image, y, row));
  return true;
}

bool PngEncoder::End() {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_write_end(png_, nullptr);
  return true;
}

int writeStages(PngEncoder& encoder, std::FILE* file, const TIppiImage& image, unsigned char* row) {
  if (!encoder.Init(file)) return kInitFailed;
  if (!encoder.WriteHeader(image.Width, image.Height)) return kHeaderFailed;
  if (!encoder.WriteRows(image, row)) return kPixelsFailed;
  return encoder.End() ? 0 : kEndFailed;
}

int encode(const TIppiImage& image, const char* fileName) {
  File file = openFile(fileName, "wbe");
  if (file == nullptr) return kNoFile;
  std::vector<unsigned char> row(static_cast<std::size_t>(image.Width) * 4, 255);
  PngEncoder encoder;
  if (!encoder.HasWrite()) return kNoWrite;
  if (!encoder.HasInfo()) return kNoInfo;
  const int code = writeStages(encoder, file.get(), image, row.data());
  const bool whole = closeWritten(std::move(file), code == 0);
  return code == 0 && !whole ? kEndFailed : code;
}

}  // namespace

int TIppiImage::SaveToPngFile(const char* fileName) {
  try {
    if (Pixels != nullptr && Mode <= imRGBA32) return encode(*this, fileName);
    // Images without 8-bit pixels are written black.
    TIppiImage black(imRGB24);
    black.AllocNew(Width, Height);
    return encode(black, fileName);
  } catch (const std::exception&) {
    return kInitFailed;
  }
}
