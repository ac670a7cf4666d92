#include "host/cli/test_registry.h"

namespace npar_host {
namespace {

constexpr DocumentEntry kNone{};

constexpr OptionWord kComparisonWords[] = {
    {"none", {"typeOfMultipleComparison", "none"}},
    {"pairwise", {"typeOfMultipleComparison", "pairWise"}},
    {"stepwise", {"typeOfMultipleComparison", "stepWise"}},
};
constexpr OptionWord kIntervalWords[] = {
    {"clopper-pearson", {"isDoClopperPearson", "true"}},
    {"jeffreys", {"isDoJeffreys", "true"}},
    {"profile", {"isDoProfileLikelihood", "true"}},
};
constexpr OptionWord kRunsCutWords[] = {
    {"median", {"contVarClassFormation", "cutPointMedian"}},
    {"mean", {"contVarClassFormation", "cutPointMean"}},
};
constexpr OptionWord kOrderWords[] = {
    {"ascending", {"orderOfHypotheses", "orderSmallestToLargest"}},
    {"descending", {"orderOfHypotheses", "orderLargestToSmallest"}},
};

constexpr TestOption kComparison = {
    "compare",
    OptionKind::Word,
    nullptr,
    kNone,
    {"typeOfMultipleComparison", "none"},
    kComparisonWords,
    "none|pairwise|stepwise",
    "none",
    "what to compare after a significant overall test: each pair, or homogeneous subsets step by "
    "step"};

constexpr TestOption Success(const char* documentKey) {
  return {"success",
          OptionKind::Categories,
          documentKey,
          {"classFormation", "givenCategoryList"},
          {"classFormation", "getFromData"},
          {},
          "A|B",
          "the first record's category",
          "the categories that count as success"};
}

constexpr TestOption kGroup1 = {"group1",
                                OptionKind::Categories,
                                "group1List",
                                {"userSpecifyGroupList", "true"},
                                kNone,
                                {},
                                "A|B",
                                "the first of exactly two categories",
                                "the categories that form the first group; together with group2"};
constexpr TestOption kGroup2 = {"group2",
                                OptionKind::Categories,
                                "group2List",
                                {"userSpecifyGroupList", "true"},
                                kNone,
                                {},
                                "C",
                                "the second of exactly two categories",
                                "the categories that form the second group; together with group1"};

constexpr TestOption Parameter(const char* name, const char* documentKey, const char* help) {
  return {name, OptionKind::Number, documentKey, kNone, kNone, {}, "NUMBER", "from the data", help};
}

constexpr TestOption kBinomial[] = {
    {"p",
     OptionKind::Number,
     "testProbability",
     kNone,
     kNone,
     {},
     "NUMBER",
     "0.5",
     "the hypothesised probability of the first class, between 0 and 1"},
    {"success",
     OptionKind::Categories,
     "givenCategoryList",
     {"catVarClassFormation", "givenCategoryList"},
     {"catVarClassFormation", "getFromData"},
     {},
     "A|B",
     "the first record's category",
     "the categories of the first class of a categorical field"},
    {"cut",
     OptionKind::Number,
     "givenCutPoint",
     {"contVarClassFormation", "givenCutPoint"},
     {"contVarClassFormation", "sampleMidPoint"},
     {},
     "NUMBER",
     "the middle of the range",
     "the largest value of the first class of a continuous field"},
    {"intervals", OptionKind::Words, nullptr, kNone, kNone, kIntervalWords,
     "clopper-pearson|jeffreys|profile", "none",
     "confidence intervals of the first class's share, by one method or more"},
};
constexpr TestOption kChiSquare[] = {
    {"expected",
     OptionKind::Expected,
     "custom",
     {"classFormation", "givenExpectedValue"},
     {"classFormation", "getFromData"},
     {},
     "a=2|b=1",
     "all categories equally often",
     "the hypothesised proportions, as category=number"},
};
constexpr TestOption kNormal[] = {
    Parameter("mean", "mean", "the mean of the normal distribution"),
    Parameter("sd", "stdDev", "its standard deviation"),
};
constexpr TestOption kUniform[] = {
    Parameter("min", "min", "the lower end of the uniform distribution"),
    Parameter("max", "max", "its upper end"),
};
constexpr TestOption kPoisson[] = {
    Parameter("mean", "mean", "the mean of the Poisson distribution"),
};
constexpr TestOption kExponential[] = {
    Parameter("mean", "mean", "the mean of the exponential distribution"),
};
constexpr TestOption kRuns[] = {
    {"cut",
     OptionKind::NumberOrWord,
     "cutPointValue",
     {"contVarClassFormation", "cutPointValue"},
     {"contVarClassFormation", "cutPointMedian"},
     kRunsCutWords,
     "median|mean|NUMBER",
     "median",
     "where the values of a continuous field are split into two groups"},
    {"group1",
     OptionKind::Categories,
     "givenCategoryList",
     {"catVarClassFormation", "givenCategoryList"},
     {"catVarClassFormation", "getFromData"},
     {},
     "A|B",
     "the first of exactly two categories",
     "the categories that form the first group of a categorical field"},
};
constexpr TestOption kWilcoxon[] = {
    {"median",
     OptionKind::Number,
     "testValue",
     {"userSpecifyTestValue", "true"},
     {"userSpecifyTestValue", "false"},
     {},
     "NUMBER",
     "the median of the data",
     "the hypothesised median"},
};
constexpr TestOption kMcNemar[] = {Success("categoriesList")};
constexpr TestOption kCochran[] = {Success("successCategoryList"), kComparison};
constexpr TestOption kComparisonOnly[] = {kComparison};
constexpr TestOption kTwoGroups[] = {kGroup1, kGroup2};
constexpr TestOption kMoses[] = {
    kGroup1,
    kGroup2,
    {"outliers",
     OptionKind::Count,
     "NumberOfOutliers",
     {"userSpecifyNumberOfOutliers", "true"},
     kNone,
     {},
     "COUNT",
     "5 % of the control group, at least 1",
     "how many values are trimmed from each end of the control group"},
};
constexpr TestOption kMedian[] = {
    {"median",
     OptionKind::Number,
     "median",
     {"userSpecifyMedian", "true"},
     kNone,
     {},
     "NUMBER",
     "the median of all groups together",
     "the hypothesised common median"},
    kComparison,
};
constexpr TestOption kJonckheere[] = {
    {"order", OptionKind::Word, nullptr, kNone, kNone, kOrderWords, "ascending|descending",
     "ascending", "the order of the groups that the alternative names"},
    kComparison,
};

constexpr const char* kAnyOneSample = "each continuous, nominal or ordinal field on its own";
constexpr const char* kContinuousOneSample = "each continuous field on its own";
constexpr const char* kContinuousPair = "exactly 2 continuous fields";
constexpr const char* kContinuousSeveral = "2 or more continuous fields";
constexpr const char* kTwoGroupFields = "continuous fields; a group field with two groups";
constexpr const char* kSeveralGroupFields =
    "continuous fields; a group field with 2 or more groups";

constexpr auto kOneSample = TestFamily::OneSample;
constexpr auto kRelated = TestFamily::Related;
constexpr auto kIndependent = TestFamily::Independent;

constexpr TestDescription kTests[] = {
    {"binomial", "OBinomial", "Binomial test", kOneSample, kAnyOneSample, kBinomial},
    {"chi-square", "OChiSquare", "Chi-square test of proportions", kOneSample,
     "each nominal or ordinal field on its own", kChiSquare},
    {"ks-normal", "OKolmogorovSmirnovNormal", "Kolmogorov-Smirnov test against the normal",
     kOneSample, kContinuousOneSample, kNormal},
    {"ks-uniform", "OKolmogorovSmirnovUniform", "Kolmogorov-Smirnov test against the uniform",
     kOneSample, kContinuousOneSample, kUniform},
    {"ks-poisson", "OKolmogorovSmirnovPoisson", "Kolmogorov-Smirnov test against the Poisson",
     kOneSample, kContinuousOneSample, kPoisson},
    {"ks-exponential", "OKolmogorovSmirnovExponential",
     "Kolmogorov-Smirnov test against the exponential", kOneSample, kContinuousOneSample,
     kExponential},
    {"runs", "ORuns", "Runs test of randomness", kOneSample, kAnyOneSample, kRuns},
    {"wilcoxon", "OWilcoxonSignedRanks", "Wilcoxon signed-rank test of a median", kOneSample,
     kContinuousOneSample, kWilcoxon},

    {"sign", "RSign", "Sign test", kRelated, kContinuousPair, {}},
    {"wilcoxon-pairs",
     "RWilcoxonSignedRanks",
     "Wilcoxon matched-pairs signed-rank test",
     kRelated,
     kContinuousPair,
     {}},
    {"mcnemar", "RMcNemar", "McNemar's test", kRelated,
     "exactly 2 nominal fields, exactly 2 ordinal fields, or both, with the same two categories",
     kMcNemar},
    {"marginal-homogeneity",
     "RMarginalHomogeneity",
     "Marginal homogeneity test",
     kRelated,
     "exactly 2 ordinal fields",
     {}},
    {"cochran-q", "RCochransQ", "Cochran's Q test", kRelated,
     "2 or more nominal fields, 2 or more ordinal fields, or both, with the same two categories",
     kCochran},
    {"friedman", "RFriedmansTwoWayByRanks", "Friedman's two-way analysis of variance by ranks",
     kRelated, kContinuousSeveral, kComparisonOnly},
    {"kendall-w", "RKendallsCoefficient", "Kendall's coefficient of concordance", kRelated,
     kContinuousSeveral, kComparisonOnly},
    {"hodges-lehmann-pairs",
     "RHodgesLehmannEstimatePairs",
     "Hodges-Lehmann estimate of the median difference",
     kRelated,
     kContinuousPair,
     {}},

    {"mann-whitney", "IMannWhitneyU", "Mann-Whitney U test", kIndependent, kTwoGroupFields,
     kTwoGroups},
    {"ks-two-sample", "IKolmogorovSmirnov", "Two-sample Kolmogorov-Smirnov test", kIndependent,
     kTwoGroupFields, kTwoGroups},
    {"wald-wolfowitz", "IWaldWolfowitzRuns", "Wald-Wolfowitz runs test", kIndependent,
     kTwoGroupFields, kTwoGroups},
    {"moses", "IMoses", "Moses test of extreme reactions", kIndependent, kTwoGroupFields, kMoses},
    {"median", "IKMedian", "Median test", kIndependent, kSeveralGroupFields, kMedian},
    {"kruskal-wallis", "IKruskalWallis", "Kruskal-Wallis one-way analysis of variance by ranks",
     kIndependent, kSeveralGroupFields, kComparisonOnly},
    {"jonckheere-terpstra", "IJonckheereTerpstra",
     "Jonckheere-Terpstra test for ordered alternatives", kIndependent, kSeveralGroupFields,
     kJonckheere},
    {"hodges-lehmann-groups", "IHodgesLehmannEstimateIndependent",
     "Hodges-Lehmann estimate of the shift between two groups", kIndependent, kTwoGroupFields,
     kTwoGroups},
};

}  // namespace

std::span<const TestDescription> AllTests() { return kTests; }

const TestDescription* FindTest(std::string_view name) {
  for (const TestDescription& test : kTests) {
    if (test.name == name) return &test;
  }
  return nullptr;
}

std::vector<std::string> TestNames() {
  std::vector<std::string> names;
  for (const TestDescription& test : kTests) names.emplace_back(test.name);
  return names;
}

const TestOption* FindOption(const TestDescription& test, std::string_view name) {
  for (const TestOption& option : test.options) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

const char* FamilyName(TestFamily family) {
  switch (family) {
    case TestFamily::OneSample:
      return "one-sample";
    case TestFamily::Related:
      return "related";
    case TestFamily::Independent:
      return "independent";
  }
  return "";
}

}  // namespace npar_host
