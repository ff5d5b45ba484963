// Whole files and pipes in memory.
#ifndef APPS_PORTRAITCUT_FILE_BYTES_H
#define APPS_PORTRAITCUT_FILE_BYTES_H

#include <span>
#include <string>
#include <vector>

// Reads a file from where it stands to its end into `bytes`, whose memory is used again. Throws Failure.
void readDescriptor(int descriptor, const std::string& name, std::vector<unsigned char>& bytes);
void readFile(const std::string& path, std::vector<unsigned char>& bytes);

// Writes everything, or throws Failure.
void writeDescriptor(int descriptor, const std::string& name, std::span<const unsigned char> bytes);

#endif
