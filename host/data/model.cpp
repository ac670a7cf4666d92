#include "host/data/model.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/iso_time.h"
#include "host/data/number.h"

namespace npar_host {
namespace {

bool IsMoment(Storage storage) {
  return storage == Storage::Date || storage == Storage::Time || storage == Storage::Timestamp;
}

/// The number that a listed value spells. Moments may also stand as the numbers that they become.
bool ValueNumber(Storage storage, std::string_view text, double& number) {
  switch (storage) {
    case Storage::Date:
      return ParseDate(text, number) || ParseNumber(text, number);
    case Storage::Time:
      return ParseTime(text, number) || ParseNumber(text, number);
    case Storage::Timestamp:
      return ParseTimestamp(text, number) || ParseNumber(text, number);
    default:
      return ParseNumber(text, number);
  }
}

/// Moments reach the component as numbers; their label keeps them readable.
std::string MomentLabel(Storage storage, double number) {
  switch (storage) {
    case Storage::Date:
      return DateText(number);
    case Storage::Time:
      return TimeText(number);
    case Storage::Timestamp:
      return TimestampText(number);
    default:
      return {};
  }
}

[[noreturn]] void FailValue(const ValueSpec& value, const std::string& message) {
  throw InputError(value.location + ": value " + Quoted(value.value) + " " + message);
}

/// The categories of a field whose cells are indices into a pool, and the code of each: the values
/// listed, then the others in ascending order. `cellOf` finds the index of a listed value,
/// `categoryOf` describes the category of an index; a listed one keeps its own label.
template <class Pool, class CellOf, class CategoryOf>
void ListCategories(Field& field, const FieldSpec& spec, Pool& pool, const CellOf& cellOf,
                    const CategoryOf& categoryOf) {
  constexpr std::int32_t kNoCode = -1;
  std::vector<std::int32_t>& codes = field.codeOfCell;
  const auto add = [&](std::uint32_t cell) -> Category& {
    codes[cell] = static_cast<std::int32_t>(field.categories.size());
    return field.categories.emplace_back(categoryOf(cell));
  };
  for (const ValueSpec& value : spec.values) {
    const std::uint32_t cell = cellOf(value);
    codes.resize(pool.Size(), kNoCode);
    if (codes[cell] != kNoCode) FailValue(value, "stands twice; list it once");
    Category& category = add(cell);
    if (!IsMoment(field.storage)) category.text = value.value;
    if (!value.label.empty()) category.label = value.label;
    category.isUserMissing = value.isUserMissing;
  }
  codes.resize(pool.Size(), kNoCode);
  std::vector<std::uint32_t> others;
  for (std::uint32_t cell = 0; cell < pool.Size(); ++cell) {
    if (codes[cell] == kNoCode) others.push_back(cell);
  }
  std::sort(others.begin(), others.end(),
            [&](std::uint32_t a, std::uint32_t b) { return pool[a] < pool[b]; });
  for (const std::uint32_t cell : others) add(cell);
}

void ListTexts(Field& field, const FieldSpec& spec, TextPool& pool) {
  const auto cellOf = [&](const ValueSpec& value) {
    bool isNew = false;
    return pool.Add(value.value, isNew);
  };
  const auto categoryOf = [&](std::uint32_t cell) {
    return Category{std::string(pool[cell]), 0.0, {}, false};
  };
  ListCategories(field, spec, pool, cellOf, categoryOf);
}

void ListNumbers(Field& field, const FieldSpec& spec, NumberPool& pool) {
  const auto cellOf = [&](const ValueSpec& value) {
    double number = 0.0;
    if (!ValueNumber(field.storage, value.value, number) || !std::isfinite(number)) {
      FailValue(value,
                "is no number, but the field's values are; correct it, or give the field the "
                "storage \"string\"");
    }
    return pool.Add(number);
  };
  const auto categoryOf = [&](std::uint32_t cell) {
    const double number = pool[cell];
    return Category{NumberText(number), number, MomentLabel(field.storage, number), false};
  };
  ListCategories(field, spec, pool, cellOf, categoryOf);
}

/// What stands in cells of a field without categories where a value is user-missing.
void ListUserMissing(Field& field, const FieldSpec& spec, const Column& column) {
  for (const ValueSpec& value : spec.values) {
    if (!value.isUserMissing) continue;
    double cell = 0.0;
    if (column.isText) {
      const std::uint32_t code = column.texts.Find(value.value);
      if (code == CodeTable::kNone) continue;  // no cell holds it
      cell = code;
    } else if (!ValueNumber(field.storage, value.value, cell)) {
      if (spec.measure == Measure::Infer) continue;  // the data could have held texts
      FailValue(value, "is no number, but the field's values are; correct it");
    }
    field.userMissingCells.push_back(cell);
  }
}

/// The field, but for its categories.
Field BasicField(const FieldSpec& spec, const Column& column) {
  Field field;
  field.name = column.name;
  field.label = spec.label;
  field.role = spec.role;
  field.measure = spec.measure;
  if (field.measure == Measure::Infer) {
    field.measure = column.isText ? Measure::Nominal : Measure::Continuous;
  }
  const bool isRefused = field.measure == Measure::Continuous && column.isText &&
                         spec.storage == Storage::Infer && spec.role == Role::Input;
  if (isRefused) {
    throw InputError("field " + Quoted(column.name) +
                         " is to be continuous, but its cells are no numbers; --scores gives "
                         "categories numbers",
                     column.name);
  }
  field.storage = spec.storage;
  if (field.storage == Storage::Infer) {
    field.storage = column.isText ? Storage::String : Storage::Real;
  }
  if (field.role == Role::CaseId || field.role == Role::FrequencyWeight) {
    field.measure = Measure::Continuous;
    field.isNumbered = column.isText;
    if (column.isText) field.storage = Storage::Integer;
  }
  return field;
}

/// Numbers that are categories become indices into a pool.
NumberPool PoolNumbers(Column& column) {
  constexpr std::size_t kPiece = std::size_t{1} << 17;  // cells
  NumberPool pool;
  std::vector<std::int32_t> codes;
  column.numbers.ForEach([&](double number) {
    const bool isMissing = number == kMissingNumber || !std::isfinite(number);
    codes.push_back(isMissing ? kMissingCode : static_cast<std::int32_t>(pool.Add(number)));
    if (codes.size() < kPiece) return;
    column.codes.Append(codes);
    codes.clear();
  });
  column.codes.Append(codes);
  column.numbers = {};
  return pool;
}

}  // namespace

std::vector<const FieldSpec*> MatchSpecs(const std::vector<std::string>& names,
                                         const std::vector<FieldSpec>& specs) {
  static const FieldSpec nothingSaid;
  std::unordered_map<std::string_view, const FieldSpec*> specOfName;
  for (const FieldSpec& spec : specs) specOfName[spec.name] = &spec;
  std::vector<const FieldSpec*> matching;
  for (const std::string& name : names) {
    const auto found = specOfName.find(name);
    matching.push_back(found == specOfName.end() ? &nothingSaid : found->second);
  }
  return matching;
}

ModelledData FindModel(Dataset cells, const std::vector<FieldSpec>& specs) {
  ModelledData loaded{std::move(cells), {}};
  Dataset& data = loaded.data;
  const std::vector<const FieldSpec*> specOfColumn = MatchSpecs(data.Names(), specs);
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    loaded.model.fields.push_back(BasicField(*specOfColumn[i], data.columns[i]));
  }
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    Field& field = loaded.model.fields[i];
    const FieldSpec& spec = *specOfColumn[i];
    if (!field.IsCategorical()) {
      ListUserMissing(field, spec, data.columns[i]);
    } else if (data.columns[i].isText) {
      ListTexts(field, spec, data.columns[i].texts);
    } else {
      NumberPool pool = PoolNumbers(data.columns[i]);
      ListNumbers(field, spec, pool);
    }
  }
  return loaded;
}

}  // namespace npar_host
