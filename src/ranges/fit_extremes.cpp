#include "ranges/fit_extremes.h"

#include <algorithm>

namespace {

/// So few at once that many of them can be passed over.
constexpr std::size_t kUnitsAtOnce = 256;

FittedDistribution Estimated(FittedDistribution wanted, const FittedWhole& whole) {
  wanted.UseEstimates(whole.estimates);
  return wanted;
}

}  // namespace

void FitExtremes::Append(const FitExtremes& next) {
  upTo = next.upTo;
  extremes.Append(next.extremes);
}

void FitExtremes::Write(ByteWriter& write) const {
  FitExtremes written = *this;
  written.whole.Visit(write);
  write(before);
  write(upTo);
  written.extremes.Visit(write, [&write](std::size_t count) {
    write(static_cast<std::uint64_t>(count));
    return count;
  });
}

bool FitExtremes::Read(ByteReader& read) {
  whole.Visit(read);
  read(before);
  read(upTo);
  constexpr std::size_t kWidthOfPlace = 2 * sizeof(double);
  extremes.Visit(read, [&read](std::size_t) { return read.NextCount(kWidthOfPlace); });
  return !read.IsShort() && 0 <= before && before <= upTo && upTo <= whole.count;
}

FitWalk::FitWalk(FittedDistribution wanted, const FittedWhole& whole, const FitStart& start)
    : fitted(Estimated(wanted, whole)),
      whole(whole),
      start(start),
      upTo(start.before),
      differences(fitted, whole.count, start.before - start.firstBefore) {}

void FitWalk::Take(const Units& units) {
  if (whole.count == 0) return;
  const auto [begin, end] = fitted.TakenOf(units.values);
  for (std::size_t next = begin; next < end; next += kUnitsAtOnce) {
    TakeValid(units.Part(next, std::min(next + kUnitsAtOnce, end)));
  }
}

void FitWalk::TakeValid(const Units& units) {
  if (last == QDMV::gMissingValue && start.firstBefore > 0) {
    differences.Add(units.values.front(), start.firstBefore);
  }
  last = units.values.back();
  upTo += units.Weight();
  if (units.weights.empty() && !fitted.IsPoisson() &&
      differences.PassOver(units.values.data(), units.Size())) {
    return;
  }
  for (std::size_t i = 0; i < units.Size(); ++i) {
    differences.Add(units.values[i], units.WeightAt(i));
  }
}

FitExtremes FitWalk::Finish() {
  if (last != QDMV::gMissingValue) {
    if (start.lastBehind > 0) differences.Add(last, start.lastBehind);
    differences.Finish();
  }
  return {whole, start.before, upTo, differences.Extremes()};
}
