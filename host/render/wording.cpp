#include "host/render/wording.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "host/data/number.h"

namespace npar_host {
namespace {

using Words = std::pair<std::string_view, std::string_view>;

constexpr Words kTestTitles[] = {
    {"OBinomial", "Binomial test"},
    {"OEstimateConfidenceInterval", "Confidence interval of a share"},
    {"OChiSquare", "Chi-square test of proportions"},
    {"OKolmogorovSmirnov", "One-sample Kolmogorov-Smirnov test"},
    {"ORuns", "Runs test of randomness"},
    {"OWilcoxonSignedRanks", "Wilcoxon signed-rank test"},
    {"RSign", "Sign test"},
    {"RWilcoxonSignedRanks", "Wilcoxon matched-pairs signed-rank test"},
    {"RMcNemar", "McNemar's test"},
    {"RMarginalHomogeneity", "Marginal homogeneity test"},
    {"RCochransQ", "Cochran's Q test"},
    {"RFriedmansTwoWayByRanks", "Friedman's two-way analysis of variance by ranks"},
    {"RKendallsCoefficient", "Kendall's coefficient of concordance"},
    {"RHodgesLehmannEstimatePairs", "Hodges-Lehmann estimate of the median difference"},
    {"IMannWhitneyU", "Mann-Whitney U test"},
    {"IKolmogorovSmirnov", "Two-sample Kolmogorov-Smirnov test"},
    {"IWaldWolfowitzRuns", "Wald-Wolfowitz runs test"},
    {"IMoses", "Moses test of extreme reactions"},
    {"IMedian", "Median test"},
    {"IKruskalWallis", "Kruskal-Wallis one-way analysis of variance by ranks"},
    {"IJonckheereTerpstra", "Jonckheere-Terpstra test for ordered alternatives"},
    {"IHodgesLehmannEstimateGroups", "Hodges-Lehmann estimate of the shift between two groups"},
};

// {0} and {1}: titles of the fields in the condition's first and second parameter.
constexpr Words kHypotheses[] = {
    {"RSign", "The median of the differences {1} - {0} is 0."},
    {"RWilcoxonSignedRanks", "The differences {1} - {0} are symmetric about 0."},
    {"RHodgesLehmannEstimatePairs", "Estimated: the median of the differences {1} - {0}."},
    {"RMcNemar", "The shares of the two classes are the same in {0} and {1}."},
    {"RMarginalHomogeneity", "The distributions over the categories are the same in {0} and {1}."},
    {"RCochransQ", "The share of successes is the same in {0}."},
    {"RFriedmansTwoWayByRanks", "The distributions of {0} are the same."},
    {"RKendallsCoefficient", "The records do not agree in how they order {0}."},
    {"IMannWhitneyU", "The distribution of {0} is the same in both groups of {1}."},
    {"IKolmogorovSmirnov", "The distribution of {0} is the same in both groups of {1}."},
    {"IWaldWolfowitzRuns", "The distribution of {0} is the same in both groups of {1}."},
    {"IMoses", "The range of {0} is the same in both groups of {1}."},
    {"IMedian", "The median of {0} is the same in all groups of {1}."},
    {"IKruskalWallis", "The distribution of {0} is the same in all groups of {1}."},
    {"IJonckheereTerpstra",
     "The distribution of {0} is the same in all groups of {1}, against a trend over their order."},
    {"IHodgesLehmannEstimateGroups",
     "Estimated: the shift of {0} from the first to the second group of {1}."},
};

constexpr Words kFigureLabels[] = {
    {"TotalN", "Total N"},
    {"N", "N"},
    {"TestStatistic", "Test statistic"},
    {"StandardError", "Standard error"},
    {"StandardTestStatistic", "Standardised test statistic"},
    {"DegreeOfFreedom", "Degrees of freedom"},
    {"AsymptoticSig1Tailed", "Asymptotic significance (1-sided)"},
    {"AsymptoticSig2Tailed", "Asymptotic significance (2-sided)"},
    {"ExactSig1Tailed", "Exact significance (1-sided)"},
    {"ExactSig2Tailed", "Exact significance (2-sided)"},
    {"MannWhitneyU", "Mann-Whitney U"},
    {"WilcoxonW", "Wilcoxon W"},
    {"KendallsW", "Kendall's W"},
    {"Median", "Median"},
    {"YatesTestStatistic", "Yates' continuity-corrected statistic"},
    {"YatesAsymptoticSig2Tailed", "Yates' asymptotic significance (2-sided)"},
    {"InterGroupTies", "Ties between the groups"},
    {"NumberOfOutliers", "Outliers trimmed from each end"},
    {"ObservedControlSpan", "Observed control group span"},
    {"ExactSig1TailedObserved", "Exact significance of the observed span (1-sided)"},
    {"NegativeDifferences", "Negative differences"},
    {"PositiveDifferences", "Positive differences"},
    {"Ties", "Ties"},
    {"HypotheticalMedian", "Hypothesised median"},
    {"ObservedMedian", "Observed median"},
    {"ObservedRunNumber", "Observed runs"},
    {"Mean", "Mean"},
    {"StdDev", "Standard deviation"},
    {"Min", "Minimum"},
    {"Max", "Maximum"},
    {"MeanOfRank", "Mean rank"},
    {"Absolute", "Most extreme difference, absolute"},
    {"Positive", "Most extreme difference, positive"},
    {"Negative", "Most extreme difference, negative"},
    {"Estimate", "Estimate"},
    {"ClopperPearson", "Clopper-Pearson"},
    {"ProfileLikelihood", "Profile likelihood"},
    {"MinimumRuns", "Fewest possible runs"},
    {"MaximumRuns", "Most possible runs"},
    {"RowNames", "Row field"},
    {"RowSuccessList", "Row successes"},
    {"RowFailList", "Row failures"},
    {"ColumnNames", "Column field"},
    {"ColumnSuccessList", "Column successes"},
    {"ColumnFailList", "Column failures"},
};

constexpr Words kTableLabels[] = {
    {"TwoClassComparison", "Frequencies"},
    {"CategoryFieldsComparison", "Cross table"},
    {"PairwiseResult", "Pairwise comparisons"},
    {"StepwiseResult", "Stepwise comparisons"},
    {"lessOrEqual", "Up to the median"},
    {"greater", "Above the median"},
    {"Observed", "Observed"},
    {"Hypothesized", "Hypothesised"},
    {"Sample1", "Sample 1"},
    {"Sample2", "Sample 2"},
    {"FirstPosition", "From"},
    {"LastPosition", "To"},
    {"TestStatistic", "Statistic"},
    {"StandardError", "Std. error"},
    {"StandardTestStatistic", "Std. statistic"},
    {"Sig", "Sig."},
    {"AdjSig", "Adj. sig."},
};

constexpr std::string_view kMissing = "__MISSING__";

template <std::size_t size>
std::string LookUp(const Words (&table)[size], std::string_view key) {
  for (const auto& [name, words] : table) {
    if (name == key) return std::string(words);
  }
  return std::string(key);
}

std::string JoinAnd(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 == words.size() ? " and " : ", ";
    text += words[i];
  }
  return text;
}

std::string Parameter(const ResultTest& test, std::size_t position) {
  return position < test.conditionParameters.size() ? test.conditionParameters[position] : "";
}

std::string FigureParameter(const ResultTest& test, std::size_t position) {
  const std::string text = FigureText(Parameter(test, position));
  return text.empty() ? "(unknown)" : text;
}

// "A or B": the categories whose codes parameter `position` lists.
std::string CategoriesParameter(const ResultDocument& document, const ResultTest& test,
                                std::size_t position) {
  const auto indices = test.ConditionFields(0, document.fields.size());
  if (indices.empty()) return "(unknown)";
  const ResultField& field = document.fields[indices.front()];
  std::string text;
  for (const std::size_t code : test.ConditionFields(position, field.categories.size())) {
    if (!text.empty()) text += " or ";
    text += CategoryTitle(field, static_cast<std::int32_t>(code));
  }
  return text.empty() ? "(none of the categories)" : text;
}

// How the binomial test and its intervals name the first class: "is A or B", "is at most 3".
std::string FirstClass(const ResultDocument& document, const ResultTest& test) {
  if (test.conditionKey.starts_with("ACutPoint")) return "at most " + FigureParameter(test, 1);
  return CategoriesParameter(document, test, 1);
}

std::string BinomialHypothesis(const ResultDocument& document, const ResultTest& test,
                               const std::string& field) {
  const std::size_t probability = test.conditionKey.starts_with("ACutPoint") ? 2 : 3;
  return "The probability that " + field + " is " + FirstClass(document, test) + " is " +
         FigureParameter(test, probability) + ".";
}

std::string DistributionHypothesis(const ResultTest& test, const std::string& field) {
  const std::string first = FigureParameter(test, 1);
  if (test.conditionKey.starts_with("Uniform")) {
    return field + " is uniformly distributed between " + first + " and " +
           FigureParameter(test, 2) + ".";
  }
  if (test.conditionKey.starts_with("Poisson")) {
    return field + " has a Poisson distribution with mean " + first + ".";
  }
  if (test.conditionKey.starts_with("Exponential")) {
    return field + " has an exponential distribution with mean " + first + ".";
  }
  return field + " is normally distributed with mean " + first + " and standard deviation " +
         FigureParameter(test, 2) + ".";
}

std::string RunsHypothesis(const ResultDocument& document, const ResultTest& test,
                           const std::string& field) {
  if (test.conditionKey.starts_with("ACutPoint")) {
    const std::string cut = FigureParameter(test, 1);
    return "Values of " + field + " below " + cut + " and from " + cut +
           " on follow each other in random order.";
  }
  return "In " + field + ", " + CategoriesParameter(document, test, 1) + " and " +
         CategoriesParameter(document, test, 2) + " follow each other in random order.";
}

// Puts the titles into their places; what a title holds stays as it is.
std::string Fill(std::string_view words, const std::string& first, const std::string& second) {
  std::string text;
  while (!words.empty()) {
    const bool isFirst = words.starts_with("{0}");
    if (isFirst || words.starts_with("{1}")) {
      text += isFirst ? first : second;
      words.remove_prefix(3);
    } else {
      text += words.front();
      words.remove_prefix(1);
    }
  }
  return text;
}

}  // namespace

