#include "training/features/symmetric_eigen.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

class Jacobi {
 public:
  Jacobi(std::vector<double>& matrix, std::size_t size) : a_(matrix), n_(size), v_(size * size) {
    for (std::size_t i = 0; i < n_; ++i) v_[i * n_ + i] = 1;
  }

  void run() {
    constexpr int kMaxSweeps = 60;
    for (int sweep = 0; sweep < kMaxSweeps && offDiagonal() > 1e-22 * diagonal(); ++sweep) {
      for (std::size_t p = 0; p < n_; ++p) {
        for (std::size_t q = p + 1; q < n_; ++q) rotate(p, q);
      }
    }
  }

  double value(std::size_t i) const { return a_[i * n_ + i]; }
  std::vector<double> vector(std::size_t i) const {
    std::vector<double> column(n_);
    for (std::size_t k = 0; k < n_; ++k) column[k] = v_[k * n_ + i];
    return column;
  }

 private:
  double offDiagonal() const {
    double sum = 0;
    for (std::size_t p = 0; p < n_; ++p) {
      for (std::size_t q = p + 1; q < n_; ++q) sum += a_[p * n_ + q] * a_[p * n_ + q];
    }
    return sum;
  }
  double diagonal() const {
    double sum = 0;
    for (std::size_t i = 0; i < n_; ++i) sum += value(i) * value(i);
    return sum;
  }

  void rotate(std::size_t p, std::size_t q) {
    const double between = a_[p * n_ + q];
    if (between == 0) return;
    const double theta = (value(q) - value(p)) / (2 * between);
    const double t = (theta < 0 ? -1 : 1) / (std::abs(theta) + std::sqrt(theta * theta + 1));
    const double c = 1 / std::sqrt(t * t + 1), s = t * c;
    for (std::size_t k = 0; k < n_; ++k) turn(a_[k * n_ + p], a_[k * n_ + q], c, s);
    for (std::size_t k = 0; k < n_; ++k) turn(a_[p * n_ + k], a_[q * n_ + k], c, s);
    for (std::size_t k = 0; k < n_; ++k) turn(v_[k * n_ + p], v_[k * n_ + q], c, s);
  }
  static void turn(double& x, double& y, double c, double s) {
    const double first = c * x - s * y;
    y = s * x + c * y;
    x = first;
  }

  std::vector<double>& a_;
  std::size_t n_;
  std::vector<double> v_;
};

}  // namespace

EigenPairs symmetricEigen(std::vector<double> matrix, std::size_t size) {
  Jacobi jacobi(matrix, size);
  jacobi.run();
  std::vector<std::size_t> order(size);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return jacobi.value(a) > jacobi.value(b); });
  EigenPairs pairs;
  for (const std::size_t i : order) {
    pairs.values.push_back(jacobi.value(i));
    pairs.vectors.push_back(jacobi.vector(i));
  }
  return pairs;
}
