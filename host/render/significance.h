#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/render/result_model.h"

namespace npar_host {

/// The significance that a test's decision rests on.
struct Significance {
  std::string figure;  // as the document writes it
  bool isExact = false;
  int sides = 2;
};

/// Nothing for estimates, and for tests that gave none.
[[nodiscard]] std::optional<Significance> DecidingSignificance(const ResultTest& test);
/// The asymptotic significance of as many sides as the deciding one, which it may be; empty
/// without.
[[nodiscard]] std::string AsymptoticSignificance(const ResultTest& test,
                                                 const Significance& deciding);

/// "p = .023", "p < .001", "p > .999", "p = 1": three digits, as publications print it.
[[nodiscard]] std::string SignificanceText(std::string_view figure);
/// The same without "p": ".023", "< .001"; another text as it is.
[[nodiscard]] std::string SignificanceCell(std::string_view figure);
/// Is a figure of that name a significance?
[[nodiscard]] bool IsSignificanceName(std::string_view name);
/// "exact, 2-sided".
[[nodiscard]] std::string SignificanceKind(const Significance& significance);

}  // namespace npar_host
