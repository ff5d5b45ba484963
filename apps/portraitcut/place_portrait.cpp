#include "place_portrait.h"

#include <algorithm>

#include "faces.h"
#include "failure.h"
#include "portrait_frame.h"

namespace {

void refuseOutside(const Frame& frame, Size size) {
  const struct {
    const char* side;
    int64_t pixels;
  } excesses[] = {{"left", -int64_t{frame.x1}},
                  {"top", -int64_t{frame.y1}},
                  {"right", int64_t{frame.x2} - size.width + 1},
                  {"bottom", int64_t{frame.y2} - size.height + 1}};
  std::string text;
  for (const auto& excess : excesses) {
    if (excess.pixels <= 0) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(excess.pixels) + " pixels at the " + excess.side;
  }
  if (!text.empty()) throw Failure("the portrait would reach beyond the picture: " + text + " (see --pad)");
}

bool same(const Frame& a, const Frame& b) { return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2; }

}  // namespace

void placePortrait(const CutOptions& options, const Picture& picture, FaceResult& found) {
  if (framingNeedsPoints(options.framing)) found.points = findPoints(picture, found.face);
  const NaturalFrame natural = naturalFrame(options, found.face, found.points ? &*found.points : nullptr);
  const Frame free = freeFrame(natural, options.faceScale);
  const Size size = picture.size();
  if (options.padding == Padding::kRefuse) refuseOutside(free, size);
  found.frame = options.padding == Padding::kShrink ? heldFrame(natural, options.faceScale, size) : free;
  found.asAsked = same(*found.frame, free);
}
