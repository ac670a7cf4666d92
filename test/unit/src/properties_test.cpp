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

#include "catalogue/catalogue.h"
#include "support/algorithm_element.h"
#include "support/run_all_passes.h"
#include "support/schema.h"
#include "support/test_settings.h"
#include "support/variables.h"

// What must hold of every test on any data, whatever its figures are.
namespace {

using Texts = std::vector<std::string>;

constexpr double kMissing = -0x1.ffffffffffffep+1023;  // of a continuous field; a code is -1
constexpr double kNothing = -1.0;

// Positions in a record. The weight is the first: no position is none.
enum Column { W, X, Y, Z, Count, G, H, P, Q, R, O1, O2, kWidth };

QDVarList Variables(bool isWeighted = true) {
  VariableListBuilder builder;
  isWeighted ? builder.Weight("w") : builder.Continuous("w");
  builder.Continuous("x").Continuous("y").Continuous("z").Continuous("count");
  builder.Nominal("g", {"a", "b"}).Nominal("h", {"d", "b", "c", "a"});
  builder.Nominal("p", {"yes", "no"}).Nominal("q", {"yes", "no"}).Nominal("r", {"no", "yes"});
  builder.OrdinalNumbers("o1", {1, 2, 4}).OrdinalNumbers("o2", {1, 2, 4});
  return builder.Build();
}

struct Tested {
  const char* name;
  TestSettings entry;
  bool isByRanks = false;  // the order of the values is all that counts
};

TestSettings Of(const char* field) { return Entry("variableName", field); }
TestSettings Of(const Texts& fields) { return Entry("variableName", fields); }
TestSettings Between(const char* group) { return Of("x").Put("groupVariableName", group); }
TestSettings Given(const Texts& first, const Texts& second) {
  return Between("h").Put("userSpecifyGroupList", "true", "group1List", first, "group2List",
                          second);
}
TestSettings Compared(TestSettings entry, const char* procedure) {
  return entry.Put("typeOfMultipleComparison", procedure, "orderOfHypotheses",
                   "orderSmallestToLargest");
}
TestSettings Successes(const Texts& fields, const char* key) {
  return Of(fields).Put("classFormation", "givenCategoryList", key, Texts{"yes"});
}
TestSettings Binary(const char* field, const char* category) {
  return Of(field).Put("catVarClassFormation", "givenCategoryList", "givenCategoryList",
                       Texts{category});
}
TestSettings Intervals(const char* category) {
  return Binary("p", category)
      .Put("isDoClopperPearson", "true", "isDoJeffreys", "true", "isDoProfileLikelihood", "true");
}

const Texts kXY{"x", "y"};
const Texts kXYZ{"x", "y", "z"};
const TestSettings kCochran = Successes({"p", "q", "r"}, "successCategoryList");

// No entry that takes its classes from the first record, and no runs of records.
const Tested kEntries[] = {
    {"OBinomial", Binary("p", "yes")},
    {"OBinomial", Of("x"), true},
    {"OChiSquare", Of("h")},
    {"OEstimateConfidenceInterval", Intervals("yes")},
    {"OKolmogorovSmirnovExponential", Of("count")},
    {"OKolmogorovSmirnovNormal", Of("x")},
    {"OKolmogorovSmirnovPoisson", Of("count")},
    {"OKolmogorovSmirnovUniform", Of("x")},
    {"OWilcoxonSignedRanks", Of("x")},
    {"RCochransQ", Compared(kCochran, "pairWise")},
    {"RCochransQ", Compared(kCochran, "stepWise")},
    {"RFriedmansTwoWayByRanks", Compared(Of(kXYZ), "pairWise"), true},
    {"RFriedmansTwoWayByRanks", Compared(Of(kXYZ), "stepWise"), true},
    {"RHodgesLehmannEstimatePairs", Of(kXY)},
    {"RKendallsCoefficient", Compared(Of(kXYZ), "pairWise"), true},
    {"RMarginalHomogeneity", Of(Texts{"o1", "o2"})},
    {"RMcNemar", Successes({"p", "q"}, "categoriesList")},
    {"RSign", Of(kXY), true},
    {"RWilcoxonSignedRanks", Of(kXY), true},
    {"IHodgesLehmannEstimateGroups", Between("g")},
    {"IJonckheereTerpstra", Compared(Between("h"), "pairWise"), true},
    {"IJonckheereTerpstra", Compared(Between("h"), "stepWise"), true},
    {"IKolmogorovSmirnov", Between("g"), true},
    {"IKruskalWallis", Compared(Between("h"), "pairWise"), true},
    {"IKruskalWallis", Compared(Between("h"), "stepWise"), true},
    {"IMannWhitneyU", Between("g"), true},
    {"IMedian", Compared(Between("h"), "pairWise"), true},
    {"IMedian", Compared(Between("h"), "stepWise"), true},
    {"IMoses", Between("g"), true},
    {"IWaldWolfowitzRuns", Between("g"), true},
};

// In the order in which the records stand.
const Tested kOrderedEntries[] = {
    {"ORuns", Of("x")},
    {"ORuns", Of("p")},
    {"OBinomial", Of("p")},
    {"RMcNemar", Of(Texts{"p", "q"})},
    {"RCochransQ", Of(Texts{"p", "q", "r"})},
};

// After the first pass, amid it, and before it.
const Tested kFailing[] = {
    {"IMoses",
     Between("g").Put("userSpecifyNumberOfOutliers", "true", "NumberOfOutliers", 1000000)},
    {"OKolmogorovSmirnovPoisson", Of("x")},
    {"IMoses", Of("nobody").Put("groupVariableName", "g")},
};

TestSettings AllEntries(const std::string& missingTreatment) {
  TestSettings all = Entry("missingTreatment", missingTreatment, "extendedFigures", true);
  for (const Tested& each : kEntries) all.Put(each.name, each.entry);
  for (const Tested& each : kOrderedEntries) all.Put(each.name, each.entry);
  for (const Tested& each : kFailing) all.Put(each.name, each.entry);
  return all;
}

/// Records on a coarse grid, so that ties are common; values are multiples of the unit.
rc::Gen<Rows> Records(bool withMissing = true, double unit = 0.25) {
  const auto number = [=](int from, int to, double unit, double missing) {
    const auto value = rc::gen::map(rc::gen::inRange(from, to), [=](int i) { return i * unit; });
    if (!withMissing) return rc::Gen<double>(value);
    return rc::Gen<double>(
        rc::gen::weightedOneOf<double>({{19, value}, {1, rc::gen::just(missing)}}));
  };
  return rc::gen::nonEmpty(rc::gen::container<Rows>(rc::gen::exec([=] {
    std::vector<double> row(kWidth);
    for (const Column column : {X, Y, Z}) row[column] = *number(-8, 9, unit, kMissing);
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

void RequireSame(const Tested& entry, const std::string& first, const std::string& second) {
  if (first == second) return;
  RC_LOG() << entry.name << "\n" << first << "\n" << second;
  RC_FAIL("not the same bytes");
}

AlgorithmElement Run(const Rows& rows, const std::string& name, const TestSettings& entry,
                     bool isWeighted = true) {
  return RunExtended(Variables(isWeighted), rows, name, entry.Get());
}

TEST(PropertyTable, NamesEveryTest) {
  for (const catalogue::Card* card : catalogue::kCards) {
    const auto isIt = [&](const Tested& entry) {
      return std::string_view(entry.name) == card->entry;
    };
    EXPECT_TRUE(std::any_of(std::begin(kEntries), std::end(kEntries), isIt) ||
                std::any_of(std::begin(kOrderedEntries), std::end(kOrderedEntries), isIt))
        << card->name.c_str();
  }
}

const catalogue::Card& CardOf(std::string_view entry) {
  return **std::find_if(std::begin(catalogue::kCards), std::end(catalogue::kCards),
                        [&](const catalogue::Card* card) { return card->entry == entry; });
}

/// The element that the entry leads to, as its card says.
AlgorithmElement CheckedRun(const Rows& rows, const char* name, const TestSettings& entry) {
  const std::string document = RunEntryDocument(Variables(), rows, name, entry);
  EXPECT_TRUE(IsValid(document, "statxml-7.0.xsd"));
  const AlgorithmElement element = AlgorithmElement::AllOf(document).at(0);
  const catalogue::Card& card = CardOf(name);
  const bool isTest = card.purpose == catalogue::Purpose::HypothesisTest;
  EXPECT_EQ(element.Name(), card.element.c_str());
  EXPECT_EQ(element.Classification(), catalogue::Classification(card.family).c_str());
  EXPECT_EQ(element.Type(), isTest ? "hypothesis_test" : "confidence_interval");
  EXPECT_EQ(element.Decision() == "(absent)", !isTest);
  return element;
}

/// A failed test says why, once, and has no figures.
void ExpectFailed(const AlgorithmElement& element, const catalogue::Card& card) {
  ASSERT_EQ(element.Messages().size(), 1U) << element.Xml();
  EXPECT_EQ(element.Messages()[0].type, "error");
  const std::int32_t code = element.Messages()[0].code;
  EXPECT_TRUE(code == 220003 ||
              std::any_of(card.codes.begin(), card.codes.end(),
                          [&](const catalogue::Code& own) { return own.number == code; }))
      << code;
  EXPECT_NE(element.Decision(), "reject");
  EXPECT_NE(element.Decision(), "retain");
  EXPECT_EQ(element.ChildNames().back(), "StructuredTable WarningMessages");
}

TEST(Contract, ATestThatIsBornFailedOrHasNoRecordWritesItsElementAndWhy) {
  Rows none(3, std::vector<double>(kWidth, kNothing));
  for (std::vector<double>& row : none) {
    for (const Column column : {X, Y, Z, Count}) row[column] = kMissing;
    row[W] = 1.0;
  }
  for (const Tested& entry : kEntries) {
    SCOPED_TRACE(entry.name);
    const catalogue::Card& card = CardOf(entry.name);
    const AlgorithmElement unfed = CheckedRun(none, entry.name, entry.entry);
    // McNemar's test of no changes at all has p = 1.
    if (card.element != "RMcNemar") ExpectFailed(unfed, card);
    ExpectFailed(CheckedRun(none, entry.name, Entry()), card);
  }
}

/// Multiples of which doubles hold rounded, as they do the sums.
constexpr double kTenth = 0.1;

/// A record is one outlier, whatever it weighs, and the first one is named where all are outliers.
std::string WithoutOutliers(std::string text) {
  constexpr std::string_view kBegin = "<SimpleTable name=\"Outliers\">";
  constexpr std::string_view kEnd = "</SimpleTable>";
  for (std::size_t at = text.find(kBegin); at != std::string::npos; at = text.find(kBegin)) {
    text.erase(at, text.find(kEnd, at) + kEnd.size() - at);
  }
  return text;
}

RC_GTEST_PROP(Property, OrderOfRecordsIsOfNoMatter, ()) {
  const Rows rows = *Records(true, kTenth);
  Rows shuffled = rows;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(*rc::gen::arbitrary<unsigned>()));
  for (const Tested& entry : kEntries) {
    RequireSame(entry, Run(rows, entry.name, entry.entry).Xml(),
                Run(shuffled, entry.name, entry.entry).Xml());
  }
}

/// An element without its extended figures, and these.
std::pair<std::string, std::string> Parted(const AlgorithmElement& element) {
  const std::string text = element.Xml();
  const std::size_t at = text.find(" <StructuredTable name=\"ExtendedFigures\">");
  return {at == std::string::npos ? text : text.substr(0, at) + "</Algorithm>\n",
          at == std::string::npos ? "" : text.substr(at)};
}

RC_GTEST_PROP(Property, RecordOfWeightWCountsAsWRecords, ()) {
  const Rows rows = *Records(true, kTenth);
  Rows repeated;
  Rows fractions = rows;  // which tests of two samples leave out
  for (std::vector<double>& row : fractions) {
    repeated.insert(repeated.end(), static_cast<std::size_t>(row[W]), row);
    row[W] += 0.75;
  }
  const auto check = [&](const Tested& entry) {
    std::string comparison;
    const bool isOfTwo = entry.name[0] != 'O' && !entry.entry.Get().GetSettingValByName(
                                                     "typeOfMultipleComparison", comparison);
    const Rows& weighted = isOfTwo ? fractions : rows;
    RequireSame(entry, WithoutOutliers(Run(weighted, entry.name, entry.entry).Xml()),
                WithoutOutliers(Run(repeated, entry.name, entry.entry, false).Xml()));
    RC_LOG() << entry.name << "\n";
    // The median that Wilcoxon's test takes from the data counts fractions.
    const Rows& units = std::string_view(entry.name) == "OWilcoxonSignedRanks" ? rows : fractions;
    RC_ASSERT(Parted(Run(units, entry.name, entry.entry)).second ==
              Parted(Run(repeated, entry.name, entry.entry, false)).second);
  };
  std::for_each(std::begin(kEntries), std::end(kEntries), check);
  std::for_each(std::begin(kOrderedEntries), std::end(kOrderedEntries), check);
}

RC_GTEST_PROP(Property, ExtendedFiguresStandBesideAnUnchangedResultAndTakeNumbers, ()) {
  const Rows rows = *Records();
  const auto check = [&](const Tested& entry) {
    const auto [result, figures] = Parted(Run(rows, entry.name, entry.entry));
    RC_LOG() << entry.name << figures;
    RC_ASSERT(result == RunEntry(Variables(), rows, entry.name, entry.entry.Get()).Xml());
    for (const char* none : {"nan", "inf", "__MISSING__", "e+308"}) {
      RC_ASSERT(figures.find(none) == std::string::npos);
    }
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
  for (const Tested& entry : kEntries) {
    if (!entry.isByRanks) continue;
    const AlgorithmElement first = Run(rows, entry.name, entry.entry);
    const AlgorithmElement second = Run(moved, entry.name, entry.entry);
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
  TestSettings first, second;
  std::vector<const char*> kept;
  std::vector<std::pair<const char*, const char*>> negated = {};
};

const std::vector<const char*> kTwoSided = {"AsymptoticSig2Tailed", "ExactSig2Tailed", "TotalN"};
const std::vector<const char*> kStatistic = {"TestStatistic", "AsymptoticSig2Tailed",
                                             "ExactSig2Tailed", "TotalN"};
const std::vector<const char*> kOneSided = {
    "MinimumRuns/AsymptoticSig1Tailed", "MaximumRuns/AsymptoticSig1Tailed",
    "MaximumRuns/ExactSig1Tailed", "MinimumRuns/ExactSig1Tailed", "TotalN"};
const std::vector<std::pair<const char*, const char*>> kZ{
    {"StandardTestStatistic", "StandardTestStatistic"}};
const std::vector<std::pair<const char*, const char*>> kEnds{
    {"Estimate", "Estimate"}, {"Lower", "Upper"}, {"Upper", "Lower"}};
const TestSettings kAFirst = Given({"a"}, {"b", "c"});
const TestSettings kALast = Given({"b", "c"}, {"a"});
const TestSettings kYX = Of(Texts{"y", "x"});

const Swap kSwaps[] = {
    {"IMannWhitneyU", kAFirst, kALast, kTwoSided, kZ},
    {"IKolmogorovSmirnov", kAFirst, kALast, {"AsymptoticSig2Tailed", "Absolute", "TestStatistic"}},
    {"IWaldWolfowitzRuns", kAFirst, kALast, kOneSided},
    {"IHodgesLehmannEstimateGroups", kAFirst, kALast, {}, kEnds},
    {"RSign", Of(kXY), kYX, kTwoSided, kZ},
    {"RWilcoxonSignedRanks", Of(kXY), kYX, kTwoSided, kZ},
    {"RHodgesLehmannEstimatePairs", Of(kXY), kYX, {}, kEnds},
    {"RMarginalHomogeneity", Of(Texts{"o1", "o2"}), Of(Texts{"o2", "o1"}), kTwoSided, kZ},
    {"RMcNemar", Successes({"p", "q"}, "categoriesList"), Successes({"q", "p"}, "categoriesList"),
     kStatistic},
    {"RCochransQ", kCochran, Successes({"r", "p", "q"}, "successCategoryList"), kStatistic},
    {"RFriedmansTwoWayByRanks", Of(kXYZ), Of(Texts{"z", "x", "y"}), kStatistic},
    // The complementary category, p = 1/2.
    {"OBinomial", Binary("p", "yes"), Binary("p", "no"), kTwoSided, kZ},
    {"ORuns",
     Binary("p", "yes"),
     Binary("p", "no"),
     {"TestStatistic", "StandardTestStatistic", "AsymptoticSig2Tailed", "TotalN"}},
};

RC_GTEST_PROP(Property, SwappedSidesChangeTheSignAndNoP, ()) {
  const Rows rows = *Records();
  for (const Swap& swap : kSwaps) {
    const AlgorithmElement first = Run(rows, swap.name, swap.first);
    const AlgorithmElement second = Run(rows, swap.name, swap.second);
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

RC_GTEST_PROP(Property, AnyRunTwiceGivesTheSameBytes, ()) {
  const Rows rows = *Records();
  const QDVarList variables = Variables();
  RC_ASSERT(RunDocument(variables, rows, AllEntries("analysis")) ==
            RunDocument(variables, rows, AllEntries("analysis")));
}

RC_GTEST_PROP(Property, CountingGivesTheBytesOfSorting, ()) {
  Rows rows = *Records(true, kTenth);
  rows.emplace_back(kWidth, 1.0);  // one is kept in any case
  const Rows once = rows;
  while (once.size() > 20 && rows.size() <= 256) {
    rows.insert(rows.end(), once.begin(), once.end());  // more than a batch
  }
  rows.back()[X] = 50.0;  // an outlier, which has a case identifier
  if (*rc::gen::arbitrary<bool>()) {
    // Closer than the bins of a histogram.
    for (std::vector<double>& row : rows) {
      for (const Column column : {X, Y, Z}) {
        if (row[column] != kMissing) row[column] = row[column] * row[column] * row[column] + 1.0;
      }
    }
  }
  const bool isWeighted = *rc::gen::arbitrary<bool>();
  TestSettings settings = AllEntries(*rc::gen::element<std::string>("analysis", "listwise"));
  if (*rc::gen::arbitrary<bool>()) {
    settings.Put("caseIDVariableName",
                 *rc::gen::element<std::string>("count", isWeighted ? "x" : "w"));
  }
  const auto run = [&](Shortcut counting) {
    return AlgorithmElement::AllOf(RunDocument(Variables(isWeighted), rows, settings, counting));
  };
  const auto counted = run(Shortcut::Always);
  const auto sorted = run(Shortcut::Never);
  RC_ASSERT(counted.size() == sorted.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) RC_ASSERT(counted[i].Xml() == sorted[i].Xml());
}

/// Of one field: spread or on a grid, with zeros of either sign, infinities, outliers and missing
/// ones among them.
double AnyValue(std::mt19937_64& random, bool isOnGrid, double scale) {
  switch (random() % 64) {
    case 0:
      return kMissing;
    case 1:
      return random() % 2 == 0 ? 0.0 : -0.0;
    case 2:
      return random() % 16 == 0 ? HUGE_VAL : 9.0 * scale;
    default:
      break;
  }
  const double x = std::normal_distribution<double>()(random);
  return (isOnGrid ? std::round(x * 8.0) / 8.0 : x) * scale + 1.0;
}

RC_GTEST_PROP(Property, SelectionGivesTheBytesOfSorting, ()) {
  std::mt19937_64 random(*rc::gen::arbitrary<std::uint64_t>());
  const auto oneIn = [&random](unsigned count) { return random() % count == 0; };
  const std::size_t groupCount = *rc::gen::element<std::size_t>(2, 3, 40);
  const bool isOnGrid = oneIn(2);
  const double scale = oneIn(8) ? 1e-13 : 1.0;  // values as close as they can be told apart
  const bool hasFractions = oneIn(8);
  Rows rows(random() % 1500);
  for (std::vector<double>& row : rows) {
    const auto group = static_cast<double>(random() % (groupCount + 1)) - 1.0;
    const double weight = static_cast<double>(1 + random() % 3) + (hasFractions ? 0.5 : 0.0);
    row = {AnyValue(random, isOnGrid, scale) + (oneIn(2) ? 0.0 : scale * group), group, weight,
           static_cast<double>(random() % 1000)};
  }
  rows.push_back({1.0, 0.0, 1.0, 1.0});
  Texts categories;
  for (std::size_t i = 0; i < groupCount; ++i) categories.push_back("c" + std::to_string(i));
  VariableListBuilder builder;
  builder.Continuous("x").Nominal("g", categories);
  const QDVarList variables =
      (oneIn(2) ? builder.Weight("w") : builder.Continuous("w")).Continuous("id").Build();
  TestSettings test = Entry("variableName", "x", "groupVariableName", "g");
  if (oneIn(3)) test.Put("userSpecifyMedian", "true", "median", 1.25);
  if (oneIn(3)) test = Compared(test, "pairWise");
  TestSettings settings = Entry("missingTreatment", "analysis", "extendedFigures", oneIn(2));
  if (oneIn(2)) settings.Put("caseIDVariableName", "id");
  settings.Put("IMedian", test);
  const auto run = [&](Shortcut selecting) {
    return RunDocument(variables, rows, settings, Shortcut::Never, selecting);
  };
  const std::string selected = run(Shortcut::Always);
  const std::string sorted = run(Shortcut::Never);
  RC_LOG() << selected << "\n" << sorted;
  RC_ASSERT(selected == sorted);
}

RC_GTEST_PROP(Property, TestsOfOneRunDoNotDisturbEachOther, ()) {
  Rows rows = *Records();
  if (rows.size() > 50) rows.resize(400, rows.front());  // more than a batch
  Texts together;
  for (const AlgorithmElement& each :
       AlgorithmElement::AllOf(RunDocument(Variables(), rows, AllEntries("analysis")))) {
    together.push_back(each.Xml());
  }
  Texts alone;
  for (const Tested& entry : kEntries) alone.push_back(Run(rows, entry.name, entry.entry).Xml());
  for (const Tested& entry : kOrderedEntries)
    alone.push_back(Run(rows, entry.name, entry.entry).Xml());
  for (const Tested& entry : kFailing) alone.push_back(Run(rows, entry.name, entry.entry).Xml());
  // Tests that read the records in a sorted order stand behind the others.
  std::sort(together.begin(), together.end());
  std::sort(alone.begin(), alone.end());
  RC_ASSERT(together == alone);
}

}  // namespace
