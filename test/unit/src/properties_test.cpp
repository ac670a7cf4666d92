#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/settings_translator.h"
#include "planning/test_table.h"
#include "support/algorithm_element.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

// What must hold of every test on any data, whatever its figures are.
namespace {

using Texts = std::vector<std::string>;

constexpr double kMissing = -0x1.ffffffffffffep+1023;  // of a continuous field; a code is -1
constexpr double kNothing = -1.0;

// Positions in a record.
enum Column { X, Y, Z, Count, G, H, P, Q, R, O1, O2, W, kWidth };

QDVarList Variables(bool isWeighted = true) {
  VariableListBuilder builder;
  builder.Continuous("x").Continuous("y").Continuous("z").Continuous("count");
  builder.Nominal("g", {"a", "b"}).Nominal("h", {"d", "b", "c", "a"});
  builder.Nominal("p", {"yes", "no"}).Nominal("q", {"yes", "no"}).Nominal("r", {"no", "yes"});
  builder.OrdinalNumbers("o1", {1, 2, 4}).OrdinalNumbers("o2", {1, 2, 4});
  return (isWeighted ? builder.Weight("w") : builder.Continuous("w")).Build();
}

struct Entry {
  const char* name;
  TestSettings (*make)();
  bool isByRanks = false;  // the order of the values is all that counts
};

TestSettings Of(const std::string& field) {
  return std::move(TestSettings().Put("variableName", field));
}
TestSettings Of(const Texts& fields) {
  return std::move(TestSettings().Put("variableName", fields));
}
TestSettings Between(const char* group) {
  return std::move(Of(std::string("x")).Put("groupVariableName", group));
}
TestSettings Given(const Texts& first, const Texts& second) {
  return std::move(Between("h")
                       .Put("userSpecifyGroupList", "true")
                       .Put("group1List", first)
                       .Put("group2List", second));
}
TestSettings Compared(TestSettings entry, const char* procedure) {
  return std::move(entry.Put("typeOfMultipleComparison", procedure)
                       .Put("orderOfHypotheses", "orderSmallestToLargest"));
}
TestSettings Successes(const Texts& fields, const char* key) {
  return std::move(Of(fields).Put("classFormation", "givenCategoryList").Put(key, Texts{"yes"}));
}
TestSettings Binary(const char* field, const char* category) {
  return std::move(Of(std::string(field))
                       .Put("catVarClassFormation", "givenCategoryList")
                       .Put("givenCategoryList", Texts{category}));
}
TestSettings Intervals(const char* category) {
  return std::move(Binary("p", category)
                       .Put("isDoClopperPearson", "true")
                       .Put("isDoJeffreys", "true")
                       .Put("isDoProfileLikelihood", "true"));
}

// No entry that takes its classes from the first record, and no runs of records.
const Entry kEntries[] = {
    {"OBinomial", [] { return Binary("p", "yes"); }},
    {"OBinomial", [] { return Of("x"); }, true},
    {"OChiSquare", [] { return Of("h"); }},
    {"OEstimateConfidenceInterval", [] { return Intervals("yes"); }},
    {"OKolmogorovSmirnovExponential", [] { return Of("count"); }},
    {"OKolmogorovSmirnovNormal", [] { return Of("x"); }},
    {"OKolmogorovSmirnovPoisson", [] { return Of("count"); }},
    {"OKolmogorovSmirnovUniform", [] { return Of("x"); }},
    {"OWilcoxonSignedRanks", [] { return Of("x"); }},
    {"RCochransQ",
     [] {
       return Compared(Successes({"p", "q", "r"}, "successCategoryList"), "pairWise");
     }},
    {"RCochransQ",
     [] {
       return Compared(Successes({"p", "q", "r"}, "successCategoryList"), "stepWise");
     }},
    {"RFriedmansTwoWayByRanks",
     [] {
       return Compared(Of(Texts{"x", "y", "z"}), "pairWise");
     },
     true},
    {"RFriedmansTwoWayByRanks",
     [] {
       return Compared(Of(Texts{"x", "y", "z"}), "stepWise");
     },
     true},
    {"RHodgesLehmannEstimatePairs",
     [] {
       return Of(Texts{"x", "y"});
     }},
    {"RKendallsCoefficient",
     [] {
       return Compared(Of(Texts{"x", "y", "z"}), "pairWise");
     },
     true},
    {"RMarginalHomogeneity",
     [] {
       return Of(Texts{"o1", "o2"});
     }},
    {"RMcNemar",
     [] {
       return Successes({"p", "q"}, "categoriesList");
     }},
    {"RSign",
     [] {
       return Of(Texts{"x", "y"});
     },
     true},
    {"RWilcoxonSignedRanks",
     [] {
       return Of(Texts{"x", "y"});
     },
     true},
    {"IHodgesLehmannEstimateGroups", [] { return Between("g"); }},
    {"IJonckheereTerpstra", [] { return Compared(Between("h"), "pairWise"); }, true},
    {"IJonckheereTerpstra", [] { return Compared(Between("h"), "stepWise"); }, true},
    {"IKolmogorovSmirnov", [] { return Between("g"); }, true},
    {"IKruskalWallis", [] { return Compared(Between("h"), "pairWise"); }, true},
    {"IKruskalWallis", [] { return Compared(Between("h"), "stepWise"); }, true},
    {"IMannWhitneyU", [] { return Between("g"); }, true},
    {"IMedian", [] { return Compared(Between("h"), "pairWise"); }, true},
    {"IMedian", [] { return Compared(Between("h"), "stepWise"); }, true},
    {"IMoses", [] { return Between("g"); }, true},
    {"IWaldWolfowitzRuns", [] { return Between("g"); }, true},
};

// In the order in which the records stand.
const Entry kOrderedEntries[] = {
    {"ORuns", [] { return Of("x"); }},
    {"ORuns", [] { return Of("p"); }},
    {"OBinomial", [] { return Of("p"); }},
    {"RMcNemar",
     [] {
       return Of(Texts{"p", "q"});
     }},
    {"RCochransQ",
     [] {
       return Of(Texts{"p", "q", "r"});
     }},
};

QDSettings AllEntries(const std::string& missingTreatment) {
  QDSettings all;
  all.AddNewSetting("missingTreatment", missingTreatment, std::string());
  for (const Entry& each : kEntries) all.AddNewSetting(each.name, each.make().Get(), std::string());
  for (const Entry& each : kOrderedEntries) {
    all.AddNewSetting(each.name, each.make().Get(), std::string());
  }
  return all;
}

/// Records on a coarse grid, so that ties are common; values are exact quarters.
rc::Gen<Rows> Records(bool withMissing = true) {
  const auto number = [=](int from, int to, double unit, double missing) {
    const auto value = rc::gen::map(rc::gen::inRange(from, to), [=](int i) { return i * unit; });
    if (!withMissing) return rc::Gen<double>(value);
    return rc::Gen<double>(
        rc::gen::weightedOneOf<double>({{19, value}, {1, rc::gen::just(missing)}}));
  };
  return rc::gen::nonEmpty(rc::gen::container<Rows>(rc::gen::exec([=] {
    std::vector<double> row(kWidth);
    for (const Column column : {X, Y, Z}) row[column] = *number(-8, 9, 0.25, kMissing);
    row[Count] = *number(0, 6, 1.0, kMissing);
    for (const Column column : {G, P, Q, R}) row[column] = *number(0, 2, 1.0, kNothing);
    row[H] = *number(0, 4, 1.0, kNothing);
    for (const Column column : {O1, O2}) row[column] = *number(0, 3, 1.0, kNothing);
    row[W] = *rc::gen::map(rc::gen::inRange(1, 5), [](int i) { return double(i); });
    return row;
  })));
}

/// Texts alike, numbers in them up to rounding: sums may have been taken in another order.
bool IsAlike(const std::string& first, const std::string& second) {
  constexpr char kEnds[] = "\"';,<>= \n";
  std::size_t i = 0;
  std::size_t k = 0;
  while (i < first.size() && k < second.size()) {
    const std::size_t endI = std::min(first.find_first_of(kEnds, i), first.size() - 1);
    const std::size_t endK = std::min(second.find_first_of(kEnds, k), second.size() - 1);
    if (first.compare(i, endI - i + 1, second, k, endK - k + 1) != 0) {
      double a = 0.0;
      double b = 0.0;
      const auto readA = std::from_chars(&first[i], &first[endI], a);
      const auto readB = std::from_chars(&second[k], &second[endK], b);
      if (readA.ptr != &first[endI] || readB.ptr != &second[endK]) return false;
      if (first[endI] != second[endK]) return false;
      if (!(std::fabs(a - b) <= 1e-10 * std::max(1.0, std::fabs(a)))) return false;
    }
    i = endI + 1;
    k = endK + 1;
  }
  return i >= first.size() && k >= second.size();
}

void RequireAlike(const Entry& entry, const std::string& first, const std::string& second) {
  if (IsAlike(first, second)) return;
  RC_LOG() << entry.name << "\n" << first << "\n" << second;
  RC_FAIL("not alike");
}

AlgorithmElement Run(const Rows& rows, const std::string& name, const TestSettings& entry,
                     bool isWeighted = true) {
  return RunEntry(Variables(isWeighted), rows, name, entry.Get());
}

TEST(PropertyTable, NamesEveryTest) {
  for (const TestTableRow& row : TestTable()) {
    const auto isIt = [&](const Entry& entry) { return entry.name == row.entryName; };
    EXPECT_TRUE(std::any_of(std::begin(kEntries), std::end(kEntries), isIt) ||
                std::any_of(std::begin(kOrderedEntries), std::end(kOrderedEntries), isIt))
        << row.entryName;
  }
}

RC_GTEST_PROP(Property, OrderOfRecordsIsOfNoMatter, ()) {
  const Rows rows = *Records();
  Rows shuffled = rows;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(*rc::gen::arbitrary<unsigned>()));
  for (const Entry& entry : kEntries) {
    RequireAlike(entry, Run(rows, entry.name, entry.make()).Xml(),
                 Run(shuffled, entry.name, entry.make()).Xml());
  }
}

