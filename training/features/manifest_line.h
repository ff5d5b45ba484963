// Lines of models/manifest.txt.
#pragma once

#include <string>
#include <vector>

// Lower case hexadecimal digits.
std::string sha256(const std::vector<unsigned char>& bytes);

// The command as it can be typed elsewhere: names without their folders, and DATA for the folder after --data.
std::string commandOf(int argc, const char* const* argv);

// Name, size, SHA-256 and how the blob is made.
std::string manifestLine(const std::string& name, const std::vector<unsigned char>& bytes, const std::string& command);
