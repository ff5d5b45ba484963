// Results as text for programs and people.
#ifndef APPS_PORTRAITCUT_REPORTS_H
#define APPS_PORTRAITCUT_REPORTS_H

#include <string>

#include "options.h"
#include "result.h"

// One line of JSON, newline included.
std::string jsonLine(const Result& result);
// The same with the time it took and a mark of the settings, for the log.
std::string logLine(const Options& options, const Result& result);

// The line before all rows, and a row for each face, point or measure. A file that failed has no rows.
std::string csvHeader(Command command);
std::string csvRows(Command command, const Result& result);

// A few lines about a portrait that was checked.
std::string checkText(const Result& result);

// The text of a result in the wanted form; empty for kNone.
std::string reportText(const Options& options, const Result& result);

#endif
