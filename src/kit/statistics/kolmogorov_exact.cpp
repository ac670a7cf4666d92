#include "kit/statistics/kolmogorov_exact.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "arithmetic/elementary.h"
#include "kit/statistics/exact_tails.h"
#include "kit/statistics/saddle_point.h"

namespace {

// P(D_n < d) by Durbin's matrix.
//
// With k = floor(n d) + 1, m = 2 k - 1 and h = k - n d, the matrix H has m rows; below its second
// diagonal it holds 1 / (i - j + 1)!, which the first column and the last row reduce by powers of
// h. P is n! / n^n times the middle element of its n-th power. Of that power only the middle row is
// needed: a row times H, n times over, which takes n m^2 / 2 additions of positive terms, since H
// is 0 above its second diagonal. Both the row and n! / n^n leave the range of a double on the way:
// the row is divided by n / i with every step, so that after all of them n! / n^n is in it, and
// rescaled where it still grows.
class DurbinMatrix {
 public:
  DurbinMatrix(std::int64_t n, double d) : units(n) {
    const double reach = static_cast<double>(n) * d;
    middle = static_cast<std::size_t>(reach);  // k - 1
    size = 2 * middle + 1;
    const double h = static_cast<double>(middle + 1) - reach;
    band.assign(size + 1, 1.0);
    double power = 1.0;
    for (std::size_t i = 1; i <= size; ++i) {
      band[size - i] = NormalOrNone(band[size - i + 1] / static_cast<double>(i));
      power *= h;
      edge.push_back((1.0 - power) * band[size - i]);
    }
    const double excess = 2.0 * h - 1.0;
    corner = 1.0 - 2.0 * power;
    if (excess > 0.0) corner += arithmetic::Pow(excess, static_cast<double>(size));
    corner *= band[0];
  }

  [[nodiscard]] double Probability() const {
    std::vector<double> row(size, 0.0);
    row[middle] = 1.0;
    std::vector<double> next(size);
    int exponent = 0;
    for (std::int64_t i = 1; i <= units; ++i) {
      Multiply(row, static_cast<double>(i) / static_cast<double>(units), next);
      row.swap(next);
      exponent += Rescale(row);
    }
    return std::ldexp(row[middle], exponent);
  }

 private:
  /// A row times the matrix and a factor. Sums begin with their smallest terms: the other way
  /// round, thousands of steps add up what rounding takes from each.
  void Multiply(const std::vector<double>& row, double factor, std::vector<double>& product) const {
    const std::size_t last = size - 1;
    product[0] = row[last] * corner;
    for (std::size_t j = 1; j < size; ++j) product[j] = row[last] * edge[last - j];
    for (std::size_t i = last; i-- > 0;) {
      product[0] += row[i] * edge[i];
      const double* const terms = band.data() + (last - i);  // 1 / (i - j + 1)! at j
      for (std::size_t j = 1; j <= i + 1; ++j) product[j] += row[i] * terms[j];
    }
    for (double& element : product) element *= factor;
  }
  /// Brings a row that has grown or shrunk far back; the power of 2 that was taken out.
  static int Rescale(std::vector<double>& row) {
    constexpr int kFar = 200;
    int exponent = 0;
    std::frexp(*std::max_element(row.begin(), row.end()), &exponent);
    if (std::abs(exponent) < kFar) return 0;
    for (double& element : row) element = std::ldexp(element, -exponent);
    return exponent;
  }

  std::int64_t units;
  std::size_t size = 0;
  std::size_t middle = 0;
  std::vector<double> band;  // 1 / i! at `size` - i
  std::vector<double> edge;  // the first column from above; the last row from its end
  double corner = 0.0;
};

}  // namespace

double OneSidedKolmogorovSig(std::int64_t n, double d) {
  if (!(d > 0.0)) return 1.0;
  // d / (d + j / n) times the probability that a binomial count of n trials, each with d + j / n,
  // is j.
  const auto units = static_cast<double>(n);
  double sum = 0.0;
  for (std::int64_t j = 0; j < n; ++j) {
    const double share = d + static_cast<double>(j) / units;
    if (!(share < 1.0)) break;
    sum += d / share * arithmetic::Exp(LogBinomialPoint(j, n, share));
  }
  return CutToOne(sum);
}

double TwoSidedKolmogorovSig(std::int64_t n, double d) {
  constexpr double kAlmostTwice = 4.0;  // n d^2 from which on the sides hardly meet
  constexpr double kHalf = 0.5;
  const auto units = static_cast<double>(n);
  if (!(2.0 * units * d > 1.0)) return 1.0;
  if (d >= kHalf || units * d * d >= kAlmostTwice) {
    return CutToOne(2.0 * OneSidedKolmogorovSig(n, d));
  }
  return std::max(1.0 - DurbinMatrix(n, d).Probability(), 0.0);
}
