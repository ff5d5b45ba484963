#include "commands.h"
#include "cut_frame.h"
#include "deliver.h"
#include "density.h"
#include "encode.h"
#include "faces.h"
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

void deliverPortrait(const Options& options, const Picture& portrait, FaceResult& found) {
  if (options.input.pictureStream) {
    const Format format = formatFor(options.output, "");
    found.portrait = withDensity(encode(portrait, format), options.cut.dotsPerInch);
  } else {
    deliver(options, found.output, portrait);
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
    deliverPortrait(options, cutFrame(picture, *found.frame, cut.size, cut.padding, cut.fill), found);
    found.points.reset();
    result.faces.push_back(found);
  }
}
