// The readers of trained data. The first byte chooses one; the others are a damaged stream, or the edits that damage a
// real one, and then what was read is used.
#include <bit>
#include <cmath>
#include <memory>
#include <optional>
#include <stdexcept>

#include "detect/TIppiFaceDetector.h"
#include "eyes/eye_model.h"
#include "eyes/eye_score.h"
#include "features/TNeuroLocator.h"
#include "image/TIppiImage.h"
#include "models/models.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"

namespace {

using Stream = std::vector<unsigned char>;

// Words are what all streams are made of.
void editWord(Stream& stream, FuzzInput& in) {
  if (stream.size() < 4) return;
  const std::size_t words = stream.size() / 4;
  // Headers matter more than what is behind them.
  const std::size_t word = in.Flag() ? in.Byte() % words : in.Raw<std::uint32_t>() % words;
  const auto value =
      in.Flag() ? in.Raw<std::uint32_t>() : std::bit_cast<std::uint32_t>(static_cast<float>(in.Number()));
  std::memcpy(stream.data() + 4 * word, &value, 4);
}

Stream edited(const unsigned char* first, const unsigned char* end, FuzzInput& in) {
  Stream stream(first, end);
  for (int edits = in.Within(1, 8); edits > 0; --edits) {
    const unsigned kind = in.Byte() % 8;
    const std::size_t at = stream.empty() ? 0 : in.Raw<std::uint32_t>() % stream.size();
    const auto from = stream.begin() + static_cast<std::ptrdiff_t>(at);
    const auto count = static_cast<std::ptrdiff_t>(std::min<std::size_t>(in.Byte() % 32, stream.size() - at));
    if (kind == 0) stream.resize(at);
    if (kind == 1) stream.erase(from, from + count);
    if (kind == 2) stream.insert(from, static_cast<std::size_t>(count), static_cast<unsigned char>(in.Byte()));
    if (kind >= 3) editWord(stream, in);
  }
  return stream;
}

// The stream as the input spells it, or the library's own with changes.
Stream streamFrom(const unsigned char* first, const unsigned char* end, FuzzInput& in) {
  if (in.Flag()) return edited(first, end, in);
  const auto bytes = in.Bytes(in.Left());
  return {bytes.begin(), bytes.end()};
}

void noise(TIppiImage& image, int width, int height, unsigned seed) {
  image.AllocNew(width, height);
  for (int i = 0; i < image.SizeBytes; ++i) {
    image.Pixels[i] = static_cast<unsigned char>((static_cast<unsigned>(i) * 2654435761U + seed) >> 24);
  }
}

void readCascade(FuzzInput& in) {
  const unsigned seed = in.Byte();
  const Stream stream = streamFrom(class_dat, class_dat_end, in);
  try {
    TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
    TIppiImage image(imGray8);
    noise(image, 48, 40, seed);
    std::vector<TRectangle> rects;
    detector.DetectFaceRaw(image, rects, 1.0F);
    for (const TRectangle& rect : rects) {
      require(rect.x1 >= -1 && rect.y1 >= -1 && rect.x2 <= 49 && rect.y2 <= 41, "a window lies in the picture");
    }
  } catch (const std::invalid_argument&) {
  }
}

void readNetwork(FuzzInput& in) {
  constexpr std::ptrdiff_t kOneNetwork = 12700;  // bytes, rounded up
  const Stream stream = streamFrom(neuro_dat, neuro_dat + std::min(kOneNetwork, neuro_dat_end - neuro_dat), in);
  const auto network = std::make_unique<TNeuralNetwork>();
  const unsigned char* next = stream.data();
  const unsigned char* const end = next + stream.size();
  const int code = network->LoadFromStream(&next, end);
  require(code == 0 || (code == -1 && next == stream.data()), "a failed read moves nothing");
  require(next <= end, "a read stays in the stream");
  if (code != 0) return;
  float inputs[kPatchPixels];
  for (int i = 0; i < kPatchPixels; ++i) inputs[i] = static_cast<float>(i % 64) / 32.0F - 1.0F;
  network->FastPropagate_I(inputs);
}

// All of it takes thousands of times as long as the rest, so it has to be asked for in several bytes.
bool asksForSearch(FuzzInput& in) { return in.Raw<std::uint16_t>() == 0x5EA4; }

void readLocator(FuzzInput& in) {
  const bool search = asksForSearch(in);
  const Stream stream = streamFrom(neuro_dat, neuro_dat_end, in);
  try {
    TNeuroData data;
    data.Networks = stream.data();
    data.NetworksEnd = stream.data() + stream.size();
    TNeuroLocator locator(data);
    if (!search) return;
    TIppiImage face(imGray8);
    noise(face, 256, 256, 7);
    TGrid grid;
    locator.Result = &grid;
    locator.LocateGrid(face);
  } catch (const std::invalid_argument&) {
  }
}

// Rows are taken as they are: any floats at all must do no harm.
void useRows(FuzzInput& in) {
  static const TNeuroLocator master;
  std::vector<float> rows(eigengrids, eigengrids + kDeformations * kCoordinates);
  for (int edits = in.Within(1, 8); edits > 0; --edits)
    rows[in.Raw<std::uint16_t>() % rows.size()] = static_cast<float>(in.Number());
  TNeuroLocator locator(master);
  locator.EigenGrids = rows.data();
  TIppiImage face(imGray8);
  noise(face, in.Within(1, 256), 256, 3);
  TGrid grid;
  locator.Result = &grid;
  // A search that is broken off at once has set up all that the single steps need.
  const bool search = asksForSearch(in);
  NeedInterrupt = search ? 0 : 1;
  locator.LocateGrid(face);
  NeedInterrupt = 0;
  float parameters[2][kShapeParameters], similarities[2];
  for (auto& row : parameters) {
    for (float& parameter : row) parameter = static_cast<float>(in.Number());
  }
  const float* const both[] = {parameters[0], parameters[1]};
  for (const bool even : {true, false}) {
    locator.EvenCoordinates = even;
    locator.ShapeSimilarities(both, 2, similarities);
  }
}

void readEyes(FuzzInput& in) {
  const auto* const first = VIZL_resu2 + kEyeModelHeader;
  Stream stream(first, first + sizeof(eyeFeature));
  for (int edits = in.Within(1, 16); edits > 0; --edits) editWord(stream, in);
  const auto model = std::make_unique<eyeFeature>();
  std::memcpy(model.get(), stream.data(), sizeof *model);
  UseEyeModel(*model);
  Image image;
  std::vector<unsigned char> pixels(64 * 64);
  for (std::size_t i = 0; i < pixels.size(); ++i)
    pixels[i] = static_cast<unsigned char>(i * (in.Empty() ? 7 : in.Byte()));
  VIZL_AssignImageFromBuffer(image.Handle(), pixels.data(), 64, 64, 64, VIZL_IMAGE_GRAY8);
  const TFacePosition face = {32, 32, 50, 0, 0};
  TPoint points[40];
  require(VIZL_DetectEyesInRegion(image.Handle(), &face, &points) == VIZLE_OK, "eyes with any weights");
  for (const TPoint& eye : {points[0], points[1]}) {
    require(eye.x >= 0 && eye.x < 64 && eye.y >= 0 && eye.y < 64, "eyes lie in the picture");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  FuzzInput in(data, size);
  const unsigned reader = in.Byte() % 8;
  if (reader < 3) readCascade(in);
  if (reader == 3 || reader == 4) readNetwork(in);
  if (reader == 5) readLocator(in);
  if (reader == 6) useRows(in);
  if (reader == 7) readEyes(in);
  return 0;
}
