#include "tests/fuzz/scratch.h"

#include "tests/files/files.h"

std::string scratchPath(const std::string& name) {
  static const Folder folder;
  return folder / name;
}

std::string writeScratch(const std::string& name, const std::uint8_t* data, std::size_t size) {
  const std::string path = scratchPath(name);
  writeFile(path, Bytes(data, data + size));
  return path;
}
