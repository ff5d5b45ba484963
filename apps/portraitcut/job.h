// One file to work on.
#ifndef APPS_PORTRAITCUT_JOB_H
#define APPS_PORTRAITCUT_JOB_H

#include <string>

struct Job {
  // A file's name, or "-" for standard input; with pictures in a stream, a line of JSON that holds one.
  std::string input;
  // Where the picture goes, before faces are numbered; "-" is standard output, empty none.
  std::string output;
};

#endif
