#include "catalogue/cards/ks_two_sample.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/groups/two_groups.h"
#include "kit/order/wide_integer.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "kit/statistics/lattice_paths.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"

namespace card = catalogue::ks_two_sample;

namespace {

/// Far above what rounding does to a difference, so that none that is an extreme is passed over.
constexpr double kRoundingMargin = 1e-12;

const TwoGroupEntryCodes kEntryCodes{
    {card::kUnknownVariable, card::kUnknownVariable, card::kUnknownVariable, card::kNotContinuous,
     card::kNotCategorical},
    card::kUnreadable,
    card::kNotTwoCategories};

template <typename Value>
bool IsReadable(const SettingsReader& settings, std::string_view key) {
  Value value{};
  return settings.Find(key, value);
}

bool AreReadable(const SettingsReader& settings, bool withLists) {
  using Codes = std::vector<double>;
  return IsReadable<std::int32_t>(settings, "variableIndex") &&
         IsReadable<std::int32_t>(settings, "groupVariableIndex") &&
         IsReadable<double>(settings, "sigLevel") &&
         (withLists ? IsReadable<Codes>(settings, "group1List") &&
                          IsReadable<Codes>(settings, "group2List")
                    : IsReadable<double>(settings, "groupVariableValue1") &&
                          IsReadable<double>(settings, "groupVariableValue2"));
}

/// Two-sample Kolmogorov-Smirnov test: does a continuous field have the same distribution in two
/// groups?
///
/// Formulas, limits, sources: docs/statistics/ks_two_sample.md.
///
/// Two passes over the records ascending by the field: sizes and ranges, then differences and
/// histograms.
class NPARKSmirnowTwoSample final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override {
    return WriteAlgorithm(*this,
                          {.card = card::kCard,
                           .decidingSig = asymptoticSig,
                           .condition = TwoGroupCondition("KolmogorovSmirnov", groups)},
                          [this](XMLElement& algorithm) {
                            XMLElement* statistics =
                                AddStructuredTable(algorithm, "StatisticsResult");
                            AddFigures(*statistics, "MostExtremeDifferences",
                                       {{"Absolute", absoluteDifference},
                                        {"Positive", positiveDifference},
                                        {"Negative", negativeDifference}});
                            AddAttributeRow(*statistics, "TestStatistic", z);
                            AddAttributeRow(*statistics, "AsymptoticSig2Tailed", asymptoticSig);
                            AddTwoGroupTables(algorithm, groups, *tally, {samples[0].count, {}},
                                              {samples[1].count, {}});
                          });
  }

 protected:
  /// Error 222001: a setting cannot be read.
  void Prepare(const SettingsReader& settings) override {
    ExpectPasses(2);
    groups.Read(settings);
    if (!AreReadable(settings, groups.AreUserSpecified())) Fail(card::kUnreadable);
    Require({groups.TestVariable(), groups.GroupVariable()});
    if (!HasFailed()) tally = Share<GroupTally>(groups.TallyKey());
  }

  void Compute() override {
    samples = {Sample{tally->SampleOf(0)}, Sample{tally->SampleOf(1)}};
    const std::int64_t n1 = samples[0].count;
    const std::int64_t n2 = samples[1].count;
    keepsRunEnds = wantsExtended && !tally->HasNegativeWeight() && n1 >= 1 && n2 >= 1 &&
                   n1 <= kMostLatticePairs / n2;
    if (keepsRunEnds) endsRun.assign(static_cast<std::size_t>(n1 + n2) + 1, false);
  }

  void TakeAgain(RecordBatch& /*batch*/) override {
    const GroupTally::Units& units = tally->GetUnits();
    if (units.count == 0 || PassOver(units)) return;
    for (std::size_t i = 0; i < units.count; ++i) {
      if (units.values[i] != previousValue) {
        if (previousValue != QDMV::gMissingValue) UpdateDifferences();
        previousValue = units.values[i];
        previousGroup = units.groups[i];
      }
      samples[units.GroupOf(i)].cumulative += units.Weight(i);
    }
  }

  /// Errors 222010: a group is empty; 222005: an exponential failed. Warning 222011: no record of
  /// either group came.
  void Finish() override {
    if (samples[0].count < 1 || samples[1].count < 1) {
      Fail(card::kEmptyGroup);
      return;
    }
    UpdateDifferences();
    absoluteDifference = std::max(positiveDifference, -negativeDifference);
    z = SmirnovStatistic(static_cast<double>(samples[0].count),
                         static_cast<double>(samples[1].count), absoluteDifference);
    if (!KolmogorovSmirnovSig(z, asymptoticSig)) Fail(card::kExponentialFailed);
  }

