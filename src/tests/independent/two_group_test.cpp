#include "tests/independent/two_group_test.h"

#include "kit/records/record_weight.h"

namespace {

constexpr std::int32_t kNoData = 220003;  // the weights of both groups sum to 0

}  // namespace

NPARTwoGroupTest::NPARTwoGroupTest(QDSettings* settings, std::int32_t codeBase, Passes passes)
    : NPARColumnTest(settings),
      codes{codeBase + 6, codeBase + 9, codeBase + 10, codeBase + 11},
      passCount(static_cast<std::int32_t>(passes)) {}

void NPARTwoGroupTest::SetSharedData(UnivariateResults* data) {
  if (data != nullptr) sharedData = data;
}

QDStatus NPARTwoGroupTest::BeginPass() {
  // A test that is born failed reads nothing: its indices stay -1.
  if (status.IsError()) return status;
  if (passIndex == 0) {
    groups.Read(*settings);
    static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  }
  passesLeft = passCount - passIndex;
  if (passIndex == 0) {
    groups.Check(*this, sharedData, codes);
    tally.Join(sharedTallies, {groups, RecordWeight(*settings).Index()});
  }
  return status;
}

QDStatus NPARTwoGroupTest::ProcessBatch(RecordBatch& batch) {
  const TwoGroupUnits& units = tally.Take(batch);
  if (passIndex == 0) {
    Take(units);
  } else {
    TakeAgain(units);
  }
  return status;
}

bool NPARTwoGroupTest::NeedsAnotherPass() {
  return !status.IsError() && passIndex == 1 && passCount == 2;
}

QDStatus NPARTwoGroupTest::EndPass() {
  if (status.IsError()) return status;
  tally.EndPass();
  if (passIndex == 0) {
    counts = {tally->Samples()[TwoGroups::First].count, tally->Samples()[TwoGroups::Second].count};
    if (TotalCount() == 0) {
      ReportStatus(QDStatus(kNoData), MessageKind::Error);
    } else if (counts[0] < 1 || counts[1] < 1) {
      ReportStatus(QDStatus(codes.unpopulated), MessageKind::Error);
    } else {
      Compute();
    }
    if (status.IsError()) return status;
  } else {
    ComputeAgain();
  }
  ++passIndex;
  passesLeft = passCount - passIndex;
  return status;
}

void NPARTwoGroupTest::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  groups.AppendRequired(positions);
}
