#include "kit/comparisons/multiple_comparisons.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "support/test_settings.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr catalogue::ComparisonCodes kCodes{{1, 2, 3, 4}};
constexpr std::int32_t kStandsAlone = 220013;
constexpr StepwisePolicy kKeepsSingles{true, true};

class MessageTaker final : public NPARTest {
 public:
  MessageTaker() : NPARTest(nullptr) {}
  XMLElement* WriteResults() override { return nullptr; }
  void Prepare(const SettingsReader&) override {}
  void Compute() override {}

  std::vector<std::pair<std::int32_t, MessageKind>> Taken() const {
    std::vector<std::pair<std::int32_t, MessageKind>> taken;
    for (const auto& message : GetMessages()) {
      taken.emplace_back(message.status.GetErrorCode(), message.kind);
    }
    return taken;
  }
  std::vector<std::string> Groups() const {
    std::vector<std::string> groups;
    for (const auto& message : GetMessages()) {
      if (message.status.GetErrorCode() == kStandsAlone) {
        groups.push_back(message.namedParams.at(0).second);
      }
    }
    return groups;
  }
};

using Places = std::vector<std::pair<std::size_t, std::size_t>>;

Places SubsetPlaces(const MultipleComparison& comparison) {
  Places places;
  for (const auto& subset : comparison.GetSubsets()) {
    places.emplace_back(subset.range.first, subset.range.last);
  }
  return places;
}

std::vector<ComparedSample> Samples(std::int32_t count) {
  std::vector<ComparedSample> samples;
  for (std::int32_t i = 0; i < count; ++i) samples.push_back({i, 10.0 + i});
  return samples;
}

/// Runs a step-down to its end; `sig` gives the significance of a range. Returns the ranges in the
/// order in which they were computed.
Places RunStepwise(MultipleComparison& comparison, MessageTaker& test, std::int32_t count,
                   const std::function<double(const SampleRange&)>& sig) {
  Places computed;
  comparison.Want(ComparisonKind::Stepwise);
  comparison.RunStepwise(test, Samples(count), [&](const SampleRange& range) {
    computed.emplace_back(range.first, range.last);
    return RangeFigures{static_cast<double>(range.Size()), sig(range)};
  });
  return computed;
}

TEST(MultipleComparisonTest, TheWordsAreTakenLetterForLetter) {
  EXPECT_EQ(ComparisonFromWord("pairWise"), ComparisonKind::Pairwise);
  EXPECT_EQ(ComparisonFromWord("stepWise"), ComparisonKind::Stepwise);
  EXPECT_EQ(ComparisonFromWord("none"), ComparisonKind::None);
  EXPECT_EQ(ComparisonFromWord("pairwise"), ComparisonKind::None);
}

TEST(MultipleComparisonTest, AFlagIsOneAndTheStepDownComesFirst) {
  const auto kind = [](double pairwise, double stepwise) {
    const TestSettings settings = Entry("pairWise", pairwise, "stepWise", stepwise);
    return ComparisonFromFlags(SettingsReader(&settings.Get()));
  };
  EXPECT_EQ(kind(1, 0), ComparisonKind::Pairwise);
  EXPECT_EQ(kind(1, 1), ComparisonKind::Stepwise);
  EXPECT_EQ(kind(2, 2), ComparisonKind::None);
  EXPECT_EQ(ComparisonFromFlags(SettingsReader(nullptr)), ComparisonKind::None);
}

struct GateCase {
  const char* catches;
  ComparisonKind kind;
  double p;
  std::size_t samples;
  std::int32_t code;  // 0: passes
  bool countsPairsOfGroups = false;
};

constexpr std::size_t kMostInPairs = MultipleComparison::kMostSamplesInPairs;

const GateCase kGateCases[] = {
    {"pairwise of 3 goes on", ComparisonKind::Pairwise, 0.049, 3, 0},
    {"stepwise of 3 goes on", ComparisonKind::Stepwise, 0.049, 3, 0},
    {"pairwise of 2", ComparisonKind::Pairwise, 0.049, 2, kCodes.tooFewPairwise},
    {"stepwise of 2", ComparisonKind::Stepwise, 0.049, 2, kCodes.tooFewStepwise},
    {"p at the level is not significant", ComparisonKind::Pairwise, 0.05, 3,
     kCodes.notSignificantPairwise},
    {"significance is asked before the number of samples", ComparisonKind::Stepwise, 0.05, 2,
     kCodes.notSignificantStepwise},
    {"not a number is not significant", ComparisonKind::Stepwise, std::nan(""), 3,
     kCodes.notSignificantStepwise},
    {"the most pairs that are held", ComparisonKind::Pairwise, 0.049, kMostInPairs, 0},
    {"too many pairs", ComparisonKind::Pairwise, 0.049, kMostInPairs + 1, 220027},
    {"ranges of any number", ComparisonKind::Stepwise, 0.049, kMostInPairs + 1, 0},
    {"ranges of the most groups that are counted", ComparisonKind::Stepwise, 0.049, kMostInPairs, 0,
     true},
    {"ranges of too many groups that are counted", ComparisonKind::Stepwise, 0.049,
     kMostInPairs + 1, 220027, true},
    {"pairs that are not wanted any more", ComparisonKind::Pairwise, 0.05, kMostInPairs + 1,
     kCodes.notSignificantPairwise},
};

