// Writes the mean of eye models of the same form: linear models, so the mean's scores are the mean of their scores.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

#include "eyes/eye_model.h"

namespace {

std::vector<char> contentOf(const char* file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<float> weightsOf(const std::vector<char>& model) {
  std::vector<float> weights((model.size() - kEyeModelHeader) / sizeof(float));
  std::memcpy(weights.data(), model.data() + kEyeModelHeader, weights.size() * sizeof(float));
  return weights;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: average_eye_models OUTPUT MODEL MODEL...\n");
    return 2;
  }
  std::vector<char> result = contentOf(argv[2]);
  std::vector<double> sums(result.size() > kEyeModelHeader ? weightsOf(result).size() : 0);
  for (int i = 2; i < argc; ++i) {
    const std::vector<char> model = contentOf(argv[i]);
    if (sums.empty() || model.size() != result.size()) {
      std::fprintf(stderr, "not models of one form\n");
      return 1;
    }
    const std::vector<float> weights = weightsOf(model);
    for (std::size_t k = 0; k < sums.size(); ++k) sums[k] += static_cast<double>(weights[k]) / (argc - 2);
  }
  const std::vector<float> mean(sums.begin(), sums.end());
  std::memcpy(result.data() + kEyeModelHeader, mean.data(), mean.size() * sizeof(float));
  std::ofstream out(argv[1], std::ios::binary);
  out.write(result.data(), static_cast<std::streamsize>(result.size()));
  return out.flush() ? 0 : 1;
}
