#include <cmath>
#include <nlohmann/json.hpp>

#include "base64.h"
#include "point_names.h"
#include "reports.h"
#include "settings_mark.h"
#include "utf8.h"

namespace {

using Json = nlohmann::ordered_json;

// Enough digits for what the numbers are worth, and the same text everywhere.
double rounded(double value, double steps) { return std::round(value * steps) / steps; }

// File names are bytes; JSON holds Unicode. A name that isn't UTF-8 is also told in full, in base64.
void putName(Json& json, const std::string& key, const std::string& name) {
  json[key] = validUtf8(name);
  if (json[key] != name)
    json[key + "_base64"] = toBase64({reinterpret_cast<const unsigned char*>(name.data()), name.size()});
}

Json pointsOf(const FacePoints& found) {
  Json points = Json::array();
  for (size_t k = 0; k < kPointCount; ++k) {
    points.push_back({{"name", kPointNames[k]},
                      {"x", found.points[k].x},
                      {"y", found.points[k].y},
                      {"confidence", rounded(double{found.confidences[k]}, 1e4)}});
  }
  return points;
}

Json eyesOf(const std::array<TPoint, 2>& eyes) {
  Json json = Json::array();
  for (const TPoint& eye : eyes) json.push_back({{"x", eye.x}, {"y", eye.y}});
  return json;
}

Json faceOf(const FaceResult& found) {
  const TFacePosition& face = found.face;
  Json json = {{"xc", face.xc}, {"yc", face.yc}, {"w", face.w}, {"angle", rounded(face.angle, 1e4)}};
  if (found.eyes) json["eyes"] = eyesOf(*found.eyes);
  if (found.points) json["points"] = pointsOf(*found.points);
  if (found.frame) {
    const Frame& frame = *found.frame;
    json["frame"] = {{"x1", frame.x1}, {"y1", frame.y1}, {"x2", frame.x2}, {"y2", frame.y2}};
    json["frame_as_asked"] = found.asAsked;
  }
  if (!found.output.empty()) putName(json, "output", found.output);
  if (!found.portrait.empty()) json["portrait_base64"] = toBase64(found.portrait);
  return json;
}

Json measuresOf(const std::vector<Measure>& measures) {
  Json json = Json::array();
  for (const Measure& measure : measures) {
    json.push_back({{"name", measure.name},
                    {"value", rounded(measure.value, 1e4)},
                    {"unit", measure.unit},
                    {"lowest", measure.lowest},
                    {"highest", measure.highest},
                    {"estimated", measure.estimated},
                    {"passed", measure.passes()}});
  }
  return json;
}

void putFindings(Json& json, const Result& result) {
  json["width"] = result.size.width;
  json["height"] = result.size.height;
  json["orientation"] = result.orientation.value();
  json["coordinates"] = result.storedCoordinates ? "stored" : "upright";
  json["faces"] = Json::array();
  for (const FaceResult& found : result.faces) json["faces"].push_back(faceOf(found));
  if (!result.measures.empty()) {
    json["passed"] = result.passes();
    json["measures"] = measuresOf(result.measures);
  }
  if (!result.output.empty()) putName(json, "output", result.output);
}

Json recordOf(const Result& result) {
  Json json;
  if (result.id.empty()) {
    putName(json, "input", result.input);
  } else {
    json["id"] = Json::parse(result.id);
  }
  json["status"] = result.ok ? "ok" : "failed";
  if (result.ok) {
    putFindings(json, result);
  } else {
    json["reason"] = validUtf8(result.reason);
    json["code"] = result.code;
  }
  return json;
}

}  // namespace

std::string jsonLine(const Result& result) { return recordOf(result).dump() + '\n'; }

std::string logLine(const Options& options, const Result& result) {
  Json json = recordOf(result);
  json["seconds"] = rounded(result.seconds, 1e4);
  json["settings"] = settingsMark(options);
  return json.dump() + '\n';
}
