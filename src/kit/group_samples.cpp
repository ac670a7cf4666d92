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

bool GroupSamples::Take(const Record& record, Unit& unit) {
  unit.code = TruncateToInt32(record[groupVariable]);
  if (unit.code < 0 || unit.code >= CategoryCount()) return false;
  unit.value = record[testVariable];
  unit.weight = recordWeight.Truncated(record);
  if (passesDone == 0) {
    counts[static_cast<std::size_t>(unit.code)] += unit.weight;
    return true;
  }
  const std::size_t place = PlaceOf(unit.code);
  if (place == kNoPlace) return true;
  if (passesDone == 1) {
    boxPlots[place].TrackValue(unit.value, recordWeight.Plain(record), CountAt(place));
  } else if (passesDone == 2) {
    boxPlots[place].ClassifyValue(unit.value,
                                  HasCaseIds() ? record[caseIdVariable] : QDMV::gMissingValue);
  }
  return true;
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
