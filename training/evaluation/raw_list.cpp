#include "training/evaluation/raw_list.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace evaluation {

namespace {

double toNumber(const std::string& text) {
  std::size_t used = 0;
  double value = 0;
  try {
    value = std::stod(text, &used);
  } catch (const std::logic_error&) {
    used = 0;
  }
  if (used == 0 || used != text.size() || !std::isfinite(value)) throw std::runtime_error("not a number: " + text);
  return value;
}

std::vector<std::string> splitRow(std::string line) {
  if (!line.empty() && line.back() == '\r') line.pop_back();
  std::vector<std::string> fields;
  std::stringstream stream(line);
  for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
  return fields;
}

void addFace(ListedPicture& picture, const std::vector<std::string>& row) {
  if (row.size() != 4) throw std::runtime_error("a row needs path,x,y,w or the path alone: " + row.front());
  const double w = toNumber(row[3]);
  if (w <= 0) throw std::runtime_error("a face needs a positive width: " + row.front());
  picture.faces.push_back({toNumber(row[1]) + w / 2, toNumber(row[2]) + w / 2, w, 0});
}

}  // namespace

std::vector<ListedPicture> readPictureList(const std::string& listFile) {
  std::ifstream in(listFile);
  if (!in) throw std::runtime_error("cannot read " + listFile);
  const std::filesystem::path folder = std::filesystem::path(listFile).parent_path();
  std::vector<ListedPicture> pictures;
  std::map<std::string, std::size_t> known;
  for (std::string line; std::getline(in, line);) {
    const std::vector<std::string> row = splitRow(line);
    if (row.empty() || row.front() == "path") continue;
    const auto [at, isNew] = known.try_emplace(row.front(), pictures.size());
    if (isNew) pictures.push_back({(folder / row.front()).string(), {}});
    if (row.size() > 1) addFace(pictures[at->second], row);
  }
  return pictures;
}

}  // namespace evaluation
