#include "frame/test_keys.h"

namespace {

using Keys = TestForm::Keys;

constexpr Keys kNone{};
constexpr Keys kTwoGroups{"userSpecifyGroupList", "group1List", "group2List"};
constexpr Keys kComparison{"typeOfMultipleComparison"};
constexpr Keys kCategoryClasses{"catVarClassFormation", "givenCategoryList"};
constexpr Keys kCutPointClasses{"contVarClassFormation", "givenCutPoint"};

// One row a test: host's key; entry; name in warnings; fields.
constexpr TestKey kTestKeys[] = {
    {"OBinomial",
     {"OBinomial", {"testProbability"}, kCategoryClasses, kCutPointClasses},
     "Binomial",
     TestKey::kAll},
    {"OChiSquare",
     {"OChiSquare", {"classFormation", "custom"}},
     "ChiSquare",
     TestKey::kCategorical},
    {"ORuns",
     {"ORuns", kNone, kCategoryClasses, {"contVarClassFormation", "cutPointValue"}},
     "Runs",
     TestKey::kAll},
    {"OKolmogorovSmirnovNormal",
     {"OKolmogorovSmirnovNormal", {"isUseSample", "mean", "stdDev"}, kNone, kNone, "normal"},
     "KolmogorovSmirnov"},
    {"OKolmogorovSmirnovUniform",
     {"OKolmogorovSmirnovUniform", {"isUseSample", "min", "max"}, kNone, kNone, "uniform"},
     "KolmogorovSmirnov"},
    {"OKolmogorovSmirnovPoisson",
     {"OKolmogorovSmirnovPoisson", {"isUseSample", "mean"}, kNone, kNone, "poisson"},
     "KolmogorovSmirnov"},
    {"OKolmogorovSmirnovExponential",
     {"OKolmogorovSmirnovExponential", {"isUseSample", "mean"}, kNone, kNone, "exponential"},
     "KolmogorovSmirnov"},
    {"OWilcoxonSignedRanks",
     {"OWilcoxonSignedRanks", {"userSpecifyTestValue", "testValue"}},
     "WilcoxonSignedRanks"},

    {"RMcNemar",
     {"RMcNemar", {"classFormation", "categoriesList"}},
     "McNemar",
     TestKey::kCategorical,
     2},
    {"RMarginalHomogeneity", {"RMarginalHomogeneity"}, "MarginalHomogeneity", TestKey::kOrdinal, 2},
    {"RSign", {"RSign"}, "Sign", TestKey::kContinuous, 2},
    {"RWilcoxonSignedRanks",
     {"RWilcoxonSignedRanks"},
     "WilcoxonSignedRanks",
     TestKey::kContinuous,
     2},
    {"RHodgesLehmannEstimatePairs",
     {"RHodgesLehmannEstimatePairs"},
     "HodgesLehmannEstimatePairs",
     TestKey::kContinuous,
     2},
    {"RCochransQ",
     {"RCochransQ", {"classFormation", "successCategoryList", "typeOfMultipleComparison"}},
     "CochransQ",
     TestKey::kCategorical},
    {"RFriedmansTwoWayByRanks", {"RFriedmansTwoWayByRanks", kComparison}, "FriedmansTwoWayByRanks"},
    {"RKendallsCoefficient", {"RKendallsCoefficient", kComparison}, "KendallsCoefficient"},

    {"IWaldWolfowitzRuns", {"IWaldWolfowitzRuns", kTwoGroups}},
    {"IHodgesLehmannEstimateIndependent", {"IHodgesLehmannEstimateGroups", kTwoGroups}},
    {"IKMedian",
     {"IMedian",
      {"typeOfMultipleComparison", "userSpecifyMedian", "median", "userSpecifyGroupRange"}}},
    {"IMannWhitneyU", {"IMannWhitneyU", kTwoGroups}},
    {"IMoses",
     {"IMoses",
      {"userSpecifyNumberOfOutliers", "NumberOfOutliers", "userSpecifyGroupList", "group1List",
       "group2List"}}},
    {"IKolmogorovSmirnov", {"IKolmogorovSmirnov", kTwoGroups}},
    {"IKruskalWallis", {"IKruskalWallis", kComparison}},
    {"IJonckheereTerpstra",
     {"IJonckheereTerpstra", {"typeOfMultipleComparison", "orderOfHypotheses"}}},
};

constexpr TestForm kIntervalForm{"OEstimateConfidenceInterval",
                                 {"isDoClopperPearson", "isDoJeffreys", "isDoProfileLikelihood"},
                                 kCategoryClasses,
                                 kCutPointClasses};

}  // namespace

std::span<const TestKey> TestKeys() { return kTestKeys; }

const TestForm& IntervalForm() { return kIntervalForm; }
