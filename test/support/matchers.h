#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <optional>
#include <ostream>

#include "foundation/names.h"

/// A QDStatus of success.
MATCHER(IsOk, negation ? "is no success" : "is success") {
  *result_listener << "code " << arg.GetErrorCode();
  return arg.IsOK();
}

/// A QDStatus that is an error of exactly this code.
MATCHER_P(HasCode, code, "") {
  *result_listener << "code " << arg.GetErrorCode() << (arg.IsWarning() ? ", a warning" : "");
  return arg.IsError() && arg.GetErrorCode() == code;
}

/// "%.15g" carries no more than this; below the absolute bound 1 - Phi loses the tail.
inline constexpr double kDocumentTolerance = 1e-14;
inline constexpr double kTailTolerance = 1e-15;

/// Compares figures that may be absent: both absent, both not a number, or close.
class CloseTo {
 public:
  using is_gtest_matcher = void;
  CloseTo(std::optional<double> expected, double relative) noexcept
      : expected(expected), relative(relative) {}

  bool MatchAndExplain(std::optional<double> actual, testing::MatchResultListener* listener) const {
    if (!expected || !actual) return expected.has_value() == actual.has_value();
    if (std::isnan(*expected) || std::isnan(*actual)) {
      return std::isnan(*expected) && std::isnan(*actual);
    }
    if (*expected == *actual) return true;
    const double distance = std::fabs(*actual - *expected);
    if (listener->IsInterested()) {
      *listener->stream() << std::setprecision(17) << *actual << ", off by " << distance
                          << ", relative " << distance / std::fabs(*expected);
    }
    return distance <= std::max(kTailTolerance, relative * std::fabs(*expected));
  }
  void DescribeTo(std::ostream* out) const {
    if (!expected) {
      *out << "is absent";
    } else {
      *out << "is close to " << std::setprecision(17) << *expected;
    }
  }
  void DescribeNegationTo(std::ostream* out) const {
    *out << "not: ";
    DescribeTo(out);
  }

 private:
  std::optional<double> expected;
  double relative;
};

/// A figure of the document.
inline testing::Matcher<std::optional<double>> IsCloseTo(std::optional<double> expected,
                                                         double relative = kDocumentTolerance) {
  return CloseTo(expected, relative);
}
