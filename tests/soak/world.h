// What the jobs of the soak work on, and how they tell what came out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pc_api.h"

// FNV-1a, 64 bits, of all that goes in.
class TOutcome {
 public:
  void Add(const void* data, std::size_t size);
  // Codes and other integers.
  void Add(std::int64_t value) { Add(&value, sizeof value); }
  void Add(const TFacePosition& face);
  void Add(const TPoint (&points)[40]) { Add(points, sizeof points); }
  void Add(const float (&confidences)[40]) { Add(confidences, sizeof confidences); }
  void AddImage(HImage image);
  void AddImageAndFree(HImage image);
  void AddFile(const std::string& path);

  std::uint64_t Value() const { return Hash; }

 private:
  std::uint64_t Hash = 0xcbf29ce484222325u;
};

// Shared by all threads, which only read it. Made anew after each VIZL_Initialize, as handles end with VIZL_Finalize.
struct TWorld {
  std::string pngFile;
  std::string folder;  // for temporary files
  std::vector<unsigned char> png;
  std::vector<unsigned char> jpeg;
  HImage picture;
  HImage pictureWithAlpha;
  HImage overlay;
  TFacePosition face;
  TPoint points[40];  // of that face, made up: the search is a job of its own

  // A path that only this thread uses.
  std::string Path(int thread, const char* ending) const {
    return folder + "/" + std::to_string(thread) + "." + ending;
  }
};

std::vector<unsigned char> contentOf(const std::string& path);
TWorld makeWorld(const std::string& pngFile, const std::string& folder);
HImage emptyImage();

struct TJob {
  const char* name;
  // Draws from the process's rand(), so that only one thread may run it at a time for results to repeat.
  bool searches;
  void (*run)(const TWorld& world, int thread, TOutcome& outcome);
};

// Every exported function but the starts and stops is called by one of them.
extern const std::vector<TJob> kJobs;
