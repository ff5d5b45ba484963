#include "reports.h"

std::string reportText(const Options& options, const Result& result) {
  switch (options.report) {
    case Report::kJson:
      return jsonLine(result);
    case Report::kCsv:
      return csvRows(options.command, result);
    case Report::kText:
      return checkText(result);
    default:
      return "";
  }
}
