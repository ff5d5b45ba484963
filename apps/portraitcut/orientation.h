// The eight orientations of EXIF: how a stored picture has to be turned and mirrored to stand upright.
#ifndef APPS_PORTRAITCUT_ORIENTATION_H
#define APPS_PORTRAITCUT_ORIENTATION_H

#include <vizl_api.h>

#include "geometry.h"
#include "picture.h"

// A value of EXIF's Orientation: 1 is upright already, 2 mirrored, 3 upside down, 4 both, 5 to 8 lie on a side.
class Orientation {
 public:
  Orientation() = default;
  // Anything but 1 to 8 counts as 1.
  explicit Orientation(int value) : value_(value >= 1 && value <= 8 ? value : 1) {}

  int value() const { return value_; }
  bool isUpright() const { return value_ == 1; }
  // Whether width and height change places.
  bool swapsSides() const { return value_ >= 5; }
  bool mirrors() const { return value_ == 2 || value_ == 4 || value_ == 5 || value_ == 7; }

  // The picture standing upright.
  Picture upright(Picture stored) const;

  // From a pixel of the upright picture, `upright` large, to the same pixel as stored.
  TPoint toStored(TPoint point, Size upright) const;
  // The angle that turns the same face upright in the stored picture, mirrored where that is.
  double angleToStored(double angle) const;

 private:
  int value_ = 1;
};

#endif
