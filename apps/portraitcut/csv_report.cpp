#include <cmath>
#include <cstdio>

#include "point_names.h"
#include "reports.h"

namespace {

std::string quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

std::string number(double value) {
  if (std::isinf(value)) return "";
  char text[40];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

template <typename... Values>
std::string row(const std::string& input, Values... values) {
  std::string text = quoted(input);
  const auto append = [&text](const auto& value) {
    text += ',';
    if constexpr (std::is_arithmetic_v<std::decay_t<decltype(value)>>) {
      text += number(static_cast<double>(value));
    } else {
      text += quoted(value);
    }
  };
  (append(values), ...);
  return text + '\n';
}

std::string pointRows(const std::string& input, size_t face, const FacePoints& found) {
  std::string text;
  for (size_t k = 0; k < kPointCount; ++k) {
    text +=
        row(input, face, k, std::string(kPointNames[k]), found.points[k].x, found.points[k].y, found.confidences[k]);
  }
  return text;
}

std::string faceRow(Command command, const std::string& input, size_t number, const FaceResult& found) {
  const TFacePosition& face = found.face;
  switch (command) {
    case Command::kFeatures:
      return pointRows(input, number, *found.points);
    case Command::kEyes: {
      const auto& eyes = *found.eyes;
      return row(input, number, eyes[0].x, eyes[0].y, eyes[1].x, eyes[1].y);
    }
    case Command::kCut: {
      const Frame& frame = *found.frame;
      return row(input, number, face.xc, face.yc, face.w, face.angle, frame.x1, frame.y1, frame.x2, frame.y2,
                 found.output);
    }
    default:
      return row(input, number, face.xc, face.yc, face.w, face.angle);
  }
}

}  // namespace

std::string csvHeader(Command command) {
  switch (command) {
    case Command::kFeatures:
      return "input,face,point,name,x,y,confidence\n";
    case Command::kEyes:
      return "input,face,eye_left_x,eye_left_y,eye_right_x,eye_right_y\n";
    case Command::kCut:
      return "input,face,xc,yc,w,angle,x1,y1,x2,y2,output\n";
    case Command::kCheck:
      return "input,measure,value,unit,lowest,highest,passed,estimated\n";
    default:
      return "input,face,xc,yc,w,angle\n";
  }
}

std::string csvRows(Command command, const Result& result) {
  std::string text;
  if (!result.ok || command == Command::kAnnotate) return text;
  if (command == Command::kCheck) {
    for (const Measure& measure : result.measures) {
      text += row(result.input, measure.name, measure.value, measure.unit, measure.lowest, measure.highest,
                  std::string(measure.passes() ? "yes" : "no"), std::string(measure.estimated ? "yes" : "no"));
    }
    return text;
  }
  for (size_t k = 0; k < result.faces.size(); ++k) text += faceRow(command, result.input, k + 1, result.faces[k]);
  return text;
}
