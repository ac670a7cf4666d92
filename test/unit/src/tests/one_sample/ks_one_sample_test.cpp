#include "tests/one_sample/ks_one_sample.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "support/algorithm_element.h"
#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

using Messages = std::vector<AlgorithmElement::Message>;
using Given = std::vector<std::pair<const char*, double>>;

AlgorithmElement Result(const char* family, const std::vector<double>& values, const Given& given,
                        const std::vector<double>& weights = {}) {
  const auto variables = VariableListBuilder().Continuous("x").Weight("n").Build();
  Rows rows;
  for (std::size_t i = 0; i < values.size(); ++i) {
    rows.push_back({values[i], weights.empty() ? 1.0 : weights[i]});
  }
  TestSettings entry;
  entry.Put("variableName", "x");
  for (const auto& [key, value] : given) entry.Put(key, value);
  return RunEntry(variables, rows, std::string("OKolmogorovSmirnov") + family, entry.Get());
}

// Student, Biometrika 6 (1908), first drug.
const std::vector<double> kSleep{0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
const std::vector<double> kTimes{0.5, 1.2, 0.3, 2.2, 0.9, 0.05, 3.1};
const std::vector<double> kCounts{0, 1, 1, 2, 3, 0, 5, 2, 1, 4, 3};

struct KsCase {
  const char* catches;
  const char* family;
  std::vector<double> values;
  Given given;
  double absolute, z;
};

// SciPy 1.17.1: kstest(x, "norm", args=(mean, std(ddof=1))), kstest(x, "uniform", args=(-2, 5)) on
// the values inside, kstest(x, "expon", args=(0, mean)); for the Poisson distribution the
// differences of the empirical function and poisson.cdf at each count and the one below it.
const KsCase kCases[] = {
    {"estimated normal", "Normal", kSleep, {}, 0.18885164347315186, 0.59720133324123205},
    {"uniform with values outside",
     "Uniform",
     kSleep,
     {{"min", -2.0}, {"max", 3.0}},
     0.31500000000000006,
     0.89095454429504994},
    {"exponential", "Exponential", kTimes, {}, 0.13107602116503092, 0.3467945548465106},
    {"the step below a count", "Poisson", kCounts, {}, 0.04853960483561659, 0.16098765671186083},
};

TEST(KsOneSampleTest, DifferencesAgreeWithSciPy) {
  for (const KsCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.family, row.values, row.given);
    EXPECT_THAT(result.Number("Absolute"), IsCloseTo(row.absolute, 1e-13));
    EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(row.z, 1e-13));
    EXPECT_EQ(result.Name(), "OKolmogorovSmirnov");
  }
}

TEST(KsOneSampleTest, SignedDifferencesStandOnTheirSides) {
  const AlgorithmElement result = Result("Poisson", kCounts, {});
  EXPECT_THAT(result.Number("Positive"), IsCloseTo(0.04853960483561659, 1e-13));
  EXPECT_THAT(result.Number("Negative"), IsCloseTo(-0.04031277981942705, 1e-13));
}

TEST(KsOneSampleTest, AllValuesEqualStepOnce) {
  // F_n jumps from 0 to 1 at 0, where the standard normal is 1/2.
  const AlgorithmElement result = Result("Normal", {0, 0, 0, 0}, {{"mean", 0.0}, {"stdDev", 1.0}});
  EXPECT_EQ(result.Text("Positive"), "0.5");
  EXPECT_EQ(result.Text("Negative"), "-0.5");
  EXPECT_EQ(result.Text("TestStatistic"), "1");
}

TEST(KsOneSampleTest, AWeightIsThatManyRecords) {
  const AlgorithmElement once = Result("Exponential", {1, 2, 4}, {}, {2, 1, 3});
  const AlgorithmElement often = Result("Exponential", {1, 1, 2, 4, 4, 4}, {});
  for (const char* name : {"TotalN", "Absolute", "Positive", "Negative", "Condition/%1"}) {
    EXPECT_EQ(once.Text(name), often.Text(name)) << name;
  }
}

