#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>

#include "kit/contract/test.h"
#include "kit/summaries/univariate.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "tests/independent/jonckheere_terpstra.h"
#include "tests/independent/kruskal_wallis.h"
#include "tests/independent/ks_two_sample.h"
#include "tests/independent/mann_whitney.h"
#include "tests/independent/median.h"
#include "tests/independent/moses.h"
#include "tests/independent/wald_wolfowitz.h"
#include "tests/one_sample/ks_one_sample.h"

// A test that takes many records at a time passes over most of them as a whole. What it says must
// be what it says of the same records one by one, each with a weight of 1 of its own, which leaves
// it no such road.

namespace {

using MakeTest = std::function<std::unique_ptr<NPARTest>(QDSettings*)>;

template <typename Test>
std::unique_ptr<NPARTest> Make(QDSettings* settings) {
  return std::make_unique<Test>(settings);
}

struct Kind {
  const char* name;
  MakeTest make;
  TestSettings settings;
};

const Kind kKinds[] = {
    {"Kruskal-Wallis", Make<NPARKruskalWOneWay>, Entry("typeOfMultipleComparison", "stepWise")},
    {"median", Make<NPARKSMedian>, {}},
    {"given median", Make<NPARKSMedian>, Entry("userSpecifyMedian", 1, "median", 0.25)},
    {"Jonckheere-Terpstra", Make<NPARJonckTer>, Entry("pairWise", 1)},
    {"Mann-Whitney", Make<NPARMannWU>, {}},
    {"Wald-Wolfowitz", Make<NPARWaldWolfRuns>, {}},
    {"Moses", Make<NPARMoses>, {}},
    {"two samples", Make<NPARKSmirnowTwoSample>, {}},
    {"normal", Make<NPARKSmirnowOneSample>, Entry("distributionFunction", "normal")},
    {"uniform", Make<NPARKSmirnowOneSample>,
     Entry("distributionFunction", "uniform", "min", -1.0, "max", 1.5)},
    {"exponential", Make<NPARKSmirnowOneSample>, Entry("distributionFunction", "exponential")},
};

/// Two categories of the group variable.
class Summaries final : public UnivariateResults {
 public:
  Summaries() : UnivariateResults(nullptr) {}
  [[nodiscard]] std::int32_t GetCategoryCount(std::int32_t) const override { return 2; }
};

std::string ResultOf(const Kind& kind, const Rows& rows, std::size_t blockSize, bool isWeighted) {
  TestSettings settings = kind.settings;
  settings.Put("variableIndex", 0, "groupVariableIndex", 1, "numberOfCategories", 4, "groupOrder",
               TestSettings::Indices{2, 0, 1, 3}, "groupVariableValue1", 0.0, "groupVariableValue2",
               1.0, "sigLevel", 0.05);
  if (isWeighted) settings.Put("weightVariableIndex", 2);
  const std::unique_ptr<NPARTest> test = kind.make(settings.Release());
  Summaries summaries;
  test->SetSharedData(&summaries);
  std::vector<const double*> places;
  for (const std::vector<double>& row : rows) places.push_back(row.data());
  RowBatch batch;
  do {
    static_cast<void>(test->BeginPass());
    for (std::size_t i = 0; i < places.size(); i += blockSize) {
      batch.LookAt({places.data() + i, std::min(blockSize, places.size() - i)});
      static_cast<void>(test->ProcessBatch(batch));
    }
    static_cast<void>(test->EndPass());
  } while (test->NeedsAnotherPass());
  const std::unique_ptr<XMLElement> element(test->WriteResults());
  std::string text;
  element->Write(text, 0, true);
  return text;
}

struct Shape {
  const char* catches;
  std::function<double(std::mt19937&)> value;
  std::function<double(std::mt19937&)> group;
};

double Normal(std::mt19937& random) { return std::normal_distribution<double>()(random); }

double Grid(std::mt19937& random) { return std::round(Normal(random) * 5.0) / 4.0; }

/// The last bits differ, so that neighbours are equal within the tolerance of a box plot or not.
double Close(std::mt19937& random) {
  return std::round(Normal(random) * 3.0) +
         static_cast<double>(random() % 8) * 60.0 * QDPower::gMachineEpsilon;
}

double SignedZero(std::mt19937& random) {
  const double x = Grid(random);
  return std::fabs(x) > 0.5 ? x : std::copysign(0.0, Normal(random));
}

double Outer(std::mt19937& random) {
  return random() % 50 == 0 ? std::numeric_limits<double>::infinity() : Normal(random);
}

double Even(std::mt19937& random) { return static_cast<double>(random() % 2); }

/// A large group, three small ones of which the last has its own place, and records of no category.
double Skewed(std::mt19937& random) {
  const auto draw = random() % 200;
  return draw < 6 ? static_cast<double>(draw) : 0.0;
}

const Shape kShapes[] = {
    {"continuous, two groups", Normal, Even},
    {"continuous, small groups and none", Normal, Skewed},
    {"ties", Grid, Even},
    {"ties, small groups and none", Grid, Skewed},
    {"close values", Close, Even},
    {"zeros of both signs", SignedZero, Even},
    {"nothing but zeros", [](std::mt19937& random) { return std::copysign(0.0, Normal(random)); },
     Even},
    {"infinities", Outer, Skewed},
};

TEST(Blocks, SayWhatTheirRecordsSay) {
  std::mt19937 random(4711);
  for (const Shape& shape : kShapes) {
    Rows rows;
    for (int i = 0; i < 1500; ++i) rows.push_back({shape.value(random), shape.group(random), 1.0});
    rows = SortedBy(0, rows);
    for (const Kind& kind : kKinds) {
      const std::string byRecord = ResultOf(kind, rows, 1, true);
      for (const std::size_t blockSize : {3U, 40U, 256U, 375U, 751U, 1500U}) {
        SCOPED_TRACE(std::string(kind.name) + ", " + shape.catches + ", " +
                     std::to_string(blockSize));
        EXPECT_EQ(ResultOf(kind, rows, blockSize, false), byRecord);
      }
    }
  }
}

TEST(Blocks, WhatIsNoNumberStandsAtTheEnd) {
  std::mt19937 random(7);
  Rows rows;
  for (int i = 0; i < 600; ++i) rows.push_back({Normal(random), Even(random), 1.0});
  rows = SortedBy(0, rows);
  for (int i = 0; i < 3; ++i) {
    rows.push_back({std::numeric_limits<double>::quiet_NaN(), Even(random), 1.0});
  }
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.name);
    EXPECT_EQ(ResultOf(kind, rows, 200, false), ResultOf(kind, rows, 1, true));
  }
}

}  // namespace