std::string TestTitle(std::string_view algorithmName) {
  // While it runs, the test's name has the distribution behind it.
  constexpr std::string_view kOneSampleKS = "OKolmogorovSmirnov";
  if (algorithmName.starts_with(kOneSampleKS)) algorithmName = kOneSampleKS;
  return LookUp(kTestTitles, algorithmName);
}

std::string Hypothesis(const ResultDocument& document, const ResultTest& test) {
  const auto known = [](const std::vector<std::string>& titles) {
    return titles.empty() ? std::string("(unknown field)") : JoinAnd(titles);
  };
  const std::string first = known(FieldTitles(document, test, 0));
  if (test.name == "OBinomial") return BinomialHypothesis(document, test, first);
  if (test.name == "OEstimateConfidenceInterval") {
    return "Estimated: the share of records with " + first + " " + FirstClass(document, test) + ".";
  }
  if (test.name == "OChiSquare") {
    return test.conditionKey.starts_with("Default")
               ? "The categories of " + first + " are equally frequent."
               : "The categories of " + first + " have the given proportions.";
  }
  if (test.name == "OKolmogorovSmirnov") return DistributionHypothesis(test, first);
  if (test.name == "ORuns") return RunsHypothesis(document, test, first);
  if (test.name == "OWilcoxonSignedRanks") {
    return "The median of " + first + " is " + FigureParameter(test, 1) + ".";
  }
  for (const auto& [name, words] : kHypotheses) {
    if (name == test.name) return Fill(words, first, known(FieldTitles(document, test, 1)));
  }
  return {};
}

