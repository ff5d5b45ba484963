// Owns an image of the library.
#ifndef APPS_PORTRAITCUT_PICTURE_H
#define APPS_PORTRAITCUT_PICTURE_H

#include <vizl_api.h>

#include <cstddef>
#include <vector>

#include "geometry.h"

class Picture {
 public:
  // An empty image.
  Picture();
  // Takes over a handle.
  explicit Picture(HImage handle) : handle_(handle), owned_(true) {}
  Picture(Picture&& other) noexcept : handle_(other.handle_), owned_(other.owned_) { other.owned_ = false; }
  Picture& operator=(Picture&& other) noexcept;
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture();

  // Copies rows of three bytes a pixel, top row first and without padding.
  static Picture fromPixels(const std::vector<unsigned char>& pixels, Size size);

  HImage handle() const { return handle_; }
  Size size() const;

 private:
  HImage handle_;
  bool owned_;
};

// The pixels inside a picture, top row first, three bytes a pixel. Holds until the picture changes.
struct PixelView {
  const unsigned char* top = nullptr;
  ptrdiff_t step = 0;  // bytes from a row to the one below it, negative
  Size size;

  const unsigned char* row(int32_t y) const { return top + step * y; }
};

PixelView viewOf(const Picture& picture);

#endif
