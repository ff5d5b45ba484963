// Files of the tests: their bytes, put together, read and written, and a folder for them.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

using Bytes = std::vector<unsigned char>;

inline void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

inline void putLittleEndian(Bytes& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
}

inline void setBigEndian(unsigned char* place, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) place[i] = static_cast<unsigned char>(value >> 8 * (count - 1 - i));
}

inline void putBigEndian(Bytes& bytes, std::uint32_t value) {
  bytes.resize(bytes.size() + 4);
  setBigEndian(bytes.data() + bytes.size() - 4, value, 4);
}

inline std::uint32_t bigEndian(const unsigned char* place) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | place[i];
  return value;
}

// Nothing for a file that is not there.
inline Bytes readFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A new file each time: some file systems bring a file that is emptied and written again to the disk at once.
inline void writeFile(const std::string& name, const Bytes& bytes) {
  std::filesystem::remove(name);
  std::ofstream file(name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// A folder that ends with the object, and all in it.
class Folder {
 public:
  Folder() : path_(std::filesystem::temp_directory_path() / "portraitcut_test_XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string operator/(const std::string& file) const { return path_ + "/" + file; }

 private:
  std::string path_;
};

// Of the process.
inline std::ptrdiff_t openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}
