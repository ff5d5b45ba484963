// soak PICTURE.png SECONDS [quick]
//
// Threads run every entry point at random, on shared and on own handles, for the given time; each result has to equal
// byte for byte what the same job gave alone. The library is stopped and started anew every few seconds, and then all
// threads make the first detection on one handle at once. `quick` leaves the searches for points out, which take most
// of the time under the thread sanitizer. Ends with 1 at a difference.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "world.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kPhase{4};
constexpr int kThreads = 8;

std::uint64_t outcomeOf(const TJob& job, const TWorld& world, int thread) {
  TOutcome outcome;
  job.run(world, thread, outcome);
  return outcome.Value();
}

std::uint64_t firstDetection(HImage image) {
  TOutcome outcome;
  TFacePosition faces[12] = {};
  int32_t count = 0;
  outcome.Add(VIZL_DetectMultipleFaces(image, &count, faces, sizeof faces));
  for (int i = 0; i < count; ++i) outcome.Add(faces[i]);
  return outcome.Value();
}

class TSoak {
 public:
  TSoak(std::string pngFile, std::string folder, bool quick)
      : PngFile(std::move(pngFile)), Folder(std::move(folder)), Quick(quick) {}

  // What each job gives while nothing else runs.
  void RunAlone() {
    require(VIZL_Initialize(nullptr));
    cutOut();
    pcSetDetectionPerformance(PcPerformanceFast);
    const TWorld world = makeWorld(PngFile, Folder);
    for (const TJob& job : kJobs) Alone.push_back(job.searches && Quick ? 0 : outcomeOf(job, world, 0));
    Detected = firstDetection(world.picture);
    require(world.face.w > 0 ? VIZLE_OK : VIZLE_NO_FACE);
    require(VIZL_Finalize());
  }

  void RunThreads(int number, Clock::duration time) {
    require(number % 2 == 0 ? VIZL_Initialize(nullptr) : pcInitialize());
    const TWorld world = makeWorld(PngFile, Folder);
    HImage untouched = 0;
    require(VIZL_LoadImageFromFile(&untouched, PngFile.c_str()));
    const Clock::time_point end = Clock::now() + time;
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        start.arrive_and_wait();
        if (firstDetection(untouched) != Detected) fail("the first detection on a handle", i);
        work(world, i, static_cast<unsigned>(number), end);
      });
    }
    for (std::thread& thread : threads) thread.join();
    require(number % 2 == 0 ? VIZL_Finalize() : pcFinalize());
  }

  int Report() const {
    std::printf("%d threads, %ld jobs, %ld differ\n", kThreads, Done.load(), Failed.load());
    return Done > 0 && Failed == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  }

 private:
  // Only the first thread searches points: searches share the C library's random numbers.
  void work(const TWorld& world, int thread, unsigned phase, Clock::time_point end) {
    std::mt19937 random(phase * 1000 + static_cast<unsigned>(thread));
    do {
      const std::size_t which = random() % kJobs.size();
      const TJob& job = kJobs[which];
      if (job.searches && (Quick || thread != 0)) continue;
      if (outcomeOf(job, world, thread) != Alone[which]) fail(job.name, thread);
      ++Done;
    } while (Clock::now() < end);
  }

  // The strongest face and what is around it: jobs on a small picture are short, and so take turns often.
  void cutOut() {
    HImage image = 0;
    TFacePosition face = {};
    require(VIZL_LoadImageFromFile(&image, PngFile.c_str()));
    require(VIZL_DetectFace(image, &face));
    require(VIZL_CopyRect(image, face.xc - face.w, face.yc - face.w, face.xc + face.w, face.yc + face.w, image));
    PngFile = Folder + "/picture.png";
    require(VIZL_SaveImageToFile(image, PngFile.c_str()));
  }

  void fail(const char* name, int thread) {
    if (++Failed <= 10) std::printf("thread %d: %s differs from what it gave alone\n", thread, name);
  }

  static void require(int32_t code) {
    if (code == VIZLE_OK) return;
    std::printf("start, stop or load: code %d\n", static_cast<int>(code));
    std::exit(EXIT_FAILURE);
  }

  std::string PngFile;
  std::string Folder;
  bool Quick;
  std::vector<std::uint64_t> Alone;
  std::uint64_t Detected = 0;
  std::atomic<long> Done = 0;
  std::atomic<long> Failed = 0;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 3 || count > 4) {
    std::fprintf(stderr, "usage: soak PICTURE.png SECONDS [quick]\n");
    return EXIT_FAILURE;
  }
  const auto folder = std::filesystem::temp_directory_path() / ("portraitcut_soak_" + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  TSoak soak(arguments[1], folder, count == 4);
  soak.RunAlone();
  const Clock::time_point end = Clock::now() + std::chrono::seconds(std::atoi(arguments[2]));
  for (int phase = 0; Clock::now() < end; ++phase) {
    soak.RunThreads(phase, std::min<Clock::duration>(kPhase, end - Clock::now()));
  }
  std::filesystem::remove_all(folder);
  return soak.Report();
}
