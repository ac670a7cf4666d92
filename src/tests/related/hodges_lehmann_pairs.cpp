#include "tests/related/hodges_lehmann_pairs.h"

#include <cmath>

#include "catalogue/cards/hodges_lehmann_pairs.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/interval_ranks.h"
#include "kit/statistics/signed_rank.h"
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

/// Sum of t^3 - t over the runs of tied sizes |d|. In ascending order they are the negative values,
/// the last one first, merged with the others.
double TieSumOfSizes(const WeightedValues& values) {
  NPARRank ranks;
  std::size_t above = 0;
  while (above < values.Size() && values.Value(above) < 0.0) ++above;
  std::size_t below = above;
  for (std::size_t left = values.Size(); left > 0; --left) {
    // Not-a-numbers are the last of the others, and of all.
    const bool isAboveNext =
        below == 0 || (above < values.Size() && values.Value(above) <= -values.Value(below - 1));
    const std::size_t place = isAboveNext ? above++ : --below;
    static_cast<void>(ranks.AddValue(std::abs(values.Value(place)),
                                     static_cast<double>(values.Weight(place)), 0.0));
  }
  ranks.CloseRun();
  return ranks.TieSum();
}

}  // namespace

QDStatus NPARHodgesLehmannPairs::BeginPass() {
  if (!status.IsError()) passesLeft = 1;
  static_cast<void>(settings->GetSettingValByName("confidenceLevel", confidenceLevel));
  weight = RecordWeight(*settings);
  if (!differences.ReadPair(SettingsReader(settings.get())))
    ReportStatus(QDStatus(kNotTwo), MessageKind::Error);
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

void NPARHodgesLehmannPairs::Compute() {
  // Nothing raises minus infinity.
  const bool isRaised = differences.TieCount() > 0 && std::isfinite(differences.Minimum());
  const double shift = isRaised ? 1.0 - differences.Minimum() : 0.0;
  if (shift != 0.0) values.Shift(shift);
  values.Sort();
  const SignedRankMoments moments(static_cast<double>(differences.TotalN()), TieSumOfSizes(values));
  const IntervalRanks limits(moments.mean, moments.standardError, confidenceLevel);
  const WalshAverages averages(values);
  estimate = averages.Median() - shift;
  lower = averages.Select(ToWideInteger(limits.below) + 1) - shift;
  upper = averages.Select(ToWideInteger(limits.last)) - shift;
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

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::hodges_lehmann_pairs::kCard>(
    TestConstruction& construction) {
  LookUpContinuousFields(construction, kFieldCodes, FieldCount::Two);
  return construction.Make<NPARHodgesLehmannPairs>();
}
