#include <unistd.h>

#include "commands.h"
#include "cut_frame.h"
#include "encode.h"
#include "faces.h"
#include "failure.h"
#include "file_bytes.h"
#include "output_file.h"
#include "place_portrait.h"

namespace {

// "x.jpg" becomes "x-2.jpg".
std::string numberedName(const std::string& path, size_t number) {
  const size_t slash = path.rfind('/');
  const size_t dot = path.rfind('.');
  const bool hasEnding = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
  const size_t end = hasEnding ? dot : path.size();
  return path.substr(0, end) + "-" + std::to_string(number) + path.substr(end);
}

Format formatFor(const OutputOptions& options, const std::string& path) {
  const Format named = options.format == Format::kAuto ? formatOfName(path) : options.format;
  return named == Format::kAuto ? Format::kJpeg : named;
}

void deliver(const Options& options, const Picture& portrait, FaceResult& found) {
  const std::string& path = found.output;
  const Format format = formatFor(options.output, path);
  if (options.input.pictureStream) {
    found.portrait = encode(portrait, format);
  } else if (path == "-") {
    writeDescriptor(STDOUT_FILENO, "standard output", encode(portrait, format));
  } else {
    publishPicture(path, format, portrait, options.output.force);
  }
}

}  // namespace

void runCut(const Options& options, const Job& job, const Picture& picture, Result& result) {
  const CutOptions& cut = options.cut;
  const bool numbered = cut.face == 0 && !job.output.empty();
  size_t number = 0;
  for (const TFacePosition& face : chooseFaces(findFaces(picture, options.detection.minimumFace), cut.face)) {
    ++number;
    FaceResult found;
    found.face = face;
    found.output = numbered ? numberedName(job.output, number) : job.output;
    if (!found.output.empty() && found.output != "-") refuseExisting(found.output, job.input, options.output.force);
    placePortrait(cut, picture, found);
    deliver(options, cutFrame(picture, *found.frame, cut.size, cut.padding, cut.fill), found);
    found.points.reset();
    result.faces.push_back(found);
  }
  result.measured = true;
}
