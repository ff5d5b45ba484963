/// @file
/// The interface of libportraitcut for C++20: owners for handles, exceptions for codes, spans for buffers.
///
/// @code
/// const portraitcut::Library library;
/// const auto image = portraitcut::Image::load("photo.jpg");
/// image.portrait({300, 400}).save("portrait.png");
/// @endcode
///
/// A header alone, over vizl_api.h and pc_api.h; each member calls the functions that its comment names, and what is
/// told there about coordinates, units, limits and threads holds here. An Image and a Context own one handle each and
/// can be moved, not copied; after a move the source may only be assigned to or destroyed. Both have to end before the
/// last Library does: a handle that outlives it may name another image later. Handles and settings that C code made
/// are untouched, so both interfaces may be mixed.
///
/// Errors. A code other than VIZLE_OK becomes an Error, with one exception: functions that ask for faces answer "none"
/// by an empty vector or optional. Nothing that failed leaves a handle behind. Destructors never throw.
#ifndef PORTRAITCUT_HPP
#define PORTRAITCUT_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "pc_api.h"
#include "vizl_api.h"

namespace portraitcut {

/// What a VIZLE_ code means.
/// @param code one of the library's codes
/// @return a constant text, "unknown code" for any other number
inline const char* describe(std::int32_t code) noexcept {
  switch (code) {
    case VIZLE_OK:
      return "done";
    case VIZLE_INVALID_ARGUMENT:
      return "an argument is out of range, memory is short or the library is not started";
    case VIZLE_IMAGE_IO_FAILED:
      return "the picture can't be decoded or written";
    case VIZLE_IMAGE_TOO_SMALL:
      return "the picture is smaller than 20 by 20 pixels";
    case VIZLE_NO_FACE:
      return "no face found";
    case VIZLE_BUFFER_TOO_SMALL:
      return "the buffer is too small";
    case VIZLE_UNKNOWN_EXTENSION:
      return "the name does not end in bmp, jpg, jpe, jfif, jpeg or png";
    case VIZLE_CANNOT_OPEN_FILE:
      return "the file can't be opened";
    case VIZLE_CANNOT_CREATE_FILE:
      return "the file can't be created";
    case VIZLE_BAD_IMAGE_FILE:
      return "the file is damaged or not of the kind that its name tells";
    default:
      return "unknown code";
  }
}

/// A code other than VIZLE_OK, as an exception.
class Error : public std::runtime_error {
 public:
  /// Of a code alone.
  /// @param code one of the library's codes
  explicit Error(std::int32_t code) : std::runtime_error(describe(code)), code_(code) {}
  /// Of a code and what the function worked on.
  /// @param code one of the library's codes
  /// @param what comes first in the text, a file's name for example
  Error(std::int32_t code, const std::string& what) : std::runtime_error(what + ": " + describe(code)), code_(code) {}
  /// The code.
  /// @return one of the library's codes
  std::int32_t code() const noexcept { return code_; }

