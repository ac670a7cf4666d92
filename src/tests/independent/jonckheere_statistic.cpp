#include "tests/independent/jonckheere_statistic.h"

#include <algorithm>

#include "kit/statistics/jonckheere.h"

double JonckheereCounts::CountBefore(std::size_t place) const noexcept {
  double count = 0.0;
  for (std::size_t node = place; node > 0; node &= node - 1) count += tree[node];
  return count;
}

NormalFigures Standardize(const JonckheereSums& sums, const std::vector<double>& sizes) {
  return JonckheereTerpstra(sums.statistic, sums.ties.pairs, sums.ties.triples, sizes);
}

void JonckheereCounts::AddCount(std::size_t place, double weight) noexcept {
  for (std::size_t node = place + 1; node < tree.size(); node += node & (~node + 1)) {
    tree[node] += weight;
  }
}

void JonckheereCounts::CloseRun() {
  std::vector<std::size_t>& places = run.Places();
  std::sort(places.begin(), places.end());
  double earlierInRun = 0.0;
  for (const std::size_t place : places) {
    const double weight = run.WeightOf(place);
    sums.statistic += weight * (CountBefore(place) + 0.5 * earlierInRun);
    earlierInRun += weight;
  }
  for (const std::size_t place : places) AddCount(place, run.WeightOf(place));
  sums.ties.Add(static_cast<double>(run.Total()));
  run.Clear();
}

void JonckheerePair::CloseRun() noexcept {
  sums.statistic += laterInRun * (earlierBelow + 0.5 * earlierInRun);
  sums.ties.Add(earlierInRun + laterInRun);
  earlierBelow += earlierInRun;
  earlierInRun = 0.0;
  laterInRun = 0.0;
}