TEST(MultipleComparisonTest, TheGateWarnsOfWhatItStops) {
  for (const GateCase& row : kGateCases) {
    SCOPED_TRACE(row.catches);
    MultipleComparison comparison(kCodes, {.countsPairsOfGroups = row.countsPairsOfGroups});
    comparison.Want(row.kind);
    MessageTaker test;
    EXPECT_EQ(comparison.PassGate(test, 0.05, row.p, row.samples), row.code == 0);
    EXPECT_EQ(comparison.IsPending(), row.code == 0);
    if (row.code == 0) {
      EXPECT_THAT(test.Taken(), IsEmpty());
    } else {
      EXPECT_THAT(test.Taken(), ElementsAre(Pair(row.code, MessageKind::Warning)));
    }
  }
}

TEST(MultipleComparisonTest, AGateWithoutAWishStopsSilently) {
  MultipleComparison comparison(kCodes);
  MessageTaker test;
  EXPECT_FALSE(comparison.PassGate(test, 0.05, 0.5, 2));
  EXPECT_THAT(test.Taken(), IsEmpty());
}

TEST(MultipleComparisonTest, PairsStandInOrderAndAreAdjustedForAllSamples) {
  MultipleComparison comparison(kCodes);
  comparison.Want(ComparisonKind::Pairwise);
  // Three samples of four: the adjustment knows of the fourth.
  comparison.RunPairwise(Samples(3), 4, [](std::int32_t i, std::int32_t j) {
    return PairFigures{static_cast<double>(i - j), 1.0, 1.0, j == 1 ? 0.01 : 0.2};
  });
  const auto& pairs = comparison.GetPairs();
  ASSERT_EQ(pairs.size(), 3U);
  EXPECT_EQ(pairs[0].sample1, 0);
  EXPECT_EQ(pairs[0].sample2, 1);
  EXPECT_EQ(pairs[1].sample2, 2);
  EXPECT_EQ(pairs[2].sample1, 1);
  EXPECT_EQ(pairs[2].figures.testStatistic, -1.0);
  EXPECT_DOUBLE_EQ(pairs[0].adjSig, 0.06);
  EXPECT_EQ(pairs[1].adjSig, 1.0);  // 1.2 is cut
  EXPECT_TRUE(comparison.IsDone());
  EXPECT_FALSE(comparison.IsPending());
}

TEST(MultipleComparisonTest, ANormalPairKeepsItsSignAndIsTwoSided) {
  const PairFigures figures = NormalPair(-3.0, 1.5);
  EXPECT_EQ(figures.standardTestStatistic, -2.0);
  // R 4.2.2: 2 * pnorm(-2)
  EXPECT_NEAR(figures.sig, 0.04550026389635842, 1e-15);
}

TEST(MultipleComparisonTest, SignificanceIsAdjustedFromTwoBelowAllSamplesOn) {
  MultipleComparison comparison(kCodes);
  MessageTaker test;
  std::map<std::size_t, double> adjusted;
  RunStepwise(comparison, test, 5, [](const SampleRange& range) {
    return range.Size() > 3 ? 0.01 : 0.3;  // (0,3) and (1,4) differ, triples do not
  });
  for (const auto& subset : comparison.GetSubsets()) {
    adjusted[subset.range.Size()] = subset.adjSig;
    EXPECT_EQ(subset.figures.testStatistic, static_cast<double>(subset.range.Size()));
  }
  ASSERT_THAT(adjusted, ElementsAre(Pair(3U, testing::_)));
  EXPECT_EQ(adjusted[3], 1.0 - std::pow(1.0 - 0.3, 5.0 / 3.0));

  MultipleComparison plain(kCodes);
  RunStepwise(plain, test, 5, [](const SampleRange&) { return 0.3; });
  EXPECT_EQ(plain.GetSubsets().at(0).range.Size(), 4U);
  EXPECT_EQ(plain.GetSubsets().at(0).adjSig, 0.3);  // k - 1 of k
}

