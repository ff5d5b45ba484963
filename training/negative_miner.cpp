#include "training/negative_miner.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <thread>

#include "primitives/ippi.h"
#include "training/scan_windows.h"

namespace {

constexpr std::size_t kScansPerRound = 128;

double uniform(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

// One scan to be made: which picture and how it is changed.
struct ScanTask {
  TrainingPicture* picture;
  TrainingPicture* other;  // a background to be blended in, or null
  bool portrait;
  std::uint32_t seed;
};

// A window of a portrait is a negative when it lies clearly off the face; windows a little off are left out
// altogether, since the detector's clusters are made of them.
bool clearlyOffFace(const ScannedWindow& window, const FaceSquare& face) {
  const double distance = std::hypot(window.xc - face.xc, window.yc - face.yc);
  const double ratio = window.w / face.w;
  return distance > 0.45 * std::max(face.w, window.w) || ratio > 1.9 || ratio < 0.55;
}

void invert(TIppiImage& image) {
  for (int y = 0; y < image.Height; ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step;
    for (int x = 0; x < image.Width; ++x) row[x] = static_cast<unsigned char>(255 - row[x]);
  }
}

// Mixes `other` into the common lower left part and leaves only that: two pictures make a third texture.
void blend(TIppiImage& image, const TIppiImage& other, double share, TIppiImage& mixed) {
  mixed.AllocNew(std::min(image.Width, other.Width), std::min(image.Height, other.Height));
  const int weight = static_cast<int>(share * 256.0);
  for (int y = 0; y < mixed.Height; ++y) {
    const unsigned char* a = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step;
    const unsigned char* b = other.Pixels + static_cast<std::ptrdiff_t>(y) * other.Step;
    unsigned char* out = mixed.Pixels + static_cast<std::ptrdiff_t>(y) * mixed.Step;
    for (int x = 0; x < mixed.Width; ++x)
      out[x] = static_cast<unsigned char>((a[x] * (256 - weight) + b[x] * weight) >> 8);
  }
}

// Turns that leave no face upright: from 25 degrees on to either side.
double drawFarTurn(std::mt19937& random) {
  if (uniform(random, 0.0, 1.0) < 0.5) return 90.0 * static_cast<double>(1 + random() % 3);
  const double turn = uniform(random, 25.0, 180.0);
  return random() % 2 == 0 ? turn : -turn;
}

// The picture as this task sees it. `faceStays` tells whether the labelled face still stands where the label says.
void preparePicture(const ScanTask& task, std::mt19937& random, TIppiImage& image, bool& faceStays) {
  TIppiImage changed;
  image.Assign(*task.picture->gray);
  faceStays = task.portrait;
  const double kind = uniform(random, 0.0, 1.0);
  if (task.portrait) {
    if (kind < 0.6) return;
    if (kind < 0.7) {
      invert(image);
    } else {
      image.Rotate(changed, drawFarTurn(random) - task.picture->face.roll);
      image.Assign(changed);
    }
    faceStays = false;
    return;
  }
  if (kind < 0.15) invert(image);
  if (task.other != nullptr) {
    blend(image, *task.other->gray, uniform(random, 0.25, 0.6), changed);
    image.Assign(changed);
  }
  if (random() % 2 == 0) ippiMirror_8u_C1IR(image.Pixels, image.Step, image.RoiSize, ippAxsVertical);
  if (random() % 4 == 0) return;
  image.Rotate(changed,
               random() % 2 == 0 ? 90.0 * static_cast<double>(1 + random() % 3) : uniform(random, -45.0, 45.0));
  image.Assign(changed);
}

std::vector<Window> runTask(const TIppiFaceDetector& detector, const ScanTask& task, std::size_t perScan) {
  std::mt19937 random(task.seed);
  TIppiImage image;
  bool faceStays = false;
  preparePicture(task, random, image, faceStays);
  if (random() % 8 == 0) flatten(image, uniform(random, 0.3, 0.9));
  if (random() % 4 == 0) addNoise(image, uniform(random, 1.0, 10.0), random);
  const float scale = static_cast<float>(std::exp(uniform(random, std::log(0.7), std::log(1.3))));
  std::vector<Window> kept;
  std::size_t seen = 0;
  WindowScanner(detector).scan(image, scale, [&](const ScannedWindow& window) {
    if (faceStays && !clearlyOffFace(window, task.picture->face)) return;
    // Reservoir: each window of the scan stays with the same chance.
    ++seen;
    if (kept.size() < perScan) {
      kept.push_back(windowAt(*window.scaled, window.x, window.row));
    } else if (const std::size_t slot = random() % seen; slot < perScan) {
      kept[slot] = windowAt(*window.scaled, window.x, window.row);
    }
  });
  return kept;
}

}  // namespace

std::vector<Window> mineNegatives(const TIppiFaceDetector& detector, std::vector<TrainingPicture>& backgrounds,
                                  std::vector<TrainingPicture>& portraits, const MiningPlan& plan,
                                  std::size_t& scansDone) {
  std::mt19937 random(plan.seed);
  std::vector<Window> found;
  scansDone = 0;
  while (found.size() < plan.wanted && scansDone < plan.maxScans) {
    std::vector<ScanTask> tasks(kScansPerRound);
    for (ScanTask& task : tasks) {
      task.portrait = uniform(random, 0.0, 1.0) < plan.portraitShare;
      std::vector<TrainingPicture>& pool = task.portrait ? portraits : backgrounds;
      task.picture = &pool[random() % pool.size()];
      task.other = random() % 4 == 0 ? &backgrounds[random() % backgrounds.size()] : nullptr;
      task.seed = static_cast<std::uint32_t>(random());
    }
    std::vector<std::vector<Window>> results(tasks.size());
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < plan.threads; ++t) {
      workers.emplace_back([&, t] {
        for (std::size_t k = t; k < tasks.size(); k += plan.threads)
          results[k] = runTask(detector, tasks[k], plan.perScan);
      });
    }
    for (std::thread& worker : workers) worker.join();
    for (const std::vector<Window>& result : results) found.insert(found.end(), result.begin(), result.end());
    scansDone += tasks.size();
  }
  if (found.size() > plan.wanted) found.resize(plan.wanted);
  return found;
}
