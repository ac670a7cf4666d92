#include "frame/field_kinds.h"

FieldsByKind SplitByKind(const QDVarList& variables, const std::vector<std::string>& fields) {
  FieldsByKind split;
  for (const std::string& name : fields) {
    const IQDVariable* const variable = variables.GetVarAt(variables.FindVariable(name));
    if (variable == nullptr) continue;
    if (variable->IsContinuous()) split.continuous.push_back(name);
    if (!variable->IsCategorical()) continue;
    split.categorical.push_back(name);
    const auto* const category = dynamic_cast<const QDCatVar*>(variable);
    const bool isOrdinal = category != nullptr && category->GetOrdinalFlag();
    (isOrdinal ? split.ordinal : split.nominal).push_back(name);
  }
  return split;
}