/// A record is one outlier, whatever it weighs.
std::string WithoutOutliers(std::string text) {
  constexpr std::string_view kBegin = "<SimpleTable name=\"Outliers\">";
  constexpr std::string_view kEnd = "</SimpleTable>";
  for (std::size_t at = text.find(kBegin); at != std::string::npos; at = text.find(kBegin)) {
    text.erase(at, text.find(kEnd, at) + kEnd.size() - at);
  }
  return text;
}

RC_GTEST_PROP(Property, RecordOfWeightWCountsAsWRecords, ()) {
  const Rows rows = *Records();
  Rows repeated;
  for (const std::vector<double>& row : rows) {
    repeated.insert(repeated.end(), static_cast<std::size_t>(row[W]), row);
  }
  const auto check = [&](const Entry& entry) {
    RequireAlike(entry, WithoutOutliers(Run(rows, entry.name, entry.make()).Xml()),
                 WithoutOutliers(Run(repeated, entry.name, entry.make(), false).Xml()));
  };
  std::for_each(std::begin(kEntries), std::end(kEntries), check);
  std::for_each(std::begin(kOrderedEntries), std::end(kOrderedEntries), check);
}

RC_GTEST_PROP(Property, RanksKnowNoScale, ()) {
  const Rows rows = *Records();
  const double scale = std::ldexp(1.0, *rc::gen::inRange(-20, 20));
  const double shift = scale * *rc::gen::inRange(-1000, 1000);
  Rows moved = rows;
  for (std::vector<double>& row : moved) {
    for (const Column column : {X, Y, Z}) {
      if (row[column] != kMissing) row[column] = row[column] * scale + shift;
    }
  }
  for (const Entry& entry : kEntries) {
    if (!entry.isByRanks) continue;
    const AlgorithmElement first = Run(rows, entry.name, entry.make());
    const AlgorithmElement second = Run(moved, entry.name, entry.make());
    RC_ASSERT(first.Decision() == second.Decision());
    RC_ASSERT(first.MessageCodes() == second.MessageCodes());
    for (const char* figure :
         {"TestStatistic", "StandardTestStatistic", "AsymptoticSig2Tailed", "AsymptoticSig1Tailed",
          "ExactSig2Tailed", "ExactSig1Tailed", "TotalN", "MannWhitneyU", "Absolute"}) {
      RC_LOG() << entry.name << " " << figure << "\n";
      RC_ASSERT(first.Text(figure) == second.Text(figure));
    }
  }
}

