#include "training/window_samples.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

double uniform(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

double drawTurn(const FaceJitter& jitter, std::mt19937& random) {
  std::normal_distribution<double> normal(0.0, jitter.turnDeviation);
  double turn = normal(random);
  while (std::abs(turn) > jitter.turnLimit) turn = normal(random);
  return turn + jitter.turnMean;
}

// A point in stored coordinates: columns from the left, rows from the bottom, edges at whole numbers.
struct StoredPoint {
  double u, v;
};

// The crop around the face, two face sides wide, and where the face's centre lies in it.
StoredPoint cropAroundFace(TrainingPicture& picture, TIppiImage& crop) {
  const FaceSquare& face = picture.face;
  const int half = static_cast<int>(std::ceil(face.w));
  const int xc = static_cast<int>(std::lrint(face.xc));
  const int yc = static_cast<int>(std::lrint(face.yc));
  picture.gray->CopyToReplicateBorder(crop, xc - half, yc - half, xc + half, yc + half);
  return {half + 0.5 + (face.xc - xc), half + 0.5 - (face.yc - yc)};
}

// Where Rotate by `angle` degrees, clockwise on the screen, moves a point of `image`.
StoredPoint rotated(StoredPoint p, const TIppiImage& image, double angle) {
  const double a = angle * std::numbers::pi / 180.0;
  const double cu = image.Width / 2 + 0.5;
  const double cv = image.Height / 2 + 0.5;
  const double du = p.u - cu;
  const double dv = p.v - cv;
  return {cu + du * std::cos(a) + dv * std::sin(a), cv - du * std::sin(a) + dv * std::cos(a)};
}

void mirror(Window& window) {
  for (int y = 0; y < kWindowSide; ++y) {
    std::reverse(window.begin() + y * kWindowSide, window.begin() + (y + 1) * kWindowSide);
  }
}

// Another exposure (gamma) and a light that grows across the face.
void relight(Window& window, std::mt19937& random) {
  const double gamma = std::exp(uniform(random, -0.45, 0.45));
  const double strength = uniform(random, 0.0, 0.5);
  const double direction = uniform(random, 0.0, 2.0 * std::numbers::pi);
  for (int y = 0; y < kWindowSide; ++y) {
    for (int x = 0; x < kWindowSide; ++x) {
      unsigned char& pixel = window[static_cast<std::size_t>(y * kWindowSide + x)];
      const double along = ((x - 9.5) * std::cos(direction) + (y - 9.5) * std::sin(direction)) / 9.5;
      const double light = 255.0 * std::pow(pixel / 255.0, gamma) * (1.0 - strength * 0.5 + strength * 0.5 * along);
      pixel = static_cast<unsigned char>(std::clamp(std::lrint(light), 0L, 255L));
    }
  }
}

// Face side in the working image, pixels. Most faces are met well above the window's size, some near it,
// and a few below it, enlarged by the detector.
double drawWorkingSide(std::mt19937& random) {
  if (uniform(random, 0.0, 1.0) < 0.08) return uniform(random, 15.0, 20.0);
  return std::exp(uniform(random, std::log(20.0), std::log(120.0)));
}

template <typename Change>
void changePixels(TIppiImage& image, Change change) {
  for (int y = 0; y < image.Height; ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step;
    for (int x = 0; x < image.Width; ++x)
      row[x] = static_cast<unsigned char>(std::clamp(std::lrint(change(row[x])), 0L, 255L));
  }
}

}  // namespace

void addNoise(TIppiImage& gray, double deviation, std::mt19937& random) {
  std::normal_distribution<float> normal(0.0f, static_cast<float>(deviation));
  changePixels(gray, [&](unsigned char pixel) { return static_cast<float>(pixel) + normal(random); });
}

void flatten(TIppiImage& gray, double factor) {
  const float f = static_cast<float>(factor);
  changePixels(gray, [&](unsigned char pixel) { return 128.0f + f * (static_cast<float>(pixel) - 128.0f); });
}

std::unique_ptr<TIppiImage> loadGray(const std::string& file) {
  TIppiImage colour(imRGB24);
  const bool png = file.size() > 4 && file.compare(file.size() - 4, 4, ".png") == 0;
  const int result = png ? colour.LoadFromPngFile(file.c_str()) : colour.LoadFromJpegFile(file.c_str());
  if (result != 0) return nullptr;
  auto gray = std::make_unique<TIppiImage>(imGray8);
  gray->CopyFrom(colour);
  return gray;
}

Window windowAt(const TIppiImage& image, int x, int row) {
  Window window;
  for (int y = 0; y < kWindowSide; ++y) {
    const unsigned char* source =
        image.Pixels + static_cast<std::ptrdiff_t>(row + kWindowSide - 1 - y) * image.Step + x;
    std::copy_n(source, kWindowSide, window.begin() + y * kWindowSide);
  }
  return window;
}

bool makeFaceWindow(TrainingPicture& picture, const FaceJitter& jitter, std::mt19937& random, Window& window) {
  TIppiImage crop;
  TIppiImage work;
  TIppiImage turned;
  TIppiImage* upright = &work;
  StoredPoint centre = cropAroundFace(picture, crop);
  const bool mirrored = uniform(random, 0.0, 1.0) < 0.5;

  // A mirrored copy turns the other way, so the wanted turn is mirrored with it.
  const double turn = drawTurn(jitter, random) * (mirrored ? -1.0 : 1.0);
  const double side = drawWorkingSide(random);
  const double toWork = side / picture.face.w;
  crop.Resize(work, toWork);
  centre = {centre.u * toWork, centre.v * toWork};
  if (uniform(random, 0.0, 1.0) < 0.15) flatten(work, uniform(random, 0.3, 0.9));
  if (uniform(random, 0.0, 1.0) < 0.40) addNoise(work, uniform(random, 1.0, 10.0), random);

  // Photos that already lie close enough are left unturned in half of the copies: turning softens them.
  const bool closeEnough = std::abs(picture.face.roll * (mirrored ? -1.0 : 1.0) - jitter.turnMean) < 7.0;
  if (!closeEnough || uniform(random, 0.0, 1.0) < 0.5) {
    const double angle = turn - picture.face.roll;
    centre = rotated(centre, work, angle);
    work.Rotate(turned, angle);
    upright = &turned;
  }

  TIppiImage small;
  const double toWindow = kWindowSide / (side * std::exp(uniform(random, -jitter.logScale, jitter.logScale)));
  upright->Resize(small, toWindow);
  const double right = jitter.shiftRight * kWindowSide * (mirrored ? -1.0 : 1.0);
  const double up = -jitter.shiftDown * kWindowSide;
  const auto jittered = [&](double place) {
    return static_cast<int>(std::lrint(place - kWindowSide / 2 + uniform(random, -jitter.shift, jitter.shift)));
  };
  const int x = jittered(centre.u * toWindow + right);
  const int row = jittered(centre.v * toWindow + up);
  if (x < 0 || row < 0 || x + kWindowSide > small.Width || row + kWindowSide > small.Height) return false;
  window = windowAt(small, x, row);
  if (mirrored) mirror(window);
  if (uniform(random, 0.0, 1.0) < 0.5) relight(window, random);
  return true;
}
