// Text that JSON can hold.
#ifndef APPS_PORTRAITCUT_UTF8_H
#define APPS_PORTRAITCUT_UTF8_H

#include <string>

// The text with U+FFFD for every byte that is no part of well-formed UTF-8.
std::string validUtf8(const std::string& text);

#endif
