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
  if (weighOne) {
    ranks.AddUnits(values.data(), codes.data(), count);
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<void>(ranks.AddValue(values[i], static_cast<double>(weights[i]), codes[i]));
  }
}

const GroupSamples::Units& GroupSamples::Take(RecordColumns& columns) {
  Select(columns);
  if (passesDone == 0) {
    for (std::size_t i = 0; i < units.count; ++i) {
      counts[static_cast<std::size_t>(units.codes[i])] += units.weights[i];
    }
  } else if (passesDone == 1) {
    TrackHinges();
  } else if (passesDone == 2) {
    Classify();
  }
  return units;
}

void GroupSamples::Select(RecordColumns& columns) {
  const std::size_t size = columns.Size();
  units.weighOne = recordWeight.Index() < 0;
  if (units.values.size() < size) {
    units.values.resize(size);
    units.codes.resize(size);
    units.weights.resize(size);
    if (!units.weighOne) units.plainWeights.resize(size);
    if (HasCaseIds()) units.caseIds.resize(size);
  }
  const double* values = columns.Of(testVariable);
  const std::int32_t* codes = columns.CodesOf(groupVariable);
  const double* caseIds = HasCaseIds() ? columns.Of(caseIdVariable) : nullptr;
  const double* plainWeights = units.weighOne ? nullptr : columns.Of(recordWeight.Index());
  recordWeight.UseTruncated(columns, [&](auto weightAt) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const std::int32_t code = codes[i];
      units.values[count] = values[i];
      units.codes[count] = code;
      units.weights[count] = weightAt(i);
      if (plainWeights != nullptr) units.plainWeights[count] = plainWeights[i];
      if (caseIds != nullptr) units.caseIds[count] = caseIds[i];
      count += code >= 0 && code < CategoryCount();
    }
    units.count = count;
  });
}

void GroupSamples::TrackHinges() {
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = PlaceOf(units.codes[i]);
    if (place == kNoPlace) continue;
    boxPlots[place].TrackValue(units.values[i], units.weighOne ? 1.0 : units.plainWeights[i],
                               CountAt(place));
  }
}

void GroupSamples::Classify() {
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = PlaceOf(units.codes[i]);
    if (place == kNoPlace) continue;
    boxPlots[place].ClassifyValue(units.values[i],
                                  HasCaseIds() ? units.caseIds[i] : QDMV::gMissingValue);
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
