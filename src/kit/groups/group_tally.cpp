#include "kit/groups/group_tally.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "kit/records/record_weight.h"

namespace {

/// Fewer units for each group than this are not worth a loop over the groups.
constexpr std::size_t kUnitsPerGroup = 4;
/// The pass that finds outliers.
constexpr std::int32_t kClassifying = 2;

}  // namespace

void GroupTally::Key::ReadVariables(const SettingsReader& settings) {
  testVariable = settings.Index("variableIndex");
  groupVariable = settings.Index("groupVariableIndex");
  caseIdVariable = settings.Index("caseIdVariableIndex");
  weightVariable = settings.Index("weightVariableIndex");
  wantsQuartiles = settings.Flag("extendedFigures");
}

void GroupTally::Units::AddTo(NPARRank& ranks) const {
  if (weights == nullptr) {
    ranks.AddUnits(values, groups, count);
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<void>(ranks.AddValue(values[i], weights[i], groups[i]));
  }
}

GroupTally::GroupTally(const Key& key)
    : key(key),
      shares(static_cast<std::size_t>(key.groupCount)),
      samples(static_cast<std::size_t>(key.groupCount)) {}

void GroupTally::Take(RecordBatch& batch) {
  Find(batch);
  if (units.count == 0) return;
  if (pass == 1 && key.wantsQuartiles) WalkToQuartiles();
  if (pass == 0) {
    Count();
  } else if (key.shown == Shown::Histograms) {
    if (pass == 1) FillHistograms();
  } else if (pass == 1) {
    TrackHinges();
  } else if (pass == kClassifying) {
    Classify();
  }
}

bool GroupTally::TakesCells() const {
  return pass != kClassifying || key.caseIdVariable < 0 ||
         std::none_of(boxPlots.begin(), boxPlots.end(),
                      [](const GroupBoxPlot& plot) { return plot.HasOutliers(); });
}

void GroupTally::WantPlaces(OrderExcerpt& wanted) const {
  wanted.groupVariable = key.groupVariable;
  wanted.places.groups.resize(samples.size());
  for (const GroupBoxPlot& plot : boxPlots) {
    WantedPlaces::OfGroup& group = wanted.places.groups[static_cast<std::size_t>(plot.GroupCode())];
    if (pass == 1) plot.Hinges().WantRanks(group.ranks);
    if (pass == kClassifying) group.tails = plot.WantedTails();
  }
}

void GroupTally::EndPass() {
  if (pass == 0) EndCounting();
  if (pass == 1) {
    for (GroupBoxPlot& plot : boxPlots) plot.FinishHinges();
    for (Histogram& histogram : histograms) histogram.AddZeroBin();
    for (HingeWalk& walk : quartileWalks) walk.FinishHinges();
  }
  ++pass;
}

const std::int32_t* GroupTally::GroupsOf(RecordBatch& batch) {
  const std::int32_t* codes = batch.TruncatedOf(key.groupVariable);
  if (!key.groupOfCode) return codes;
  const std::span<const std::int32_t> groupOfCode = *key.groupOfCode;
  groups.resize(batch.Size());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const auto code = static_cast<std::uint32_t>(codes[i]);  // a negative one is beyond all
    groups[i] = code < groupOfCode.size() ? groupOfCode[code] : key.groupCount;
  }
  return groups.data();
}

void GroupTally::Find(RecordBatch& batch) {
  const auto isGroup = [groupCount = static_cast<std::uint32_t>(key.groupCount)](auto group) {
    return static_cast<std::uint32_t>(group) < groupCount;
  };
  const std::int32_t* found = GroupsOf(batch);
  if (std::all_of(found, found + batch.Size(), isGroup)) {
    Select(batch, found);
  } else {
    isLeftOut.resize(batch.Size());
    groups.resize(batch.Size());
    std::size_t kept = 0;
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const std::int32_t group = found[i];
      isLeftOut[i] = !isGroup(group);
      groups[kept] = group;
      kept += isGroup(group) ? 1 : 0;  // groups come at random: no branch
    }
    Select(keptRecords.Select(batch, isLeftOut), groups.data());
  }
  FindShares();
}

