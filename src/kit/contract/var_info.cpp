#include "kit/contract/var_info.h"

#include <unordered_set>

namespace {

const IQDVariable* At(const QDVarList* variables, std::int32_t index) {
  return variables == nullptr ? nullptr : variables->GetVarAt(index);
}

VariableKind KindAt(const QDVarList* variables, std::int32_t index) {
  const IQDVariable* variable = At(variables, index);
  return variable == nullptr ? VariableKind::None : variable->GetType();
}

const QDCategoryList* CategoriesAt(const QDVarList* variables, std::int32_t index) {
  const IQDVariable* variable = At(variables, index);
  return variable == nullptr ? nullptr : variable->GetCategories();
}

}  // namespace

std::string NPARVarInfo::GetName(std::int32_t index) const {
  const IQDVariable* variable = At(variables, index);
  return variable == nullptr ? std::string() : variable->GetName();
}

std::string NPARVarInfo::GetLabel(std::int32_t index) const {
  const IQDVariable* variable = At(variables, index);
  return variable == nullptr ? std::string() : variable->GetLabel();
}

bool NPARVarInfo::IsOrdinal(std::int32_t index) const {
  const auto* variable = dynamic_cast<const QDCatVar*>(At(variables, index));
  return variable != nullptr && variable->GetOrdinalFlag();
}

bool NPARVarInfo::SameType(std::int32_t a, std::int32_t b) const {
  return KindAt(variables, a) == KindAt(variables, b);
}

std::string NPARVarInfo::GetValueText(std::int32_t index, double value) const {
  switch (KindAt(variables, index)) {
    case VariableKind::NumericCategory:
      return GetNumericValueText(index, value);
    case VariableKind::StringCategory:
      return GetStringValueText(index, value);
    default:
      return {};
  }
}

std::string NPARVarInfo::GetNumericValueText(std::int32_t index, double value) const {
  const QDCategoryList* categories = CategoriesAt(variables, index);
  return categories == nullptr ? std::string() : categories->GetText(TruncateToInt32(value));
}

std::string NPARVarInfo::GetStringValueText(std::int32_t index, double value) const {
  return EscapeListText(GetNumericValueText(index, value));
}

std::string EscapeListText(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char character : text) {
    if (character == ';' || character == '\\') escaped += '\\';
    escaped += character;
  }
  return escaped;
}

std::vector<double> OtherCategories(const QDCategoryList* categories,
                                    const std::vector<double>& excluded) {
  const std::unordered_set<double> left(excluded.begin(), excluded.end());
  std::vector<double> others;
  const std::int32_t size = categories == nullptr ? 0 : categories->Size();
  for (std::int32_t code = 0; code < size; ++code) {
    if (!left.contains(code)) others.push_back(code);
  }
  return others;
}

void NPARVarInfo::ListOtherStringCategories(std::int32_t index, const std::vector<double>& excluded,
                                            std::vector<std::string>& names,
                                            std::vector<double>& positions) const {
  const QDCategoryList* categories = CategoriesAt(variables, index);
  positions = OtherCategories(categories, excluded);
  names.clear();
  for (const double code : positions) names.push_back(categories->GetText(TruncateToInt32(code)));
}

void NPARVarInfo::ListOtherNumericCategories(std::int32_t index,
                                             const std::vector<double>& excluded,
                                             std::vector<double>& values,
                                             std::vector<double>& positions) const {
  const QDCategoryList* categories = CategoriesAt(variables, index);
  positions = OtherCategories(categories, excluded);
  values.clear();
  for (const double code : positions)
    values.push_back(categories->GetNumber(TruncateToInt32(code)));
}
