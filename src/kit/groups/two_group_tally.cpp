#include "kit/groups/two_group_tally.h"

#include <algorithm>

namespace {

constexpr std::array kBothGroups{TwoGroups::First, TwoGroups::Second};

}  // namespace

void TwoGroupUnits::AddTo(NPARRank& ranks) const {
  if (weights == nullptr) {
    ranks.AddUnits(values, groups, count);
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<void>(ranks.AddValue(values[i], weights[i], groups[i]));
  }
}

void TwoGroupHistograms::Start() {
  for (const TwoGroups::Group group : kBothGroups) {
    histograms[group].SetRange(minValues[group], maxValues[group],
                               QDContUnivariateVariable::kBinCount);
  }
}

void TwoGroupHistograms::Add(const TwoGroupUnits& units) {
  for (std::size_t i = 0; i < units.count; ++i) {
    histograms[units.groups[i]].AddAscendingOrZero(units.values[i], units.Weight(i));
  }
}

void TwoGroupHistograms::Finish() {
  for (QDContUnivariateVariable& histogram : histograms) histogram.AddZeroBin();
}

void TwoGroupTally::Take(RecordBatch& batch) {
  FindGroups(batch);
  if (std::count(groups.begin(), groups.end(), TwoGroups::Neither) == 0) {
    Select(batch);
  } else {
    KeepGroups(batch);
  }
  SumWeights();
  if (pass == 0) {
    TakeSizes();
  } else if (pass == 1) {
    histograms.Add(units);
  }
}

void TwoGroupTally::FindGroups(RecordBatch& batch) {
  const std::int32_t* codes = batch.TruncatedOf(key.groupVariable);
  groups.resize(batch.Size());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const auto code = static_cast<std::uint32_t>(codes[i]);  // a negative one is beyond all
    groups[i] = code < key.groupOfCode.size() ? key.groupOfCode[code] : TwoGroups::Neither;
  }
}

void TwoGroupTally::Select(RecordBatch& batch) {
  units.count = batch.Size();
  if (units.count == 0) return;
  units.values = batch.Of(key.testVariable);
  units.groups = groups.data();
  if (key.weightVariable >= 0) units.weights = batch.TruncatedOf(key.weightVariable);
}

void TwoGroupTally::KeepGroups(RecordBatch& batch) {
  isLeftOut.assign(batch.Size(), 0);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < batch.Size(); ++i) {
    const TwoGroups::Group group = groups[i];
    isLeftOut[i] = group == TwoGroups::Neither ? 1 : 0;
    groups[kept] = group;
    kept += group != TwoGroups::Neither ? 1 : 0;  // groups come at random: no branch
  }
  Select(keptRecords.Select(batch, isLeftOut));
}

void TwoGroupTally::SumWeights() {
  units.sums = {0, 0};
  if (units.weights == nullptr) {
    units.sums[TwoGroups::First] =
        std::count(units.groups, units.groups + units.count, TwoGroups::First);
    units.sums[TwoGroups::Second] =
        static_cast<std::int64_t>(units.count) - units.sums[TwoGroups::First];
    return;
  }
  for (std::size_t i = 0; i < units.count; ++i) units.sums[units.groups[i]] += units.weights[i];
}

void TwoGroupTally::TakeSizes() {
  const auto take = [this](std::size_t i) {
    Sample& sample = samples[units.groups[i]];
    if (sample.first == QDMV::gMissingValue) sample.first = units.values[i];
    sample.last = units.values[i];
    histograms.TakeRange(units.groups[i], units.values[i]);
  };
  const auto* begin = units.groups;
  const auto* end = begin + units.count;
  if (units.AscendWithoutZero()) {
    for (const TwoGroups::Group group : kBothGroups) {
      const auto* first = std::find(begin, end, group);
      if (first == end) continue;
      const auto* last = end;
      while (*--last != group) {
      }
      take(static_cast<std::size_t>(first - begin));
      take(static_cast<std::size_t>(last - begin));
    }
  } else {
    for (std::size_t i = 0; i < units.count; ++i) take(i);
  }
  for (const TwoGroups::Group group : kBothGroups) samples[group].count += units.sums[group];
  if (units.weights != nullptr) {
    hasNegativeWeight =
        hasNegativeWeight || std::any_of(units.weights, units.weights + units.count,
                                         [](std::int32_t weight) { return weight < 0; });
  }
}

void TwoGroupTally::EndPass() {
  if (pass == 0) histograms.Start();
  if (pass == 1) histograms.Finish();
  ++pass;
}
