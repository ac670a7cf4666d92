#include <algorithm>
#include <unordered_set>

#include "host/data/csv.h"
#include "host/data/input_error.h"
#include "host/data/model.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/data/text_source.h"

namespace npar_host {
namespace {

CellReading ReadingOf(const FieldSpec& spec) {
  if (spec.role == Role::None) return CellReading::Skip;
  switch (spec.storage) {
    case Storage::Date:
      return CellReading::Date;
    case Storage::Time:
      return CellReading::Time;
    case Storage::Timestamp:
      return CellReading::Timestamp;
    case Storage::String:
      return CellReading::Text;
    case Storage::Real:
    case Storage::Integer:
      return CellReading::Number;
    case Storage::Infer:
      break;
  }
  if (spec.role == Role::FrequencyWeight) return CellReading::Number;
  if (spec.role == Role::CaseId) return CellReading::Detect;
  if (spec.measure == Measure::Continuous || spec.measure == Measure::Other) {
    return CellReading::Number;
  }
  double number = 0.0;
  const bool listsTexts =
      spec.measure != Measure::Infer &&
      std::any_of(spec.values.begin(), spec.values.end(),
                  [&](const ValueSpec& value) { return !ParseNumber(value.value, number); });
  return listsTexts ? CellReading::Text : CellReading::Detect;
}

void CheckNames(const std::vector<std::string>& names, const std::vector<FieldSpec>& specs) {
  const std::unordered_set<std::string_view> known(names.begin(), names.end());
  for (const FieldSpec& spec : specs) {
    if (known.contains(spec.name)) continue;
    throw InputError(spec.location + ": the data has no field " + Quoted(spec.name) +
                     NearMiss(spec.name, names) + "; take a name of the header line");
  }
}

}  // namespace

std::vector<FieldSpec> ReadModel(const std::string& path) {
  const TextSource source(path);
  const std::string text(source.Text());
  source.CheckIsWhole();
  return ParseModel(text, source.Name());
}

Dataset ReadCells(CsvReader& reader, const std::vector<FieldSpec>& specs) {
  CheckNames(reader.Names(), specs);
  std::vector<CellReading> readings;
  for (const FieldSpec* spec : MatchSpecs(reader.Names(), specs)) {
    readings.push_back(ReadingOf(*spec));
  }
  return reader.Read(readings);
}

ModelledData LoadData(CsvReader& reader, const std::vector<FieldSpec>& specs) {
  return FindModel(ReadCells(reader, specs), specs);
}

}  // namespace npar_host
