// Sizes of portraits, as pixels, lengths on paper or names.
#ifndef APPS_PORTRAITCUT_PORTRAIT_SIZE_H
#define APPS_PORTRAITCUT_PORTRAIT_SIZE_H

#include <optional>
#include <string>

#include "options.h"

// "300x400" in pixels; "35x45mm" and "2x2in" at so many dots per inch. Nothing for anything else, sizes without a pixel
// and sizes of more than 20,000 pixels.
std::optional<Size> parseSize(const std::string& text, double dotsPerInch);

// Six hexadecimal digits, red first, with or without "#" before them.
std::optional<Colour> parseColour(const std::string& text);

// A size with a framing of its own.
struct Preset {
  const char* name;
  const char* size;
  Framing framing;
  HeadFraming head;
  double dotsPerInch;  // 0: a size in pixels
  Padding padding;
};

// Null for an unknown name.
const Preset* findPreset(const std::string& name);

#endif
