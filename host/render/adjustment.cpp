#include "host/render/adjustment.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "host/render/pairs.h"
#include "host/render/significance.h"

namespace npar_host {
namespace {

// Multiplies the significance at each place of the ascending order.
double Factor(Adjustment adjustment, std::size_t place, std::size_t count) {
  const auto all = static_cast<double>(count);
  const auto before = static_cast<double>(place);
  switch (adjustment) {
    case Adjustment::None:
      break;
    case Adjustment::Bonferroni:
      return all;
    case Adjustment::Holm:
      return all - before;
    case Adjustment::BenjaminiHochberg:
      return all / (before + 1.0);
  }
  return 1.0;
}

}  // namespace

Adjustment FindAdjustment(std::string_view name) {
  if (name == "bonferroni") return Adjustment::Bonferroni;
  if (name == "holm") return Adjustment::Holm;
  return name == "bh" ? Adjustment::BenjaminiHochberg : Adjustment::None;
}

std::string_view AdjustmentTitle(Adjustment adjustment) {
  switch (adjustment) {
    case Adjustment::None:
      break;
    case Adjustment::Bonferroni:
      return "Bonferroni";
    case Adjustment::Holm:
      return "Holm";
    case Adjustment::BenjaminiHochberg:
      return "Benjamini and Hochberg";
  }
  return "";
}

std::vector<double> Adjusted(const std::vector<double>& significances, Adjustment adjustment) {
  std::vector<std::size_t> order(significances.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return significances[i]; });
  std::vector<double> adjusted(significances.size());
  for (std::size_t place = 0; place < order.size(); ++place) {
    adjusted[order[place]] =
        std::min(1.0, significances[order[place]] * Factor(adjustment, place, order.size()));
  }
  // A smaller significance stays the smaller one: steps down carry the greatest so far, steps up
  // the least.
  for (std::size_t place = 1; place < order.size(); ++place) {
    const bool isUp = adjustment == Adjustment::BenjaminiHochberg;
    const std::size_t from = isUp ? order[order.size() - place] : order[place - 1];
    double& to = adjusted[isUp ? order[order.size() - place - 1] : order[place]];
    to = isUp ? std::min(to, adjusted[from]) : std::max(to, adjusted[from]);
  }
  return adjusted;
}

std::vector<double> AdjustedPairs(const ResultComparison& comparison, Adjustment adjustment) {
  const bool isOwn = adjustment == Adjustment::Bonferroni;
  const std::size_t column = ContentColumn(comparison, isOwn ? "AdjSig" : "Sig");
  std::vector<double> significances;
  significances.reserve(comparison.content.rows.size());
  for (const TextRows::Row row : comparison.content.rows) {
    const auto p = column < row.size() ? FigureNumber(row[column]) : std::nullopt;
    significances.push_back(p.value_or(NAN));
  }
  if (isOwn || adjustment == Adjustment::None) return significances;
  // A pair without a significance counts among the pairs as one that shows nothing.
  std::vector<double> known = significances;
  std::ranges::replace_if(
      known, [](double p) { return std::isnan(p); }, 1.0);
  known = Adjusted(known, adjustment);
  for (std::size_t i = 0; i < known.size(); ++i) {
    if (std::isnan(significances[i])) known[i] = NAN;
  }
  return known;
}

void AdjustOverTests(ResultDocument& document, Adjustment adjustment) {
  if (adjustment == Adjustment::None) return;
  std::vector<double> significances;
  std::vector<ResultTest*> tests;
  for (ResultTest& test : document.tests) {
    const auto deciding = DecidingSignificance(test);
    const auto p = deciding ? FigureNumber(deciding->figure) : std::nullopt;
    if (!p || !std::isfinite(*p)) continue;
    significances.push_back(*p);
    tests.push_back(&test);
  }
  const std::vector<double> adjusted = Adjusted(significances, adjustment);
  for (std::size_t i = 0; i < tests.size(); ++i) tests[i]->adjustedSignificance = adjusted[i];
  document.adjustment = adjustment;
}

void AdjustPairs(ResultDocument& document, Adjustment adjustment) {
  for (ResultTest& test : document.tests) test.pairwise.adjustment = adjustment;
}

}  // namespace npar_host
