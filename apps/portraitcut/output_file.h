// Writes a picture so that nobody ever sees half of it, and nothing that exists is lost.
#ifndef APPS_PORTRAITCUT_OUTPUT_FILE_H
#define APPS_PORTRAITCUT_OUTPUT_FILE_H

#include <sys/types.h>

#include <string>

#include "options.h"
#include "picture.h"

// Says why `path` can't be an output, by throwing Failure: it exists and `force` is not set, or it is the file
// `input` or a protected one. A device or a pipe may exist.
void refuseExisting(const std::string& path, const std::string& input, bool force);

// Writes `picture` beside `path` under a name of its own and gives it the name when it is whole. Makes missing folders.
// Without `force` an existing file is never replaced, even one that appeared meanwhile. `dotsPerInch` goes into the
// file, unless it is 0.
void publishPicture(const std::string& path, Format format, const Picture& picture, double dotsPerInch, bool force);

// The name beside `path` under which a process writes meanwhile; to be removed if it dies.
std::string unfinishedName(const std::string& path, Format format, pid_t process);

#endif
