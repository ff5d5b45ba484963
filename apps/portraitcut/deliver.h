// Sends an output picture where it belongs.
#ifndef APPS_PORTRAITCUT_DELIVER_H
#define APPS_PORTRAITCUT_DELIVER_H

#include <string>

#include "options.h"
#include "picture.h"

// The kind of picture that `path` gets.
Format formatFor(const OutputOptions& options, const std::string& path);

// To a file, or to standard output for "-". Throws Failure.
void deliver(const Options& options, const std::string& path, const Picture& picture);

#endif