TEST(KsOneSampleTest, ValuesOutsideAreLeftOutAndTold) {
  const AlgorithmElement uniform = Result("Uniform", kSleep, {{"min", -1.5}, {"max", 3.0}});
  EXPECT_EQ(uniform.Messages(), (Messages{{220311, "warning", {"3"}}}));
  EXPECT_EQ(uniform.Text("TotalN"), "10");
  const AlgorithmElement exponential = Result("Exponential", {-1, 1, 2}, {}, {4, 1, 1});
  EXPECT_EQ(exponential.Messages(), (Messages{{220314, "warning", {"4"}}}));
  EXPECT_EQ(exponential.Text("Condition/%1"), "1.5") << "the mean of the valid values";
  EXPECT_EQ(Result("Uniform", kSleep, {}).Messages(), Messages{}) << "the sample's own range";
}

TEST(KsOneSampleTest, ALargePoissonMeanIsTakenAsNormal) {
  const std::vector<double> values{99990, 100005, 100120};
  EXPECT_EQ(Result("Poisson", values, {{"mean", 100000.0}}).Messages(),
            (Messages{{220309, "helpMessage", {}}}));
  EXPECT_EQ(Result("Poisson", values, {{"mean", 99999.0}}).Messages(), Messages{});
}

TEST(KsOneSampleTest, ConditionsNameTheParameters) {
  struct Row {
    const char* family;
    const char* key;
    const char* first;
  };
  for (const Row& row :
       {Row{"Normal", "NormalDistribution_O_KolmogorovSmirnov_3", "2"},
        Row{"Uniform", "UniformDistribution_O_KolmogorovSmirnov_3", "1"},
        Row{"Poisson", "PoissonDistribution_O_KolmogorovSmirnov_2", "2"},
        Row{"Exponential", "ExponentialDistribution_O_KolmogorovSmirnov_2", "2"}}) {
    const AlgorithmElement result = Result(row.family, {1, 2, 3}, {});
    EXPECT_EQ(result.Text("Condition/ConditionKey"), row.key);
    EXPECT_EQ(result.Text("Condition/%1"), row.first);
  }
}

struct FailureCase {
  const char* catches;
  const char* family;
  std::vector<double> values;
  Given given;
  AlgorithmElement::Message message;
};

TEST(KsOneSampleTest, EachFailureHasItsCode) {
  const std::vector<double> none{QDMV::gMissingValue};
  const FailureCase cases[] = {
      {"no record", "Normal", none, {}, {220003, "error", {}}},
      {"no record", "Poisson", none, {}, {220003, "error", {}}},
      {"no valid value", "Uniform", {5}, {{"min", 0}, {"max", 1}}, {220310, "error", {}}},
      {"no valid value", "Exponential", {-5}, {}, {220313, "error", {}}},
      {"half a count", "Poisson", {1, 2.5}, {}, {220312, "error", {"2.5", "1"}}},
      {"a negative count", "Poisson", {-1, 2}, {}, {220312, "error", {"-1", "1"}}},
      {"mean 0", "Poisson", {0, 0}, {}, {220312, "error", {}}},
      {"mean 0", "Exponential", {0, 0}, {}, {220313, "error", {}}},
      {"no spread", "Normal", {3, 3}, {}, {220315, "error", {}}},
      {"no range", "Uniform", {3, 3}, {}, {220316, "error", {}}},
  };
  for (const FailureCase& row : cases) {
    SCOPED_TRACE(std::string(row.family) + ": " + row.catches);
    const AlgorithmElement result = Result(row.family, row.values, row.given);
    EXPECT_EQ(result.Messages(), Messages{row.message});
    EXPECT_EQ(result.Decision(), "unknown");
  }
  const auto variables = VariableListBuilder().Nominal("letter", {"a"}).Build();
  TestSettings unknown;
  unknown.Put("variableName", "nobody");
  TestSettings unfit;
  unfit.Put("variableName", "letter");
  const auto messages = [&](const TestSettings& entry) {
    return RunEntry(variables, {{0}}, "OKolmogorovSmirnovNormal", entry.Get()).Messages();
  };
  EXPECT_EQ(messages(TestSettings()), (Messages{{220303, "error", {}}}));
  EXPECT_EQ(messages(unknown), (Messages{{220303, "error", {"nobody"}}}));
  EXPECT_EQ(messages(unfit), (Messages{{220304, "error", {}}}));
}

}  // namespace
