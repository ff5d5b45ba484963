#include <exception>
#include <utility>
#include <vector>

#include "codecs/file.h"
#include "codecs/jpeg_errors.h"
#include "codecs/row_convert.h"
#include "image/TIppiImage.h"
#include "image/params.h"
#include "primitives/ippi.h"

namespace {

// Holds the encoder. Write is where libjpeg's errors jump to, so it holds nothing with a destructor.
class JpegEncoder {
 public:
  JpegEncoder() { info_.err = installJpegErrors(errors_); }
  ~JpegEncoder() { jpeg_destroy_compress(&info_); }
  JpegEncoder(const JpegEncoder&) = delete;
  JpegEncoder& operator=(const JpegEncoder&) = delete;

  // `row` has room for one row of red, green and blue.
  bool Write(std::FILE* file, const TIppiImage& image, unsigned char* row, int quality);

 private:
  // Apart from Write, so that none of their variables live in the frame that is jumped to.
  [[gnu::noinline]] void Start(std::FILE* file, const TIppiImage& image, int quality);
  [[gnu::noinline]] void WriteRows(const TIppiImage& image, unsigned char* row);

  jpeg_compress_struct info_ = {};
  JpegErrors errors_ = {};
};

// The row as red, green, blue: the image's own where it has that layout, else a conversion in `row`.
unsigned char* colourRow(const TIppiImage& image, int y, unsigned char* row) {
  unsigned char* const source = pictureRow(image, y);
  const IppiSize roi = {image.Width, 1};
  const int rowBytes = image.Width * 3;
  if (image.Mode == imGray8) {
    const Ipp8u* const planes[3] = {source, source, source};
    ippiCopy_8u_P3C3R(planes, image.Step, row, rowBytes, roi);
    return row;
  }
  if (image.Mode == imRGBA32) {
    ippiCopy_8u_AC4C3R(source, image.Step, row, rowBytes, roi);
    return row;
  }
  return source;
}

void JpegEncoder::Start(std::FILE* file, const TIppiImage& image, int quality) {
  jpeg_create_compress(&info_);
  jpeg_stdio_dest(&info_, file);
  info_.image_width = static_cast<JDIMENSION>(image.Width);
  info_.image_height = static_cast<JDIMENSION>(image.Height);
  info_.input_components = 3;
  info_.in_color_space = JCS_RGB;
  jpeg_set_defaults(&info_);
  jpeg_set_quality(&info_, quality, TRUE);
  jpeg_start_compress(&info_, TRUE);
}

void JpegEncoder::WriteRows(const TIppiImage& image, unsigned char* row) {
  while (info_.next_scanline < info_.image_height) {
    JSAMPROW rows[1] = {colourRow(image, static_cast<int>(info_.next_scanline), row)};
    jpeg_write_scanlines(&info_, rows, 1);
  }
}

bool JpegEncoder::Write(std::FILE* file, const TIppiImage& image, unsigned char* row, int quality) {
  if (setjmp(errors_.jump) != 0) return false;
  Start(file, image, quality);
  WriteRows(image, row);
  jpeg_finish_compress(&info_);
  return true;
}

bool encode(const TIppiImage& image, const char* fileName, int quality) {
  File file = openFile(fileName, "wbe");
  if (file == nullptr) return false;
  std::vector<unsigned char> row(static_cast<std::size_t>(image.Width) * 3);
  JpegEncoder encoder;
  const bool whole = encoder.Write(file.get(), image, row.data(), quality);
  return closeWritten(std::move(file), whole);
}

}  // namespace

int TIppiImage::SaveToJpegFile(const char* fileName, int context) {
  try {
    const int quality = ContextJpegQuality(context);
    if (Pixels != nullptr && Mode <= imRGBA32) return encode(*this, fileName, quality) ? 0 : -1;
    // Images without 8-bit pixels are written black.
    TIppiImage black(imRGB24);
    black.AllocNew(Width, Height);
    return encode(black, fileName, quality) ? 0 : -1;
  } catch (const std::exception&) {
    return -1;
  }
}
