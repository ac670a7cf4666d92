#include "report/two_group_tables.h"

#include <string>

#include "report/elements.h"

Condition TwoGroupCondition(std::string_view testName, const TwoGroups& groups, bool withMissing) {
  std::string key = groups.AreUserSpecified() ? "CategoryListsAreSpecified_I_"
                                              : "DefaultAllDistinctValuesUsed_I_";
  key.append(testName).append("_2");
  const auto text = withMissing ? IndexText : [](std::int32_t index) { return IntegerText(index); };
  return {std::move(key), {text(groups.TestVariable()), text(groups.GroupVariable())}};
}

void AddTwoGroupTables(XMLElement& algorithm, const TwoGroups& groups, const GroupTally& tally,
                       const TwoGroupFigures& first, const TwoGroupFigures& second) {
  for (const TwoGroups::Group group : {TwoGroups::First, TwoGroups::Second}) {
    const TwoGroupFigures& figures = group == TwoGroups::First ? first : second;
    XMLElement* table = AddStructuredTable(algorithm, "Group" + std::to_string(group));
    AddAttributeRow(*table, "GroupIndex", JoinNumbers(groups.CodesOf(group)));
    AddAttributeRow(*table, "N", figures.count);
    if (figures.meanRank) AddAttributeRow(*table, "MeanOfRank", *figures.meanRank);
    AddIntervalTable(*table, tally.BinsOf(group));
  }
}
