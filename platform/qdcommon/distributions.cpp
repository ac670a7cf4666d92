#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "foundation/math.h"
#include "qdcommon/tails.h"

namespace QDMath_700 {

namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Real kZeta2 = 1.644934066848226436472415166646025_ext;
constexpr Real kZeta3 = 1.202056903159594285399738161511450_ext;
constexpr Real kZeta4 = 1.082323233711138191516003696541168_ext;
constexpr Real kRootTwo = 1.414213562373095048801688724209698_ext;

bool IsShape(double value) { return value > 0.0 && value < kInfinity; }

bool IsProbability(double value) { return value >= 0.0 && value <= 1.0; }

bool IsCount(double value) { return value >= 0.0 && value < kInfinity && floor(value) == value; }

Real NormalLower(Real z) { return erfc(-z / kRootTwo) / 2; }

// A logarithm beyond which neither e to it nor its product with a ratio of two doubles is a double.
constexpr Real kLogLimit = 2300;

// From this shape on a quantile is its distribution's center, to the last digit but one: 38
// standard deviations reach down to the smallest p and are 4e-14 of it, if that.
constexpr Real kCertainShape = 1e30_ext;

// A step below this part of its place is the last.
constexpr Real kLastStep = 1e-17_ext;

struct TailAndDensity {
  Real tail;
  Real density;
};

// The place t of probability p in (0, 1): Newton's iteration on the logarithm of the smaller
// tail, that on `side`, of which tailAt gives tail and density at t. Both tails are log-concave in
// t, so a step from the outer side never passes the root, and one from the inner side lands on the
// outer side; there it is halved while the tail is too small for a number.
template <typename TailAt>
Real FindQuantile(double p, Real start, TailAt tailAt) {
  const bool isLower = p <= 0.5;
  const Side side = isLower ? Side::Lower : Side::Upper;
  const Real target = isLower ? log(static_cast<Real>(p)) : log(1 - static_cast<Real>(p));
  Real t = start;
  Real lastStep = kLogLimit;
  for (int round = 0; round < 200; ++round) {
    const auto [tail, density] = tailAt(t, side);
    if (!(tail > 0)) {
      lastStep /= 2;
      t -= lastStep;
      continue;
    }
    if (!(density > 0)) return t;
    Real step = (target - log(tail)) * (tail / density);
    if (!isLower) step = -step;
    Real next = t + step;
    if (next > kLogLimit) next = kLogLimit;
    if (next < -kLogLimit) next = -kLogLimit;
    lastStep = next - t;
    t = next;
    if (fabs(lastStep) <= kLastStep * std::max<Real>(1, fabs(t))) break;
  }
  return t;
}

// Below this in both shapes p hardly depends on x, and neither tail has digits enough to tell x.
constexpr Real kTinyShape = 1e-5_ext;

// Log odds of the beta quantile for two tiny shapes, solved from the series of the tail that
// reaches up to the quantile, which is the one below 1/2:
//   p = x^a (1 + a S(x)) b / (a + b) e^g,  S(x) = sum over n > 0 of (1 - b)_n x^n / (n! (a + n)),
//   g = ln Gamma(1 + a + b) - ln Gamma(1 + a) - ln Gamma(1 + b).
// What p differs from b / (a + b) is formed exactly: it is all that x depends on.
Real TinyBetaLogOdds(Real p, Real a, Real b) {
  const Real ofA = p * a;
  const Real ofB = p * b;
  const Real low = ProductRest(p, a) + ProductRest(p, b);
  const Real difference = (p < 0.5 ? (ofA - b) + ofB : (ofB - b) + ofA) + low;  // p (a + b) - b
  const Real gammas = a * b * (kZeta2 - kZeta3 * (a + b) + kZeta4 * (a * a + 1.5 * a * b + b * b));
  const bool isLower = log1p(difference / b) - gammas <= 0;
  if (!isLower) std::swap(a, b);
  const Real top = log1p((isLower ? difference : -difference) / b) - gammas;
  Real t = top / a;
  // S(x) is -ln(1 - x) but for the shapes, so that each round adds five digits.
  for (int round = 0; round < 5; ++round) {
    const Real x = 1 / (1 + exp(-t));
    Real sum = 0;
    Real term = 1;
    for (int n = 1; n < 80; ++n) {
      term *= (static_cast<Real>(n) - b) / static_cast<Real>(n) * x;
      sum += term / (a + static_cast<Real>(n));
    }
    t = top / a - log1p(a * sum) / a - log1p(-x);
  }
  return isLower ? t : -t;
}

// Log odds of the beta quantile.
Real BetaLogOdds(double p, Real a, Real b) {
  if (std::max<Real>(a, b) < kTinyShape) return TinyBetaLogOdds(p, a, b);
  const Real center = log(a) - log(b);
  if (std::min<Real>(a, b) > kCertainShape) return center;
  return FindQuantile(p, center, [&](Real t, Side side) {
    const Real x = 1 / (1 + exp(-t));
    const Real y = 1 / (1 + exp(t));
    const BetaPlace place{a, b, x, y, b * x - a * y};
    return TailAndDensity{BetaTail(place, side), BetaDensity(place)};
  });
}

}  // namespace

