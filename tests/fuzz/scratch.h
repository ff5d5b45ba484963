// Files that a target has the library read and write, in a folder that ends with the process.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A path in the folder; `name` is one of a few that come again and again.
std::string scratchPath(const std::string& name);
// Replaces a file there and gives its path.
std::string writeScratch(const std::string& name, const std::uint8_t* data, std::size_t size);
