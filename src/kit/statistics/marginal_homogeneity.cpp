#include "kit/statistics/marginal_homogeneity.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "kit/statistics/sign_flip.h"

namespace {

/// The scores as whole numbers; none where they are none.
std::vector<double> WholeScores(std::span<const double> scores) {
  constexpr double kTolerance = 1e-9;
  for (const double factor : {1.0, 10.0, 100.0, 1000.0}) {
    std::vector<double> whole;
    for (const double score : scores) whole.push_back(std::round(score * factor));
    const auto isWhole = [factor](double rounded, double score) {
      return std::abs(score * factor - rounded) <= kTolerance;
    };
    if (std::equal(whole.begin(), whole.end(), scores.begin(), isWhole)) return whole;
  }
  return {};
}

}  // namespace

MarginalHomogeneity TestMarginalHomogeneity(std::span<const double> scores,
                                            std::span<const std::int64_t> table) {
  MarginalHomogeneity result;
  double deviation = 0.0;
  double variance = 0.0;
  for (std::size_t i = 0; i < scores.size(); ++i) {
    for (std::size_t j = 0; j < scores.size(); ++j) {
      if (i == j) continue;
      const auto n = static_cast<double>(table[i * scores.size() + j]);
      const double half = (scores[i] - scores[j]) * 0.5;
      result.statistic += n * scores[i];
      deviation += n * half;
      variance += half * half * n;
    }
  }
  result.figures = StandardizedFigures(deviation, std::sqrt(variance));
  return result;
}

std::optional<ExactTails> ExactMarginalHomogeneity(std::span<const double> scores,
                                                   std::span<const std::int64_t> table) {
  constexpr std::int64_t kMostUnits = 1000;
  constexpr double kMostSteps = 2e8;
  const std::vector<double> whole = WholeScores(scores);
  std::map<double, std::int64_t> changes;  // units by the size of their change of score
  std::int64_t units = 0;
  double falls = 0.0;  // of the scores that are lower in the second field
  double moved = 0.0;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (std::size_t j = 0; j < whole.size(); ++j) {
      const std::int64_t count = table[i * whole.size() + j];
      if (i == j || count == 0) continue;
      if (count > kMostUnits - units) return std::nullopt;
      units += count;
      const double change = std::abs(whole[i] - whole[j]);
      changes[change] += count;
      const double sum = change * static_cast<double>(count);
      moved += sum;
      if (whole[i] > whole[j]) falls += sum;
    }
  }
  if (units == 0 || !(static_cast<double>(units) * moved <= kMostSteps)) return std::nullopt;
  std::vector<UnitRun> runs;
  runs.reserve(changes.size());
  for (const auto& [size, count] : changes) {
    runs.push_back({static_cast<std::int64_t>(size), count});
  }
  ExactTails tails = SignFlipDistribution(runs).TailsOf(static_cast<std::int64_t>(falls));
  std::swap(tails.less, tails.greater);  // falls make the second field the smaller one
  return tails;
}
