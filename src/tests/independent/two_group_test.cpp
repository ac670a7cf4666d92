#include "tests/independent/two_group_test.h"

#include "catalogue/run.h"

NPARTwoGroupTest::NPARTwoGroupTest(QDSettings* settings, const catalogue::TwoGroupCodes& codes,
                                   Passes passes)
    : NPARTest(settings), codes(codes), passCount(static_cast<std::int32_t>(passes)) {}

void NPARTwoGroupTest::Prepare(const SettingsReader& settings) {
  // A test that is born failed reads nothing: its indices stay -1.
  if (HasFailed()) return;
  ExpectPasses(passCount);
  groups.Read(settings);
  Require({groups.TestVariable(), groups.GroupVariable()});
  groups.Check(*this, sharedData, codes);
  tally = Share<GroupTally>(groups.TallyKey());
}

void NPARTwoGroupTest::Compute() {
  counts = {tally->CountOf(TwoGroups::First), tally->CountOf(TwoGroups::Second)};
  if (TotalCount() == 0) {
    Fail(catalogue::run::kNoData);
  } else if (counts[0] < 1 || counts[1] < 1) {
    Fail(codes.groupWithoutData);
  } else {
    ComputeFigures();
  }
}