struct Swap {
  const char* name;
  TestSettings (*first)();
  TestSettings (*second)();
  std::vector<const char*> kept;
  std::vector<std::pair<const char*, const char*>> negated;
};

const std::vector<const char*> kTwoSided = {"AsymptoticSig2Tailed", "ExactSig2Tailed", "TotalN"};
constexpr std::pair<const char*, const char*> kZ{"StandardTestStatistic", "StandardTestStatistic"};

const Swap kSwaps[] = {
    {"IMannWhitneyU",
     [] {
       return Given({"a"}, {"b", "c"});
     },
     [] {
       return Given({"b", "c"}, {"a"});
     },
     kTwoSided,
     {kZ}},
    {"IKolmogorovSmirnov",
     [] {
       return Given({"a"}, {"b", "c"});
     },
     [] {
       return Given({"b", "c"}, {"a"});
     },
     {"AsymptoticSig2Tailed", "Absolute", "TestStatistic"},
     {}},
    {"IWaldWolfowitzRuns",
     [] {
       return Given({"a"}, {"b", "c"});
     },
     [] {
       return Given({"b", "c"}, {"a"});
     },
     {"MinimumRuns/AsymptoticSig1Tailed", "MaximumRuns/AsymptoticSig1Tailed",
      "MaximumRuns/ExactSig1Tailed", "MinimumRuns/ExactSig1Tailed", "TotalN"},
     {}},
    {"IHodgesLehmannEstimateGroups",
     [] {
       return Given({"a"}, {"b", "c"});
     },
     [] {
       return Given({"b", "c"}, {"a"});
     },
     {},
     {{"Estimate", "Estimate"}, {"Lower", "Upper"}, {"Upper", "Lower"}}},
    {"RSign",
     [] {
       return Of(Texts{"x", "y"});
     },
     [] {
       return Of(Texts{"y", "x"});
     },
     kTwoSided,
     {kZ}},
    {"RWilcoxonSignedRanks",
     [] {
       return Of(Texts{"x", "y"});
     },
     [] {
       return Of(Texts{"y", "x"});
     },
     kTwoSided,
     {kZ}},
    {"RHodgesLehmannEstimatePairs",
     [] {
       return Of(Texts{"x", "y"});
     },
     [] {
       return Of(Texts{"y", "x"});
     },
     {},
     {{"Estimate", "Estimate"}, {"Lower", "Upper"}, {"Upper", "Lower"}}},
    {"RMarginalHomogeneity",
     [] {
       return Of(Texts{"o1", "o2"});
     },
     [] {
       return Of(Texts{"o2", "o1"});
     },
     kTwoSided,
     {kZ}},
    {"RMcNemar",
     [] {
       return Successes({"p", "q"}, "categoriesList");
     },
     [] {
       return Successes({"q", "p"}, "categoriesList");
     },
     {"TestStatistic", "AsymptoticSig2Tailed", "ExactSig2Tailed", "TotalN"},
     {}},
    {"RCochransQ",
     [] {
       return Successes({"p", "q", "r"}, "successCategoryList");
     },
     [] {
       return Successes({"r", "p", "q"}, "successCategoryList");
     },
     {"TestStatistic", "AsymptoticSig2Tailed", "TotalN"},
     {}},
    {"RFriedmansTwoWayByRanks",
     [] {
       return Of(Texts{"x", "y", "z"});
     },
     [] {
       return Of(Texts{"z", "x", "y"});
     },
     {"TestStatistic", "AsymptoticSig2Tailed", "TotalN"},
     {}},
    {"OBinomial",  // the complementary category, p = 1/2
     [] { return Binary("p", "yes"); },
     [] { return Binary("p", "no"); },
     kTwoSided,
     {kZ}},
    {"ORuns",
     [] { return Binary("p", "yes"); },
     [] { return Binary("p", "no"); },
     {"TestStatistic", "StandardTestStatistic", "AsymptoticSig2Tailed", "TotalN"},
     {}},
};