 private:
  std::int32_t code_;
};

/// Throws an Error for a code other than VIZLE_OK.
/// @param code what a function of the C interface gave
inline void check(std::int32_t code) {
  if (code != VIZLE_OK) throw Error(code);
}

/// Keeps the library ready: VIZL_Initialize and VIZL_Finalize. There may be several; the first one starts it and the
/// last one ends it. If it is ready already, because C code started it, that code also ends it. The first construction
/// and the last destruction must not run beside any other call.
class Library {
 public:
  /// VIZL_Initialize, unless the library is ready already.
  Library() {
    const std::scoped_lock lock(mutex);
    if (users == 0 && !isReady()) {
      check(VIZL_Initialize(nullptr));
      started = true;
    }
    ++users;
  }
  /// VIZL_Finalize, if this is the last one and the first one started the library.
  ~Library() {
    const std::scoped_lock lock(mutex);
    if (--users == 0 && std::exchange(started, false)) VIZL_Finalize();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  /// VIZL_GetVersion.
  /// @return a constant text, "major.minor.patch"
  static const char* version() noexcept { return VIZL_GetVersion(); }

 private:
  static bool isReady() noexcept {
    std::int32_t confidence;
    return VIZL_GetDetectedFaceConfidence(&confidence) == VIZLE_OK;
  }

  inline static std::mutex mutex;
  inline static int users = 0;
  inline static bool started = false;
};

/// Where a face is.
using Face = TFacePosition;

/// Forty points of a face.
struct Features {
  TPoint points[40];      ///< pixels; TPoint tells their order
  float confidences[40];  ///< at most 1.5, higher is better
};

/// A rectangle of pixels by its inclusive corners.
struct Rect {
  std::int32_t x1;  ///< left column
  std::int32_t y1;  ///< top row
  std::int32_t x2;  ///< right column, which still belongs to it
  std::int32_t y2;  ///< bottom row, which still belongs to it
  /// Columns.
  /// @return x2 - x1 + 1
  std::int32_t width() const noexcept { return x2 - x1 + 1; }
  /// Rows.
  /// @return y2 - y1 + 1
  std::int32_t height() const noexcept { return y2 - y1 + 1; }
};

/// Width and height in pixels.
struct Size {
  std::int32_t width;   ///< pixels
  std::int32_t height;  ///< pixels
};

/// How a portrait lies around the face, see VIZL_GetFacePosition.
struct Framing {
  double scale = 1;     ///< zoom: 2 shows half as much
  double shiftX = 0;    ///< of the centre, in natural widths, positive is right
  double shiftY = 0;    ///< in natural heights, positive is down
  bool byEyes = false;  ///< searches the points and frames by the eyes
};

/// The bytes of a pixel.
enum class Layout : VIZL_IMAGEMODE {
  gray = VIZL_IMAGE_GRAY8,   ///< one byte
  rgb = VIZL_IMAGE_COLOR24,  ///< red, green, blue
  rgba = VIZL_IMAGE_COLOR32  ///< the same and alpha
};

/// Bytes of a pixel.
/// @param layout which of them
/// @return 1, 3 or 4
constexpr std::int32_t channelsOf(Layout layout) noexcept {
  return layout == Layout::gray ? 1 : layout == Layout::rgb ? 3 : 4;
}

/// Whether a PNG file's alpha channel is read.
enum class Alpha {
  drop,  ///< colours alone
  keep   ///< colours and alpha
};

/// The settings of detection, of cutting and of saving: a context of the library, or context 0, which is the process's.
class Context {
 public:
  /// A context of its own, with the default settings.
  Context() { check(pcCreateContextID(&id_)); }
  /// The process-wide settings; nothing is made and nothing freed.
  /// @return context 0
  static Context shared() noexcept { return Context(0); }

  ~Context() { release(); }
  /// Takes over what `other` has, which may then only be assigned to or destroyed.
  /// @param other the one that loses it
  Context(Context&& other) noexcept : id_(std::exchange(other.id_, none)) {}
  /// Takes over what `other` has, which may then only be assigned to or destroyed.
  /// @param other the one that loses it
  /// @return this
  Context& operator=(Context&& other) noexcept {
    if (this != &other) {
      release();
      id_ = std::exchange(other.id_, none);
    }
    return *this;
  }

  /// For the functions of C that end in _C.
  /// @return the number of the context, which stays this object's
  ContextID id() const noexcept { return id_; }

  /// VIZL_SetFaceDetectionParameters_C.
  /// @param tilted looks for tilted faces too
  /// @param fineAngle measures their angle more finely
  /// @param workingWidth pixels, to which pictures are reduced for the search
  /// @return this
  Context& setDetection(bool tilted, bool fineAngle, std::int32_t workingWidth) {
    check(VIZL_SetFaceDetectionParameters_C(tilted, fineAngle, workingWidth, id_));
    return *this;
  }
  /// VIZL_SetFaceDetectionThreshold_C.
  /// @param threshold like hits that make a face, 1 or more
  /// @return this
  Context& setThreshold(std::int32_t threshold) {
    check(VIZL_SetFaceDetectionThreshold_C(threshold, id_));
    return *this;
  }
  /// VIZL_SetJpegCompressionQuality_C.
  /// @param quality 0 to 100
  /// @return this
  Context& setJpegQuality(std::int32_t quality) {
    check(VIZL_SetJpegCompressionQuality_C(quality, id_));
    return *this;
  }
  /// pcSetDetectionPerformance_C; of what it sets, Image heeds what setDetection sets too.
  /// @param performance how thoroughly to look
  /// @return this
  Context& setPerformance(PcDetectionPerformance performance) {
    check(pcSetDetectionPerformance_C(performance, id_));
    return *this;
  }

