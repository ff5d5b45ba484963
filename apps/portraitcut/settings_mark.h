// Tells two runs apart that would make other pictures of the same files.
#ifndef APPS_PORTRAITCUT_SETTINGS_MARK_H
#define APPS_PORTRAITCUT_SETTINGS_MARK_H

#include <string>

#include "options.h"

// Sixteen hexadecimal digits out of the command and all options that have an effect on its results.
std::string settingsMark(const Options& options);

#endif
