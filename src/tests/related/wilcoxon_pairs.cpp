#include "tests/related/wilcoxon_pairs.h"

#include <cmath>

#include "catalogue/cards/wilcoxon_pairs.h"
#include "planning/test_construction.h"
#include "report/difference_table.h"
#include "report/elements.h"
#include "report/messages.h"
#include "tests/related/continuous_fields.h"

namespace {

constexpr std::int32_t kNoData = 220003;  // the weights sum to 0
constexpr std::int32_t kNotTwo = 221009;  // not exactly two variables
constexpr ContinuousFieldsCodes kFieldCodes{.noVariableName = 221010,
                                            .unknownVariable = 221003,
                                            .wrongCount = kNotTwo,
                                            .notContinuous = 221004};

}  // namespace

QDStatus NPARWilcoxonPairs::BeginPass() {
  if (passIndex == 0) {
    if (!status.IsError()) passesLeft = 2;
    static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
    weight = RecordWeight(*settings);
    if (!differences.ReadPair(SettingsReader(settings.get())))
      ReportStatus(QDStatus(kNotTwo), MessageKind::Error);
  } else if (!status.IsError()) {
    differences.StartHistogram();
  }
  return status;
}

QDStatus NPARWilcoxonPairs::ProcessBatch(RecordBatch& batch) {
  const double* d = differences.Of(batch);
  const std::int32_t* weights = weight.TruncatedOf(batch);
  if (passIndex > 0) {
    differences.AddToHistogram(d, batch.Size(), weights);
    return status;
  }
  weight.UseTruncated(batch, [&](auto weightAt) { differences.Count(d, batch.Size(), weightAt); });
  if (weights == nullptr) {
    ranks.AddUnits(d, batch.Size());
  } else {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      if (d[i] > 0.0 || d[i] < 0.0) ranks.Add(d[i], static_cast<double>(weights[i]));
    }
  }
  return status;
}

QDStatus NPARWilcoxonPairs::EndPass() {
  if (status.IsError()) return status;
  if (differences.TotalN() == 0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  if (passIndex == 0) {
    Compute();
  } else {
    differences.EndHistogram();
  }
  ++passIndex;
  --passesLeft;
  return status;
}

void NPARWilcoxonPairs::Compute() {
  ranks.Rank();
  positiveRankSum = ranks.PositiveRankSum();
  const auto n = static_cast<double>(differences.PositiveCount() + differences.NegativeCount());
  figures = WilcoxonSignedRank(positiveRankSum, n, ranks.TieSum());
}

void NPARWilcoxonPairs::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions = {differences.First(), differences.Second()};
}

XMLElement* NPARWilcoxonPairs::WriteResults() {
  auto algorithm = CreateAlgorithm("RWilcoxonSignedRanks", "hypothesis_test", "Related_Samples",
                                   DecisionWord(status, sigLevel, figures.sig));
  AddCondition(*algorithm, "R_WilcoxonSignedRanks_2",
               {IntegerText(differences.First()), IntegerText(differences.Second())});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  AddDifferenceTable(*algorithm, differences);
  XMLElement* result = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*result, "TotalN", differences.TotalN());
  AddAttributeRow(*result, "TestStatistic", positiveRankSum);
  AddAttributeRow(*result, "StandardError", figures.standardError);
  AddAttributeRow(*result, "StandardTestStatistic", figures.z);
  AddAttributeRow(*result, "AsymptoticSig2Tailed", figures.sig);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::wilcoxon_pairs::kCard>(
    TestConstruction& construction) {
  LookUpContinuousFields(construction, kFieldCodes, FieldCount::Two);
  return construction.Make<NPARWilcoxonPairs>();
}
