#include "ranges/fitted_sums.h"

#include <algorithm>

#include "ranges/run_sums.h"

void FittedSums::Take(const FittedDistribution& wanted, const Units& units) {
  if (noCount) return;
  const auto [begin, end] = wanted.TakenOf(units.values);
  if (wanted.IsPoisson() && end - begin < units.Size()) {
    const std::size_t place = begin > 0 ? 0 : end;
    noCount = Cell{units.values[place], units.WeightAt(place)};
    return;
  }
  const Units taken = units.Part(begin, end);
  const std::int64_t weight = taken.Weight();
  excluded += units.Weight() - weight;
  if (weight == 0) return;
  TakeEnds(taken);
  count += weight;
  if (!wanted.WantsMean() && !wanted.WantsStdDev()) return;
  for (std::size_t next = 0; next < taken.Size(); next += Moments::kChunk) {
    const Units chunk = taken.Part(next, std::min(next + Moments::kChunk, taken.Size()));
    moments.Add(chunk.values.data(), chunk.Weights(), chunk.Size());
  }
}

void FittedSums::TakeEnds(const Units& units) {
  if (count == 0) first.value = units.values.front();
  for (std::size_t i = 0; i < units.Size() && units.values[i] == first.value; ++i) {
    first.weight += units.WeightAt(i);
  }
  if (units.values.back() != last.value) last = {units.values.back(), 0};
  for (std::size_t i = units.Size(); i > 0 && units.values[i - 1] == last.value; --i) {
    last.weight += units.WeightAt(i - 1);
  }
}

void FittedSums::Append(const FittedSums& next) {
  if (!noCount) noCount = next.noCount;
  excluded += next.excluded;
  if (next.count == 0) return;
  if (count == 0) {
    first = next.first;
  } else if (next.first.value == first.value) {
    first.weight += next.first.weight;
  }
  const std::int64_t tied = next.last.value == last.value ? last.weight : 0;
  last = {next.last.value, next.last.weight + tied};
  count += next.count;
  moments.Append(next.moments);
}

std::optional<FittedDistribution> FittedSums::Fit(FittedDistribution wanted) const {
  if (noCount || count == 0) return std::nullopt;
  wanted.UseEstimates({moments.Mean(), moments.StdDev(), first.value, last.value});
  return wanted;
}

void FittedSums::Write(ByteWriter& write) const {
  FittedSums written = *this;
  written.Visit(write);
  write(static_cast<std::int64_t>(noCount.has_value()));
  write(noCount.value_or(Cell{}).value);
  write(noCount.value_or(Cell{}).weight);
}

bool FittedSums::Read(ByteReader& read) {
  Visit(read);
  const bool hasNoCount = read.Next() != 0;
  Cell cell;
  read(cell.value);
  read(cell.weight);
  if (hasNoCount) noCount = cell;
  const auto isEnd = [this](const Cell& end) {
    return count == 0 ? end.weight == 0 : 0 < end.weight && end.weight <= count;
  };
  const auto isCount = [](std::int64_t units) {
    return 0 <= units && units <= RunSums::kMostUnits;
  };
  return !read.IsShort() && isCount(count) && isCount(excluded) && moments.CanBeOf(count) &&
         isEnd(first) && isEnd(last) && !(last.value < first.value);
}
