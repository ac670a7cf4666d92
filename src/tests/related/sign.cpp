#include "tests/related/sign.h"

#include <algorithm>
#include <cmath>

#include "kit/statistics/binomial_tails.h"
#include "planning/test_construction.h"
#include "report/difference_table.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kNoData = 220003;            // the weights sum to 0
constexpr std::int32_t kUnknownVariable = 220903;   // parameter: the name
constexpr std::int32_t kNoVariableName = 220912;    // no variables are named
constexpr std::int32_t kNotContinuous = 220915;     // parameter: the variable's index
constexpr std::int32_t kExactGiven = 220916;        // help: the exact p is given
constexpr std::int32_t kTooManyVariables = 220917;  // more than two
constexpr std::int32_t kNoPair = 220918;            // not two different variables

}  // namespace

QDStatus NPARSign::BeginPass() {
  if (passIndex == 0) {
    ReadSettings();
  } else if (!status.IsError()) {
    passesLeft = 1;
    differences.StartHistogram();
  }
  return status;
}

void NPARSign::ReadSettings() {
  if (!status.IsError()) passesLeft = 2;
  const bool isPair = differences.ReadPair(*settings);
  weight = RecordWeight(*settings);
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  if (!isPair || differences.First() < 0 || differences.Second() < 0 ||
      differences.First() == differences.Second()) {
    ReportStatus(QDStatus(kNoPair), MessageKind::Error);
  }
}

QDStatus NPARSign::ProcessBatch(RecordBatch& batch) {
  const double* d = differences.Of(batch);
  if (passIndex == 0) {
    weight.UseTruncated(batch,
                        [&](auto weightAt) { differences.Count(d, batch.Size(), weightAt); });
  } else {
    differences.AddToHistogram(d, batch.Size(), weight.TruncatedOf(batch));
  }
  return status;
}

QDStatus NPARSign::EndPass() {
  if (status.IsError()) return status;
  if (passIndex == 0) {
    if (differences.TotalN() == 0) {
      ReportStatus(QDStatus(kNoData), MessageKind::Error);
      return status;
    }
    passesLeft = 1;
    Compute();
  } else {
    passesLeft = 0;
    differences.EndHistogram();
  }
  ++passIndex;
  return status;
}

void NPARSign::Compute() {
  const std::int64_t n = differences.PositiveCount() + differences.NegativeCount();
  if (n == 0) {
    asymptoticSig = 1.0;
    return;
  }
  if (n >= 1 && n <= kExactLimit) {
    ReportStatus(QDStatus(kExactGiven), MessageKind::Help);
    const auto tails = TailsOfCount(differences.PositiveCount(), n, 0.5);
    if (tails) exactSig = std::min(1.0, 2.0 * std::min(tails->lower, tails->upper));
  }
  const double half = static_cast<double>(n) * 0.5;
  standardError = std::sqrt(static_cast<double>(n)) * 0.5;
  const double excess = static_cast<double>(differences.PositiveCount()) - half;
  if (excess < -0.5) {
    standardTestStatistic = (excess + 0.5) / standardError;
  } else if (excess > 0.5) {
    standardTestStatistic = (excess - 0.5) / standardError;
  }
  asymptoticSig = 2.0 * QDDistFun::SfStdNorm(std::abs(standardTestStatistic));
}

void NPARSign::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.push_back(differences.First());
  positions.push_back(differences.Second());
}

XMLElement* NPARSign::WriteResults() {
  auto algorithm =
      CreateAlgorithm("RSign", "hypothesis_test", "Related_Samples",
                      DecisionWord(status, sigLevel, exactSig.value_or(asymptoticSig)));
  AddCondition(*algorithm, "R_Sign_2",
               {IndexText(differences.First()), IndexText(differences.Second())});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  AddDifferenceTable(*algorithm, differences);
  XMLElement* result = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*result, "TotalN", differences.TotalN());
  AddAttributeRow(*result, "TestStatistic", differences.PositiveCount());
  AddAttributeRow(*result, "StandardError", standardError);
  AddAttributeRow(*result, "StandardTestStatistic", standardTestStatistic);
  AddAttributeRow(*result, "AsymptoticSig2Tailed", asymptoticSig);
  if (exactSig) AddAttributeRow(*result, "ExactSig2Tailed", *exactSig);
  return algorithm.release();
}

QDStatus ConstructSignTest(NPARPlanner& planner, QDStatus& status, const QDSettings& entry) {
  TestConstruction construction(planner, entry);
  const std::vector<std::int32_t> variables = construction.LookUpList(
      kNoVariableName, kUnknownVariable,
      [&](std::int32_t index) { construction.RequireContinuous(index, kNotContinuous); });
  if (variables.size() > 2) construction.Fail(kTooManyVariables);
  if (variables.size() < 2) construction.Fail(kNoPair);
  construction.Put("variableIndex", variables);
  if (construction.IsOK()) {
    // Hosts expect the summaries of the list's first two variables, whichever pair is tested.
    planner.RegisterSortedVariable(0);
    planner.RegisterSortedVariable(1);
  }
  status = construction.GetStatus();
  planner.AddTest(construction.Make<NPARSign>());
  return status;
}
