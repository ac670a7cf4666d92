#include "kit/groups/group_samples.h"

#include "kit/records/record_weight.h"

void GroupSamples::Read(const QDSettings& settings) {
  static_cast<void>(settings.GetSettingValByName("variableIndex", key.testVariable));
  static_cast<void>(settings.GetSettingValByName("groupVariableIndex", key.groupVariable));
  static_cast<void>(settings.GetSettingValByName("caseIdVariableIndex", key.caseIdVariable));
  key.weightVariable = RecordWeight(settings).Index();
}

void GroupSamples::Start(std::int32_t categoryCount, SharedTallies* shared) {
  key.categoryCount = categoryCount;
  tally.Join(shared, key);
}

void GroupSamples::AppendRequired(std::vector<std::int64_t>& positions) const {
  positions.push_back(key.testVariable);
  positions.push_back(key.groupVariable);
}
