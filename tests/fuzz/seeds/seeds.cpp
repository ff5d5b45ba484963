#include "tests/fuzz/seeds/seeds.h"

#include <random>

Seeds choiceSeeds(const std::string& target) {
  Seeds seeds;
  std::mt19937 random(static_cast<unsigned>(target.size()) * 31 + static_cast<unsigned char>(target[0]));
  for (const std::size_t size : {8U, 24U, 64U, 160U, 400U, 1000U}) {
    for (int i = 0; i < 4; ++i) {
      Bytes bytes(size);
      for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
      seeds.push_back({"random_" + std::to_string(size) + "_" + std::to_string(i), bytes});
    }
  }
  return seeds;
}

Seeds seedsOf(const std::string& target) {
  if (target == "jpeg" || target == "png" || target == "bmp" || target == "grid") return {};
  return target == "detect" ? detectSeeds() : choiceSeeds(target);
}
