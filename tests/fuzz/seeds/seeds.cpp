#include "tests/fuzz/seeds/seeds.h"

#include <random>

namespace {

Bytes withoutMiddle(const Bytes& whole) {
  Bytes bytes = whole;
  const auto third = static_cast<std::ptrdiff_t>(bytes.size() / 3);
  bytes.erase(bytes.begin() + third, bytes.begin() + third + third / 4);
  return bytes;
}

Bytes withMiddleTwice(const Bytes& whole) {
  Bytes bytes = whole;
  const auto third = static_cast<std::ptrdiff_t>(whole.size() / 3);
  bytes.insert(bytes.begin() + third, whole.begin() + third, whole.begin() + third * 2);
  return bytes;
}

Bytes withChanges(const Bytes& whole, unsigned seed) {
  Bytes bytes = whole;
  std::mt19937 random(seed);
  for (int i = 0; i < 3; ++i) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
  return bytes;
}

}  // namespace

void addDamaged(Seeds& seeds, Seed whole) {
  for (const std::size_t percent : {20U, 50U, 90U}) {
    const auto end = whole.bytes.begin() + static_cast<std::ptrdiff_t>(whole.bytes.size() * percent / 100);
    seeds.push_back({whole.name + "_cut" + std::to_string(percent), {whole.bytes.begin(), end}});
  }
  seeds.push_back({whole.name + "_gap", withoutMiddle(whole.bytes)});
  seeds.push_back({whole.name + "_twice", withMiddleTwice(whole.bytes)});
  for (unsigned i = 0; i < 2; ++i) {
    seeds.push_back({whole.name + "_changed" + std::to_string(i), withChanges(whole.bytes, i)});
  }
}

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
  if (target == "jpeg") return jpegSeeds();
  if (target == "png") return pngSeeds();
  if (target == "bmp") return bmpSeeds();
  if (target == "grid") return gridSeeds();
  if (target == "detect") return detectSeeds();
  return choiceSeeds(target);
}
