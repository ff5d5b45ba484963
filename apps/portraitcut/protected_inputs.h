// Inputs are never changed, not even with --force: those of the command line are remembered by what file they are,
// whatever it is called. Workers know them too, since they start as copies of the process that read the command line.
#ifndef APPS_PORTRAITCUT_PROTECTED_INPUTS_H
#define APPS_PORTRAITCUT_PROTECTED_INPUTS_H

#include <sys/stat.h>

#include <string>

void protectInput(const std::string& path);
bool isProtectedInput(const struct stat& status);

#endif
