#include "kit/statistics/goodness_of_fit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

#include "kit/statistics/exact_tails.h"
#include "kit/statistics/saddle_point.h"

namespace {

std::int64_t SumOf(std::span<const std::int64_t> counts) {
  return std::accumulate(counts.begin(), counts.end(), std::int64_t{0});
}

/// Are there at most so many ways to divide n units among the categories?
bool AreFewOutcomes(std::int64_t n, std::int64_t categories) {
  double outcomes = 1.0;  // C(n + i, i)
  for (std::int64_t i = 1; i < categories; ++i) {
    outcomes *= static_cast<double>(n + i) / static_cast<double>(i);
    if (std::round(outcomes) > static_cast<double>(kMostOutcomes)) return false;
  }
  return true;
}

/// Poisson probabilities of 0 to n, each from its neighbour nearer to the mean.
std::vector<double> PoissonPoints(std::int64_t n, double mean) {
  std::vector<double> points(static_cast<std::size_t>(n) + 1);
  const auto mode = static_cast<std::size_t>(std::floor(mean));  // not above n
  points[mode] = PoissonPoint(static_cast<std::int64_t>(mode), mean);
  for (std::size_t k = mode; k > 0; --k) {
    points[k - 1] = NormalOrNone(points[k] * static_cast<double>(k) / mean);
  }
  for (std::size_t k = mode + 1; k < points.size(); ++k) {
    points[k] = NormalOrNone(points[k - 1] * mean / static_cast<double>(k));
  }
  return points;
}

/// Walks through all outcomes. A multinomial count is one of independent Poisson counts, given
/// their sum.
class Outcomes {
 public:
  Outcomes(std::int64_t n, std::span<const double> expected) : units(n) {
    for (const double mean : expected) points.push_back(PoissonPoints(n, mean));
    noneFrom.assign(points.size() + 1, 1.0);
    for (std::size_t i = points.size(); i > 0; --i)
      noneFrom[i - 1] = noneFrom[i] * points[i - 1][0];
  }

  /// To the scale of the others.
  [[nodiscard]] double PointOf(std::span<const std::int64_t> counts) const {
    double point = 1.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      point *= points[i][static_cast<std::size_t>(counts[i])];
    }
    return point;
  }

  /// The sum of the points up to a limit.
  [[nodiscard]] double SumUpTo(double limit) const {
    double sum = 0.0;
    std::vector<Choice> choices{{static_cast<std::size_t>(units), 0, 1.0}};
    while (!choices.empty()) {
      Choice& last = choices.back();
      const std::size_t category = choices.size() - 1;
      const bool isEnd = last.left == 0 || category + 1 == points.size();
      if (isEnd) {
        const double rest = last.left == 0 ? noneFrom[category] : points[category][last.left];
        if (last.point * rest <= limit) sum += last.point * rest;
      }
      if (isEnd || last.next > last.left) {
        choices.pop_back();
        continue;
      }
      const std::size_t taken = last.next++;
      choices.push_back({last.left - taken, 0, last.point * points[category][taken]});
    }
    return sum;
  }

 private:
  /// What the categories so far leave, what the next one takes, and their probability.
  struct Choice {
    std::size_t left;
    std::size_t next;
    double point;
  };

  std::int64_t units;
  std::vector<std::vector<double>> points;  // by category and count
  std::vector<double> noneFrom;             // by category: none in it or in those after it
};

}  // namespace

std::vector<double> ExpectedOf(std::span<const std::int64_t> observed,
                               std::span<const double> proportions) {
  const double total = std::accumulate(proportions.begin(), proportions.end(), 0.0);
  const auto n = static_cast<double>(SumOf(observed));
  std::vector<double> expected;
  for (const double proportion : proportions) expected.push_back(proportion / total * n);
  return expected;
}

ChiSquareFigures LikelihoodRatio(std::span<const std::int64_t> observed,
                                 std::span<const double> expected) {
  // The differences O - E, which sum to 0, make every term a deviance: nothing cancels.
  double half = 0.0;
  for (std::size_t i = 0; i < observed.size(); ++i) {
    half += DevianceTerm(static_cast<double>(observed[i]), expected[i]);
  }
  return ChiSquareOf(2.0 * half, observed.size());
}

std::optional<double> ExactMultinomialSig(std::span<const std::int64_t> observed,
                                          std::span<const double> expected) {
  const std::int64_t n = SumOf(observed);
  if (!AreFewOutcomes(n, static_cast<std::int64_t>(observed.size()))) return std::nullopt;
  // Infinite proportions expect what is no number.
  const auto most = static_cast<double>(n);
  const auto isCount = [most](double mean) { return mean >= 0.0 && mean <= most; };
  if (!std::all_of(expected.begin(), expected.end(), isCount)) return std::nullopt;
  const Outcomes outcomes(n, expected);
  const double limit = outcomes.PointOf(observed) * (1.0 + kProbabilitySlack);
  return CutToOne(outcomes.SumUpTo(limit) / PoissonPoint(n, static_cast<double>(n)));
}