std::string DecisionText(const ResultDocument& document, const ResultTest& test) {
  const std::string level = FigureText(NumberText(document.sigLevel));
  if (test.decision == "reject") return "Reject the null hypothesis at the level " + level + ".";
  if (test.decision == "retain") return "Retain the null hypothesis at the level " + level + ".";
  return test.decision.empty() ? "" : "No decision: the test could not be computed.";
}

std::string FigureLabel(std::string_view name, std::string_view group) {
  // The distribution of the number of runs, not that of the field.
  if (group == "RunsParameters" && name == "Mean") return "Expected runs";
  if (group == "RunsParameters" && name == "StdDev") return "Standard deviation of runs";
  return LookUp(kFigureLabels, name);
}
std::string TableLabel(std::string_view name) { return LookUp(kTableLabels, name); }

std::vector<std::string> FieldTitles(const ResultDocument& document, const ResultTest& test,
                                     std::size_t position) {
  std::vector<std::string> titles;
  for (const std::size_t index : test.ConditionFields(position, document.fields.size())) {
    titles.push_back(document.fields[index].Title());
  }
  return titles;
}

const ResultField* GroupField(const ResultDocument& document, const ResultTest& test) {
  if (test.classification != "Independent_Samples") return nullptr;
  const auto indices = test.ConditionFields(1, document.fields.size());
  return indices.empty() ? nullptr : &document.fields[indices.front()];
}

std::string CategoryTitle(const ResultField& field, std::int32_t code) {
  if (code < 0 || static_cast<std::size_t>(code) >= field.categories.size()) return "(unknown)";
  const ResultCategory& category = field.categories[static_cast<std::size_t>(code)];
  return category.label.empty() ? category.value : category.label;
}

std::string SampleTitle(const ResultDocument& document, const ResultTest& test, std::int32_t code) {
  if (const ResultField* group = GroupField(document, test)) return CategoryTitle(*group, code);
  if (code < 0 || static_cast<std::size_t>(code) >= document.fields.size()) return "(unknown)";
  return document.fields[static_cast<std::size_t>(code)].Title();
}

std::string FigureText(std::string_view text) {
  if (text == kMissing) return {};
  const auto number = FigureNumber(text);
  if (!number || !std::isfinite(*number)) return std::string(text);
  std::array<char, 32> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), *number,
                                          std::chars_format::general, 6);
  return {digits.data(), end};
}

}  // namespace npar_host
