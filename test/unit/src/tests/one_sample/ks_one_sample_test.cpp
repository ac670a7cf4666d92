#include <algorithm>
#include <cmath>

#include "support/entry_run.h"

namespace {

using Given = std::vector<std::pair<const char*, double>>;

AlgorithmElement Result(const char* family, const std::vector<double>& values, const Given& given,
                        const std::vector<double>& weights = {}) {
  const auto variables = VariableListBuilder().Continuous("x").Weight("n").Build();
  Rows rows;
  for (std::size_t i = 0; i < values.size(); ++i) {
    rows.push_back({values[i], weights.empty() ? 1.0 : weights[i]});
  }
  TestSettings entry = Entry("variableName", "x");
  for (const auto& [key, value] : given) entry.Put(key, value);
  return RunEntry(variables, rows, std::string("OKolmogorovSmirnov") + family, entry);
}

// Student, Biometrika 6 (1908), first drug.
const std::vector<double> kSleep{0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
const std::vector<double> kTimes{0.5, 1.2, 0.3, 2.2, 0.9, 0.05, 3.1};
const std::vector<double> kCounts{0, 1, 1, 2, 3, 0, 5, 2, 1, 4, 3};
const std::vector<double> kMostlyNone{0, 0, 0, 3};
const Given kNothing;
const Given kRange{{"min", -2.0}, {"max", 3.0}};

struct KsCase {
  const char* catches;
  const char* family;
  const std::vector<double>& values;
  const Given& given;
  double absolute, z;
  const char* key;        // of the condition
  const char* parameter;  // the first one that it names
};

// SciPy 1.17.1: kstest(x, "norm", args=(mean, std(ddof=1))), kstest(x, "uniform", args=(-2, 5)) on
// the values inside, kstest(x, "expon", args=(0, mean)); for the Poisson distribution the
// differences of the empirical function and poisson.cdf at each count and the one below it.
const KsCase kCases[] = {
    {"estimated normal", "Normal", kSleep, kNothing, 0.18885164347315186, 0.59720133324123205,
     "NormalDistribution_O_KolmogorovSmirnov_3", "0.75"},
    {"uniform with values outside", "Uniform", kSleep, kRange, 0.31500000000000006,
     0.89095454429504994, "UniformDistribution_O_KolmogorovSmirnov_3", "-2"},
    {"exponential", "Exponential", kTimes, kNothing, 0.13107602116503092, 0.3467945548465106,
     "ExponentialDistribution_O_KolmogorovSmirnov_2", "1.17857142857143"},
    {"the step below a count", "Poisson", kCounts, kNothing, 0.04853960483561659,
     0.16098765671186083, "PoissonDistribution_O_KolmogorovSmirnov_2", "2"},
    // 3 / 4 - exp(-0.75)
    {"a count of 0, a mean below 1", "Poisson", kMostlyNone, kNothing, 0.27763344725898531,
     0.55526689451797062, "PoissonDistribution_O_KolmogorovSmirnov_2", "0.75"},
};

TEST(KsOneSampleTest, DifferencesAgreeWithSciPy) {
  for (const KsCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.family, row.values, row.given);
    ExpectFigures(result, {{"Absolute", row.absolute, 1e-13}, {"TestStatistic", row.z, 1e-13}});
    EXPECT_EQ(result.Name(), "OKolmogorovSmirnov");
    ExpectTexts(result, {{"ConditionKey", row.key}, {"Condition/%1", row.parameter}});
  }
}

TEST(KsOneSampleTest, SignedDifferencesStandOnTheirSides) {
  ExpectFigures(Result("Poisson", kCounts, {}), {{"Positive", 0.04853960483561659, 1e-13},
                                                 {"Negative", -0.04031277981942705, 1e-13}});
}

TEST(KsOneSampleTest, NoneOfManyDifferencesIsPassedOver) {
  constexpr int kCount = 5000;
  for (const double dip : {0.0, 500.0}) {  // F_n descends where a weight is negative
    SCOPED_TRACE(dip);
    std::vector<double> values, weights(kCount, 1.0);
    for (int i = 0; i < kCount; ++i) {
      const double u = (i + 0.5) / kCount;
      values.push_back(u + 0.03 * u * std::sin(18.8 * u));
    }
    weights[2505] -= dip;
    weights[2506] += dip;
    double sum = 0.0, positive = 0.0, negative = 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      for (const double weightUpTo : {sum, sum + weights[i]}) {
        positive = std::max(positive, weightUpTo / kCount - values[i]);
        negative = std::min(negative, weightUpTo / kCount - values[i]);
      }
      sum += weights[i];
    }
    ExpectFigures(Result("Uniform", values, {{"min", 0.0}, {"max", 1.0}}, weights),
                  {{"Positive", positive, 1e-12}, {"Negative", negative, 1e-12}});
  }
}

