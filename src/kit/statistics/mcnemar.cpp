#include "kit/statistics/mcnemar.h"

#include <algorithm>
#include <cmath>

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
