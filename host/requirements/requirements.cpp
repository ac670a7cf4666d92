#include "host/requirements/requirements.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr std::size_t kNoField = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kRecordsAtOnce = 1024;

/// A weight as a count of records: truncated toward zero, at most what 64 bits hold.
std::int64_t CountOf(double weight) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  if (!(weight > 0.0)) return 0;
  return weight >= static_cast<double>(kMost) ? kMost : static_cast<std::int64_t>(weight);
}

/// A sum of counts that stays at its end instead of wrapping.
void AddTo(std::int64_t& sum, std::int64_t count) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  sum = count > kMost - sum ? kMost : sum + count;
}

class Preparation {
 public:
  Preparation(const Requirements& requirements, ModelledData& loaded)
      : requirements(requirements), data(loaded.data), model(loaded.model) {}

  PreparedData Run() {
    PlanFields();
    prepared.records = RecordView(std::move(views), data.records);
    CheckRecords();
    prepared.model = std::move(model);
    prepared.modelText = WriteModel(prepared.model, &prepared.counts);
    return std::move(prepared);
  }

 private:
  std::size_t Find(const std::string& name) const {
    const auto found = fieldOfName.find(name);
    if (found == fieldOfName.end()) {
      throw InputError("the component requires the field " + Quoted(name) +
                       ", which the data does not have; correct the parameters or the data model");
    }
    return found->second;
  }

  void PlanFields() {
    const std::size_t count = model.fields.size();
    views.resize(count);
    for (std::size_t i = 0; i < count; ++i) fieldOfName.emplace(model.fields[i].name, i);
    std::vector<bool> isExcluded(count, false);
    std::vector<bool> isUncoded(count, false);
    for (const std::string& name : requirements.excludeUserMissing) isExcluded[Find(name)] = true;
    for (const std::string& name : requirements.listwiseDelete) {
      deletedListwise.push_back(Find(name));
    }
    if (!requirements.weightField.empty()) weightField = Find(requirements.weightField);
    // A field may be required twice, to be tested and as case identifier: then it is coded.
    for (const auto& required : requirements.requiredFields) {
      if (required.encoding == Requirements::Encoding::None) isUncoded[Find(required.name)] = true;
    }
    for (const auto& required : requirements.requiredFields) {
      if (required.encoding != Requirements::Encoding::None) isUncoded[Find(required.name)] = false;
    }
    for (std::size_t i = 0; i < count; ++i) PlanField(i, isExcluded[i], isUncoded[i]);
  }

  void PlanField(std::size_t i, bool isExcluded, bool isUncoded) {
    Field& field = model.fields[i];
    Column& column = data.columns[i];
    FieldView& view = views[i];
    if (field.IsCategorical() && isUncoded && field.storage == Storage::String) {
      NumberRecords(field, isExcluded);
    }
    if (field.isNumbered) {
      view.isNumbered = true;
      // The one asked for, if two hold texts.
      if (caseField == kNoField || isUncoded) caseField = i;
    } else if (field.IsCategorical()) {
      PlanCategories(field, view, isExcluded, isUncoded);
    }
    if (isExcluded && !field.IsCategorical()) view.missingCells = field.userMissingCells;
    if (column.IsCoded() && view.valueOfCode.empty()) PlanCodes(column, view);
    view.isRounded = i == weightField && requirements.roundWeight;
    view.numbers = column.numbers;
    view.codes = column.codes;
  }

  /// The codes themselves are delivered, or stand for a record that has a number.
  static void PlanCodes(const Column& column, FieldView& view) {
    const double missing = view.isNumbered ? view.missing : kMissingCode;
    view.valueOfCode.push_back(missing);
    for (std::size_t code = 0; code < column.texts.Size(); ++code) {
      const auto value = static_cast<double>(code);
      const bool isMissing = std::ranges::find(view.missingCells, value) != view.missingCells.end();
      view.valueOfCode.push_back(isMissing ? view.missing : value);
    }
  }

  /// Turns a field of text categories into one whose record numbers are delivered.
  static void NumberRecords(Field& field, bool isExcluded) {
    for (std::size_t cell = 0; isExcluded && cell < field.codeOfCell.size(); ++cell) {
      const auto code = static_cast<std::size_t>(field.codeOfCell[cell]);
      if (field.categories[code].isUserMissing) {
        field.userMissingCells.push_back(static_cast<double>(cell));
      }
    }
    field.categories.clear();
    field.codeOfCell.clear();
    field.measure = Measure::Continuous;
    field.storage = Storage::Integer;
    field.isNumbered = true;
  }

