#include "ranges/fitted_pieces.h"

#include <algorithm>
#include <optional>

namespace {

/// Nothing where the test fails.
FittedWhole WholeOf(const FittedDistribution& wanted, const FittedSums& sums) {
  const std::optional<FittedDistribution> fitted = sums.Fit(wanted);
  if (!fitted || fitted->CodeAgainst()) return {};
  return {{fitted->mean, fitted->stdDev, fitted->minimum, fitted->maximum}, sums.Count()};
}

}  // namespace

bool FitPass::IsSound() const {
  return std::ranges::all_of(starts, [this](const FitStart& start) {
    return 0 <= start.firstBefore && start.firstBefore <= start.before && 0 <= start.lastBehind &&
           start.before <= whole.count && start.lastBehind <= whole.count;
  });
}

FittedPieces::FittedPieces(const Distributions& wanted, const std::vector<FitPass>& pass,
                           std::size_t piece)
    : FittedPieces(wanted) {
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    walks.emplace_back(wanted[i], pass[i].whole, pass[i].starts[piece]);
  }
}

void FittedPieces::Take(const Units& units) {
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    sumsOfPieces.front()[i].Take(wanted[i], units);
  }
  for (FitWalk& walk : walks) walk.Take(units);
}

void FittedPieces::Finish() {
  for (FitWalk& walk : walks) extremes.push_back(walk.Finish());
  walks.clear();
}

bool FittedPieces::Precede(const FittedPieces& next) const {
  return next.Count() == Count() &&
         std::equal(extremes.begin(), extremes.end(), next.extremes.begin(), next.extremes.end(),
                    [](const FitExtremes& a, const FitExtremes& b) { return a.Precede(b); });
}

void FittedPieces::Append(const FittedPieces& next) {
  for (std::size_t i = 0; i < extremes.size(); ++i) extremes[i].Append(next.extremes[i]);
  sumsOfPieces.insert(sumsOfPieces.end(), next.sumsOfPieces.begin(), next.sumsOfPieces.end());
}

std::vector<FittedSums> FittedPieces::Totals() const {
  std::vector<FittedSums> totals(Count());
  for (const std::vector<FittedSums>& sums : sumsOfPieces) {
    for (std::size_t i = 0; i < sums.size(); ++i) totals[i].Append(sums[i]);
  }
  return totals;
}

std::vector<FitPass> FittedPieces::NextPass(const Distributions& fitted) const {
  const std::vector<FittedSums> totals = Totals();
  std::vector<FitPass> pass;
  for (std::size_t i = 0; i < totals.size(); ++i) {
    FitPass& next = pass.emplace_back();
    next.whole = WholeOf(fitted[i], totals[i]);
    next.starts.resize(sumsOfPieces.size());
    if (next.whole.count > 0) next.starts = StartsOf(i);
  }
  return pass;
}

std::vector<FitStart> FittedPieces::StartsOf(std::size_t fit) const {
  std::vector<FitStart> starts(sumsOfPieces.size());
  FittedSums earlier;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const FittedSums& sums = sumsOfPieces[i][fit];
    starts[i].before = earlier.Count();
    if (earlier.Last().value == sums.First().value) starts[i].firstBefore = earlier.Last().weight;
    earlier.Append(sums);
  }
  FittedSums later;
  for (std::size_t i = starts.size(); i > 0; --i) {
    FittedSums sums = sumsOfPieces[i - 1][fit];
    if (later.First().value == sums.Last().value) starts[i - 1].lastBehind = later.First().weight;
    sums.Append(later);
    later = sums;
  }
  return starts;
}

bool FittedPieces::AreComplete(const Distributions& fitted) const {
  const std::vector<FittedSums> totals = Totals();
  if (extremes.size() != totals.size()) return false;
  for (std::size_t i = 0; i < totals.size(); ++i) {
    if (!extremes[i].AreOf(WholeOf(fitted[i], totals[i]))) return false;
  }
  return true;
}

void FittedPieces::Write(ByteWriter& write) const {
  const std::vector<FittedSums> totals = Totals();
  write(static_cast<std::uint64_t>(totals.size()));
  for (const FittedSums& sums : totals) sums.Write(write);
  write(static_cast<std::uint64_t>(extremes.size()));
  for (const FitExtremes& each : extremes) each.Write(write);
}

bool FittedPieces::Read(ByteReader& read) {
  const auto readEach = [&read](auto& list) {
    list.resize(read.NextCount(sizeof(std::uint64_t)));
    return std::ranges::all_of(list, [&read](auto& each) { return each.Read(read); });
  };
  if (!readEach(sumsOfPieces.front()) || !readEach(extremes)) return false;
  return !read.IsShort() && (extremes.empty() || extremes.size() == Count());
}
