#include "kit/statistics/sign_flip.h"

#include <algorithm>
#include <numeric>

namespace {

/// Their sum to the last digit or two, however many they are.
double SumOf(std::span<const double> terms) {
  double sum = 0.0;
  double carry = 0.0;
  for (const double term : terms) {
    const double part = term + carry;
    const double next = sum + part;
    carry = part - (next - sum);
    sum = next;
  }
  return sum;
}

}  // namespace

SignFlipDistribution::SignFlipDistribution(std::span<const UnitRun> runs) {
  std::int64_t divisor = 0;
  std::int64_t units = 0;
  for (const UnitRun& run : runs) {
    if (run.count > 0) divisor = std::gcd(divisor, run.size);
    largest += run.size * run.count;
    units += run.count;
  }
  step = std::max<std::int64_t>(divisor, 1);
  largest /= step;
  if (units <= kMostListed) {
    List(runs);
  } else {
    Convolve(runs);
  }
}

SignFlipDistribution SignFlipDistribution::OfRanks(std::int64_t n) {
  std::vector<UnitRun> runs;
  for (std::int64_t rank = 1; rank <= n; ++rank) runs.push_back({rank, 1});
  return SignFlipDistribution(runs);
}

SignFlipDistribution SignFlipDistribution::OfTwiceMidRanks(std::span<const std::int64_t> tied) {
  std::vector<UnitRun> runs;
  std::int64_t below = 0;
  for (const std::int64_t count : tied) {
    runs.push_back({2 * below + count + 1, count});
    below += count;
  }
  return SignFlipDistribution(runs);
}

void SignFlipDistribution::List(std::span<const UnitRun> runs) {
  outcomes.assign(1, 0);
  for (const UnitRun& run : runs) {
    for (std::int64_t unit = 0; unit < run.count; ++unit) {
      const std::size_t count = outcomes.size();
      for (std::size_t i = 0; i < count; ++i) outcomes.push_back(outcomes[i] + run.size / step);
    }
  }
  std::sort(outcomes.begin(), outcomes.end());
}

void SignFlipDistribution::Convolve(std::span<const UnitRun> runs) {
  // The distribution is symmetric; what lies below the middle comes from below it.
  const auto half = static_cast<std::size_t>(largest / 2) + 1;
  probabilities.assign(half, 0.0);
  probabilities[0] = 1.0;
  std::vector<double> next(half, 0.0);
  std::size_t reached = 1;
  for (const UnitRun& run : runs) {
    const auto size = static_cast<std::size_t>(run.size / step);
    for (std::int64_t unit = 0; unit < run.count; ++unit) {
      reached = std::min(half, reached + size);
      const std::size_t split = std::min(size, reached);
      for (std::size_t s = 0; s < split; ++s) next[s] = probabilities[s] * 0.5;
      for (std::size_t s = split; s < reached; ++s) {
        next[s] = (probabilities[s] + probabilities[s - size]) * 0.5;
      }
      probabilities.swap(next);
    }
  }
}

double SignFlipDistribution::LowerTail(std::int64_t steps) const {
  if (!outcomes.empty()) {
    const auto above = std::upper_bound(outcomes.begin(), outcomes.end(), steps);
    return static_cast<double>(above - outcomes.begin()) / static_cast<double>(outcomes.size());
  }
  return SumOf(std::span(probabilities).first(static_cast<std::size_t>(steps) + 1));
}

double SignFlipDistribution::UpTo(std::int64_t sum) const {
  if (sum < 0) return 0.0;
  const std::int64_t steps = sum / step;
  if (steps >= largest) return 1.0;
  // Above the middle the upper tail, a half at the most, is what is small.
  const std::int64_t mirrored = largest - steps - 1;
  return steps <= mirrored ? LowerTail(steps) : 1.0 - LowerTail(mirrored);
}

double SignFlipDistribution::At(std::int64_t sum) const {
  if (sum < 0 || sum > Largest() || sum % step != 0) return 0.0;
  const std::int64_t steps = std::min(sum / step, largest - sum / step);
  if (!outcomes.empty()) {
    const auto [begin, end] = std::equal_range(outcomes.begin(), outcomes.end(), steps);
    return static_cast<double>(end - begin) / static_cast<double>(outcomes.size());
  }
  return probabilities[static_cast<std::size_t>(steps)];
}

ExactTails SignFlipDistribution::TailsOf(std::int64_t sum) const {
  const double less = UpTo(sum);
  const double greater = UpTo(Largest() - sum);
  return {less, greater, CutToOne(2.0 * std::min(less, greater))};
}
