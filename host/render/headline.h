#pragma once

#include <optional>
#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// What a reader looks for first in a test.
struct Headline {
  std::string symbol;           // of the statistic: "U", "\u03c7\u00b2"; empty without a statistic
  std::string statistic;        // as the document writes it
  std::string freedom;          // its degrees of freedom; empty without
  std::optional<double> count;  // of records, weighted; nothing where the document does not tell
};

[[nodiscard]] Headline FindHeadline(const ResultDocument& document, const ResultTest& test);
/// "U = 324.5", "\u03c7\u00b2(3) = 7.81"; in ASCII alone "chi2(3) = 7.81"; empty without a
/// statistic.
[[nodiscard]] std::string StatisticText(const Headline& headline, bool ascii = false);

/// The usual name of a test where room is short: "Kruskal-Wallis".
[[nodiscard]] std::string ShortTitle(const ResultTest& test);
/// What a test is about: "height by sex", "before, after"; long lists are cut.
[[nodiscard]] std::string TestedFields(const ResultDocument& document, const ResultTest& test);
/// "Mann-Whitney U test: height by sex", "McNemar's test: before, after (success: yes)".
[[nodiscard]] std::string TestHeading(const ResultDocument& document, const ResultTest& test);

}  // namespace npar_host
