#include "host/requirements/requirements.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr std::size_t kNoField = std::numeric_limits<std::size_t>::max();

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

/// What happens to the cells of one field.
struct FieldPlan {
  double missing = kMissingNumber;   // what a missing cell is delivered as
  std::vector<double> valueOfCell;   // what is delivered, where cells are indices of categories
  std::vector<double> missingCells;  // user-missing cells of other fields
  bool isNumbered = false;           // the record number is delivered

  [[nodiscard]] bool IsCopy() const {
    return valueOfCell.empty() && missingCells.empty() && !isNumbered;
  }

  /// What is delivered for a cell; a numbered field's cell only says whether it is missing.
  [[nodiscard]] double Deliver(double cell, double recordNumber) const {
    if (!valueOfCell.empty()) {
      return cell < 0.0 ? missing : valueOfCell[static_cast<std::size_t>(cell)];
    }
    for (const double userMissing : missingCells) {
      if (cell == userMissing) return missing;
    }
    if (!isNumbered) return cell;
    return cell < 0.0 ? missing : recordNumber;
  }
};

class Preparation {
 public:
  Preparation(const Requirements& requirements, ModelledData& loaded)
      : requirements(requirements), data(loaded.data), model(loaded.model) {}

  PreparedData Run() {
    PlanFields();
    WalkRecords();
    prepared.rows = std::move(data.rows);
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
    plans.resize(count);
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
    FieldPlan& plan = plans[i];
    if (field.IsCategorical() && isUncoded && field.storage == Storage::String) {
      NumberRecords(field, isExcluded);
    }
    if (field.isNumbered) {
      plan.isNumbered = true;
      if (caseField == kNoField || isUncoded)
        caseField = i;  // the one asked for, if two hold texts
    } else if (field.IsCategorical()) {
      PlanCategories(field, plan, isExcluded, isUncoded);
    }
    if (isExcluded && !field.IsCategorical()) plan.missingCells = field.userMissingCells;
    if (!plan.IsCopy()) changed.push_back(i);
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
  static void PlanCategories(Field& field, FieldPlan& plan, bool isExcluded, bool isUncoded) {
    plan.missing = isUncoded ? kMissingNumber : kMissingCode;
    std::vector<double> valueOfCode;
    std::vector<Category> remaining;
    for (Category& category : field.categories) {
      if (isExcluded && category.isUserMissing) {
        valueOfCode.push_back(plan.missing);
        continue;
      }
      category.isUserMissing = false;
      valueOfCode.push_back(isUncoded ? category.number : static_cast<double>(remaining.size()));
      remaining.push_back(std::move(category));
    }
    plan.valueOfCell.reserve(field.codeOfCell.size() + 1);
    for (const std::int32_t code : field.codeOfCell) {
      plan.valueOfCell.push_back(valueOfCode[static_cast<std::size_t>(code)]);
    }
    if (plan.valueOfCell.empty()) plan.valueOfCell.push_back(plan.missing);  // every cell missing
    field.categories = std::move(remaining);
    if (isUncoded) {
      field.categories.clear();
      field.measure = Measure::Continuous;
    }
  }

  void WalkRecords() {
    const bool keepsCases = caseField != kNoField;
    if (keepsCases) {
      prepared.caseTexts = std::move(data.columns[caseField].texts);
      prepared.caseOfRecord.reserve(data.rows.Size());
    }
    std::size_t kept = 0;
    for (std::size_t record = 0; record < data.rows.Size(); ++record) {
      double* row = data.rows.Row(record);
      if (keepsCases) {
        prepared.caseOfRecord.push_back(static_cast<std::int32_t>(row[caseField]));
      }
      for (const std::size_t i : changed) {
        row[i] = plans[i].Deliver(row[i], static_cast<double>(record + 1));
      }
      if (!IsKept(row)) continue;
      if (kept != record) std::copy_n(row, plans.size(), data.rows.Row(kept));
      ++kept;
    }
    data.rows.Truncate(kept);
  }

  bool IsKept(double* row) {
    RecordCounts& counts = prepared.counts;
    std::int64_t weight = 1;
    if (weightField != kNoField) {
      double& cell = row[weightField];
      const bool isMissing = cell == kMissingNumber;
      if (!isMissing && requirements.roundWeight) cell = std::round(cell);
      if (isMissing || !(cell >= 1.0)) {
        ++counts.badWeight;
        return false;
      }
      weight = CountOf(cell);
    }
    for (const std::size_t i : deletedListwise) {
      if (row[i] != plans[i].missing) continue;
      ++counts.dropped;
      AddTo(counts.weightedDropped, weight);
      return false;
    }
    ++counts.kept;
    AddTo(counts.weighted, weight);
    return true;
  }

  const Requirements& requirements;
  Dataset& data;
  DataModel& model;
  std::unordered_map<std::string, std::size_t> fieldOfName;
  std::vector<FieldPlan> plans;
  std::vector<std::size_t> changed;  // fields whose cells are not delivered as they stand
  std::vector<std::size_t> deletedListwise;
  std::size_t weightField = kNoField;
  std::size_t caseField = kNoField;
  PreparedData prepared;
};

}  // namespace

std::string_view PreparedData::CaseText(double recordNumber) const {
  if (!(recordNumber >= 1.0) || recordNumber > static_cast<double>(caseOfRecord.size())) return {};
  const std::int32_t text = caseOfRecord[static_cast<std::size_t>(recordNumber) - 1];
  return text < 0 ? std::string_view() : caseTexts[static_cast<std::size_t>(text)];
}

PreparedData Prepare(const Requirements& requirements, ModelledData loaded) {
  return Preparation(requirements, loaded).Run();
}

}  // namespace npar_host
