// Base64 with padding, as RFC 4648 has it.
#ifndef APPS_PORTRAITCUT_BASE64_H
#define APPS_PORTRAITCUT_BASE64_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

std::string toBase64(std::span<const unsigned char> bytes);

// Line breaks are passed over. Nothing for any other wrong character or a wrong length.
std::optional<std::vector<unsigned char>> fromBase64(std::string_view text);

#endif
