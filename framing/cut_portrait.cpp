#include <algorithm>

#include "framing/portrait_frame.h"
#include "image/TIppiImage.h"
#include "image/view.h"

void CutPortrait(TIppiImage& image, const TPortraitFrame& frame, int width, int height, TIppiImage& portrait) {
  TIppiImage scaled;
  // The larger ratio covers the whole output; 0.4 keeps the floored side from falling one pixel short.
  const double ratio = std::max((width + 0.4) / (frame.x2 - frame.x1 + 1), (height + 0.4) / (frame.y2 - frame.y1 + 1));
  if (TImageView::Fits(image, frame.x1, frame.y1, frame.x2, frame.y2)) {
    TImageView(image, frame.x1, frame.y1, frame.x2, frame.y2).Resize(scaled, ratio);
  } else {
    TIppiImage cut;
    image.CopyTo(cut, frame.x1, frame.y1, frame.x2, frame.y2);
    cut.Resize(scaled, ratio);
  }
  const int x = scaled.Width / 2;
  const int y = scaled.Height / 2;
  scaled.CopyTo(portrait, x - width / 2, y - height / 2, x + (width - 1) / 2, y + (height - 1) / 2);
}
