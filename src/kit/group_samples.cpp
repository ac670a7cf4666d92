#include "kit/group_samples.h"

void GroupSamples::Read(const QDSettings& settings) {
  static_cast<void>(settings.GetSettingValByName("variableIndex", testVariable));
  static_cast<void>(settings.GetSettingValByName("groupVariableIndex", groupVariable));
  static_cast<void>(settings.GetSettingValByName("caseIdVariableIndex", caseIdVariable));
  recordWeight = RecordWeight(settings);
}

void GroupSamples::AppendRequired(std::vector<std::int64_t>& positions) const {
  positions.push_back(testVariable);
  positions.push_back(groupVariable);
}

void GroupSamples::Units::AddTo(NPARRank& ranks) const {
  if (weights == nullptr) {
    ranks.AddUnits(values, codes, count);
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<void>(ranks.AddValue(values[i], weights[i], codes[i]));
  }
}

const GroupSamples::Units& GroupSamples::Take(RecordColumns& columns) {
  const std::int32_t* codes = columns.TruncatedOf(groupVariable);
  std::size_t known = 0;
  for (std::size_t i = 0; i < columns.Size(); ++i) {
    known += codes[i] >= 0 && codes[i] < CategoryCount() ? 1 : 0;
  }
  if (known == columns.Size()) {
    Select(columns);
  } else {
    KeepCategories(columns);
  }
  if (passesDone == 0) {
    for (std::size_t i = 0; i < units.count; ++i) {
      counts[static_cast<std::size_t>(units.codes[i])] += units.Weight(i);
    }
  } else if (passesDone == 1) {
    TrackHinges();
  } else if (passesDone == 2) {
    Classify();
  }
  return units;
}

void GroupSamples::Select(RecordColumns& columns) {
  units.count = columns.Size();
  if (units.count == 0) return;
  units.values = columns.Of(testVariable);
  units.codes = columns.TruncatedOf(groupVariable);
  if (HasCaseIds()) units.caseIds = columns.Of(caseIdVariable);
  if (recordWeight.Index() < 0) return;
  units.weights = columns.TruncatedOf(recordWeight.Index());
  units.plainWeights = columns.Of(recordWeight.Index());
}

void GroupSamples::KeepCategories(RecordColumns& columns) {
  const std::int32_t* codes = columns.TruncatedOf(groupVariable);
  keptRows.clear();
  for (std::size_t i = 0; i < columns.Size(); ++i) {
    if (codes[i] >= 0 && codes[i] < CategoryCount()) keptRows.push_back(columns.Rows().rows[i]);
  }
  keptColumns.LookAt({keptRows.data(), keptRows.size()});
  Select(keptColumns);
}

void GroupSamples::TrackHinges() {
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = PlaceOf(units.codes[i]);
    if (place == kNoPlace) continue;
    boxPlots[place].TrackValue(units.values[i],
                               units.plainWeights == nullptr ? 1.0 : units.plainWeights[i],
                               CountAt(place));
  }
}

void GroupSamples::Classify() {
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = PlaceOf(units.codes[i]);
    if (place == kNoPlace) continue;
    boxPlots[place].ClassifyValue(
        units.values[i], units.caseIds == nullptr ? QDMV::gMissingValue : units.caseIds[i]);
  }
}

void GroupSamples::EndPass() {
  if (passesDone == 0) EndCounting();
  if (passesDone == 1) {
    for (GroupBoxPlot& plot : boxPlots) plot.FinishHinges();
  }
  ++passesDone;
}

void GroupSamples::EndCounting() {
  places.assign(counts.size(), kNoPlace);
  for (std::int32_t code = 0; code < CategoryCount(); ++code) {
    if (CountOf(code) <= 0) continue;
    places[static_cast<std::size_t>(code)] = codes.size();
    codes.push_back(code);
    totalWeight += CountOf(code);
  }
  boxPlots.reserve(codes.size());
  for (const std::int32_t code : codes) boxPlots.emplace_back(code);
}