RC_GTEST_PROP(Property, SwappedSidesChangeTheSignAndNoP, ()) {
  const Rows rows = *Records();
  for (const Swap& swap : kSwaps) {
    const AlgorithmElement first = Run(rows, swap.name, swap.first());
    const AlgorithmElement second = Run(rows, swap.name, swap.second());
    RC_LOG() << swap.name << first.Xml() << second.Xml();
    RC_ASSERT(first.Decision() == second.Decision());
    for (const char* figure : swap.kept)
      RC_ASSERT(IsAlike(first.Text(figure), second.Text(figure)));
    for (const auto& [one, other] : swap.negated) {
      const std::optional<double> a = first.Number(one);
      const std::optional<double> b = second.Number(other);
      RC_ASSERT(a.has_value() == b.has_value());
      if (!a || (std::isnan(*a) && std::isnan(*b))) continue;
      RC_ASSERT(std::fabs(*a + *b) <= 1e-10 * std::max(1.0, std::fabs(*a)));
    }
  }
}

RC_GTEST_PROP(Property, ComplementaryCategoryHasTheComplementaryInterval, ()) {
  const Rows rows = *Records();
  const AlgorithmElement yes = Run(rows, "OEstimateConfidenceInterval", Intervals("yes"));
  const AlgorithmElement no = Run(rows, "OEstimateConfidenceInterval", Intervals("no"));
  RC_LOG() << yes.Xml() << no.Xml();
  RC_ASSERT(yes.MessageCodes() == no.MessageCodes());
  for (const auto& [one, other] : {std::pair{"Estimate", "Estimate"}, {"Lower", "Upper"}}) {
    const std::optional<double> a = yes.Number(one);
    const std::optional<double> b = no.Number(other);
    RC_ASSERT(a.has_value() == b.has_value());
    if (a && !std::isnan(*a)) RC_ASSERT(std::fabs(*a + *b - 1.0) <= 1e-10);
  }
}

