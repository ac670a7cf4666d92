// The hypergeometric count as the first cell of a 2 x 2 table with fixed margins
//   x      n - x              n
//   k - x  total - k - n + x  total - n
//   k      total - k          total
// The probability of a table is taken apart as in C. Loader, Fast and accurate computation of
// binomial probabilities (2000): remainders of ln c! and a deviance that is a sum of positive
// terms, so that it has all its digits whatever the margins. Of the two tails the one away from the
// mean is added up, from the nearest term outwards.

#include <algorithm>
#include <array>
#include <cmath>

#include "qdcommon/quadrature.h"
#include "qdcommon/tails.h"

namespace QDMath_700 {

namespace {

constexpr Real kHalfLogTwoPi = 0.918938533204672741780329736405618_ext;

// A tail whose terms would number millions is an integral.
constexpr Real kIntegralVariance = 1e10;

// What is left of a tail is below 1e-19 of it when the term is, ratios of neighbours up to 1 -
// 1e-5.
constexpr Real kLastTerm = 1e-25_ext;

constexpr Real kLeastSlope = 0.01_ext;

// ln c! - (c ln c - c), continuous in c >= 0.
Real FactorialRemainder(Real c) {
  return c > 0 ? StirlingRemainder(c) + log(c) / 2 + kHalfLogTwoPi : 0;
}

// c ln(c / e) + e - c of a cell c >= 0 that deviates by d = c - e from its expectation.
Real Deviance(Real c, Real d) { return c > 0 ? -c * LogLess((c - d) / c, -d / c) : -d; }

class Table {
 public:
  Table(Real n, Real k, Real total) : n(n), k(k), total(total) {
    margins = FactorialRemainder(n) + FactorialRemainder(total - n) + FactorialRemainder(k) +
              FactorialRemainder(total - k) - FactorialRemainder(total);
  }

  [[nodiscard]] Real Variance() const {
    return n / total * (k / total) * (total - n) * ((total - k) / total);
  }

  // x less its expectation n k / total; products in two parts, as their difference is small.
  [[nodiscard]] Real Deviation(Real x) const {
    const Real observed = x * total;
    const Real expected = n * k;
    return (observed - expected + (ProductRest(x, total) - ProductRest(n, k))) / total;
  }

  [[nodiscard]] std::array<Real, 4> Cells(Real x) const {
    return {x, n - x, k - x, (total - k - n) + x};
  }

  // ln P(X = x), with the gamma function between whole numbers; minus infinity off the support.
  [[nodiscard]] Real LogProbability(Real x, Real deviation) const {
    const std::array<Real, 4> cells = Cells(x);
    if (!(*std::min_element(cells.begin(), cells.end()) >= 0)) return -INFINITY;
    Real sum = margins;
    for (const Real cell : cells) sum -= FactorialRemainder(cell);
    return sum - Deviance(cells[0], deviation) - Deviance(cells[1], -deviation) -
           Deviance(cells[2], -deviation) - Deviance(cells[3], deviation);
  }

  // d ln P(X = x) / dx.
  [[nodiscard]] Real Slope(Real x) const {
    const std::array<Real, 4> cells = Cells(x);
    return log(cells[1] / cells[0] * (cells[2] / cells[3]));
  }

 private:
  Real n, k, total, margins;
};

// P(X <= x) or P(X >= x), term by term.
Real SumTail(const Table& table, Real x, bool isLower) {
  auto [marked, drawnRest, markedRest, rest] = table.Cells(x);
  Real term = exp(table.LogProbability(x, table.Deviation(x)));
  Real sum = term;
  while (term > kLastTerm * sum) {
    if (isLower) {
      term *= marked / (drawnRest + 1) * (rest / (markedRest + 1));
      --marked, --rest, ++drawnRest, ++markedRest;
    } else {
      term *= drawnRest / (marked + 1) * (markedRest / (rest + 1));
      ++marked, ++rest, --drawnRest, --markedRest;
    }
    sum += term;
  }
  return sum;
}

// The same by the midpoint form of Euler and Maclaurin's formula; the term left out is below
// (ln P)'^4 / 800, and the slope below 4e-4 wherever the tail is a normal double.
Real IntegrateTail(const Table& table, Real x, bool isLower) {
  const Real sign = isLower ? -1 : 1;
  const Real edge = x - sign / 2;
  const Real deviation = table.Deviation(x) - sign / 2;
  const Real top = table.LogProbability(edge, deviation);
  const Real slope = table.Slope(edge);
  if (!(fabs(slope) < kLeastSlope)) return exp(top);  // far below the smallest double
  const Real scale = 1 / std::max<Real>(fabs(slope), 1 / sqrt(table.Variance()));
  const Real integral = TailRule::Get().Integrate(scale, [&](Real s) {
    return table.LogProbability(edge + sign * s, deviation + sign * s) - top;
  });
  return exp(top) * (integral + sign * slope / 24);
}

}  // namespace

Real HypergeometricLower(Real x, Real n, Real k, Real total) {
  const Table table(n, k, total);
  const auto tail = table.Variance() > kIntegralVariance ? IntegrateTail : SumTail;
  return table.Deviation(x) < 0 ? tail(table, x, true) : 1 - tail(table, x + 1, false);
}

}  // namespace QDMath_700
