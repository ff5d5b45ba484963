// A square picture of a face whose forty points are known.
#pragma once

class TIppiImage;
struct TPoint;

// Cuts the frame of the points (see features/face_frame.h) out of the image, what lies outside being black, and scales
// it so that the frame less one pixel becomes `width` pixels; `height` only settles a rounding of the frame.
// `facePoints` are the points in pixels of `face`, and may be the same array. False, with nothing changed, if width
// is below 1, all points lie in one place or no image can have the frame or the result. Exceptions of memory and
// sizes leave facePoints as they were.
bool ExtractFace(TIppiImage& image, const TPoint (&points)[40], int width, int height, TIppiImage& face,
                 TPoint (&facePoints)[40]);
