#include <cstdio>

#include "image/TIppiImage.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/measures.h"
#include "training/evaluation/parallel.h"

namespace evaluation {

void measureBackgrounds(const Setting& setting, const std::vector<std::string>& files) {
  std::vector<Search> searches(files.size());
  forEachIndex(files.size(), setting.threads, [&](std::size_t i) {
    TIppiImage gray;
    loadGray(files[i], gray);
    searches[i] = detectAll(*setting.detector, gray);
    const std::string name = files[i].substr(files[i].rfind('/') + 1);
    setting.findings->addFalse("background", name, gray, searches[i].faces);
  });
  std::size_t falseFaces = 0;
  double milliseconds = 0;
  std::printf("\nbackgrounds: pictures with false faces\n");
  for (std::size_t i = 0; i < files.size(); ++i) {
    falseFaces += searches[i].faces.size();
    milliseconds += searches[i].milliseconds;
    if (!searches[i].faces.empty()) std::printf("  %3zu  %s\n", searches[i].faces.size(), files[i].c_str());
  }
  const double count = static_cast<double>(files.size());
  std::printf("  %zu false faces on %zu pictures: %.3f a picture, %.1f ms a picture on each of %u threads\n",
              falseFaces, files.size(), static_cast<double>(falseFaces) / count, milliseconds / count, setting.threads);
}

}  // namespace evaluation
