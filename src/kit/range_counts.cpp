#include "kit/range_counts.h"

#include <algorithm>
#include <functional>
#include <numeric>

RangeCounts::RangeCounts(std::size_t groupCount)
    : groupCount(groupCount),
      run(groupCount),
      below(groupCount),
      above(groupCount * (groupCount + 1)) {}

void RangeCounts::CloseRun() {
  std::vector<std::size_t>& places = run.Places();
  std::sort(places.begin(), places.end(), std::greater<>());
  for (const std::size_t place : places) {
    const double weight = run.WeightOf(place);
    double* row = RowOf(place) + 1;
    for (std::size_t other = 0; other < groupCount; ++other) row[other] += weight * below[other];
    for (const std::size_t other : places) row[other] += weight * 0.5 * run.WeightOf(other);
  }
  const bool isTied = run.Total() > 1;
  for (const std::size_t place : places) {
    below[place] += run.WeightOf(place);
    if (isTied) tiedRuns.push_back({place, run.WeightOf(place), place == places.back()});
  }
  run.Clear();
}

void RangeCounts::Finish() {
  CloseRun();
  for (std::size_t place = 0; place < groupCount; ++place) {
    std::partial_sum(RowOf(place), RowOf(place) + groupCount + 1, RowOf(place));
  }
}

double RangeCounts::RankSum(std::size_t place, const SampleRange& range) const noexcept {
  const double* row = RowOf(place);
  return below[place] * 0.5 + (row[range.last + 1] - row[range.first]);
}

double RangeCounts::OrderedPairs(const SampleRange& range) const noexcept {
  double sum = 0.0;
  for (std::size_t place = range.first + 1; place <= range.last; ++place) {
    sum += RowOf(place)[place] - RowOf(place)[range.first];
  }
  return sum;
}

TieSums RangeCounts::Ties(const SampleRange& range) {
  if (range.last != tiesEnd) {
    tiesEnd = range.last;
    tiesFrom.assign(groupCount, TieSums());
    double t = 0.0;
    for (const RunEntry& entry : tiedRuns) {
      if (entry.place <= tiesEnd) {
        tiesFrom[entry.place].Add(t, -1.0);  // what ranges that start behind this group have
        t += entry.weight;
        tiesFrom[entry.place].Add(t);
      }
      if (entry.isLastOfRun) t = 0.0;
    }
    for (std::size_t place = tiesEnd; place > 0; --place) {
      tiesFrom[place - 1].pairs += tiesFrom[place].pairs;
      tiesFrom[place - 1].triples += tiesFrom[place].triples;
    }
  }
  return tiesFrom[range.first];
}
