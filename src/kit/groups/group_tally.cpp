#include "kit/groups/group_tally.h"

namespace {

/// Fewer units for each category than this are not worth a loop over the categories.
constexpr std::size_t kUnitsPerCategory = 4;

}  // namespace

GroupTally::GroupTally(const Key& key)
    : key(key),
      counts(static_cast<std::size_t>(key.categoryCount), 0),
      shares(static_cast<std::size_t>(key.categoryCount)) {}

void GroupTally::Units::AddTo(NPARRank& ranks) const {
  if (weights == nullptr) {
    ranks.AddUnits(values, codes, count);
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<void>(ranks.AddValue(values[i], weights[i], codes[i]));
  }
}

void GroupTally::Take(RecordBatch& batch) {
  const std::int32_t* recordCodes = batch.TruncatedOf(key.groupVariable);
  std::size_t known = 0;
  for (std::size_t i = 0; i < batch.Size(); ++i) {
    known += recordCodes[i] >= 0 && recordCodes[i] < key.categoryCount ? 1 : 0;
  }
  if (known == batch.Size()) {
    Select(batch);
  } else {
    KeepCategories(batch);
  }
  units.shares = nullptr;
  if (pass == 0) {
    Count();
  } else if (pass == 1) {
    TrackHinges();
  } else if (pass == 2) {
    Classify();
  }
}

void GroupTally::Select(RecordBatch& batch) {
  units.count = batch.Size();
  if (units.count == 0) return;
  units.values = batch.Of(key.testVariable);
  units.codes = batch.TruncatedOf(key.groupVariable);
  if (key.caseIdVariable >= 0) units.caseIds = batch.Of(key.caseIdVariable);
  if (key.weightVariable < 0) return;
  units.weights = batch.TruncatedOf(key.weightVariable);
  units.plainWeights = batch.Of(key.weightVariable);
}

void GroupTally::KeepCategories(RecordBatch& batch) {
  const std::int32_t* recordCodes = batch.TruncatedOf(key.groupVariable);
  isLeftOut.assign(batch.Size(), 0);
  for (std::size_t i = 0; i < batch.Size(); ++i) {
    isLeftOut[i] = recordCodes[i] >= 0 && recordCodes[i] < key.categoryCount ? 0 : 1;
  }
  Select(keptRecords.Select(batch, isLeftOut));
}

void GroupTally::Count() {
  for (std::size_t i = 0; i < units.count; ++i) {
    counts[static_cast<std::size_t>(units.codes[i])] += units.Weight(i);
  }
}

bool GroupTally::FindShares() {
  if (units.count == 0 || units.count < kUnitsPerCategory * shares.size()) return false;
  // Ascending values, unless one at an end is not a number.
  if (!(units.values[0] <= units.values[units.count - 1])) return false;
  shares.assign(shares.size(), Share{0, 0});
  for (std::size_t i = 0; i < units.count; ++i) {
    Share& share = shares[static_cast<std::size_t>(units.codes[i])];
    ++share.count;
    share.last = static_cast<std::uint32_t>(i);
  }
  units.shares = shares.data();
  return true;
}

template <typename TakeMany, typename TakeOne>
void GroupTally::ShowToPlots(TakeMany takeMany, TakeOne takeOne) {
  bool isAnyByOne = true;
  isByOne.assign(boxPlots.size(), 1);
  if (FindShares()) {
    isAnyByOne = false;
    for (std::size_t place = 0; place < boxPlots.size(); ++place) {
      const Share& share = shares[static_cast<std::size_t>(codes[place])];
      isByOne[place] = share.count > 0 && !takeMany(boxPlots[place], share) ? 1 : 0;
      isAnyByOne = isAnyByOne || isByOne[place] != 0;
    }
  }
  if (!isAnyByOne) return;
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = PlaceOf(units.codes[i]);
    if (place != kNoPlace && isByOne[place] != 0) takeOne(boxPlots[place], i);
  }
}

void GroupTally::TrackHinges() {
  const auto totalOf = [this](const GroupBoxPlot& plot) {
    return static_cast<double>(CountOf(plot.GroupCode()));
  };
  ShowToPlots(
      [&](GroupBoxPlot& plot, const Share& share) {
        return units.weights == nullptr && plot.TrackUnits(share.count, units.values[0],
                                                           units.values[share.last], totalOf(plot));
      },
      [&](GroupBoxPlot& plot, std::size_t i) {
        plot.TrackValue(units.values[i],
                        units.plainWeights == nullptr ? 1.0 : units.plainWeights[i], totalOf(plot));
      });
}

void GroupTally::Classify() {
  ShowToPlots(
      [this](GroupBoxPlot& plot, const Share& share) {
        const double before =
            share.last == 0 ? plot.LargestNonOutlier() : units.values[share.last - 1];
        return plot.ClassifyInside(units.values[0], before, units.values[share.last]);
      },
      [this](GroupBoxPlot& plot, std::size_t i) {
        plot.ClassifyValue(units.values[i],
                           units.caseIds == nullptr ? QDMV::gMissingValue : units.caseIds[i]);
      });
}

void GroupTally::EndPass() {
  if (pass == 0) EndCounting();
  if (pass == 1) {
    for (GroupBoxPlot& plot : boxPlots) plot.FinishHinges();
  }
  ++pass;
}

void GroupTally::EndCounting() {
  places.assign(counts.size(), kNoPlace);
  for (std::int32_t code = 0; code < key.categoryCount; ++code) {
    if (CountOf(code) <= 0) continue;
    places[static_cast<std::size_t>(code)] = codes.size();
    codes.push_back(code);
    totalWeight += CountOf(code);
  }
  boxPlots.reserve(codes.size());
  for (const std::int32_t code : codes) boxPlots.emplace_back(code);
}