TEST(MultipleComparisonTest, TheDecidingLevelIsTheOneWhoseAdjustmentIsTheLevel) {
  const auto levels = [](StepwisePolicy policy) {
    MultipleComparison comparison(kCodes, policy);
    MessageTaker test;
    std::pair<double, double> found;
    RunStepwise(comparison, test, 10, [&](const SampleRange& /*range*/) {
      found = {comparison.DecidingLevel({2, 5}), comparison.DecidingLevel({0, 8})};
      return 0.9;
    });
    return found;
  };
  EXPECT_NEAR(1.0 - std::pow(1.0 - levels({}).first, 10.0 / 4.0), 0.05, 1e-15);
  EXPECT_EQ(levels({}).second, 0.05);
  EXPECT_EQ(levels({.judgesOnAdjusted = false}).first, 0.05);
}

TEST(MultipleComparisonTest, TheAdjustedOrThePlainSignificanceTellsApart) {
  const auto sig = [](const SampleRange& range) { return range.Size() == 3 ? 0.001 : 0.03; };
  MessageTaker test;
  MultipleComparison onAdjusted(kCodes);  // 1 - 0.97^2 = 0.0591: pairs are homogeneous
  RunStepwise(onAdjusted, test, 4, sig);
  EXPECT_EQ(SubsetPlaces(onAdjusted), (Places{{2, 3}, {0, 1}, {1, 2}}));
  MultipleComparison onPlain(kCodes, {false, false});
  RunStepwise(onPlain, test, 4, sig);
  EXPECT_EQ(SubsetPlaces(onPlain), (Places{{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
}

TEST(MultipleComparisonTest, AHomogeneousRangeEndsThoseBehindItAndNotThoseBefore) {
  MultipleComparison comparison(kCodes);
  MessageTaker test;
  const Places computed = RunStepwise(comparison, test, 5, [](const SampleRange& range) {
    return range.first >= 2 || range.last <= 1 ? 0.9 : 0.0001;
  });
  // The overall test was that of (0, 4). The subset (2, 4) covers (3, 4), later (0, 1) does (1, 1).
  EXPECT_EQ(computed, (Places{{0, 3}, {1, 4}, {2, 4}, {0, 2}, {1, 3}, {0, 1}, {1, 2}}));
  EXPECT_EQ(SubsetPlaces(comparison), (Places{{2, 4}, {0, 1}}));
  EXPECT_THAT(test.Groups(), IsEmpty());
}

TEST(MultipleComparisonTest, AHomogeneousFrontRangeLeavesTheOthersUnderTest) {
  MultipleComparison comparison(kCodes);
  MessageTaker test;
  const Places computed = RunStepwise(
      comparison, test, 4, [](const SampleRange& range) { return range.first == 0 ? 0.9 : 0.001; });
  // (1, 2) and (2, 2) are left of the others; the subset (0, 2) covers both.
  EXPECT_EQ(SubsetPlaces(comparison), (Places{{0, 2}, {3, 3}}));
  EXPECT_EQ(computed, (Places{{0, 2}, {1, 3}, {2, 3}}));
  EXPECT_THAT(test.Groups(), ElementsAre("3"));
}

TEST(MultipleComparisonTest, ARangeThatShrinksToOneSampleIsFoundAtTheFinish) {
  MultipleComparison comparison(kCodes);
  MessageTaker test;
  comparison.RunStepwise(test, Samples(3), [](const SampleRange&) {
    return RangeFigures{1.0, 0.001};
  });
  EXPECT_EQ(SubsetPlaces(comparison), (Places{{0, 0}, {1, 1}, {2, 2}}));
  EXPECT_EQ(comparison.GetSubsets()[0].figures.sig, QDMV::gMissingValue);
  EXPECT_THAT(test.Groups(), ElementsAre("0", "1", "2"));
}

TEST(MultipleComparisonTest, ShrunkSinglesThatAreKeptAreOrderedAndNamedByBothEnds) {
  MultipleComparison comparison(kCodes, kKeepsSingles);
  MessageTaker test;
  RunStepwise(comparison, test, 3, [](const SampleRange&) { return 0.001; });
  EXPECT_EQ(SubsetPlaces(comparison), (Places{{0, 0}, {1, 1}, {2, 2}}));
  EXPECT_THAT(test.Groups(), ElementsAre("0;0", "1;1", "2;2"));
}

TEST(MultipleComparisonTest, CleaningTakesOutASingleInsideALaterSubset) {
  MultipleComparison comparison(kCodes, kKeepsSingles);
  MessageTaker test;
  // (2,3) is told apart at once, which keeps (2,2); (0,2) is found one pass later.
  RunStepwise(comparison, test, 5, [](const SampleRange& range) {
    return range.last <= 3 && range.Size() == 3 ? 0.9 : 0.0001;
  });
  EXPECT_EQ(SubsetPlaces(comparison), (Places{{0, 2}, {1, 3}, {4, 4}}));
  EXPECT_THAT(test.Groups(), ElementsAre("4;4"));
}

}  // namespace
