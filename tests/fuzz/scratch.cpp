#include "tests/fuzz/scratch.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

class Folder {
 public:
  Folder() {
    std::string name = std::filesystem::temp_directory_path() / "portraitcut_fuzz_XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

std::string scratchPath(const std::string& name) {
  static const Folder folder;
  return folder.Path() + "/" + name;
}

std::string writeScratch(const std::string& name, const std::uint8_t* data, std::size_t size) {
  const std::string path = scratchPath(name);
  // A new file each time: some file systems bring a file that is emptied and written again to the disk at once.
  std::filesystem::remove(path);
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  return path;
}
