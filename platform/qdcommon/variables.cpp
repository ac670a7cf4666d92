#include "foundation/variables.h"

#include <chrono>
#include <functional>
#include <limits>
#include <utility>

#include "foundation/record.h"
#include "foundation/xml.h"
#include "qdcommon/text_numbers.h"

namespace QDXML_700 {

namespace {

using QDCommon_700::QDMV;
using QDCommon_700::SpellsNumber;

/// Categories with an index by text and, where numbers mean something, one by number.
class IndexedCategories final : public QDCategoryList {
 public:
  IndexedCategories(std::vector<QDCategory> list, bool numeric) : categories(std::move(list)) {
    codeOfText.reserve(categories.size());
    if (numeric) codeOfNumber.reserve(categories.size());
    std::int32_t code = 0;
    for (const QDCategory& category : categories) {
      codeOfText.emplace(category.text, code);  // of equal ones the first stays
      if (numeric) codeOfNumber.emplace(category.number, code);
      ++code;
    }
  }

  std::int32_t Size() const override { return static_cast<std::int32_t>(categories.size()); }
  const std::string& GetText(std::int32_t code) const override { return At(code).text; }
  double GetNumber(std::int32_t code) const override { return At(code).number; }
  const std::string& GetLabel(std::int32_t code) const override { return At(code).label; }
  std::int32_t FindText(std::string_view text) const override {
    const auto found = codeOfText.find(text);
    return found == codeOfText.end() ? -1 : found->second;
  }
  std::int32_t FindNumber(double number) const override {
    const auto found = codeOfNumber.find(number);
    return found == codeOfNumber.end() ? -1 : found->second;
  }

 private:
  const QDCategory& At(std::int32_t code) const {
    static const QDCategory none{{}, std::numeric_limits<double>::quiet_NaN(), {}};
    return code >= 0 && code < Size() ? categories[static_cast<std::size_t>(code)] : none;
  }

  const std::vector<QDCategory> categories;
  // The keys look at the texts of `categories`, which never move.
  std::unordered_map<std::string_view, std::int32_t> codeOfText;
  std::unordered_map<double, std::int32_t> codeOfNumber;
};

/// Takes `count` digits from the front of the text.
bool TakeDigits(std::string_view& text, std::size_t count, int& out) {
  if (text.size() < count) return false;
  out = 0;
  for (const char digit : text.substr(0, count)) {
    if (digit < '0' || digit > '9') return false;
    out = out * 10 + (digit - '0');
  }
  text.remove_prefix(count);
  return true;
}

bool TakeCharacter(std::string_view& text, char character) {
  if (!text.starts_with(character)) return false;
  text.remove_prefix(1);
  return true;
}

/// Takes YYYY-MM-DD; days since 1970, negative before.
bool TakeDate(std::string_view& text, double& days) {
  int year = 0;
  int month = 0;
  int day = 0;
  if (!TakeDigits(text, 4, year) || !TakeCharacter(text, '-')) return false;
  if (!TakeDigits(text, 2, month) || !TakeCharacter(text, '-')) return false;
  if (!TakeDigits(text, 2, day)) return false;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return false;
  days = static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count());
  return true;
}

/// Takes HH:MM:SS, with a decimal fraction of the second if one stands there.
bool TakeTime(std::string_view& text, double& seconds) {
  int hour = 0;
  int minute = 0;
  int second = 0;
  if (!TakeDigits(text, 2, hour) || !TakeCharacter(text, ':')) return false;
  if (!TakeDigits(text, 2, minute) || !TakeCharacter(text, ':')) return false;
  if (!TakeDigits(text, 2, second)) return false;
  if (hour > 23 || minute > 59 || second > 59) return false;
  double fraction = 0.0;
  if (text.starts_with('.')) {
    std::size_t length = 1;
    while (length < text.size() && text[length] >= '0' && text[length] <= '9') ++length;
    if (length == 1 || !SpellsNumber(text.substr(0, length), fraction)) return false;
    text.remove_prefix(length);
  }
  seconds = hour * 3600.0 + minute * 60.0 + second + fraction;
  return true;
}

bool ReadDateAndTime(std::string_view text, StorageKind storage, double& number) {
  constexpr double kSecondsOfDay = 86400.0;
  double days = 0.0;
  double seconds = 0.0;
  if (storage != StorageKind::Time && !TakeDate(text, days)) return false;
  if (storage == StorageKind::Timestamp && !TakeCharacter(text, 'T') && !TakeCharacter(text, ' ')) {
    return false;
  }
  if (storage != StorageKind::Date && !TakeTime(text, seconds)) return false;
  if (!text.empty()) return false;
  number = storage == StorageKind::Date ? days : days * kSecondsOfDay + seconds;
  return true;
}

}  // namespace

