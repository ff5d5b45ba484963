#include "reports.h"

std::string reportText(const Options& options, const Result& result) {
  switch (options.report) {
    case Report::kJson:
      return jsonLine(result);
    case Report::kCsv:
      return csvRows(options.command, result);
    default:
      return "";
  }
}