  /// Excluded user-missing values are no categories any more; the codes close ranks. Uncoded, the
  /// numbers themselves are delivered.
  static void PlanCategories(Field& field, FieldView& view, bool isExcluded, bool isUncoded) {
    view.missing = isUncoded ? kMissingNumber : kMissingCode;
    std::vector<double> valueOfCode;
    std::vector<Category> remaining;
    for (Category& category : field.categories) {
      if (isExcluded && category.isUserMissing) {
        valueOfCode.push_back(view.missing);
        continue;
      }
      category.isUserMissing = false;
      valueOfCode.push_back(isUncoded ? category.number : static_cast<double>(remaining.size()));
      remaining.push_back(std::move(category));
    }
    view.valueOfCode.push_back(view.missing);
    for (const std::int32_t code : field.codeOfCell) {
      view.valueOfCode.push_back(valueOfCode[static_cast<std::size_t>(code)]);
    }
    field.categories = std::move(remaining);
    if (isUncoded) {
      field.categories.clear();
      field.measure = Measure::Continuous;
    }
  }

  void CheckRecords() {
    if (caseField != kNoField) {
      prepared.caseTexts = std::move(data.columns[caseField].texts);
      prepared.caseOfRecord = data.columns[caseField].codes;
    }
    if (weightField == kNoField && deletedListwise.empty()) {
      prepared.counts.kept = prepared.counts.weighted = static_cast<std::int64_t>(data.records);
      return;
    }
    isLeftOut.assign(data.records, 0);
    for (std::size_t first = 0; first < data.records; first += kRecordsAtOnce) {
      CheckRecords(first, std::min(kRecordsAtOnce, data.records - first));
    }
    if (prepared.counts.kept != static_cast<std::int64_t>(data.records)) {
      prepared.records.LeaveOut(isLeftOut);
    }
  }

  void CheckRecords(std::size_t first, std::size_t count) {
    std::array<double, kRecordsAtOnce> weights;
    weights.fill(1.0);
    if (weightField != kNoField) {
      prepared.records.Field(weightField).Deliver(first, count, weights.data(), 1);
    }
    std::uint8_t* const leftOut = isLeftOut.data() + first;
    for (const std::size_t i : deletedListwise) {
      std::array<double, kRecordsAtOnce> values;
      const FieldView& field = prepared.records.Field(i);
      field.Deliver(first, count, values.data(), 1);
      for (std::size_t record = 0; record < count; ++record) {
        leftOut[record] |= static_cast<std::uint8_t>(values[record] == field.missing);
      }
    }
    RecordCounts& counts = prepared.counts;
    for (std::size_t record = 0; record < count; ++record) {
      const double weight = weights[record];
      if (weight == kMissingNumber || !(weight >= 1.0)) {
        ++counts.badWeight;
        leftOut[record] = 1;
      } else {
        const bool isDropped = leftOut[record] != 0;
        ++(isDropped ? counts.dropped : counts.kept);
        AddTo(isDropped ? counts.weightedDropped : counts.weighted, CountOf(weight));
      }
    }
  }

  const Requirements& requirements;
  Dataset& data;
  DataModel& model;
  std::unordered_map<std::string, std::size_t> fieldOfName;
  std::vector<FieldView> views;
  std::vector<std::size_t> deletedListwise;
  std::size_t weightField = kNoField;
  std::size_t caseField = kNoField;
  std::vector<std::uint8_t> isLeftOut;  // by record
  PreparedData prepared;
};

}  // namespace

std::string_view PreparedData::CaseText(double recordNumber) const {
  if (!(recordNumber >= 1.0) || recordNumber > static_cast<double>(caseOfRecord.Size())) return {};
  const std::int32_t text = caseOfRecord[static_cast<std::size_t>(recordNumber) - 1];
  return text < 0 ? std::string_view() : caseTexts[static_cast<std::size_t>(text)];
}

PreparedData Prepare(const Requirements& requirements, ModelledData loaded) {
  return Preparation(requirements, loaded).Run();
}

}  // namespace npar_host
