// Prints what the worst pictures cost that are known, each in a process of its own, as rows of a table.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <functional>

#include "api/vizl_api.h"
#include "tests/files/hostile_files.h"

namespace {

enum class Format { kJpeg, kPng, kBmp };

struct Case {
  const char* what;
  Format format;
  std::function<Bytes()> make;
};

constexpr JpegCoding kBaseline = JpegCoding::kBaseline, kProgressive = JpegCoding::kProgressive;
constexpr JpegCoding kArithmetic = JpegCoding::kArithmetic, kArithmeticProgressive = JpegCoding::kArithmeticProgressive;
// The largest square of three bytes a pixel, and the largest of which a file need not hold anything.
constexpr int kLargest = 26740, kTrusted = 8192;

// Files are made where they are measured.
#define LATER(...) [] { return __VA_ARGS__; }

const std::vector<Case>& cases() {
  static const std::vector<Case> all = {
      {"JPEG, header alone, 65,500 by 65,500", Format::kJpeg, LATER(emptyJpeg({65500, 65500, 3}, kBaseline))},
      {"JPEG, header alone, 20,000 by 20,000", Format::kJpeg, LATER(emptyJpeg({20000, 20000, 3}, kBaseline))},
      {"JPEG, header alone, 8,192 by 8,192", Format::kJpeg, LATER(emptyJpeg({kTrusted, kTrusted, 3}, kBaseline))},
      {"the same, progressive", Format::kJpeg, LATER(emptyJpeg({kTrusted, kTrusted, 3}, kProgressive))},
      {"the same, arithmetic", Format::kJpeg, LATER(emptyJpeg({kTrusted, kTrusted, 3}, kArithmetic))},
      {"the same, arithmetic and progressive", Format::kJpeg,
       LATER(emptyJpeg({kTrusted, kTrusted, 3}, kArithmeticProgressive))},
      {"JPEG, header alone, arithmetic, 26,740 by 26,740", Format::kJpeg,
       LATER(emptyJpeg({kLargest, kLargest, 3}, kArithmetic))},
      {"JPEG, progressive, 20,000 empty scans, 8,000 by 8,000 gray", Format::kJpeg,
       LATER(manyScans({8000, 8000, 1}, kProgressive, 20000))},
      {"the same in colour", Format::kJpeg, LATER(manyScans({8000, 8000, 3}, kProgressive, 20000))},
      {"the same, arithmetic", Format::kJpeg, LATER(manyScans({8000, 8000, 3}, kArithmeticProgressive, 20000))},
      {"the same of 2,000 scans, 500 by 500", Format::kJpeg, LATER(manyScans({500, 500, 3}, kProgressive, 2000))},
      {"the same of 1,000 scans, 26,740 by 26,740 gray", Format::kJpeg,
       LATER(manyScans({kLargest, kLargest, 1}, kProgressive, 995, 1500000))},
      {"the same in colour", Format::kJpeg, LATER(manyScans({kLargest, kLargest, 3}, kProgressive, 991, 4300000))},
      {"JPEG of one colour, 26,740 by 26,740", Format::kJpeg, LATER(flatJpeg({kLargest, kLargest, 3}, kBaseline))},
      {"the same, progressive", Format::kJpeg, LATER(flatJpeg({kLargest, kLargest, 3}, kProgressive))},
      {"the same, progressive, gray", Format::kJpeg, LATER(flatJpeg({kLargest, kLargest, 1}, kProgressive))},
      {"PNG, header alone, 65,535 by 10,000", Format::kPng,
       LATER(pngWithSides(flatPng({8, 8, 3}, false), 65535, 10000))},
      {"PNG of zeros, 26,740 by 26,740", Format::kPng, LATER(flatPng({kLargest, kLargest, 3}, false))},
      {"the same, interlaced", Format::kPng, LATER(flatPng({kLargest, kLargest, 3}, true))},
      {"the same, interlaced, gray", Format::kPng, LATER(flatPng({kLargest, kLargest, 1}, true))},
      {"PNG of zeros with alpha, 23,000 by 23,000, interlaced", Format::kPng, LATER(flatPng({23000, 23000, 4}, true))},
      {"PNG, 8 by 8, 256 MiB of zeros in 260 kB of a colour profile", Format::kPng,
       [] {
         Bytes profile(3, 0);
         profile[0] = 'x';
         const Bytes zeros = packedZeros(std::size_t{1} << 28);
         profile.insert(profile.end(), zeros.begin(), zeros.end());
         return pngWithChunk(flatPng({8, 8, 3}, false), "iCCP", profile);
       }},
      {"PNG, 8 by 8, the same behind the last row", Format::kPng,
       LATER(pngWithSides(flatPng({8, 1 << 23, 4}, false), 8, 8))},
      {"BMP, header alone, 26,740 by 26,740", Format::kBmp, LATER(flatBmp({kLargest, kLargest}, 24, 0))},
      {"BMP, header alone, 8,192 by 8,192", Format::kBmp, LATER(flatBmp({kTrusted, kTrusted}, 24, 0))},
      {"BMP of 1 bit, a sixteenth there, 26,740 by 26,740", Format::kBmp,
       LATER(flatBmp({kLargest, kLargest}, 1, 1.0 / 16 + 0.0001))},
  };
  return all;
}

int32_t load(const Case& hostile, const Bytes& bytes, const std::string& path) {
  HImage image = 0;
  const auto size = static_cast<unsigned>(bytes.size());
  if (hostile.format == Format::kBmp) return VIZL_LoadImageFromFile(&image, path.c_str());
  return (hostile.format == Format::kJpeg ? VIZL_LoadImageFromJpegBuffer : VIZL_LoadImageFromPngBuffer)(
      &image, bytes.data(), size);
}

// The file is made beforehand; what it takes is left out of the peak.
void measure(const Case& hostile) {
  Folder folder;
  const std::string path = folder / "hostile.bmp";
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    writeFile(path, hostile.make());
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  std::fflush(stdout);
  const pid_t second = fork();
  if (second == 0) {
    const Bytes bytes = readFile(path);
    VIZL_Initialize(nullptr);
    rusage before = {}, after = {};
    getrusage(RUSAGE_SELF, &before);
    const int32_t code = load(hostile, bytes, path);
    getrusage(RUSAGE_SELF, &after);
    const auto seconds = [](const rusage& used) {
      return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
             static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) * 1e-6;
    };
    std::printf("| %s | %zu | %d | %.2f | %ld |\n", hostile.what, bytes.size(), code, seconds(after) - seconds(before),
                (after.ru_maxrss - before.ru_maxrss) / 1024);
    std::fflush(stdout);
    _exit(0);
  }
  waitpid(second, nullptr, 0);
}

}  // namespace

int main(int argc, char** argv) {
  std::puts("| picture | bytes | code | seconds | MiB |\n|---|---|---|---|---|");
  for (const Case& hostile : cases()) {
    if (argc < 2 || std::strstr(hostile.what, argv[1]) != nullptr) measure(hostile);
  }
  return 0;
}
