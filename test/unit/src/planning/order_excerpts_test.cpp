#include "planning/order_excerpts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "support/kept_records.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::Ge;
using testing::Le;

constexpr double kMissing = QDMV::gMissingValue;
enum Column { X, G, W };

QDVarList Variables() {
  return VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).Weight("w").Build();
}

/// The values 0, 1, 2, ... mixed up, in two groups in turn; each weighs 1 or 2.
Rows MixedUp(std::size_t count) {
  Rows rows;
  for (std::size_t i = 0; i < count; ++i) {
    rows.push_back({static_cast<double>(i), static_cast<double>(i % 2),
                    1.0 + static_cast<double>(i % 3 == 0)});
  }
  std::shuffle(rows.begin(), rows.end(), std::mt19937_64(3));
  return rows;
}

OrderExcerpt Wanted(WantedPlaces places = {}) {
  places.groups.resize(2);
  return {G, std::move(places)};
}

struct Seen {
  std::vector<double> values;  // of records, in the order of the walk
  std::vector<double> all;     // likewise, and of cells
  std::int64_t units[2] = {0, 0};
};

Seen WalkOver(BatchSource& walk, std::int32_t weight) {
  Seen seen;
  ForEachBatch(walk, [&](RecordBatch& batch) {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const std::int32_t* counts = batch.Counts();
      seen.all.push_back(batch.Of(X)[i]);
      if (counts == nullptr) seen.values.push_back(batch.Of(X)[i]);
      seen.units[batch.TruncatedOf(G)[i]] += weight >= 0         ? batch.TruncatedOf(weight)[i]
                                             : counts == nullptr ? 1
                                                                 : counts[i];
    }
  });
  return seen;
}

TEST(OrderExcerpts, HoldTheWantedPlacesAndTheNumberOfTheOthers) {
  const std::size_t count = 3000;
  const Kept kept(Variables(), MixedUp(count));
  for (const std::int32_t weight : {-1, +W}) {
    SCOPED_TRACE(weight);
    OrderExcerpts excerpts(kept.reader->Records(), X, weight, Shortcut::Always);
    WantedPlaces places;
    places.groups.resize(2);
    places.groups[0].ranks = {weight < 0 ? 400 : 533};  // both are the unit of the value 798
    places.groups[1].tails = WantedPlaces::Tails{4.0, 2990.0, 1.0};
    places.values = {1500.5};
    const auto walk = excerpts.Walk(Wanted(places));
    ASSERT_NE(walk, nullptr);
    const Seen seen = WalkOver(*walk, weight);
    EXPECT_TRUE(std::is_sorted(seen.all.begin(), seen.all.end()));
    EXPECT_LT(seen.values.size(), count / 10);
    for (const double held :
         {0.0, 1.0, 3.0, 5.0, 798.0, 1500.0, 1501.0, 2987.0, 2989.0, 2991.0, 2999.0}) {
      EXPECT_THAT(seen.values, testing::Contains(held));
    }
    for (const std::int64_t units : seen.units) EXPECT_EQ(units, weight < 0 ? 1500 : 2000);
    // Without a place there are cells alone.
    EXPECT_TRUE(WalkOver(*excerpts.Walk(Wanted()), weight).values.empty());
  }
}

TEST(OrderExcerpts, LeaveOutRecordsWithoutAValueOrAGroup) {
  Rows rows = MixedUp(500);
  rows.push_back({kMissing, 1, 1});
  rows.push_back({3.5, -1, 1});
  rows.push_back({3.5, 2, 1});
  const Kept kept(Variables(), rows);
  OrderExcerpts excerpts(kept.reader->Records(), X, -1, Shortcut::Always);
  WantedPlaces places;
  places.values = {3.5};
  const Seen seen = WalkOver(*excerpts.Walk(Wanted(places)), -1);
  EXPECT_THAT(seen.values, Each(AllOf(Ge(0.0), Le(499.0), testing::Ne(3.5))));
  EXPECT_EQ(seen.units[0] + seen.units[1], 500);
}

TEST(OrderExcerpts, AreNoneWhereTheWholeOrderIsToBeHad) {
  const auto isAny = [](const Rows& rows, std::int32_t weight, Shortcut selecting,
                        const WantedPlaces& places) {
    const Kept kept(Variables(), rows);
    OrderExcerpts excerpts(kept.reader->Records(), X, weight, selecting);
    return excerpts.Walk(Wanted(places)) != nullptr;
  };
  const auto with = [](std::vector<double> further) {
    Rows rows = MixedUp(1000);
    rows.push_back(std::move(further));
    return rows;
  };
  constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(isAny(with({1, 1, 1}), W, Shortcut::Always, {}));
  EXPECT_TRUE(isAny(with({HUGE_VAL, 1, 1}), W, Shortcut::Always, {}));
  EXPECT_FALSE(isAny(with({kNotANumber, 1, 1}), -1, Shortcut::Always, {}));
  for (const double weight : {0.0, 0.5, 1.5, 2147483647.0}) {
    EXPECT_FALSE(isAny(with({1, 1, weight}), W, Shortcut::Always, {})) << weight;
  }
  EXPECT_FALSE(isAny(with({1, 1, 1}), -1, Shortcut::WhereItPays, {}));  // they are few
  EXPECT_FALSE(isAny(with({1, 1, 1}), -1, Shortcut::Never, {}));
  EXPECT_FALSE(isAny(Rows(1000, {2, 1, 1}), -1, Shortcut::Always, {}));  // no two values
  WantedPlaces noStep;
  noStep.groups.resize(2);
  noStep.groups[1].tails = WantedPlaces::Tails{4.0, 900.0, 1e6};
  EXPECT_FALSE(isAny(with({1, 1, 1}), -1, Shortcut::Always, noStep));
}

}  // namespace
