#include "picture.h"

#include <utility>

#include "failure.h"

Picture::Picture() : handle_(0), owned_(false) {
  requireOk(VIZL_CreateEmptyImage(&handle_), "making an image");
  owned_ = true;
}

Picture& Picture::operator=(Picture&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(owned_, other.owned_);
  return *this;
}

Picture::~Picture() {
  if (owned_) VIZL_FreeImage(handle_);
}

Picture Picture::fromPixels(const std::vector<unsigned char>& pixels, Size size) {
  Picture picture;
  requireOk(VIZL_AssignImageFromBuffer(picture.handle(), pixels.data(), size.width, size.height, 3 * size.width,
                                       VIZL_IMAGE_COLOR24),
            "making an image");
  return picture;
}

Size Picture::size() const {
  Size size;
  requireOk(VIZL_GetImageWidth(handle_, &size.width), "asking for a width");
  requireOk(VIZL_GetImageHeight(handle_, &size.height), "asking for a height");
  return size;
}

PixelView viewOf(const Picture& picture) {
  PixelView view;
  unsigned char* bottom = nullptr;
  int32_t scanLine = 0;
  VIZL_IMAGEMODE mode = 0;
  requireOk(VIZL_GetImageData(picture.handle(), &bottom, &view.size.width, &view.size.height, &scanLine, &mode),
            "reading pixels");
  if (bottom == nullptr || mode != VIZL_IMAGE_COLOR24) throw Failure("the picture has no pixels");
  view.top = bottom + ptrdiff_t{scanLine} * (view.size.height - 1);
  view.step = -ptrdiff_t{scanLine};
  return view;
}
