// Sequences of exported calls that the input spells out, on up to three threads at once. Each thread has images and
// contexts of its own and looks at images that all share, as the rules for threads allow; so what a thread sees depends
// on the input alone, but for the numbers of its handles.
#include <array>
#include <thread>

#include "api/pc_api.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"
#include "tests/fuzz/scratch.h"

namespace {

constexpr int kThreads = 3, kOwnImages = 4, kSharedImages = 2, kMostCalls = 40;
// No table has as many handles or contexts.
constexpr HImage kNoImage = 100000;
constexpr ContextID kNoContext = 100000;
constexpr long long kMostPixels = 1 << 14;

class Player {
 public:
  Player(FuzzInput in, int number, const Image (&shared)[kSharedImages]) : in_(in), number_(number), shared_(shared) {
    for (ContextID& context : contexts_) {
      require(VIZL_CreateContext_ID(&context) == VIZLE_OK && context > 0, "a new context");
      VIZL_SetFaceDetectionParameters_C(true, false, 40, context);
    }
  }
  ~Player() {
    for (const ContextID context : contexts_) require(pcFreeContextID(context) == VIZLE_OK, "a context is freed once");
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  void Play();

 private:
  using Call = std::int32_t (Player::*)();

  // An image of one's own, to be written.
  Image& Own() { return own_[in_.Byte() % kOwnImages]; }
  // Any image, to be read; now and then none.
  HImage Any() {
    const unsigned which = in_.Byte() % (kOwnImages + kSharedImages + 1);
    if (which < kOwnImages) return own_[which].Handle();
    return which < kOwnImages + kSharedImages ? shared_[which - kOwnImages].Handle() : kNoImage;
  }
  HImage Written() { return in_.Byte() % 16 == 1 ? kNoImage : Own().Handle(); }
  ContextID AnyContext() {
    const unsigned which = in_.Byte() % 8;
    return which < 6 ? contexts_[which % 2] : which == 6 ? 0 : kNoContext;
  }
  std::string Path() {
    static constexpr const char* kExtensions[] = {".jpg", ".png", ".bmp", ".jfif", ".txt", ""};
    return scratchPath("call" + std::to_string(number_) + kExtensions[in_.Byte() % std::size(kExtensions)]);
  }
  TFacePosition Face() {
    return {in_.Within(-20, 80), in_.Within(-20, 80), in_.Within(-1, 90), 0, in_.Within(-30, 30) * 1.0};
  }
  int Side() { return in_.Within(-1, 60); }

  std::int32_t Assign();
  std::int32_t LoadBuffer();
  std::int32_t LoadFile();
  std::int32_t LoadDecoded();
  std::int32_t SaveFile();
  std::int32_t ReadOut();
  std::int32_t Renew();
  std::int32_t Copy() { return VIZL_CopyImage(Any(), Written()); }
  std::int32_t Resize() { return VIZL_ResizeImage(Any(), in_.Within(-1, 40) / 20.0, Written()); }
  std::int32_t Rotate() { return VIZL_RotateImage(Any(), in_.Within(-400, 400), Written()); }
  std::int32_t RotateCenter() { return VIZL_RotateImageCenter(Any(), Side(), Side(), Side(), Written()); }
  std::int32_t CopyRect() { return VIZL_CopyRect(Any(), Side(), Side(), Side(), Side(), Written()); }
  std::int32_t Overlay() { return VIZL_PutImageAdjustColors(Any(), Side(), Side(), Any(), Written()); }
  std::int32_t Settings();
  std::int32_t PortraitSettings();
  std::int32_t ContextLife();
  std::int32_t UserField();
  std::int32_t Detect();
  std::int32_t Points();
  std::int32_t Eyes();
  std::int32_t Frame();
  std::int32_t Cut();
  std::int32_t CutFile();
  std::int32_t Extract();
  std::int32_t Resources();
  void Shrink();

  FuzzInput in_;
  int number_;
  const Image (&shared_)[kSharedImages];
  std::array<Image, kOwnImages> own_;
  std::array<ContextID, 2> contexts_{};
};

std::int32_t Player::Assign() {
  const int width = Side(), height = Side(), mode = in_.Within(-1, 3);
  const auto bytes = in_.Bytes(8);
  std::vector<unsigned char> pixels(64 * 64 * 4);
  for (std::size_t i = 0; i < pixels.size(); ++i)
    pixels[i] = static_cast<unsigned char>(bytes.empty() ? i : bytes[i % bytes.size()] + i / 97);
  return VIZL_AssignImageFromBuffer(Written(), in_.Byte() % 32 == 1 ? nullptr : pixels.data(), width, height, 256,
                                    mode);
}

std::int32_t Player::LoadBuffer() {
  const std::vector<unsigned char> pixels(64 * 64 * 4, static_cast<unsigned char>(in_.Byte()));
  return VIZL_LoadImageFromBuffer(Own().Replace(), pixels.data(), Side(), Side(), in_.Flag() ? 256 : 240,
                                  in_.Within(0, 2));
}

std::int32_t Player::LoadFile() {
  Image& image = Own();
  Image fresh;
  const auto load = in_.Flag() ? VIZL_LoadImageFromFile : VIZL_LoadImageFromFileWithAlpha;
  HImage handle = fresh.Handle();
  const std::int32_t code = load(&handle, Path().c_str());
  if (code == VIZLE_OK) VIZL_CopyImage(handle, image.Handle());
  if (handle != fresh.Handle()) VIZL_FreeImage(handle);
  return code;
}

std::int32_t Player::LoadDecoded() {
  const auto bytes = in_.Bytes(in_.Byte());
  const std::vector<unsigned char> exact(bytes.begin(), bytes.end());
  const auto load = in_.Flag() ? VIZL_LoadImageFromJpegBuffer : VIZL_LoadImageFromPngBuffer;
  Image fresh;
  return exact.empty() ? VIZLE_OK : load(fresh.Replace(), exact.data(), static_cast<unsigned>(exact.size()));
}

std::int32_t Player::SaveFile() {
  const std::string path = Path();
  return in_.Flag() ? VIZL_SaveImageToFile(Any(), path.c_str())
                    : VIZL_SaveImageToFile_C(Any(), path.c_str(), AnyContext());
}

std::int32_t Player::ReadOut() {
  const HImage image = Any();
  std::int32_t size = 0, width = 0, height = 0, scanLine = 0;
  VIZL_IMAGEMODE mode = in_.Within(-1, 3);
  const std::int32_t code = VIZL_GetImageBufferSize(image, &size, mode);
  std::vector<unsigned char> pixels(static_cast<std::size_t>(size) + 1);
  require(VIZL_SaveImageToBuffer(image, pixels.data(), mode) == code, "a size and its pixels come together");
  unsigned char* data = nullptr;
  require(VIZL_GetImageData(image, &data, &width, &height, &scanLine, &mode) == code,
          "a size and a view come together");
  return code;
}

// A new number in the place of an old one.
std::int32_t Player::Renew() {
  const std::int32_t code = VIZL_CreateEmptyImage(Own().Replace());
  require(code == VIZLE_OK && VIZL_FreeImage(kNoImage) == VIZLE_OK, "images are made and freed");
  return code;
}

std::int32_t Player::Settings() {
  const int width = in_.Within(15, 60), threshold = in_.Within(-1, 6), quality = in_.Within(-5, 105);
  const ContextID context = AnyContext();
  const bool rotations = in_.Flag(), angle = in_.Flag();
  switch (in_.Byte() % 6) {
    case 0:
      return VIZL_SetFaceDetectionParameters(rotations, angle, width);
    case 1:
      return VIZL_SetFaceDetectionParameters_C(rotations, angle, width, context);
    case 2:
      return VIZL_SetFaceDetectionThreshold(threshold);
    case 3:
      return VIZL_SetFaceDetectionThreshold_C(threshold, context);
    case 4:
      return VIZL_SetJpegCompressionQuality(quality);
    default:
      return VIZL_SetJpegCompressionQuality_C(quality, context);
  }
}

std::int32_t Player::PortraitSettings() {
  const ContextID context = AnyContext();
  const auto number = static_cast<float>(in_.Number()), other = static_cast<float>(in_.Number());
  switch (in_.Byte() % 6) {
    case 0:
      return pcSetFaceScale(number);
    case 1:
      return pcSetFaceScale_C(number, context);
    case 2:
      return pcSetFaceShift(number, other);
    case 3:
      return pcSetFaceShift_C(number, other, context);
    case 4: {
      const std::int32_t code = pcSetDetectionPerformance(in_.Within(-1, 3));
      VIZL_SetFaceDetectionParameters(true, false, 40);
      return code;
    }
    default: {
      const std::int32_t code = pcSetDetectionPerformance_C(in_.Within(-1, 3), context);
      if (context != 0) VIZL_SetFaceDetectionParameters_C(true, false, 40, context);
      if (context == 0) VIZL_SetFaceDetectionParameters(true, false, 40);
      return code;
    }
  }
}

std::int32_t Player::ContextLife() {
  ContextID& context = contexts_[in_.Byte() % 2];
  const std::int32_t code = in_.Flag() ? VIZL_FreeContext_ID(context) : pcFreeContextID(context);
  require(code == VIZLE_OK && VIZL_FreeContext_ID(kNoContext) == VIZLE_INVALID_ARGUMENT, "contexts are freed once");
  require(pcCreateContextID(&context) == VIZLE_OK, "a new context");
  return VIZL_SetFaceDetectionParameters_C(false, in_.Flag(), 40, context);
}

// In a context of its own: those of the others hold a record of the pc functions there.
std::int32_t Player::UserField() {
  ContextID context = 0;
  VIZL_CreateContext_ID(&context);
  void* const given = std::malloc(16);
  void* got = nullptr;
  require(VIZL_SetContextUserField(context, given) == VIZLE_OK, "a field is taken");
  require(VIZL_GetContextUserField(context, &got) == VIZLE_OK && got == given, "a field is given back");
  return VIZL_FreeContext_ID(context);
}

std::int32_t Player::Detect() {
  TFacePosition faces[4] = {};
  std::int32_t count = 0, confidence = 0;
  VIZL_GetDetectedFaceConfidence(&confidence);
  if (in_.Flag()) return VIZL_DetectFace_C(Any(), faces, AnyContext());
  const int room = in_.Within(0, static_cast<int>(sizeof faces));
  return VIZL_DetectMultipleFaces_C(Any(), &count, faces, room, AnyContext());
}

std::int32_t Player::Points() {
  TPoint points[40] = {};
  float confidences[40] = {};
  const TFacePosition face = Face();
  // Even a search that is broken off costs as much as a hundred of the other calls.
  const HImage image = in_.Byte() % 8 == 1 ? Any() : kNoImage;
  switch (in_.Byte() % 4) {
    case 0:
      return VIZL_DetectFacialFeaturesEx_C(image, &points, &confidences, AnyContext());
    case 1:
      return VIZL_DetectFacialFeatures_C(image, &points, AnyContext());
    default:
      return VIZL_DetectFacialFeaturesInRegionEx_C(image, &face, &points, in_.Flag() ? &confidences : nullptr,
                                                   AnyContext());
  }
}

std::int32_t Player::Eyes() {
  TPoint points[40] = {};
  const TFacePosition face = Face();
  return VIZL_DetectEyesInRegion_C(in_.Byte() % 4 == 1 ? Any() : kNoImage, &face, &points, AnyContext());
}

std::int32_t Player::Frame() {
  std::int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  const int width = Side(), height = Side();
  if (in_.Flag())
    return VIZL_GetFacePosition_C(Any(), width, height, in_.Number(), in_.Number(), 0, in_.Flag(), &x1, &y1, &x2, &y2,
                                  AnyContext());
  // It frees the image whatever the result, unless the context is unknown.
  HImage copy = 0;
  require(VIZL_CreateEmptyImage(&copy) == VIZLE_OK, "an image to be freed");
  VIZL_CopyImage(Any(), copy);
  const std::int32_t code = pcGetFacePositionInHImageAndFree_C(copy, width, height, &x1, &y1, &x2, &y2, contexts_[0]);
  return code;
}

std::int32_t Player::Cut() {
  const int width = Side(), height = Side();
  if (in_.Flag())
    return VIZL_PortraitCut_C(Any(), width, height, in_.Number(), 0, in_.Number(), in_.Flag(), Written(), AnyContext());
  return pcPortraitCut_HImageToHImage_C(Any(), Written(), width, height, AnyContext());
}

std::int32_t Player::CutFile() {
  const std::string from = Path(), to = Path();
  const ContextID context = contexts_[in_.Byte() % 2];
  // Two codes leave a handle that only the end of the library frees; files of this target's own making have neither.
  if (from.find(".txt") != std::string::npos || from.find('.') == std::string::npos) return VIZLE_OK;
  Image fresh;
  HImage handle = fresh.Handle();
  const std::int32_t loads = VIZL_LoadImageFromFile(&handle, from.c_str());
  if (handle != fresh.Handle()) VIZL_FreeImage(handle);
  return loads == VIZLE_OK ? pcPortraitCut_C(from.c_str(), to.c_str(), Side(), Side(), context) : loads;
}

std::int32_t Player::Extract() {
  TPoint points[40], found[40];
  for (TPoint& point : points) point = {Side(), Side()};
  HImage face = 0;
  const std::int32_t code = VIZL_ExtractFaceImage(Any(), &points, in_.Within(0, 80), Side(), &face, &found);
  if (code == VIZLE_OK) VIZL_FreeImage(face);
  return code;
}

std::int32_t Player::Resources() {
  static constexpr const char* kNames[] = {"CDATA", "EYESVM", "EYESVM2", "MW", "", "cdata", nullptr};
  const std::size_t which = in_.Byte() % std::size(kNames);
  require((VIZL_resData(kNames[which]) != nullptr) == (which < 4), "the four resources");
  require((VIZL_resType(kNames[which]) != nullptr) == (which < 4), "the four resources have types");
  return VIZLE_OK;
}

// Pictures stay small.
void Player::Shrink() {
  for (Image& image : own_) {
    if (image.Pixels() > kMostPixels) VIZL_CreateEmptyImage(image.Replace());
  }
}

void Player::Play() {
  static constexpr Call kCalls[] = {
      &Player::Assign,       &Player::LoadBuffer, &Player::LoadFile, &Player::LoadDecoded, &Player::SaveFile,
      &Player::ReadOut,      &Player::Renew,      &Player::Copy,     &Player::Resize,      &Player::Rotate,
      &Player::RotateCenter, &Player::CopyRect,   &Player::Overlay,  &Player::Settings,    &Player::PortraitSettings,
      &Player::ContextLife,  &Player::UserField,  &Player::Detect,   &Player::Points,      &Player::Eyes,
      &Player::Frame,        &Player::Cut,        &Player::CutFile,  &Player::Extract,     &Player::Resources};
  for (int i = 0; i < kMostCalls && !in_.Empty(); ++i) {
    const std::int32_t code = (this->*kCalls[in_.Byte() % std::size(kCalls)])();
    require(code <= VIZLE_OK && code >= VIZLE_BAD_IMAGE_FILE, "one of the codes");
    Shrink();
  }
}

// What all threads may look at: gray and with alpha.
void fillShared(const Image (&shared)[kSharedImages]) {
  std::vector<unsigned char> pixels(48 * 48 * 4);
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(i * i / 50 + i / 48);
  VIZL_AssignImageFromBuffer(shared[0].Handle(), pixels.data(), 48, 48, 48, VIZL_IMAGE_GRAY8);
  VIZL_AssignImageFromBuffer(shared[1].Handle(), pixels.data(), 30, 20, 120, VIZL_IMAGE_COLOR32);
}

void setProcessWide() {
  VIZL_SetFaceDetectionParameters(true, false, 40);
  VIZL_SetFaceDetectionThreshold(3);
  VIZL_SetJpegCompressionQuality(90);
  pcSetFaceScale(1);
  pcSetFaceShift(0, 0);
  // A full search for points takes too long.
  NeedInterrupt = 1;
}

void playAll(FuzzInput in, int threads) {
  const Image shared[kSharedImages];
  fillShared(shared);
  const std::size_t share = in.Left() / static_cast<std::size_t>(threads);
  std::vector<std::thread> running;
  for (int number = 0; number < threads; ++number) {
    const auto bytes = in.Bytes(share);
    const auto play = [&shared, bytes, number] {
      Player(FuzzInput(bytes.data(), bytes.size()), number, shared).Play();
    };
    if (threads == 1) {
      play();
    } else {
      running.emplace_back(play);
    }
  }
  for (std::thread& thread : running) thread.join();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  FuzzInput in(data, size);
  setProcessWide();
  scratchPath("");
  const unsigned start = in.Byte();
  playAll(in, static_cast<int>(start % kThreads) + 1);
  requireNoImages();
  if (start >= 0xF8) {
    require(VIZL_Finalize() == VIZLE_OK && VIZL_Initialize(nullptr) == VIZLE_OK, "an end and a new start");
  }
  return 0;
}
