#include "tests/independent/ks_two_sample.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "catalogue/cards/ks_two_sample.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "planning/two_group_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "report/two_group_tables.h"

namespace {

constexpr std::int32_t kUnreadable = 222001;          // a setting, or an empty list of categories
constexpr std::int32_t kUnknownVariable = 222003;     // no name, or an unknown one: the parameter
constexpr std::int32_t kExponentFailed = 222005;      // in the limiting distribution
constexpr std::int32_t kNotTwoCategories = 222009;    // default groups without exactly two
constexpr std::int32_t kEmptyGroup = 222010;          // a group without weight
constexpr std::int32_t kLastOfNeitherGroup = 222011;  // warning
constexpr std::int32_t kNotContinuous = 222012;       // the test field; parameter: its index
constexpr std::int32_t kNotCategorical = 222013;      // the group field; parameter: its index

/// Far above what rounding does to a difference, so that none that is an extreme is passed over.
constexpr double kRoundingMargin = 1e-12;

constexpr TwoGroupEntryCodes kEntryCodes{
    {kUnknownVariable, kUnknownVariable, kUnknownVariable, kNotContinuous, kNotCategorical},
    kUnreadable,
    kNotTwoCategories};

template <typename Value>
bool IsReadable(const QDSettings& settings, const std::string& key) {
  Value value{};
  return settings.GetSettingValByName(key, value);
}

bool AreReadable(const QDSettings& settings, bool withLists) {
  using Codes = std::vector<double>;
  return IsReadable<std::int32_t>(settings, "variableIndex") &&
         IsReadable<std::int32_t>(settings, "groupVariableIndex") &&
         IsReadable<double>(settings, "sigLevel") &&
         (withLists ? IsReadable<Codes>(settings, "group1List") &&
                          IsReadable<Codes>(settings, "group2List")
                    : IsReadable<double>(settings, "groupVariableValue1") &&
                          IsReadable<double>(settings, "groupVariableValue2"));
}

}  // namespace

void NPARKSmirnowTwoSample::ReadSettings() {
  groups.Read(*settings);
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  if (!AreReadable(*settings, groups.AreUserSpecified())) {
    ReportStatus(QDStatus(kUnreadable), MessageKind::Error);
  }
}

QDStatus NPARKSmirnowTwoSample::BeginPass() {
  if (passNumber == 0) ReadSettings();
  if (status.IsError()) return status;
  passesLeft = 2 - passNumber;
  if (passNumber == 0) {
    tally.Join(sharedTallies, {groups, RecordWeight(*settings).Index()});
  }
  return status;
}

QDStatus NPARKSmirnowTwoSample::ProcessBatch(RecordBatch& batch) {
  const TwoGroupUnits& units = tally.Take(batch);
  if (units.count > 0 && passNumber == 1) TakeDifferences(units);
  return status;
}

void NPARKSmirnowTwoSample::TakeDifferences(const TwoGroupUnits& units) {
  if (IsInside(units.sums)) {
    samples[0].cumulative += units.sums[0];
    samples[1].cumulative += units.sums[1];
    previousValue = units.values[units.count - 1];
    previousGroup = units.groups[units.count - 1];
    return;
  }
  for (std::size_t i = 0; i < units.count; ++i) {
    if (units.values[i] != previousValue) {
      if (previousValue != QDMV::gMissingValue) UpdateDifferences();
      previousValue = units.values[i];
      previousGroup = units.groups[i];
    }
    samples[units.groups[i]].cumulative += units.Weight(i);
  }
}

bool NPARKSmirnowTwoSample::IsInside(const std::array<std::int64_t, 2>& added) const {
  if (tally->HasNegativeWeight() || samples[0].count < 1 || samples[1].count < 1) return false;
  // Both functions ascend, so their ends bound every difference between.
  const std::size_t larger = samples[0].count >= samples[1].count ? 0 : 1;
  const auto share = [this](std::size_t group, std::int64_t more) {
    return static_cast<double>(samples[group].cumulative + more) /
           static_cast<double>(samples[group].count);
  };
  return share(larger, added[larger]) - share(1 - larger, 0) <=
             positiveDifference - kRoundingMargin &&
         share(larger, 0) - share(1 - larger, added[1 - larger]) >=
             negativeDifference + kRoundingMargin;
}

double NPARKSmirnowTwoSample::Sample::DistributionAt(double x) const {
  if (first > x) return 0.0;
  if (x >= last) return 1.0;
  return static_cast<double>(cumulative) / static_cast<double>(count);
}

void NPARKSmirnowTwoSample::UpdateDifferences() {
  if (previousGroup == TwoGroups::Neither) {
    ReportStatus(QDStatus(kLastOfNeitherGroup), MessageKind::Warning);
    return;
  }
  const double f1 = samples[0].DistributionAt(previousValue);
  const double f2 = samples[1].DistributionAt(previousValue);
  const double d = samples[0].count >= samples[1].count ? f1 - f2 : f2 - f1;
  if (d >= 0.0) positiveDifference = std::max(positiveDifference, d);
  if (d <= 0.0) negativeDifference = std::min(negativeDifference, d);
}

bool NPARKSmirnowTwoSample::NeedsAnotherPass() { return !status.IsError() && passNumber++ == 0; }

QDStatus NPARKSmirnowTwoSample::EndPass() {
  if (status.IsError()) return status;
  tally.EndPass();
  if (passNumber == 0) {
    samples = {Sample{tally->Samples()[0]}, Sample{tally->Samples()[1]}};
    return status;
  }
  Compute();
  if (status.IsOK()) passesLeft = 0;
  return status;
}

void NPARKSmirnowTwoSample::Compute() {
  if (samples[0].count < 1 || samples[1].count < 1) {
    ReportStatus(QDStatus(kEmptyGroup), MessageKind::Error);
    return;
  }
  UpdateDifferences();
  absoluteDifference = std::max(positiveDifference, -negativeDifference);
  const auto n1 = static_cast<double>(samples[0].count);
  const auto n2 = static_cast<double>(samples[1].count);
  z = std::sqrt(n1 * n2 / (n1 + n2)) * absoluteDifference;
  if (!KolmogorovSmirnovSig(z, asymptoticSig)) {
    ReportStatus(QDStatus(kExponentFailed), MessageKind::Error);
  }
}

void NPARKSmirnowTwoSample::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  groups.AppendRequired(positions);
}

XMLElement* NPARKSmirnowTwoSample::WriteResults() {
  auto algorithm = CreateAlgorithm("IKolmogorovSmirnov", "hypothesis_test", "Independent_Samples",
                                   DecisionWord(status, sigLevel, asymptoticSig));
  AddTwoGroupCondition(*algorithm, "KolmogorovSmirnov", groups);
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  XMLElement* differences = AddStructuredTable(*statistics, "MostExtremeDifferences");
  AddAttributeRow(*differences, "Absolute", absoluteDifference);
  AddAttributeRow(*differences, "Positive", positiveDifference);
  AddAttributeRow(*differences, "Negative", negativeDifference);
  AddAttributeRow(*statistics, "TestStatistic", z);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", asymptoticSig);
  AddTwoGroupTables(*algorithm, groups, tally->Histograms(), {samples[0].count, {}},
                    {samples[1].count, {}});
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::ks_two_sample::kCard>(
    TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, kEntryCodes);
  return AddTwoGroupTest<NPARKSmirnowTwoSample>(construction, variables);
}
