#include "kit/groups/two_groups.h"

#include <algorithm>
#include <map>
#include <unordered_set>
#include <utility>

namespace {

bool IsAnyIn(const std::vector<double>& codes, const std::vector<double>& others) {
  const std::unordered_set<double> known(others.begin(), others.end());
  return std::any_of(codes.begin(), codes.end(),
                     [&known](double code) { return known.contains(code); });
}

bool HasData(const std::vector<double>& codes,
             const std::map<std::int32_t, std::int64_t>& frequencies) {
  return std::any_of(codes.begin(), codes.end(), [&frequencies](double code) {
    const auto found = frequencies.find(TruncateToInt32(code));
    return found != frequencies.end() && found->second >= 1;
  });
}

}  // namespace

void TwoGroups::Read(const SettingsReader& settings) {
  using Codes = std::vector<double>;
  key.ReadVariables(settings);
  areUserSpecified = settings.Flag("userSpecifyGroupList");
  if (areUserSpecified) {
    lists = {settings.List<double>("group1List"), settings.List<double>("group2List")};
  } else {
    lists = {Codes{settings.Get("groupVariableValue1", -1.0)},
             Codes{settings.Get("groupVariableValue2", -1.0)}};
  }
  BuildGroupOfCode();
}

void TwoGroups::BuildGroupOfCode() {
  std::vector<std::int32_t> groupOfCode;
  for (const Group group : {Second, First}) {  // the first group wins a code in both lists
    for (const double value : CodesOf(group)) {
      const std::int32_t code = TruncateToInt32(value);
      if (code < 0 || static_cast<double>(code) != value) continue;
      const auto place = static_cast<std::size_t>(code);
      if (place >= groupOfCode.size()) groupOfCode.resize(place + 1, Neither);
      groupOfCode[place] = group;
    }
  }
  key.groupCount = 2;
  key.groupOfCode = std::move(groupOfCode);
  key.shown = GroupTally::Shown::Histograms;
}

void TwoGroups::Check(NPARTest& test, const UnivariateResults* summaries,
                      const catalogue::TwoGroupCodes& codes) const {
  const auto finding = [&]() -> std::int32_t {
    if (summaries == nullptr) return codes.noSummaries;
    if (!areUserSpecified) {
      return summaries->GetCategoryCount(key.groupVariable) == 2 ? 0 : codes.notTwoCategories;
    }
    if (lists[First].empty() || lists[Second].empty()) return codes.groupWithoutData;
    if (IsAnyIn(lists[Second], lists[First])) return codes.inBothGroups;
    std::map<std::int32_t, std::int64_t> frequencies;
    static_cast<void>(summaries->GetFrequencies(key.groupVariable, frequencies));
    const bool haveData = HasData(lists[First], frequencies) && HasData(lists[Second], frequencies);
    return haveData ? 0 : codes.groupWithoutData;
  }();
  if (finding != 0) test.ReportStatus(QDStatus(finding), MessageKind::Error);
}
