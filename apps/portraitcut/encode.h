// Pictures into files and memory.
#ifndef APPS_PORTRAITCUT_ENCODE_H
#define APPS_PORTRAITCUT_ENCODE_H

#include <string>
#include <vector>

#include "options.h"
#include "picture.h"

// ".jpg", ".png" or ".bmp"; kAuto counts as JPEG.
const char* endingOf(Format format);
// kAuto for a name that ends in none of the known ways.
Format formatOfName(const std::string& name);

// Writes a file, whose name has to end as the format says. Throws Failure.
void saveTo(const std::string& path, const Picture& picture);
std::vector<unsigned char> encode(const Picture& picture, Format format);

#endif