void GroupTally::Select(RecordBatch& batch, const std::int32_t* groupsOfRecords) {
  units.count = batch.Size();
  if (units.count == 0) return;
  units.values = batch.Of(key.testVariable);
  units.groups = groupsOfRecords;
  units.counts = batch.Counts();
  const bool namesCases = key.caseIdVariable >= 0 && key.shown == Shown::BoxPlots &&
                          pass == kClassifying && units.counts == nullptr;
  units.caseIds = namesCases ? batch.Of(key.caseIdVariable) : nullptr;
  units.weights = RecordWeight(key.weightVariable).TruncatedOf(batch);
  if (key.weightVariable >= 0) units.plainWeights = batch.Of(key.weightVariable);
}

void GroupTally::FindShares() {
  units.shares = nullptr;
  if (units.count == 0 || units.count < kUnitsPerGroup * shares.size()) return;
  if (!(units.values[0] <= units.values[units.count - 1])) return;
  units.shares = shares.data();
  shares.assign(shares.size(), Share{0, -1});
  if (shares.size() == 2 && units.weights == nullptr) {
    // Counting is quicker than looking for the last of each with every unit.
    const auto count = static_cast<std::int64_t>(units.count);
    shares[1].weight = std::count(units.groups, units.groups + units.count, 1);
    shares[0].weight = count - shares[1].weight;
    for (std::int32_t group = 0; group < 2; ++group) {
      Share& share = shares[static_cast<std::size_t>(group)];
      if (share.weight == 0) continue;
      share.last = static_cast<std::int32_t>(count - 1);
      while (units.groups[share.last] != group) --share.last;
    }
    return;
  }
  for (std::size_t i = 0; i < units.count; ++i) {
    Share& share = shares[units.GroupOf(i)];
    share.weight += units.Weight(i);
    share.last = static_cast<std::int32_t>(i);
  }
}

void GroupTally::Count() {
  if (units.shares != nullptr) {
    for (std::size_t group = 0; group < shares.size(); ++group) {
      samples[group].count += shares[group].weight;
    }
  } else {
    for (std::size_t i = 0; i < units.count; ++i) {
      samples[units.GroupOf(i)].count += units.Weight(i);
    }
  }
  if (units.weights != nullptr) {
    hasNegativeWeight =
        hasNegativeWeight || std::any_of(units.weights, units.weights + units.count,
                                         [](std::int32_t weight) { return weight < 0; });
  }
  if (key.shown == Shown::Histograms) TakeRanges();
}

void GroupTally::TakeRanges() {
  const auto take = [this](std::size_t i) {
    Sample& sample = samples[units.GroupOf(i)];
    const double x = units.values[i];
    if (sample.first == QDMV::gMissingValue) sample.first = x;
    sample.last = x;
    sample.range.Take(x);
  };
  // Of zeros the first one stays, with its sign.
  const bool areFarFromZero = units.values[0] > 0.0 || units.values[units.count - 1] < 0.0;
  if (units.shares == nullptr || !areFarFromZero) {
    for (std::size_t i = 0; i < units.count; ++i) take(i);
    return;
  }
  for (std::int32_t group = 0; group < key.groupCount; ++group) {
    const std::int32_t last = shares[static_cast<std::size_t>(group)].last;
    if (last < 0) continue;
    const auto* first = std::find(units.groups, units.groups + last, group);
    take(static_cast<std::size_t>(first - units.groups));
    take(static_cast<std::size_t>(last));
  }
}

void GroupTally::EndCounting() {
  placeOf.assign(samples.size(), kNoPlace);
  for (std::int32_t group = 0; group < key.groupCount; ++group) {
    if (CountOf(group) <= 0) continue;
    placeOf[static_cast<std::size_t>(group)] = groupAt.size();
    groupAt.push_back(group);
    totalWeight += CountOf(group);
  }
  if (key.wantsQuartiles) {
    for (const Sample& sample : samples) {
      quartileWalks.emplace_back(static_cast<double>(WeightOrNone(sample.count)));
    }
  }
  if (key.shown == Shown::BoxPlots) {
    boxPlots.reserve(groupAt.size());
    for (const std::int32_t group : groupAt) {
      boxPlots.emplace_back(group, static_cast<double>(CountOf(group)));
    }
  } else {
    histograms.resize(samples.size());
    for (std::size_t group = 0; group < samples.size(); ++group) {
      histograms[group].SetRange(samples[group].range);
    }
  }
}

