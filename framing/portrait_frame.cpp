#include "framing/portrait_frame.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "api/vizl_api.h"
#include "image/to_int.h"

namespace {

// Truncates toward zero. False for what no int holds, NaN included: such a conversion would be undefined.
bool truncate(double value, int& result) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return false;
  result = static_cast<int>(value);
  return true;
}

// Half the natural frame: 0.6 face widths along the shorter side, in the aspect ratio of the output. The aspect
// passes through a float on one side only; results are compared to the pixel, so that stays.
bool halfSizes(int faceWidth, double aspect, int& halfWidth, int& halfHeight) {
  const double base = 0.6 * faceWidth;
  if (aspect >= 1) return truncate(static_cast<float>(aspect) * base, halfWidth) && truncate(base, halfHeight);
  return truncate(base, halfWidth) && truncate(base * (1 / aspect), halfHeight);
}

// Moves the centre by the shift and back into the image so far that 83 percent of the half frame fits; a frame
// that is larger than the image comes to its middle.
bool placeCentre(int faceCentre, int half, double shift, int imageSide, int& centre) {
  int wanted;
  if (!truncate(faceCentre + 2.0 * half * shift, wanted)) return false;
  const double low = std::min<double>(0.83 * half, imageSide / 2);
  const double high = std::min<double>(imageSide - 1 - 0.83 * half, wanted);
  return truncate(std::max(low, high), centre);
}

// How much of the half frame fits on both sides of the centre. The 0.9 and 0.1 let the truncated corners come to
// rest inside the image. A half size of 0 gives infinity.
float roomAround(int centre, int half, int imageSide) {
  return static_cast<float>(std::min((centre + 0.9) / half, (imageSide - centre - 0.1) / half));
}

// The factor from the natural frame to the one that is wanted and fits.
bool sizeFactor(float room, double faceScale, float& factor) {
  const double wanted = 1 / faceScale;
  factor = room;
  if (!(wanted < static_cast<double>(room))) return true;
  if (wanted > static_cast<double>(std::numeric_limits<float>::max())) return false;
  factor = static_cast<float>(wanted);
  return true;
}

bool reachOut(int centre, int reach, int& low, int& high) {
  return truncate(static_cast<double>(centre) - reach, low) && truncate(static_cast<double>(centre) + reach, high);
}

}  // namespace

bool TPortraitWish::valid() const {
  return width >= 1 && height >= 1 && faceScale > 0 && std::isfinite(faceScale) && std::isfinite(shiftX) &&
         std::isfinite(shiftY);
}

const TFacePosition& LargestFace(const TFacePosition* faces, int count) {
  const auto narrower = [](const TFacePosition& a, const TFacePosition& b) { return a.w < b.w; };
  return *std::max_element(faces, faces + count, narrower);
}

// The sum of the squares passes through a float; results are compared to the pixel.
TFacePosition FaceByEyes(const TFacePosition& face, const TPoint& left, const TPoint& right) {
  const int64_t dx = static_cast<int64_t>(right.x) - left.x;
  // Unsigned: the square of a difference of any two ints fits in 64 bits only so.
  const auto dy = static_cast<uint64_t>(static_cast<int64_t>(right.y) - left.y);
  const float square = static_cast<float>(dx) * static_cast<float>(dx) + static_cast<float>(dy * dy);
  TFacePosition byEyes = face;
  byEyes.xc = static_cast<int>((static_cast<int64_t>(left.x) + right.x) / 2);
  byEyes.yc = static_cast<int>((static_cast<int64_t>(left.y) + right.y) / 2);
  byEyes.w = TruncateToInt(2.4 * std::sqrt(static_cast<double>(square)));
  return byEyes;
}

bool CalculatePortraitFrame(const TFacePosition& face, int imageWidth, int imageHeight, const TPortraitWish& wish,
                            TPortraitFrame& frame) {
  int halfWidth, halfHeight, xc, yc, xReach, yReach;
  float factor;
  if (!halfSizes(face.w, static_cast<double>(wish.width) / wish.height, halfWidth, halfHeight)) return false;
  if (!placeCentre(face.xc, halfWidth, wish.shiftX, imageWidth, xc)) return false;
  if (!placeCentre(face.yc, halfHeight, wish.shiftY, imageHeight, yc)) return false;
  const float room = std::min(roomAround(xc, halfWidth, imageWidth), roomAround(yc, halfHeight, imageHeight));
  if (!sizeFactor(room, wish.faceScale, factor)) return false;
  if (!truncate(static_cast<float>(halfWidth) * factor, xReach)) return false;
  if (!truncate(static_cast<float>(halfHeight) * factor, yReach)) return false;
  TPortraitFrame found;
  if (!reachOut(xc, xReach, found.x1, found.x2) || !reachOut(yc, yReach, found.y1, found.y2)) return false;
  frame = found;
  return true;
}
