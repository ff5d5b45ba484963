#include "training/features/manifest_line.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace {

using State = std::array<std::uint32_t, 8>;

// The first 32 bits of the fraction of a root of each of the first primes: FIPS 180-4 takes square roots for the
// start and cube roots for the rounds.
template <std::size_t Count>
std::array<std::uint32_t, Count> rootsOfPrimes(long double (*root)(long double)) {
  std::array<std::uint32_t, Count> bits{};
  std::size_t found = 0;
  for (unsigned number = 2; found < Count; ++number) {
    bool prime = true;
    for (unsigned d = 2; d * d <= number; ++d) prime &= number % d != 0;
    if (!prime) continue;
    const long double value = root(number);
    bits[found++] = static_cast<std::uint32_t>((value - std::floor(value)) * 4294967296.0L);
  }
  return bits;
}

void addBlock(State& state, const unsigned char* block) {
  static const auto constants = rootsOfPrimes<64>([](long double v) { return std::cbrt(v); });
  std::array<std::uint32_t, 64> w;
  for (std::size_t i = 0; i < 16; ++i) {
    w[i] = static_cast<std::uint32_t>(block[4 * i]) << 24 | static_cast<std::uint32_t>(block[4 * i + 1]) << 16 |
           static_cast<std::uint32_t>(block[4 * i + 2]) << 8 | block[4 * i + 3];
  }
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t a = w[i - 15], b = w[i - 2];
    w[i] = w[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3) + w[i - 7] +
           (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10);
  }
  State s = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t first = s[7] + (std::rotr(s[4], 6) ^ std::rotr(s[4], 11) ^ std::rotr(s[4], 25)) +
                                ((s[4] & s[5]) ^ (~s[4] & s[6])) + constants[i] + w[i];
    const std::uint32_t second = (std::rotr(s[0], 2) ^ std::rotr(s[0], 13) ^ std::rotr(s[0], 22)) +
                                 ((s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]));
    s = {first + second, s[0], s[1], s[2], s[3] + first, s[4], s[5], s[6]};
  }
  for (std::size_t i = 0; i < 8; ++i) state[i] += s[i];
}

}  // namespace

std::string sha256(const std::vector<unsigned char>& bytes) {
  State state = rootsOfPrimes<8>([](long double v) { return std::sqrt(v); });
  std::vector<unsigned char> padded = bytes;
  padded.push_back(0x80);
  while (padded.size() % 64 != 56) padded.push_back(0);
  const std::uint64_t bits = 8 * static_cast<std::uint64_t>(bytes.size());
  for (int shift = 56; shift >= 0; shift -= 8) padded.push_back(static_cast<unsigned char>(bits >> shift & 255));
  for (std::size_t i = 0; i < padded.size(); i += 64) addBlock(state, &padded[i]);
  std::string text;
  for (const std::uint32_t word : state) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", word);
    text += digits;
  }
  return text;
}

std::string commandOf(int argc, const char* const* argv) {
  std::string command;
  for (int i = 0; i < argc; ++i) {
    if (i > 0) command += ' ';
    const bool data = i > 0 && std::string(argv[i - 1]) == "--data";
    command += data ? "DATA" : std::filesystem::path(argv[i]).filename().string();
  }
  return command;
}

std::string manifestLine(const std::string& name, const std::vector<unsigned char>& bytes, const std::string& command) {
  return name + " " + std::to_string(bytes.size()) + " " + sha256(bytes) + " " + command;
}