 private:
  static constexpr ContextID none = -1;

  explicit Context(ContextID id) noexcept : id_(id) {}
  void release() noexcept {
    if (id_ > 0) pcFreeContextID(id_);
  }

  ContextID id_ = none;
};

/// Pixels inside the library, top row first. Valid until the image ends or is assigned to.
struct PixelView {
  const unsigned char* top;  ///< the first byte of the top row; null if there are no pixels
  std::ptrdiff_t stride;     ///< bytes from a row to the one below it; negative
  Size size;                 ///< of the picture
  Layout layout;             ///< the bytes of a pixel

  /// The bytes of a row.
  /// @param y from 0 to size.height - 1
  /// @return the row without its padding
  std::span<const unsigned char> row(std::int32_t y) const noexcept {
    return {top + y * stride, static_cast<std::size_t>(size.width) * static_cast<std::size_t>(channelsOf(layout))};
  }
};

struct FaceImage;

/// One picture. What changes a picture gives a new Image, so a detection always sees the pixels that the image has.
/// Any number of threads may use one image at once; moving, assigning and destroying are the exceptions.
class Image {
 public:
  /// An empty picture, 0 by 0 pixels.
  Image() { check(VIZL_CreateEmptyImage(&handle_)); }
  /// Takes over a handle that C code made.
  /// @param handle a valid one, which the image will free
  /// @return its owner
  static Image adopt(HImage handle) noexcept { return Image(handle); }

  ~Image() { free(); }
  /// Takes over what `other` has, which may then only be assigned to or destroyed.
  /// @param other the one that loses it
  Image(Image&& other) noexcept : handle_(std::exchange(other.handle_, none)) {}
  /// Takes over what `other` has, which may then only be assigned to or destroyed.
  /// @param other the one that loses it
  /// @return this
  Image& operator=(Image&& other) noexcept {
    if (this != &other) {
      free();
      handle_ = std::exchange(other.handle_, none);
    }
    return *this;
  }

  /// For the functions of C.
  /// @return the handle, which stays this image's
  HImage handle() const noexcept { return handle_; }
  /// Gives the handle away; the image may then only be assigned to or destroyed.
  /// @return the handle, which the caller frees
  HImage release() noexcept { return std::exchange(handle_, none); }

  /// VIZL_LoadImageFromFile, or ...WithAlpha.
  /// @param fileName a JPEG, PNG or BMP file, as its ending tells
  /// @param alpha keep reads a PNG file's alpha channel
  /// @return the picture
  static Image load(const std::string& fileName, Alpha alpha = Alpha::drop) {
    const char* name = checkedName(fileName);
    return make(fileName.c_str(), [&](HImage* made) {
      return alpha == Alpha::keep ? VIZL_LoadImageFromFileWithAlpha(made, name) : VIZL_LoadImageFromFile(made, name);
    });
  }

  /// VIZL_LoadImageFromJpegBuffer.
  /// @param file a whole file in memory
  /// @return the picture
  static Image decodeJpeg(std::span<const unsigned char> file) {
    return make(nullptr, [&](HImage* made) { return VIZL_LoadImageFromJpegBuffer(made, file.data(), sizeOf(file)); });
  }

  /// VIZL_LoadImageFromPngBuffer, or ...WithAlpha.
  /// @param file a whole file in memory
  /// @param alpha keep reads its alpha channel
  /// @return the picture
  static Image decodePng(std::span<const unsigned char> file, Alpha alpha = Alpha::drop) {
    return make(nullptr, [&](HImage* made) {
      return alpha == Alpha::keep ? VIZL_LoadImageFromPngBufferWithAlpha(made, file.data(), sizeOf(file))
                                  : VIZL_LoadImageFromPngBuffer(made, file.data(), sizeOf(file));
    });
  }

