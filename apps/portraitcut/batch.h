// All files of a run, through workers.
#ifndef APPS_PORTRAITCUT_BATCH_H
#define APPS_PORTRAITCUT_BATCH_H

#include "options.h"

// Exit codes.
constexpr int kAllDone = 0;
constexpr int kSomeFailed = 1;
constexpr int kWrongUse = 2;

// Returns an exit code; 128 and the signal's number after an interruption. Throws Failure if it can't go on.
int runBatch(const Options& options);

#endif
