#pragma once

#include <optional>
#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// How large an effect is, whatever the number of records. docs/effect_sizes.md has the formulas
/// with their sources.
struct EffectSize {
  std::string name;    // "Rank-biserial correlation"
  std::string symbol;  // "r"
  double value = 0.0;
};

/// The test's effect size, from the figures of the document alone; nothing for tests that have
/// none, for failed tests and where the document lacks a figure or the formula has no finite value.
[[nodiscard]] std::optional<EffectSize> FindEffectSize(const ResultDocument& document,
                                                       const ResultTest& test);

/// Records, weighted, that a test took: its total, or what the fields' own totals say of it;
/// nothing where they leave it open.
[[nodiscard]] std::optional<double> CountedRecords(const ResultDocument& document,
                                                   const ResultTest& test);

/// Why a test that has a usual effect size shows none here; empty where there is nothing to say.
[[nodiscard]] std::string EffectSizeGap(const ResultDocument& document, const ResultTest& test);

}  // namespace npar_host
