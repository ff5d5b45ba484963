#include "portrait_size.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kMostPixels = 20000;

// ICAO Doc 9303 part 3 asks for a head, from chin to crown, of 70 to 80 percent of the height: 75. ISO/IEC 39794-5
// asks for eyes 30 to 50 percent below the top: at 45 as much is free above the crown as a centred head leaves.
constexpr HeadFraming kIcaoHead = {0.75, 0.45};
// The US Department of State asks for a head of 1 to 1 3/8 inch in a square of 2 inches, eyes 1 1/8 to 1 3/8 inch
// above the lower edge: the middles of both.
constexpr HeadFraming kUsHead = {0.59, 0.375};

constexpr Preset kPresets[] = {
    {"icao", "35x45mm", Framing::kHead, kIcaoHead, 300, Padding::kRefuse},
    {"us", "2x2in", Framing::kHead, kUsHead, 300, Padding::kRefuse},
    {"avatar", "512x512", Framing::kEyes, {}, 0, Padding::kShrink},
};

std::optional<int32_t> toPixels(double length, double dotsPerUnit) {
  const double pixels = std::round(length * dotsPerUnit);
  if (!(pixels >= 1 && pixels <= kMostPixels)) return std::nullopt;
  return static_cast<int32_t>(pixels);
}

}  // namespace

std::optional<Size> parseSize(const std::string& text, double dotsPerInch) {
  double width = 0;
  double height = 0;
  int used = 0;
  if (std::sscanf(text.c_str(), "%lfx%lf%n", &width, &height, &used) != 2) return std::nullopt;
  const std::string unit = text.substr(static_cast<size_t>(used));
  if (unit != "" && unit != "mm" && unit != "in") return std::nullopt;
  if (unit.empty() && (width != std::floor(width) || height != std::floor(height))) return std::nullopt;
  const double scale = unit == "mm" ? dotsPerInch / kMillimetresPerInch : unit == "in" ? dotsPerInch : 1;
  const std::optional<int32_t> columns = toPixels(width, scale);
  const std::optional<int32_t> rows = toPixels(height, scale);
  if (!columns || !rows) return std::nullopt;
  return Size{*columns, *rows};
}

std::optional<Colour> parseColour(const std::string& text) {
  const std::string digits = text.starts_with('#') ? text.substr(1) : text;
  unsigned red = 0, green = 0, blue = 0;
  if (digits.size() != 6 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
    return std::nullopt;
  }
  std::sscanf(digits.c_str(), "%2x%2x%2x", &red, &green, &blue);
  return Colour{static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue)};
}

const Preset* findPreset(const std::string& name) {
  const auto found =
      std::find_if(std::begin(kPresets), std::end(kPresets), [&](const Preset& preset) { return preset.name == name; });
  return found == std::end(kPresets) ? nullptr : found;
}