// Of many records a piece rarely leaves the bins that it begins in.
void GroupTally::FillHistograms() {
  constexpr std::size_t kPiece = 64;
  const bool weighOne = units.counts == nullptr && units.weights == nullptr;
  for (std::size_t first = 0; first < units.count; first += kPiece) {
    const std::size_t end = std::min(first + kPiece, units.count);
    if (weighOne && FindOneBinOfEach(first, end)) {
      HistogramBin* const* const binOf = binsOfPiece.data();
      for (std::size_t i = first; i < end; ++i) binOf[units.GroupOf(i)]->Add(units.values[i], 1);
    } else {
      for (std::size_t i = first; i < end; ++i) AddToHistogram(i);
    }
  }
}

bool GroupTally::FindOneBinOfEach(std::size_t first, std::size_t end) {
  if (units.shares == nullptr || end - first < kUnitsPerGroup * histograms.size()) return false;
  binsOfPiece.resize(histograms.size());
  for (std::size_t group = 0; group < histograms.size(); ++group) {
    if (samples[group].count <= 0) continue;
    HistogramBin* const bin =
        histograms[group].OneBinOf(units.values[first], units.values[end - 1]);
    if (bin == nullptr) return false;
    binsOfPiece[group] = bin;
  }
  return true;
}

void GroupTally::AddToHistogram(std::size_t i) {
  histograms[units.GroupOf(i)].AddAscendingOrZero(units.values[i], units.Weight(i));
}

Stretch GroupTally::StretchOf(const Share& share) const noexcept {
  return {share.weight, units.values[0], units.values[std::max(share.last - 1, 0)],
          units.values[share.last]};
}

void GroupTally::WalkToQuartiles() {
  bool isAnyByOne = true;
  isByOne.assign(quartileWalks.size(), true);
  if (units.shares != nullptr && units.weights == nullptr) {
    isAnyByOne = false;
    for (std::size_t group = 0; group < shares.size(); ++group) {
      const bool isPassed =
          shares[group].last < 0 || quartileWalks[group].PassOver(StretchOf(shares[group]));
      isByOne[group] = !isPassed;
      isAnyByOne = isAnyByOne || !isPassed;
    }
  }
  if (!isAnyByOne) return;
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t group = units.GroupOf(i);
    if (isByOne[group] == 0 || units.Weight(i) <= 0) continue;
    quartileWalks[group].TrackHinges(units.values[i], static_cast<double>(units.Weight(i)));
  }
}

template <typename PassOver, typename TakeOne>
void GroupTally::ShowToPlots(PassOver passOver, TakeOne takeOne) {
  bool isAnyByOne = true;
  isByOne.assign(boxPlots.size(), true);
  if (units.shares != nullptr) {
    isAnyByOne = false;
    for (std::size_t place = 0; place < boxPlots.size(); ++place) {
      const Share& share = shares[static_cast<std::size_t>(groupAt[place])];
      const bool isPassed = share.last < 0 || passOver(boxPlots[place], StretchOf(share));
      isByOne[place] = !isPassed;
      isAnyByOne = isAnyByOne || !isPassed;
    }
  }
  if (!isAnyByOne) return;
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = PlaceOf(units.groups[i]);
    if (place != kNoPlace && isByOne[place] != 0) takeOne(boxPlots[place], i);
  }
}

void GroupTally::TrackHinges() {
  ShowToPlots(
      [this](GroupBoxPlot& plot, const Stretch& stretch) {
        return units.weights == nullptr && plot.PassOverTracking(stretch);
      },
      [this](GroupBoxPlot& plot, std::size_t i) {
        plot.TrackValue(units.values[i], units.PlainWeight(i));
      });
}

void GroupTally::Classify() {
  ShowToPlots(
      [](GroupBoxPlot& plot, const Stretch& stretch) { return plot.PassOverClassifying(stretch); },
      [this](GroupBoxPlot& plot, std::size_t i) {
        plot.ClassifyValue(units.values[i],
                           units.caseIds == nullptr ? QDMV::gMissingValue : units.caseIds[i],
                           units.counts == nullptr ? 1 : units.counts[i]);
      });
}