TEST(KsOneSampleTest, AllValuesEqualStepOnce) {
  // F_n jumps from 0 to 1 at 0, where the standard normal is 1/2.
  ExpectTexts(Result("Normal", {0, 0, 0, 0}, {{"mean", 0.0}, {"stdDev", 1.0}}),
              {{"Positive", "0.5"}, {"Negative", "-0.5"}, {"TestStatistic", "1"}});
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

TEST(KsOneSampleTest, ValuesLeftOutAreToldAlsoWhenTheParametersFail) {
  EXPECT_EQ(Result("Uniform", {3, 5}, {{"min", 3.0}, {"max", 3.0}}).Messages(),
            (Messages{{220316, "error", {}}, {220311, "warning", {"1"}}}));
  EXPECT_EQ(Result("Exponential", {-1, 0}, {}).Messages(),
            (Messages{{220313, "error", {}}, {220314, "warning", {"1"}}}));
}

TEST(KsOneSampleTest, ALargePoissonMeanIsTakenAsNormal) {
  const std::vector<double> values{99990, 100005, 100120};
  EXPECT_EQ(Result("Poisson", values, {{"mean", 100000.0}}).Messages(),
            (Messages{{220309, "helpMessage", {}}}));
  EXPECT_EQ(Result("Poisson", values, {{"mean", 99999.0}}).Messages(), Messages{});
}

TEST(KsOneSampleTest, EachFailureHasItsCode) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::vector<double> none{QDMV::gMissingValue};
  const struct {
    const char* catches;
    const char* family;
    std::vector<double> values;
    Given given;
    Messages messages;
  } cases[] = {
      {"no record", "Normal", none, {}, Error(220003)},
      {"no record", "Poisson", none, {}, Error(220003)},
      {"no valid value", "Uniform", {5}, {{"min", 0}, {"max", 1}}, Error(220310)},
      {"no valid value", "Exponential", {-5}, {}, Error(220313)},
      {"half a count", "Poisson", {1, 2.5}, {}, Error(220312, {"2.5", "1"})},
      {"half a count amid others", "Poisson", {1, 2.5, 3}, {}, Error(220312, {"2.5", "1"})},
      {"a negative count", "Poisson", {-1, 2}, {}, Error(220312, {"-1", "1"})},
      {"mean 0", "Poisson", {0, 0}, {}, Error(220312)},
      {"mean 0", "Exponential", {0, 0}, {}, Error(220313)},
      {"no spread", "Normal", {3, 3}, {}, Error(220315)},
      {"no range", "Uniform", {3, 3}, {}, Error(220316)},
      {"infinite mean", "Exponential", {1, 2, kInfinity}, {}, Error(220313)},
      {"infinite range", "Uniform", {-kInfinity, 1, 2}, {}, Error(220316)},
      {"a range beyond doubles", "Uniform", {-1e308, 1e308}, {}, Error(220316)},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(row.family) + ": " + row.catches);
    const AlgorithmElement result = Result(row.family, row.values, row.given);
    EXPECT_EQ(result.Messages(), row.messages);
    EXPECT_EQ(result.Decision(), "unknown");
  }
  ExpectMessages("OKolmogorovSmirnovPoisson", VariableListBuilder().Continuous("x").Build(),
                 {{1}, {2.5}},
                 {{"without weights", Entry("variableName", "x"), Error(220312, {"2.5", "1"})}});
  ExpectMessages("OKolmogorovSmirnovPoisson",
                 VariableListBuilder().Weight("n").Continuous("x").Build(), {{1, 1}, {3, 2.5}},
                 {{"weighted", Entry("variableName", "x"), Error(220312, {"2.5", "3"})}});
  ExpectMessages("OKolmogorovSmirnovNormal", VariableListBuilder().Nominal("letter", {"a"}).Build(),
                 {{0}},
                 {{"no field", Entry(), Error(220303)},
                  {"an unknown one", Entry("variableName", "nobody"), Error(220303, {"nobody"})},
                  {"not continuous", Entry("variableName", "letter"), Error(220304)}});
}

}  // namespace
