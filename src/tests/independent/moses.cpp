#include "tests/independent/moses.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/moses.h"
#include "planning/two_group_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "report/two_group_tables.h"

// The tail of the span. The i-th term of p(h) is the probability that i experimental units stand
// before the r-th of the control units, r = nc - 2h - 1, in a random order of all. Those are at
// most g where the first g + r units hold at most g experimental ones, which is a hypergeometric
// probability: no sum over the units, of which weights make billions.

namespace {

constexpr std::int32_t kBadOutliers = 220516;  // absent, negative, or no control unit is left

}  // namespace

double MosesSpanTail(std::int64_t control, std::int64_t experimental, std::int64_t trimmed,
                     std::int64_t span) {
  const std::int64_t kept = control - 2 * trimmed;
  const auto between = static_cast<double>(std::clamp<std::int64_t>(span - kept, 0, experimental));
  std::int32_t error = 0;
  return QDDistFun::CDFHyper(between, between + static_cast<double>(kept - 1),
                             static_cast<double>(experimental),
                             static_cast<double>(control + experimental), error);
}

void ControlRanks::Add(const TwoGroupUnits& records) noexcept {
  for (std::size_t i = PassOver(records); i < records.count; ++i) {
    const double value = records.values[i];
    if (!(std::abs(value - runValue) < NPARRank::kTieTolerance)) {
      CloseRun();
      ranksBelow += runWeight;
      runWeight = 0;
      runValue = value;
    }
    runWeight += records.Weight(i);
    if (records.groups[i] == TwoGroups::First) controls += records.Weight(i);
    while (found < kCount && controls >= units[found]) ++found;
  }
}

std::size_t ControlRanks::PassOver(const TwoGroupUnits& records) noexcept {
  const bool isAnyHere =
      ranked < found ||
      (found < kCount && controls + records.sums[TwoGroups::First] >= units[found]);
  if (isAnyHere || records.weights != nullptr) return 0;
  // A gap of the tolerance parts two runs wherever the lower one starts.
  std::size_t start = records.count;
  do {
    if (start < 2) return 0;
    --start;
  } while (!(records.values[start] - records.values[start - 1] >= NPARRank::kTieTolerance));
  controls += std::count(records.groups, records.groups + start, TwoGroups::First);
  ranksBelow += runWeight + static_cast<std::int64_t>(start);
  runWeight = 0;
  runValue = records.values[start];
  return start;
}

void ControlRanks::CloseRun() noexcept {
  for (; ranked < found; ++ranked) ranks[ranked] = NPARRank::MidRank(ranksBelow, runWeight);
}

NPARMoses::NPARMoses(QDSettings* settings)
    : NPARTwoGroupTest(settings, kCodeBase, Passes::WithHistograms) {}

QDStatus NPARMoses::BeginPass() {
  std::int32_t given = 0;
  if (settings->GetSettingValByName("NumberOfOutliers", given)) givenOutliers = given;
  return NPARTwoGroupTest::BeginPass();
}

void NPARMoses::Take(const TwoGroupUnits& records) { records.AddTo(ranks); }

void NPARMoses::Compute() {
  ranks.CloseRun();
  for (const TwoGroups::Group group : {TwoGroups::First, TwoGroups::Second}) {
    meanRanks[group] = ranks.GroupEntry(group).rankSum / static_cast<double>(counts[group]);
  }
  const std::int64_t control = counts[TwoGroups::First];
  outliers = givenOutliers ? *givenOutliers : std::max<std::int64_t>(1, control / 20);
  if (control - 2 * outliers < 1) {
    ReportStatus(QDStatus(kBadOutliers), MessageKind::Error);
    return;
  }
  ends = ControlRanks({1, outliers + 1, control - outliers, control});
}

void NPARMoses::TakeAgain(const TwoGroupUnits& records) { ends.Add(records); }

void NPARMoses::ComputeAgain() {
  ends.CloseRun();
  observed = SpanOf(0, ends.Of(0), ends.Of(3));
  trimmed = SpanOf(outliers, ends.Of(1), ends.Of(2));
}

NPARMoses::Span NPARMoses::SpanOf(std::int64_t trimmedUnits, double first, double last) const {
  const std::int64_t length = TruncateToInt64(std::floor(last - first + 1.0 + 0.5));
  return {length,
          MosesSpanTail(counts[TwoGroups::First], counts[TwoGroups::Second], trimmedUnits, length)};
}

XMLElement* NPARMoses::WriteResults() {
  auto algorithm = CreateAlgorithm("IMoses", "hypothesis_test", "Independent_Samples",
                                   DecisionWord(status, sigLevel, trimmed.sig));
  AddTwoGroupCondition(*algorithm, "Moses", groups);
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  AddTwoGroupTables(*algorithm, groups, tally->Histograms(), {counts[0], meanRanks[0]},
                    {counts[1], meanRanks[1]});
  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", TotalCount());
  AddAttributeRow(*statistics, "NumberOfOutliers", outliers);
  AddAttributeRow(*statistics, "ObservedControlSpan", observed.length);
  AddAttributeRow(*statistics, "ExactSig1TailedObserved", observed.sig);
  AddAttributeRow(*statistics, "TestStatistic", trimmed.length);
  AddAttributeRow(*statistics, "ExactSig1Tailed", trimmed.sig);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::moses::kCard>(TestConstruction& construction) {
  const auto variables =
      ResolveTwoGroups(construction, TwoGroupEntryCodesFrom(NPARMoses::kCodeBase));
  if (construction.ReadFlag("userSpecifyNumberOfOutliers")) {
    std::int32_t outliers = -1;
    static_cast<void>(construction.Read("NumberOfOutliers", outliers));
    if (outliers < 0) construction.Fail(kBadOutliers);
    construction.Put("NumberOfOutliers", outliers);
  }
  return AddTwoGroupTest<NPARMoses>(construction, variables);
}
