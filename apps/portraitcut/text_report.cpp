// What check tells a person.
#include <cstdio>

#include "reports.h"

namespace {

std::string rangeText(const Measure& measure) {
  char text[80];
  if (measure.highest > 1e300) {
    std::snprintf(text, sizeof text, "at least %g", measure.lowest);
  } else {
    std::snprintf(text, sizeof text, "%g to %g", measure.lowest, measure.highest);
  }
  return text;
}

std::string measureLine(const Measure& measure) {
  char text[200];
  std::snprintf(text, sizeof text, "  %-4s  %-13s %8.1f %-8s (%s)%s\n", measure.passes() ? "ok" : "FAIL",
                measure.name.c_str(), measure.value, measure.unit.c_str(), rangeText(measure).c_str(),
                measure.estimated ? ", estimated" : "");
  return text;
}

}  // namespace

std::string checkText(const Result& result) {
  std::string text = result.input + (!result.ok ? ": " + result.reason : result.passes() ? ": pass" : ": fail") + '\n';
  for (const Measure& measure : result.measures) text += measureLine(measure);
  return text;
}
