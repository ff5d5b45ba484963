// Files for the tests of the codecs, written and read with libjpeg and libpng directly.
#pragma once

#include <dirent.h>
#include <png.h>
#include <unistd.h>

#include <csetjmp>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "codecs/jpeg_library.h"

using Bytes = std::vector<unsigned char>;

// Interleaved samples of a file, top row first.
struct Samples {
  int width = 0;
  int height = 0;
  int channels = 0;
  Bytes data;

  const unsigned char* pixel(int x, int y) const {
    return data.data() + (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) *
                             static_cast<std::size_t>(channels);
  }
  unsigned char* row(int y) { return data.data() + static_cast<std::size_t>(y * width * channels); }
};

// Smooth enough for JPEG, with something in every row and column.
Samples makeSamples(int width, int height, int channels);

struct JpegKind {
  int components = 3;  // 1 gray, 2 unknown, 3 colour, 4 CMYK
  bool progressive = false;
  int restartInterval = 0;  // in MCUs
};
Bytes writeJpeg(const Samples& samples, const JpegKind& kind);
// Colour at libjpeg's defaults and the given quality.
Bytes encodeJpeg(const Samples& samples, int quality);
// What libjpeg alone makes of the bytes; nothing where it reports an error.
std::optional<Samples> decodeJpeg(const Bytes& bytes);

struct PngKind {
  int colourType = PNG_COLOR_TYPE_RGB;
  int bitDepth = 8;
  bool interlaced = false;
  bool extraChunks = false;  // gamma, text and a transparent colour
};
// `samples` holds the rows as packed in the file: for depth 16 two bytes a sample, below 8 several a byte.
Bytes writePng(int width, int height, const Bytes& rows, const PngKind& kind);
Bytes writePng(const Samples& samples, const PngKind& kind);
std::optional<Samples> decodePng(const Bytes& bytes);

// A folder that ends with the object.
class Folder {
 public:
  Folder() {
    char name[] = "/tmp/portraitcut_test_XXXXXX";
    if (mkdtemp(name) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~Folder() {
    for (const std::string& file : files_) unlink(file.c_str());
    rmdir(path_.c_str());
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::string& Path() const { return path_; }
  // The path of a file in the folder, removed at the end.
  std::string operator/(const std::string& file) {
    files_.push_back(path_ + "/" + file);
    return files_.back();
  }

 private:
  std::string path_;
  std::vector<std::string> files_;
};

// A new file each time: some file systems bring a file that is emptied and written again to the disk at once.
inline void writeFile(const std::string& name, const Bytes& bytes) {
  unlink(name.c_str());
  std::ofstream file(name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline Bytes readFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline int openDescriptors() {
  int count = 0;
  DIR* const folder = opendir("/proc/self/fd");
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count;
}

// What `work` writes to the descriptors of standard output and error.
std::string printedBy(const std::function<void()>& work);
