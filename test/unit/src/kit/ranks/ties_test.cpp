#include "kit/ranks/ties.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

#include "kit/comparisons/range_counts.h"
#include "kit/groups/two_groups.h"
#include "kit/ranks/column_ranks.h"
#include "kit/ranks/merged_runs.h"
#include "kit/ranks/rank.h"
#include "kit/ranks/record_ranks.h"
#include "kit/ranks/signed_ranks.h"
#include "tests/independent/control_ranks.h"
#include "tests/independent/jonckheere_statistic.h"

namespace {

using Values = std::vector<double>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// Ascending values and small whole numbers with the same runs.
struct TieCase {
  const char* catches;
  Values values, standIns;
};

const TieCase kTieCases[] = {
    {"equal infinities of either sign",
     {-kInfinity, -kInfinity, -kInfinity, 1, 2, kInfinity, kInfinity},
     {-9, -9, -9, 1, 2, 9, 9}},
    {"opposite infinities", {-kInfinity, kInfinity}, {-9, 9}},
    {"one beside the largest number",
     {1, std::numeric_limits<double>::max(), kInfinity},
     {1, 2, 3}},
    {"within 1e-14", {1, 1 + 1e-15, 1 + 2e-14}, {1, 1, 2}},
    {"exactly 1e-14 away is another run", {0, 1e-14, 1}, {0, 1, 2}},
    {"drift is measured from the first of the run", {0, 6e-15, 1.2e-14, 1.8e-14}, {0, 0, 1, 1}},
    {"not-a-number", {1, kInfinity, kNan, kNan}, {1, 2, 3, 4}},
};

/// What a class makes of values, of which every third is of group 0, the others of group 1.
using Figures = Values;
std::uint8_t GroupOf(std::size_t i) { return i % 3 == 0 ? 0 : 1; }

Figures FiguresOf(NPARRank& ranks) {
  ranks.CloseRun();
  return {ranks.GroupEntry(0).rankSum, ranks.GroupEntry(1).rankSum, ranks.TieSum().high};
}

const struct {
  const char* name;
  std::function<Figures(const Values&)> figures;
} kClasses[] = {
    {"NPARRank by values",
     [](const Values& values) {
       NPARRank ranks;
       for (std::size_t i = 0; i < values.size(); ++i) {
         static_cast<void>(ranks.AddValue(values[i], 1.0, GroupOf(i)));
       }
       return FiguresOf(ranks);
     }},
    {"NPARRank by units",
     [](const Values& values) {
       NPARRank ranks;
       std::vector<std::uint8_t> keys;
       for (std::size_t i = 0; i < values.size(); ++i) keys.push_back(GroupOf(i));
       ranks.AddUnits(values.data(), keys.data(), values.size());
       return FiguresOf(ranks);
     }},
    {"SignedRanks of units, of whole weights and of others",
     [](const Values& values) {
       Figures figures;
       for (const double weight : {1.0, 2.0, 1.5}) {
         SignedRanks ranks;
         for (const double d : values) ranks.Add(d, weight);
         ranks.Rank();
         figures.insert(figures.end(),
                        {ranks.PositiveRankSum(), ranks.NegativeRankSum(), ranks.TieSum()});
       }
       return figures;
     }},
    {"RecordRanks",
     [](const Values& values) {
       RecordRanks ranks(values.size());
       for (std::size_t i = 0; i < values.size(); ++i) ranks.Put(i, values[i]);
       ranks.Rank(values.size());
       Figures figures;
       for (std::size_t i = 0; i < values.size(); ++i) figures.push_back(ranks.RankOf(i));
       return figures;
     }},
    {"ColumnRanks",
     [](const Values& values) {
       constexpr std::size_t kRecords = 8;  // as many as are ranked by columns
       std::vector<Values> columns;
       std::vector<const double*> fields;
       for (const double value : values) columns.emplace_back(kRecords, value);
       for (const Values& column : columns) fields.push_back(column.data());
       ColumnRanks ranks(values.size());
       ranks.Rank(fields, 0, kRecords);
       Figures figures;
       for (std::size_t i = 0; i < values.size(); ++i) figures.push_back(ranks.StepsOf(i)[0]);
       return figures;
     }},
    {"MergedRuns",
     [](const Values& values) {
       MergedRuns runs;
       for (std::size_t i = 0; i < values.size(); ++i) runs.Add(values[i], GroupOf(i), 1);
       runs.Finish();
       return Figures{static_cast<double>(runs.Minimum()), static_cast<double>(runs.Maximum()),
                      static_cast<double>(runs.InterGroupTies())};
     }},
    {"RangeCounts, JonckheereCounts and JonckheerePair",
     [](const Values& values) {
       RangeCounts ranges(2);
       JonckheereCounts counts(2);
       JonckheerePair pair;
       for (std::size_t i = 0; i < values.size(); ++i) {
         ranges.Add(values[i], 1, GroupOf(i));
         counts.Add(values[i], 1, GroupOf(i));
         pair.Add(values[i], 1, GroupOf(i) == 1);
       }
       ranges.Finish();
       counts.CloseRun();
       pair.CloseRun();
       return Figures{ranges.OrderedPairs({0, 1}), ranges.Ties({0, 1}).Cubic().high,
                      counts.Sums().statistic,     counts.Sums().ties.Cubic().high,
                      pair.Sums().statistic,       pair.Sums().ties.Cubic().high};
     }},
    {"ControlRanks at once and one by one",
     [](const Values& values) {
       Figures figures;
       for (const std::size_t atOnce : {values.size(), std::size_t{1}}) {
         const std::vector<std::int32_t> groups(values.size(), TwoGroups::First);
         const auto last = static_cast<std::int64_t>(values.size());
         ControlRanks ranks({1, last - 1, last, last});
         for (std::size_t i = 0; i < values.size(); i += atOnce) {
           const auto last = static_cast<std::int32_t>(atOnce) - 1;
           const GroupTally::Share shares[] = {{last + 1, last}, {0, -1}};
           GroupTally::Units units;
           units.count = atOnce;
           units.values = values.data() + i;
           units.groups = groups.data() + i;
           units.shares = shares;
           ranks.Add(units);
         }
         ranks.CloseRun();
         for (std::size_t i = 0; i < ControlRanks::kCount; ++i) figures.push_back(ranks.Of(i));
       }
       return figures;
     }},
};

TEST(TiesTest, EveryClassHasTheSameRuns) {
  for (const auto& [name, figures] : kClasses) {
    for (const TieCase& row : kTieCases) {
      EXPECT_EQ(figures(row.values), figures(row.standIns)) << name << ": " << row.catches;
    }
  }
}

TEST(TiesTest, TermsOfRunsAreThoseOfTheFormulas) {
  EXPECT_EQ(MidRank(5, 3), 7.0);
  EXPECT_EQ(MidRank(5, 2), 6.5);
  const std::int64_t weights[] = {-3, 0, 1, 2, 3, std::int64_t{1} << 40};
  const DoubleDouble terms[] = {0, 0, 0, 6, 24, {0x1p120, -0x1p40}};
  TieSums sums;
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(TieTerm(weights[i]), terms[i]);
  for (const double t : {3.0, 1.0, 2.0}) sums.Add(t);
  EXPECT_EQ(sums.pairs, 6 + 2);
  EXPECT_EQ(sums.triples, 18 + 4);
  EXPECT_EQ(sums.Cubic(), 24 + 6);
}

}  // namespace
