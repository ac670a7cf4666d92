#include "planning/two_group_construction.h"

#include <string>
#include <utility>

namespace {

/// Codes of the two default groups.
std::pair<double, double> OrderDefaultGroups(TestConstruction& construction, std::int32_t group) {
  const NPARVarInfo& info = construction.Planner().GetVarInfo();
  bool isSwapped = false;
  if (!info.IsOrdinal(group)) {
    if (construction.KindOf(group) == VariableKind::NumericCategory) {
      const QDCategoryList* categories = construction.CategoriesOf(group);
      isSwapped = categories->GetNumber(0) > categories->GetNumber(1);
    } else {
      isSwapped = info.GetStringValueText(group, 0.0) > info.GetStringValueText(group, 1.0);
    }
  }
  return isSwapped ? std::pair{1.0, 0.0} : std::pair{0.0, 1.0};
}

double CodeOf(const QDCategoryList& categories, double value) {
  return categories.FindNumber(value);
}
double CodeOf(const QDCategoryList& categories, const std::string& value) {
  return categories.FindText(value);
}

template <typename Value>
void PutGivenGroups(TestConstruction& construction, const QDCategoryList& categories,
                    std::int32_t emptyCode) {
  for (const std::string key : {"group1List", "group2List"}) {
    std::vector<Value> values;
    if (!construction.Read(key, values) || values.empty()) {
      construction.Fail(emptyCode);
      return;
    }
    std::vector<double> codes;
    codes.reserve(values.size());
    for (const Value& value : values) codes.push_back(CodeOf(categories, value));
    construction.Put(key, codes);
  }
}

}  // namespace

TestConstruction::TestAndGroup ResolveTwoGroups(TestConstruction& construction,
                                                const TwoGroupEntryCodes& codes) {
  const TestConstruction::TestAndGroup found = construction.LookUpTestAndGroup(codes.variables);
  construction.PutTestAndGroup(found);
  bool areGiven = false;
  if (construction.IsOK()) {
    areGiven = construction.ReadFlag("userSpecifyGroupList");
    const QDCategoryList& categories = *construction.CategoriesOf(found.group);
    if (!areGiven) {
      if (codes.notTwoCategories != 0 && categories.Size() != 2) {
        construction.Fail(codes.notTwoCategories);
      }
      const auto [first, second] = OrderDefaultGroups(construction, found.group);
      construction.Put("groupVariableValue1", first);
      construction.Put("groupVariableValue2", second);
    } else if (construction.KindOf(found.group) == VariableKind::NumericCategory) {
      PutGivenGroups<double>(construction, categories, codes.emptyList);
    } else {
      PutGivenGroups<std::string>(construction, categories, codes.emptyList);
    }
  }
  construction.Put("userSpecifyGroupList", areGiven);
  return found;
}
