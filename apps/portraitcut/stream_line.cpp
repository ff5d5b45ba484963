#include "stream_line.h"

#include <nlohmann/json.hpp>

#include "base64.h"
#include "failure.h"

namespace {

using Json = nlohmann::ordered_json;

// Deeper nesting than any sensible id has would only use up the stack.
constexpr int kDeepest = 32;

Json parseLine(const std::string& line) {
  const auto shallow = [](int depth, Json::parse_event_t, const Json&) {
    if (depth > kDeepest) throw Failure("the line is nested too deeply");
    return true;
  };
  return Json::parse(line, shallow, false);
}

}  // namespace

std::string streamedId(const std::string& line) {
  try {
    const Json json = parseLine(line);
    return json.is_object() && json.contains("id") ? json["id"].dump() : "null";
  } catch (const Failure&) {
    return "null";
  }
}

std::vector<unsigned char> streamedPicture(const std::string& line) {
  const Json json = parseLine(line);
  if (!json.is_object()) throw Failure("the line is no JSON object");
  const auto image = json.find("image_base64");
  if (image == json.end() || !image->is_string()) throw Failure("the line has no text image_base64");
  auto bytes = fromBase64(image->get_ref<const std::string&>());
  if (!bytes) throw Failure("image_base64 is not base64");
  return std::move(*bytes);
}
