// Another provider of some distribution functions: loaded before the platform (LD_PRELOAD), it
// takes their place in a component that was built without knowing of it. It computes by simple
// sums, counts its calls and writes the counts to standard error when the program ends.

#include <cmath>
#include <cstdio>

#include "foundation/math.h"

namespace {

struct Counts {
  long binomial = 0;
  long normal = 0;
  ~Counts() { std::fprintf(stderr, "CdfBin %ld, normal %ld\n", binomial, normal); }
} counts;

}  // namespace

namespace QDMath_700 {

double QDDistFun::CdfBin(double x, double n, double p, std::int32_t& error) {
  ++counts.binomial;
  error = 0;
  double term = std::pow(1.0 - p, n);
  double sum = 0.0;
  for (double k = 0.0; k <= x && k <= n; k += 1.0) {
    sum += term;
    term *= (n - k) / (k + 1.0) * p / (1.0 - p);
  }
  return sum;
}

double QDDistFun::CdfStdNorm(double x) {
  ++counts.normal;
  return 0.5 * std::erfc(-x / std::sqrt(2.0));
}

double QDDistFun::SfStdNorm(double x) {
  ++counts.normal;
  return 0.5 * std::erfc(x / std::sqrt(2.0));
}

}  // namespace QDMath_700