  /// VIZL_LoadImageFromBuffer: copies raw pixels. A buffer that is too small for its rows is refused.
  /// @param pixels the rows
  /// @param size of the picture
  /// @param layout the bytes of a pixel
  /// @param stride bytes from a row to the next, 0 for rows without padding; with a negative one the last row of the
  ///        buffer is the top row
  /// @return the picture
  static Image fromPixels(std::span<const unsigned char> pixels, Size size, Layout layout, std::int32_t stride = 0) {
    const std::int64_t rowBytes = std::int64_t{size.width} * channelsOf(layout);
    if (stride == 0 && rowBytes > std::numeric_limits<std::int32_t>::max()) throw Error(VIZLE_INVALID_ARGUMENT);
    const std::int32_t step = stride != 0 ? stride : static_cast<std::int32_t>(rowBytes);
    const std::int64_t down =
        size.height > 0 ? (size.height - std::int64_t{1}) * (step < 0 ? -std::int64_t{step} : step) : 0;
    const bool some = size.width > 0 && size.height > 0;
    if (some && static_cast<std::uint64_t>(down + rowBytes) > pixels.size()) throw Error(VIZLE_INVALID_ARGUMENT);
    if (!some) return Image();
    const unsigned char* top = pixels.data() + (step < 0 ? down : 0);
    return make(nullptr, [&](HImage* made) {
      return VIZL_LoadImageFromBuffer(made, top, size.width, size.height, step, static_cast<VIZL_IMAGEMODE>(layout));
    });
  }

  /// VIZL_GetImageWidth.
  /// @return pixels
  std::int32_t width() const { return size().width; }
  /// VIZL_GetImageHeight.
  /// @return pixels
  std::int32_t height() const { return size().height; }
  /// Both of them.
  /// @return pixels
  Size size() const {
    Size result{};
    check(VIZL_GetImageWidth(handle_, &result.width));
    check(VIZL_GetImageHeight(handle_, &result.height));
    return result;
  }

  /// VIZL_GetImageData, without a copy.
  /// @return a view that holds until the image ends or is assigned to
  PixelView pixels() const {
    unsigned char* bottom = nullptr;
    Size size{};
    std::int32_t step = 0;
    VIZL_IMAGEMODE mode = 0;
    check(VIZL_GetImageData(handle_, &bottom, &size.width, &size.height, &step, &mode));
    if (bottom != nullptr) bottom += (size.height - std::ptrdiff_t{1}) * step;
    return {bottom, -std::ptrdiff_t{step}, size, static_cast<Layout>(mode)};
  }

  /// VIZL_SaveImageToBuffer: the pixels without padding, top row first.
  /// @param out gets them; may be longer than they are
  /// @param layout what they become
  void copyPixels(std::span<unsigned char> out, Layout layout) const {
    if (out.size() < bufferSize(layout)) throw Error(VIZLE_BUFFER_TOO_SMALL);
    if (out.empty()) return;
    check(VIZL_SaveImageToBuffer(handle_, out.data(), static_cast<VIZL_IMAGEMODE>(layout)));
  }
  /// The same into a buffer of its own.
  /// @param layout what the pixels become
  /// @return the pixels without padding, top row first
  std::vector<unsigned char> copyPixels(Layout layout) const {
    std::vector<unsigned char> out(bufferSize(layout));
    copyPixels(out, layout);
    return out;
  }
  /// What copyPixels writes.
  /// @param layout what the pixels become
  /// @return bytes
  std::size_t bufferSize(Layout layout) const {
    std::int32_t size = 0;
    check(VIZL_GetImageBufferSize(handle_, &size, static_cast<VIZL_IMAGEMODE>(layout)));
    return static_cast<std::size_t>(size);
  }

  /// VIZL_SaveImageToFile_C.
  /// @param fileName its ending tells the kind: JPEG, PNG or BMP
  /// @param context gives the quality of a JPEG file
  void save(const std::string& fileName, const Context& context = Context::shared()) const {
    check(VIZL_SaveImageToFile_C(handle_, checkedName(fileName), context.id()), fileName.c_str());
  }

