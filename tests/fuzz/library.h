// The library as a target uses it, and what every picture that it made must stand.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "api/vizl_api.h"

// Initialises the library, once for the process.
void openLibrary();

// Frees its image at the end; without a handle there is nothing to free.
class Image {
 public:
  Image() { VIZL_CreateEmptyImage(&handle_); }
  ~Image() { VIZL_FreeImage(handle_); }
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  HImage Handle() const { return handle_; }
  // The handle in place of which a loader puts its own.
  HImage* Replace() {
    VIZL_FreeImage(handle_);
    return &handle_;
  }
  int Width() const;
  int Height() const;
  long long Pixels() const { return 1LL * Width() * Height(); }

 private:
  HImage handle_ = 0;
};

// The pixels as VIZL_SaveImageToBuffer gives them; it must succeed.
std::vector<unsigned char> pixelsOf(const Image& image, VIZL_IMAGEMODE mode);
// The same size and the same pixels, alpha included.
bool samePixels(const Image& one, const Image& other);
// Reads every pixel of an image that a load made, in all layouts, so that a sanitizer sees those that are not there;
// scales, turns, and saves to a file whose extension is given. After a load that succeeded all of it must, and the file
// must load again with the same size; after one that failed the image has no defined content but must do no harm.
void useLoaded(const Image& image, bool succeeded, const std::string& extension);
// No image is left: numbers are given out lowest first.
void requireNoImages();
