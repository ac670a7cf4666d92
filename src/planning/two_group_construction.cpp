#include "planning/two_group_construction.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "planning/numeric_values.h"

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

/// Codes of the entry's values of a group; empty where it has none.
std::vector<double> GivenCodes(const TestConstruction& construction, std::string_view key,
                               const IQDVariable& group) {
  const QDCategoryList& categories = *group.GetCategories();
  std::vector<double> codes;
  if (group.GetType() == VariableKind::NumericCategory) {
    for (const double value : ReadNumericValues(construction, key, group)) {
      codes.push_back(categories.FindNumber(value));
    }
    return codes;
  }
  std::vector<std::string> texts;
  static_cast<void>(construction.Read(key, texts));
  for (const std::string& text : texts) codes.push_back(categories.FindText(text));
  return codes;
}

void PutGivenGroups(TestConstruction& construction, const IQDVariable& group,
                    std::int32_t emptyCode) {
  for (const char* key : {"group1List", "group2List"}) {
    const std::vector<double> codes = GivenCodes(construction, key, group);
    if (codes.empty()) {
      construction.Fail(emptyCode);
      return;
    }
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
    } else {
      PutGivenGroups(construction, *construction.Planner().GetVariables().GetVarAt(found.group),
                     codes.emptyList);
    }
  }
  construction.Put("userSpecifyGroupList", areGiven);
  return found;
}