  /// VIZL_CopyImage.
  /// @return a picture with the same pixels
  Image copy() const {
    return derive([&](HImage made) { return VIZL_CopyImage(handle_, made); });
  }
  /// VIZL_ResizeImage.
  /// @param ratio new width over old, and height likewise
  /// @return the picture in the new size
  Image resized(double ratio) const {
    return derive([&](HImage made) { return VIZL_ResizeImage(handle_, ratio, made); });
  }
  /// VIZL_RotateImage: about the middle.
  /// @param angle degrees, positive clockwise
  /// @return the turned picture
  Image rotated(double angle) const {
    return derive([&](HImage made) { return VIZL_RotateImage(handle_, angle, made); });
  }
  /// VIZL_RotateImageCenter: about a point.
  /// @param angle degrees, positive clockwise
  /// @param xCenter pixels
  /// @param yCenter pixels
  /// @return the turned picture
  Image rotated(double angle, double xCenter, double yCenter) const {
    return derive([&](HImage made) { return VIZL_RotateImageCenter(handle_, angle, xCenter, yCenter, made); });
  }
  /// VIZL_CopyRect.
  /// @param r what to keep
  /// @return that part
  Image cropped(const Rect& r) const {
    return derive([&](HImage made) { return VIZL_CopyRect(handle_, r.x1, r.y1, r.x2, r.y2, made); });
  }
  /// VIZL_PutImageAdjustColors: this picture, in the colours of its ground. Both pictures have to have alpha.
  /// @param back the ground, which stays as it is
  /// @param x column of the ground for the left edge
  /// @param y row of the ground for the top edge
  /// @return the ground with this picture
  Image placedOn(const Image& back, std::int32_t x, std::int32_t y) const {
    return derive([&](HImage made) { return VIZL_PutImageAdjustColors(handle_, x, y, back.handle_, made); });
  }

  /// VIZL_DetectFace_C: the strongest face.
  /// @param context the settings of detection
  /// @return nothing if there is none
  std::optional<Face> face(const Context& context = Context::shared()) const {
    Face found{};
    if (!any(VIZL_DetectFace_C(handle_, &found, context.id()))) return std::nullopt;
    return found;
  }

  /// VIZL_DetectMultipleFaces_C into the caller's room.
  /// @param room for one face or more
  /// @param context the settings of detection
  /// @return the part of the room that was filled
  std::span<Face> faces(std::span<Face> room, const Context& context = Context::shared()) const {
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max() / sizeof(Face);
    if (room.empty()) throw Error(VIZLE_BUFFER_TOO_SMALL);
    const auto bytes = static_cast<std::int32_t>((room.size() < most ? room.size() : most) * sizeof(Face));
    std::int32_t count = 0;
    if (!any(VIZL_DetectMultipleFaces_C(handle_, &count, room.data(), bytes, context.id()))) return {};
    return room.first(static_cast<std::size_t>(count));
  }

  /// The same into a vector that has room for all of them. More than 256 take a second detection.
  /// @param context the settings of detection
  /// @return all faces
  std::vector<Face> faces(const Context& context = Context::shared()) const {
    std::vector<Face> room(256);
    std::size_t count = faces(std::span(room), context).size();
    while (count == room.size()) {
      room.resize(room.size() * 8);
      count = faces(std::span(room), context).size();
    }
    room.resize(count);
    return room;
  }

  /// VIZL_DetectFacialFeaturesEx_C: the points of the strongest face.
  /// @param context the settings of detection
  /// @return nothing if there is none
  std::optional<Features> features(const Context& context = Context::shared()) const {
    Features found{};
    if (!any(VIZL_DetectFacialFeaturesEx_C(handle_, &found.points, &found.confidences, context.id()))) {
      return std::nullopt;
    }
    return found;
  }
  /// VIZL_DetectFacialFeaturesInRegionEx: the points of a face whose position is known.
  /// @param face where it is
  /// @return its points
  Features features(const Face& face) const {
    Features found{};
    check(VIZL_DetectFacialFeaturesInRegionEx(handle_, &face, &found.points, &found.confidences));
    return found;
  }

