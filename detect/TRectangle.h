// A window of the scan, in pixels with rows from the top of the picture. x2 and y2 lie just past the
// window; a rectangle may reach outside the image.
#pragma once

struct TRectangle {
  int x1;
  int y1;
  int x2;
  int y2;
};
