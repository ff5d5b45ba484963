// The work of each command on one upright picture. Each throws Failure if the file can't be done.
#ifndef APPS_PORTRAITCUT_COMMANDS_H
#define APPS_PORTRAITCUT_COMMANDS_H

#include "job.h"
#include "options.h"
#include "picture.h"
#include "result.h"

void runCut(const Options& options, const Job& job, const Picture& picture, Result& result);
void runDetect(const Options& options, const Picture& picture, Result& result);
void runFeatures(const Options& options, const Picture& picture, Result& result);
void runEyes(const Options& options, const Picture& picture, Result& result);
void runAnnotate(const Options& options, const Job& job, const Picture& picture, Result& result);
void runCheck(const Options& options, const Picture& picture, Result& result);

// Opens and decodes the input, runs the command of the options, and tells the result in the wanted coordinates.
// Throws nothing: a failure is in the result.
Result runJob(const Options& options, const Job& job);

// Fills in the name of the input, or the id of a picture in a stream.
void nameResult(const Options& options, const Job& job, Result& result);

#endif