  /// VIZL_DetectEyesInRegion: the eyes of a face whose position is known.
  /// @param face where it is
  /// @return their centres; the one at the smaller x comes first
  std::array<TPoint, 2> eyes(const Face& face) const {
    TPoint points[40];
    check(VIZL_DetectEyesInRegion(handle_, &face, &points));
    return {points[0], points[1]};
  }

  /// VIZL_GetFacePosition_C: what portrait() would cut out. Throws VIZLE_NO_FACE as well.
  /// @param size of the portrait; only its shape counts
  /// @param framing how the frame lies around the face
  /// @param context the settings of detection
  /// @return the frame in this picture
  Rect portraitFrame(Size size, const Framing& framing = {}, const Context& context = Context::shared()) const {
    Rect r{};
    check(VIZL_GetFacePosition_C(handle_, size.width, size.height, framing.scale, framing.shiftX, framing.shiftY,
                                 framing.byEyes, &r.x1, &r.y1, &r.x2, &r.y2, context.id()));
    return r;
  }
  /// VIZL_PortraitCut_C: the largest face, in a picture of a given size. Throws VIZLE_NO_FACE as well.
  /// @param size of the portrait
  /// @param framing how its frame lies around the face
  /// @param context the settings of detection
  /// @return the portrait
  Image portrait(Size size, const Framing& framing = {}, const Context& context = Context::shared()) const {
    return derive([&](HImage made) {
      return VIZL_PortraitCut_C(handle_, size.width, size.height, framing.scale, framing.shiftX, framing.shiftY,
                                framing.byEyes, made, context.id());
    });
  }

  /// VIZL_ExtractFaceImage: the square around known points.
  /// @param features the points, in this picture
  /// @param width of the new picture, pixels
  /// @return the new picture with the points in it
  inline FaceImage extractFace(const Features& features, std::int32_t width) const;

 private:
  /// The table of handles never grows as far.
  static constexpr HImage none = 0xFFFFFFFFU;

  explicit Image(HImage handle) noexcept : handle_(handle) {}

  void free() noexcept {
    if (handle_ != none) VIZL_FreeImage(handle_);
  }

  static void check(std::int32_t code, const char* what = nullptr) {
    if (code == VIZLE_OK) return;
    if (what != nullptr) throw Error(code, what);
    throw Error(code);
  }

  static bool any(std::int32_t code) {
    if (code == VIZLE_NO_FACE) return false;
    check(code);
    return true;
  }

  /// Some functions give a handle although they fail; the image takes it over in time.
  template <typename TLoad>
  static Image make(const char* what, TLoad load) {
    Image image(none);
    check(load(&image.handle_), what);
    return image;
  }

  template <typename TOperation>
  static Image derive(TOperation operation) {
    Image image;
    check(operation(image.handle_));
    return image;
  }

  /// A name with a zero byte inside would open another file than the one it shows.
  static const char* checkedName(const std::string& name) {
    if (name.find('\0') != std::string::npos) throw Error(VIZLE_INVALID_ARGUMENT, name.c_str());
    return name.c_str();
  }

  static unsigned int sizeOf(std::span<const unsigned char> file) {
    if (file.size() > std::numeric_limits<unsigned int>::max()) throw Error(VIZLE_IMAGE_IO_FAILED);
    return static_cast<unsigned int>(file.size());
  }

  HImage handle_ = none;
};

/// A face that was cut out, with its points.
struct FaceImage {
  Image image;        ///< the square around it
  TPoint points[40];  ///< in pixels of that image; TPoint tells their order
};

inline FaceImage Image::extractFace(const Features& features, std::int32_t width) const {
  FaceImage result{Image(none), {}};
  std::memcpy(result.points, features.points, sizeof(result.points));
  check(VIZL_ExtractFaceImage(handle_, &result.points, width, width, &result.image.handle_, &result.points));
  return result;
}

}  // namespace portraitcut

#endif
