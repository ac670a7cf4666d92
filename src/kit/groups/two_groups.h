#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "catalogue/shared_codes.h"
#include "foundation/names.h"
#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/summaries/univariate.h"

/// The two groups of records that a test compares: lists of category codes of the group variable,
/// given by the user or one category each.
class TwoGroups {
 public:
  enum Group : std::int32_t { First = 0, Second = 1, Neither = 2 };

  /// Reads the variables, "userSpecifyGroupList" and, with that flag, "group1List" and
  /// "group2List", else "groupVariableValue1" and "groupVariableValue2". A code in
  /// both lists belongs to the first group.
  void Read(const SettingsReader& settings);
  /// Reports the first finding to the test. A list may name categories that have no data, provided
  /// that one of its categories has some.
  void Check(NPARTest& test, const UnivariateResults* summaries,
             const catalogue::TwoGroupCodes& codes) const;

  /// Of the tally with their histograms.
  [[nodiscard]] const GroupTally::Key& TallyKey() const noexcept { return key; }
  [[nodiscard]] std::int32_t TestVariable() const noexcept { return key.testVariable; }
  [[nodiscard]] std::int32_t GroupVariable() const noexcept { return key.groupVariable; }
  [[nodiscard]] bool AreUserSpecified() const noexcept { return areUserSpecified; }
  [[nodiscard]] const std::vector<double>& CodesOf(Group group) const {
    return lists[static_cast<std::size_t>(group)];
  }

 private:
  void BuildGroupOfCode();

  GroupTally::Key key;
  bool areUserSpecified = false;
  std::array<std::vector<double>, 2> lists;
};