double QDDistFun::CdfStdNorm(double x) { return static_cast<double>(NormalLower(x)); }

double QDDistFun::SfStdNorm(double x) { return static_cast<double>(NormalLower(-x)); }

double QDDistFun::CdfNorm(double x, double mean, double sd) {
  if (!IsShape(sd) || !std::isfinite(mean)) return kNotANumber;
  return static_cast<double>(NormalLower((static_cast<Real>(x) - mean) / sd));
}

double QDDistFun::IdfStdNorm(double p) {
  if (!IsProbability(p)) return kNotANumber;
  if (p == 0.0) return -kInfinity;
  if (p == 1.0) return kInfinity;
  return static_cast<double>(NormalQuantile(p));
}

double QDDistFun::CdfChi(double x, double df) {
  if (!IsShape(df) || std::isnan(x)) return kNotANumber;
  if (x <= 0.0) return 0.0;
  if (x == kInfinity) return 1.0;
  return static_cast<double>(
      GammaTail(static_cast<Real>(df) / 2, static_cast<Real>(x) / 2, Side::Lower));
}

double QDDistFun::SfChi(double x, double df) {
  if (!IsShape(df) || std::isnan(x)) return kNotANumber;
  if (x <= 0.0) return 1.0;
  if (x == kInfinity) return 0.0;
  return static_cast<double>(
      GammaTail(static_cast<Real>(df) / 2, static_cast<Real>(x) / 2, Side::Upper));
}

double QDDistFun::IdfChi(double p, double df) {
  if (!IsShape(df) || !IsProbability(p)) return kNotANumber;
  if (p == 0.0) return 0.0;
  if (p == 1.0) return kInfinity;
  const Real a = static_cast<Real>(df) / 2;
  if (a > kCertainShape) return df;
  const Real t = FindQuantile(p, log(a), [&](Real logX, Side side) {
    const Real x = exp(logX);
    return TailAndDensity{GammaTail(a, x, side), GammaDensity(a, x)};
  });
  return static_cast<double>(2 * exp(t));
}

double QDDistFun::SfF(double x, double df1, double df2) {
  if (!IsShape(df1) || !IsShape(df2) || std::isnan(x)) return kNotANumber;
  if (x <= 0.0) return 1.0;
  if (x == kInfinity) return 0.0;
  // x is the odds of a beta variable with shapes df1 / 2 and df2 / 2, times their ratio.
  const Real odds = static_cast<Real>(df1) * x;
  const Real first = odds / (odds + df2);
  const Real second = df2 / (odds + df2);
  const Real excess = static_cast<Real>(df1) / 2 * second * (static_cast<Real>(x) - 1);
  return static_cast<double>(
      BetaTail({static_cast<Real>(df1) / 2, static_cast<Real>(df2) / 2, first, second, excess},
               Side::Upper));
}

double QDDistFun::IdfF(double p, double df1, double df2) {
  if (!IsShape(df1) || !IsShape(df2) || !IsProbability(p)) return kNotANumber;
  if (p == 0.0) return 0.0;
  if (p == 1.0) return kInfinity;
  const Real first = df1;
  const Real second = df2;
  return static_cast<double>(second / first * exp(BetaLogOdds(p, first / 2, second / 2)));
}

double QDDistFun::IdfBeta(const double& p, const double& a, const double& b) {
  if (!IsShape(a) || !IsShape(b) || !IsProbability(p)) return kNotANumber;
  if (p == 0.0 || p == 1.0) return p;
  return static_cast<double>(1 / (1 + exp(-BetaLogOdds(p, a, b))));
}

double QDDistFun::CdfBin(double x, double n, double p, std::int32_t& error) {
  error = IsCount(n) && IsProbability(p) && !std::isnan(x) ? 0 : 1;
  if (error != 0) return kNotANumber;
  if (x < 0.0) return 0.0;
  if (x >= n || p == 0.0) return 1.0;
  if (p == 1.0) return 0.0;
  // P(X > k) is the beta distribution function with shapes k + 1 and n - k at p.
  const Real above = static_cast<Real>(floor(x)) + 1;
  const Real rest = static_cast<Real>(n) - floor(x);
  const Real chance = p;
  const Real trials = static_cast<Real>(n) + 1;
  const Real excess = (trials * chance - above) + ProductRest(trials, chance);
  return static_cast<double>(BetaTail({above, rest, chance, 1 - chance, excess}, Side::Upper));
}

double QDDistFun::CDFHyper(double x, double n, double k, double total, std::int32_t& error) {
  const bool isTable = IsCount(n) && IsCount(k) && IsCount(total) && n <= total && k <= total;
  error = isTable && !std::isnan(x) ? 0 : 1;
  if (error != 0) return kNotANumber;
  const Real least = std::max<Real>(0, static_cast<Real>(n) - (static_cast<Real>(total) - k));
  if (x < least) return 0.0;
  if (x >= std::min<Real>(n, k)) return 1.0;
  return static_cast<double>(HypergeometricLower(floor(x), n, k, total));
}

double QDDistFun::lyradnlgam(const double& x) {
  if (!(x > 0.0)) return kNotANumber;
  return static_cast<double>(lgamma(static_cast<Real>(x)));
}

}  // namespace QDMath_700
