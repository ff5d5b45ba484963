// Sixteen random hexadecimal digits, the same for a run and all its workers. They keep runs apart that write into one
// folder from several machines or containers, where process numbers repeat.
#ifndef APPS_PORTRAITCUT_RUN_TOKEN_H
#define APPS_PORTRAITCUT_RUN_TOKEN_H

#include <string>

const std::string& runToken();

#endif