RC_GTEST_PROP(Property, WithoutMissingValuesListwiseIsAnalysis, ()) {
  const Rows rows = *Records(false);
  const QDVarList variables = Variables();
  const auto analysis =
      AlgorithmElement::AllOf(RunDocument(variables, rows, AllEntries("analysis")));
  const auto listwise =
      AlgorithmElement::AllOf(RunDocument(variables, rows, AllEntries("listwise")));
  RC_ASSERT(analysis.size() == listwise.size());
  for (std::size_t i = 0; i < analysis.size(); ++i)
    RC_ASSERT(analysis[i].Xml() == listwise[i].Xml());
}

/// The document of a host's settings.
std::string RunHostSettings(const Rows& rows, const TestSettings& chosen) {
  const QDVarList variables = Variables();
  QDSettings settings;
  NPARSettingsTranslator translator(chosen.Get(), variables, settings);
  RC_ASSERT(translator.Run().IsOK());
  return RunDocument(variables, rows, settings);
}

RC_GTEST_PROP(Property, AutomaticChoiceIsTheSameTestByHand, ()) {
  constexpr std::pair kPairwise{"typeOfMultipleComparison", "pairWise"};
  const struct {
    const char* family;
    const char* listKey;
    Texts fields;
    const char* group;
    const char* test;
    std::pair<const char*, const char*> setting;  // of the test, by hand
  } choices[] = {
      {"OneSample", "oneSampleVariables", {"p"}, nullptr, "OBinomial", {}},
      {"OneSample",
       "oneSampleVariables",
       {"h"},
       nullptr,
       "OChiSquare",
       {"classFormation", "getFromData"}},
      {"OneSample", "oneSampleVariables", {"x"}, nullptr, "OKolmogorovSmirnovNormal", {}},
      {"Related", "relatedVariables", {"x", "y"}, nullptr, "RWilcoxonSignedRanks", {}},
      {"Related",
       "relatedVariables",
       {"x", "y", "z"},
       nullptr,
       "RFriedmansTwoWayByRanks",
       kPairwise},
      {"Related", "relatedVariables", {"p", "q"}, nullptr, "RMcNemar", {}},
      {"Related", "relatedVariables", {"p", "q", "r"}, nullptr, "RCochransQ", kPairwise},
      {"Independent", "independentVariables", {"x"}, "g", "IMannWhitneyU", {}},
      {"Independent", "independentVariables", {"x"}, "h", "IKruskalWallis", kPairwise},
  };
  const Rows rows = *Records();
  for (const auto& choice : choices) {
    const auto document = [&](const char* isAutomatic) {
      TestSettings settings;
      settings.Put(choice.listKey, choice.fields);
      if (choice.group != nullptr) settings.Put("groupVariable", choice.group);
      settings.Put("isAutomatically" + std::string(choice.family), isAutomatic);
      TestSettings test;
      test.Put("isSelected", "true");
      if (choice.setting.first != nullptr) test.Put(choice.setting.first, choice.setting.second);
      if (isAutomatic == std::string("false")) settings.Put(choice.test, test.Get());
      return RunHostSettings(rows, settings);
    };
    RC_LOG() << choice.test << "\n";
    const std::string automatic = document("true");
    RC_ASSERT(AlgorithmElement::AllOf(automatic).size() == 1u);
    RC_ASSERT(document("false") == automatic);
  }
}

RC_GTEST_PROP(Property, AnyRunTwiceGivesTheSameBytes, ()) {
  const Rows rows = *Records();
  const QDVarList variables = Variables();
  RC_ASSERT(RunDocument(variables, rows, AllEntries("analysis")) ==
            RunDocument(variables, rows, AllEntries("analysis")));
}

RC_GTEST_PROP(Property, TestsOfOneRunDoNotDisturbEachOther, ()) {
  const Rows rows = *Records();
  Texts together;
  for (const AlgorithmElement& each :
       AlgorithmElement::AllOf(RunDocument(Variables(), rows, AllEntries("analysis")))) {
    together.push_back(each.Xml());
  }
  Texts alone;
  for (const Entry& entry : kEntries) alone.push_back(Run(rows, entry.name, entry.make()).Xml());
  for (const Entry& entry : kOrderedEntries)
    alone.push_back(Run(rows, entry.name, entry.make()).Xml());
  // Tests that read the records in a sorted order stand behind the others.
  std::sort(together.begin(), together.end());
  std::sort(alone.begin(), alone.end());
  RC_ASSERT(together == alone);
}

}  // namespace