  void Extend(ExtendedFigures& figures) override {
    figures.Add("TotalN", samples[0].count + samples[1].count);
    if (keepsRunEnds) {
      const SmirnovDistances distances{static_cast<std::int64_t>(firstAbove),
                                       static_cast<std::int64_t>(secondAbove)};
      AddConditionalFigures(
          figures, ConditionalSmirnov(samples[0].count, samples[1].count, distances, endsRun));
    }
    figures.Add("LimitingSig2Tailed", LimitingKolmogorovSig(z));
    if (!tally->HasNegativeWeight()) figures.Add("AbsoluteDifferenceLocation", location);
    figures.Add(TwoGroupsTable(*tally));
  }

 private:
  /// What is known of one group.
  struct Sample : GroupTally::Sample {
    std::int64_t cumulative = 0;  // weight up to and including previousValue

    [[nodiscard]] double DistributionAt(double x) const;
  };

  /// Takes units whose differences are all inside the extremes so far; false, and nothing done, for
  /// others.
  bool PassOver(const GroupTally::Units& units) {
    if (units.shares == nullptr || tally->HasNegativeWeight() || keepsRunEnds) return false;
    if (samples[0].count < 1 || samples[1].count < 1) return false;
    // Both functions ascend, so their ends bound every difference between.
    const std::size_t larger = samples[0].count >= samples[1].count ? 0 : 1;
    const auto share = [this](std::size_t group, std::int64_t more) {
      return static_cast<double>(samples[group].cumulative + more) /
             static_cast<double>(samples[group].count);
    };
    const bool isInside = share(larger, units.shares[larger].weight) - share(1 - larger, 0) <=
                              positiveDifference - kRoundingMargin &&
                          share(larger, 0) - share(1 - larger, units.shares[1 - larger].weight) >=
                              negativeDifference + kRoundingMargin;
    if (!isInside) return false;
    samples[0].cumulative += units.shares[0].weight;
    samples[1].cumulative += units.shares[1].weight;
    previousValue = units.values[units.count - 1];
    previousGroup = units.groups[units.count - 1];
    return true;
  }

  void UpdateDifferences() {
    if (previousGroup == TwoGroups::Neither) {
      Warn(card::kLastOfNeitherGroup);
      return;
    }
    const double f1 = samples[0].DistributionAt(previousValue);
    const double f2 = samples[1].DistributionAt(previousValue);
    const double d = samples[0].count >= samples[1].count ? f1 - f2 : f2 - f1;
    if (d >= 0.0) positiveDifference = std::max(positiveDifference, d);
    if (d <= 0.0) negativeDifference = std::min(negativeDifference, d);
    if (wantsExtended) TakeWholeDistance();
  }

  void TakeWholeDistance() {
    const WideInteger distance =
        static_cast<WideInteger>(samples[1].count) * samples[0].cumulative -
        static_cast<WideInteger>(samples[0].count) * samples[1].cumulative;
    if (std::max(distance, -distance) > std::max(firstAbove, secondAbove)) location = previousValue;
    firstAbove = std::max(firstAbove, distance);
    secondAbove = std::max(secondAbove, -distance);
    if (keepsRunEnds) {
      endsRun[static_cast<std::size_t>(samples[0].cumulative + samples[1].cumulative)] = true;
    }
  }

  TwoGroups groups;
  GroupTally* tally = nullptr;
  std::array<Sample, 2> samples;
  double previousValue = QDMV::gMissingValue;
  std::int32_t previousGroup = TwoGroups::Neither;
  double positiveDifference = std::numeric_limits<double>::lowest();
  double negativeDifference = std::numeric_limits<double>::max();
  double absoluteDifference = 0.0;
  double z = 0.0;
  double asymptoticSig = 0.0;
  // Only for the extended figures: F1 - F2 times n1 n2.
  bool keepsRunEnds = false;
  std::vector<bool> endsRun;  // by the number of units up to there
  WideInteger firstAbove = 0;
  WideInteger secondAbove = 0;
  std::optional<double> location;
};

}  // namespace

double NPARKSmirnowTwoSample::Sample::DistributionAt(double x) const {
  if (first > x) return 0.0;
  if (x >= last) return 1.0;
  return static_cast<double>(cumulative) / static_cast<double>(count);
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, kEntryCodes);
  return AddTwoGroupTest<NPARKSmirnowTwoSample>(construction, variables);
}