QDContVar::QDContVar(std::string name, std::string label, VariableKind kind, StorageKind storage,
                     VariableRole role, std::int32_t fieldIndex)
    : name(std::move(name)),
      label(std::move(label)),
      kind(kind),
      storage(storage),
      role(role),
      fieldIndex(fieldIndex) {}

VariableKind QDContVar::GetType() const { return kind; }
const std::string& QDContVar::GetName() const { return name; }
const std::string& QDContVar::GetLabel() const { return label; }
VariableRole QDContVar::GetRole() const { return role; }
std::int32_t QDContVar::GetCategoryCount() const { return 0; }
bool QDContVar::IsContinuous() const { return kind == VariableKind::Continuous; }
bool QDContVar::IsCategorical() const {
  return kind == VariableKind::NumericCategory || kind == VariableKind::StringCategory;
}
StorageKind QDContVar::GetStorageKind() const { return storage; }
std::int32_t QDContVar::GetFieldIndex() const { return fieldIndex; }
bool QDContVar::HasLabel() const { return !label.empty(); }
bool QDContVar::IsFrequencyWeight() const { return role == VariableRole::FrequencyWeight; }
bool QDContVar::IsCaseId() const { return role == VariableRole::CaseId; }
double QDContVar::GetMissingMark() const { return QDMV::gMissingValue; }
bool QDContVar::IsMissing(double value) const { return value == QDMV::gMissingValue; }

bool QDContVar::TextToNumber(std::string_view text, double& number) const {
  switch (storage) {
    case StorageKind::String:
      return false;
    case StorageKind::Date:
    case StorageKind::Time:
    case StorageKind::Timestamp:
      return SpellsNumber(text, number) || ReadDateAndTime(text, storage, number);
    case StorageKind::Real:
    case StorageKind::Integer:
      break;
  }
  return SpellsNumber(text, number);
}

std::string QDContVar::NumberToText(double number) const { return ReplaceSep(number, "%.15g"); }

std::unique_ptr<IQDVariable> QDContVar::Clone() const { return std::make_unique<QDContVar>(*this); }
const QDCategoryList* QDContVar::GetCategories() const { return nullptr; }

QDCatVar::QDCatVar(std::string name, std::string label, VariableKind kind, StorageKind storage,
                   VariableRole role, std::int32_t fieldIndex, bool isOrdinal,
                   std::vector<QDCategory> list)
    : QDContVar(std::move(name), std::move(label), kind, storage, role, fieldIndex),
      isOrdinal(isOrdinal),
      categories(std::make_shared<const IndexedCategories>(std::move(list),
                                                           storage != StorageKind::String)) {}

bool QDCatVar::GetOrdinalFlag() const { return isOrdinal; }
std::int32_t QDCatVar::GetCategoryCount() const { return categories->Size(); }
double QDCatVar::GetMissingMark() const { return QDMV::gMissingCategory; }
bool QDCatVar::IsMissing(double value) const { return value == QDMV::gMissingCategory; }
std::unique_ptr<IQDVariable> QDCatVar::Clone() const { return std::make_unique<QDCatVar>(*this); }
const QDCategoryList* QDCatVar::GetCategories() const { return categories.get(); }

QDVarList::QDVarList() = default;
QDVarList::QDVarList(QDVarList&&) noexcept = default;
QDVarList& QDVarList::operator=(QDVarList&&) noexcept = default;
QDVarList::~QDVarList() = default;

std::int32_t QDVarList::Size() const { return static_cast<std::int32_t>(variables.size()); }

const IQDVariable* QDVarList::GetVarAt(std::int32_t index) const {
  return index >= 0 && index < Size() ? variables[static_cast<std::size_t>(index)].get() : nullptr;
}

std::int32_t QDVarList::FindVariable(std::string_view name) const {
  const auto found = indexOfName.find(name);
  return found == indexOfName.end() ? -1 : found->second;
}

std::int32_t QDVarList::GetFreqWeightVariable() const { return weightVariable; }
double QDVarList::GetUnWeightedCount() const { return counts.unweighted; }
double QDVarList::GetWeightedCount() const { return counts.weighted; }
double QDVarList::GetDroppedCount() const { return counts.dropped; }
double QDVarList::GetBadWeightCount() const { return counts.badWeight; }
double QDVarList::GetWeightedDroppedCount() const { return counts.weightedDropped; }

void QDVarList::Add(std::unique_ptr<IQDVariable> variable) {
  const std::int32_t index = Size();
  variables.push_back(std::move(variable));
  const IQDVariable& added = *variables.back();
  indexOfName.emplace(added.GetName(), index);  // of equal names the first stays
  if (weightVariable < 0 && added.IsFrequencyWeight()) weightVariable = index;
}

void QDVarList::SetCounts(const QDRecordCounts& newCounts) { counts = newCounts; }

}  // namespace QDXML_700
