#include "kit/comparisons/range_counts.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "kit/order/interruption.h"

RangeCounts::RangeCounts(std::size_t groupCount)
    : groupCount(groupCount), run(groupCount), below(groupCount), above(groupCount * groupCount) {}

void RangeCounts::CloseRun() {
  std::vector<std::size_t>& places = run.Places();
  std::sort(places.begin(), places.end(), std::greater<>());
  for (const std::size_t place : places) {
    const double weight = run.WeightOf(place);
    double* row = &above[place * groupCount];
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
  // The readers ask for many groups of one range: what belongs to one end of it comes together.
  std::vector<double> sums((groupCount + 1) * groupCount);
  for (std::size_t place = 0; place < groupCount; ++place) {
    Interruption::Check();
    double sum = 0.0;
    for (std::size_t other = 0; other < groupCount; ++other) {
      sum += above[place * groupCount + other];
      sums[(other + 1) * groupCount + place] = sum;
    }
    orderedBefore.push_back(sums[place * groupCount + place]);
  }
  above = std::move(sums);
  sizeBefore.push_back(0.0);
  for (const double size : below) sizeBefore.push_back(sizeBefore.back() + size);
}

double RangeCounts::OrderedPairs(const SampleRange& range) {
  orderedFrom.resize(groupCount);
  for (; orderedEnd < range.last; ++orderedEnd) {
    const std::size_t next = orderedEnd + 1;
    for (std::size_t first = 0; first < next; ++first) orderedFrom[first] += OrderedAt(next, first);
  }
  for (; orderedEnd > range.last; --orderedEnd) {
    for (std::size_t first = 0; first < orderedEnd; ++first) {
      orderedFrom[first] -= OrderedAt(orderedEnd, first);
    }
  }
  return orderedFrom[range.first];
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
      tiesFrom[place - 1].pairs = tiesFrom[place - 1].pairs + tiesFrom[place].pairs;
      tiesFrom[place - 1].triples = tiesFrom[place - 1].triples + tiesFrom[place].triples;
    }
  }
  return tiesFrom[range.first];
}
