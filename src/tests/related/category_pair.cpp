#include "tests/related/category_pair.h"

#include <string>

#include "report/elements.h"

namespace {

constexpr const char* kFirstKey = "variablePairFirstIndex";
constexpr const char* kSecondKey = "variablePairSecondIndex";

}  // namespace

CategoryPair::CategoryPair(const SettingsReader& settings)
    : first(settings.Index(kFirstKey)), second(settings.Index(kSecondKey)) {}

Condition CategoryPair::ConditionOf(const char* key) const {
  return {key, {IndexText(first), IndexText(second)}};
}

CategoryPair LookUpCategoryPair(TestConstruction& construction, const CategoryPairCodes& codes) {
  CategoryPair pair;
  std::vector<std::string> names;
  if (!construction.Read("variableName", names)) {
    construction.Fail(codes.noVariableName);
    return pair;
  }
  if (names.size() != 2) {
    construction.Fail(codes.notTwoVariables);
    return pair;
  }
  const auto find = [&](const std::string& name) {
    const std::int32_t index = construction.Planner().GetVariables().FindVariable(name);
    if (index < 0) {
      construction.FailOver(codes.unfitVariable, name);
    } else if (!TestConstruction::IsCategorical(construction.KindOf(index))) {
      construction.FailOver(codes.unfitVariable);
    }
    return index;
  };
  pair.first = find(names[0]);
  pair.second = find(names[1]);
  construction.Put(kFirstKey, pair.first);
  construction.Put(kSecondKey, pair.second);
  return pair;
}
