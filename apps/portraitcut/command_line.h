// From arguments to options.
#ifndef APPS_PORTRAITCUT_COMMAND_LINE_H
#define APPS_PORTRAITCUT_COMMAND_LINE_H

#include <optional>
#include <variant>

#include "options.h"

// The options, or the exit code after help, the version or what is wrong has been printed.
std::variant<Options, int> parseCommandLine(int argc, char** argv);

#endif
