#include "training/evaluation/findings.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "image/TIppiImage.h"
#include "training/evaluation/drawing.h"

namespace evaluation {

namespace {

std::string fileNameFor(const std::string& part, const std::string& name) {
  std::string file = part + "_" + name;
  std::replace_if(
      file.begin(), file.end(),
      [](unsigned char c) { return std::isalnum(c) == 0 && c != '-' && c != '_' && c != '+'; }, '_');
  return file + ".png";
}

}  // namespace

void Findings::keep(const std::string& part, const std::string& name, const std::string& kind, const Detection& place) {
  std::ostringstream row;
  row << part << ',' << name << ',' << kind << ',' << place.cx << ',' << place.cy << ',' << place.w << ','
      << place.angle;
  const std::lock_guard<std::mutex> lock(guard_);
  rows_.push_back(row.str());
}

void Findings::savePicture(const std::string& part, const std::string& name, TIppiImage& gray, const FaceSquare* truth,
                           const std::vector<Detection>& falseFaces) {
  if (pictureFolder_.empty()) return;
  TIppiImage canvas;
  colorCanvas(gray, canvas);
  if (truth) drawSquare(canvas, *truth, kGreen);
  for (const Detection& face : falseFaces) drawSquare(canvas, {face.cx, face.cy, face.w, -face.angle}, kRed);
  const std::filesystem::path file = std::filesystem::path(pictureFolder_) / fileNameFor(part, name);
  if (canvas.SaveToPngFile(file.c_str()) != 0) throw std::runtime_error("cannot write " + file.string());
}

void Findings::add(const std::string& part, const std::string& name, TIppiImage& gray, const FaceSquare& truth,
                   const PictureResult& result) {
  if (result.found && result.falseDetections.empty()) return;
  if (!result.found) keep(part, name, "miss", {truth.xc, truth.yc, truth.w, -truth.roll});
  for (const Detection& face : result.falseDetections) keep(part, name, "false", face);
  savePicture(part, name, gray, &truth, result.falseDetections);
}

void Findings::addFalse(const std::string& part, const std::string& name, TIppiImage& gray,
                        const std::vector<Detection>& falseFaces) {
  if (falseFaces.empty()) return;
  for (const Detection& face : falseFaces) keep(part, name, "false", face);
  savePicture(part, name, gray, nullptr, falseFaces);
}

void Findings::write() {
  if (csvFile_.empty()) return;
  std::sort(rows_.begin(), rows_.end());
  std::ofstream out(csvFile_);
  out << "part,picture,kind,cx,cy,w,angle\n";
  for (const std::string& row : rows_) out << row << '\n';
  if (!out.flush()) throw std::runtime_error("cannot write " + csvFile_);
}

}  // namespace evaluation
