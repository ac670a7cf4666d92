#include "kit/statistics/mcnemar.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/names.h"

ChiSquareFigures McNemar(std::int64_t b, std::int64_t c) {
  if (b == c) return ChiSquareOf(0.0, 2);
  const double excess = std::abs(static_cast<double>(b) - static_cast<double>(c)) - 1.0;
  return ChiSquareOf(excess * excess / static_cast<double>(b + c), 2);
}

std::optional<double> McNemarExactSig(std::int64_t b, std::int64_t c) {
  if (b + c == 0) return 1.0;
  std::int32_t error = 1;  // a function that leaves the flag alone has not answered
  const double tail = QDDistFun::CdfBin(static_cast<double>(std::min(b, c)),
                                        static_cast<double>(b + c), 0.5, error);
  if (error != 0) return std::nullopt;
  return std::min(2.0 * tail, 1.0);
}

ChiSquareFigures UncorrectedMcNemar(std::int64_t b, std::int64_t c) {
  const double excess = static_cast<double>(b) - static_cast<double>(c);
  return ChiSquareOf(excess * excess / static_cast<double>(b + c), 2);
}

std::optional<double> McNemarMidP(std::int64_t b, std::int64_t c) {
  const auto n = static_cast<double>(b + c);
  const auto fewer = static_cast<double>(std::min(b, c));
  std::int32_t upToError = 1;
  std::int32_t belowError = 1;
  const double upTo = QDDistFun::CdfBin(fewer, n, 0.5, upToError);
  const double below = QDDistFun::CdfBin(fewer - 1.0, n, 0.5, belowError);
  if (upToError != 0 || belowError != 0) return std::nullopt;
  return std::min(upTo + below, 1.0);
}

ChangeOdds OddsOfChange(std::int64_t b, std::int64_t c, double level) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double tail = (1.0 - level) * 0.5;
  const auto x = static_cast<double>(b);
  const auto y = static_cast<double>(c);
  // Odds of a beta quantile are a quantile of F; the upper one is the inverse of the lower one of
  // c / b, so that neither level nor odds are subtracted from 1.
  const auto lowerOdds = [tail](double events, double others) {
    if (events == 0.0) return 0.0;
    const double f = QDDistFun::IdfF(tail, 2.0 * events, 2.0 * (others + 1.0));
    return f * (events / (others + 1.0));
  };
  const double inverse = lowerOdds(y, x);
  return {c == 0 ? kInfinity : x / y, lowerOdds(x, y), inverse > 0.0 ? 1.0 / inverse : kInfinity};
}
