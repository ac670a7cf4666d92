#include "tests/related/hodges_lehmann_pairs.h"

#include <cmath>

#include "kit/signed_ranks.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "tests/related/continuous_fields.h"

namespace {

constexpr std::int32_t kNoData = 220003;  // the weights sum to 0
constexpr std::int32_t kNotTwo = 222409;  // not exactly two variables
constexpr ContinuousFieldsCodes kFieldCodes{.noVariableName = 222410,
                                            .unknownVariable = 222403,
                                            .wrongCount = kNotTwo,
                                            .notContinuous = 222404};

}  // namespace

QDStatus NPARHodgesLehmannPairs::BeginPass() {
  if (!status.IsError()) passesLeft = 1;
  static_cast<void>(settings->GetSettingValByName("confidenceLevel", confidenceLevel));
  weight = RecordWeight(*settings);
  if (!differences.ReadPair(*settings)) ReportStatus(QDStatus(kNotTwo), MessageKind::Error);
  return status;
}

QDStatus NPARHodgesLehmannPairs::ProcessRecord(const Record& record) {
  const double d = differences.Of(record);
  const std::int64_t w = weight.Truncated(record);
  differences.Count(d, w);
  if (w >= 1) values.Add(d, w);
  return status;
}

QDStatus NPARHodgesLehmannPairs::EndPass() {
  if (status.IsError()) return status;
  if (differences.TotalN() == 0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  Compute();
  passesLeft = 0;
  return status;
}

NPARHodgesLehmannPairs::RankMoments NPARHodgesLehmannPairs::ComputeRankMoments() const {
  SignedRanks ranks;
  ranks.Reserve(values.Size());
  for (std::size_t i = 0; i < values.Size(); ++i) {
    ranks.Add(values.Value(i), static_cast<double>(values.Weight(i)));
  }
  ranks.Rank();
  const auto n = static_cast<double>(differences.TotalN());
  return {(n + 1.0) * n * 0.25,
          std::sqrt((n + 1.0) * n * (2.0 * n + 1.0) / 24.0 - ranks.TieSum() / 48.0)};
}

void NPARHodgesLehmannPairs::Compute() {
  const double shift = differences.TieCount() > 0 ? 1.0 - differences.Minimum() : 0.0;
  if (shift != 0.0) values.Shift(shift);
  values.Sort();
  const RankMoments moments = ComputeRankMoments();
  const double z = QDDistFun::IdfStdNorm(1.0 - (1.0 - confidenceLevel) * 0.5);
  const double distance = z * moments.standardError;

  const WalshAverages averages(values);
  estimate = averages.Median() - shift;
  lower = averages.Select(ToWeightProduct(std::floor(moments.expected - distance)) + 1) - shift;
  upper = averages.Select(ToWeightProduct(std::ceil(moments.expected + distance))) - shift;
  values = WeightedValues();
}

void NPARHodgesLehmannPairs::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions = {differences.First(), differences.Second()};
}

XMLElement* NPARHodgesLehmannPairs::WriteResults() {
  auto algorithm =
      CreateAlgorithm("RHodgesLehmannEstimatePairs", "confidence_interval", "Related_Samples", "");
  AddCondition(*algorithm, "R_HodgesLehman_2",  // hosts read it so
               {IndexText(differences.First()), IndexText(differences.Second())});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  AddAttributeRow(*AddStructuredTable(*algorithm, "StatisticsResult"), "Estimate", estimate);
  XMLElement* interval = AddStructuredTable(*algorithm, "Asymptotic");
  AddAttributeRow(*interval, "Lower", lower);
  AddAttributeRow(*interval, "Upper", upper);
  return algorithm.release();
}

QDStatus ConstructHodgesLehmannPairsTest(NPARPlanner& planner, QDStatus& status,
                                         const QDSettings& entry) {
  TestConstruction construction(planner, entry, TestConstruction::Level::Confidence);
  LookUpContinuousFields(construction, kFieldCodes, FieldCount::Two);
  status = construction.GetStatus();
  planner.AddTest(construction.Make<NPARHodgesLehmannPairs>());
  return status;
}
