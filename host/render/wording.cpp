#include "host/render/wording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <utility>

#include "catalogue/catalogue.h"
#include "host/data/join_words.h"
#include "host/data/number.h"

namespace npar_host {
namespace {

using Words = std::pair<std::string_view, std::string_view>;

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

// "a, b, c": the categories of the field of parameter `position` in their order, some of many.
std::string OrderParameter(const ResultDocument& document, const ResultTest& test,
                           std::size_t position) {
  constexpr std::size_t kMostListed = 12;
  const auto indices = test.ConditionFields(position, document.fields.size());
  if (indices.empty()) return "of the groups";
  const ResultField& field = document.fields[indices.front()];
  const std::size_t count = field.categories.size();
  const std::size_t begins = count > kMostListed ? kMostListed - 1 : count;
  std::vector<std::string> titles;
  for (std::size_t code = 0; code < begins; ++code) {
    titles.push_back(CategoryTitle(field, static_cast<std::int32_t>(code)));
  }
  if (begins < count) {
    titles.emplace_back("...");
    titles.push_back(CategoryTitle(field, static_cast<std::int32_t>(count - 1)));
  }
  std::string text;
  for (const std::string& title : titles) text += (text.empty() ? "" : ", ") + title;
  return text;
}

// What stands for a placeholder, without its braces: "0", "figure 1", "categories 2".
std::string Filling(const ResultDocument& document, const ResultTest& test,
                    std::string_view placeholder) {
  const auto position = static_cast<std::size_t>(placeholder.back() - '0');
  if (placeholder.starts_with("figure")) return FigureParameter(test, position);
  if (placeholder.starts_with("categories")) return CategoriesParameter(document, test, position);
  if (placeholder.starts_with("order")) return OrderParameter(document, test, position);
  const std::vector<std::string> titles = FieldTitles(document, test, position);
  return titles.empty() ? "(unknown field)" : JoinWords(titles, " and ");
}

}  // namespace

std::string TestTitle(std::string_view name) {
  if (const catalogue::Card* card = catalogue::FindElement(name)) {
    return std::string(ElementTitle(*card));
  }
  // While it runs, a test has the name of its entry.
  for (const catalogue::Card* card : catalogue::kCards) {
    if (card->entry == name) return std::string(card->title);
  }
  return std::string(name);
}

std::string Hypothesis(const ResultDocument& document, const ResultTest& test) {
  std::string_view rest = catalogue::FindHypothesis(test.name, test.conditionKey);
  std::string text;
  while (!rest.empty()) {
    const std::size_t open = std::min(rest.find('{'), rest.size());
    text += rest.substr(0, open);
    rest.remove_prefix(open);
    if (rest.empty()) break;
    const std::size_t close = rest.find('}');
    text += Filling(document, test, rest.substr(1, close - 1));
    rest.remove_prefix(close + 1);
  }
  return text;
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
  // Above that a whole number is no count, and has more digits than anybody reads.
  constexpr double kLargestInFull = 1e15;
  constexpr double kFullAbove = 1e5;
  constexpr int kDigits = 6;
  const double size = std::abs(*number);
  std::array<char, 32> digits;
  if (size >= kFullAbove && size < kLargestInFull) {
    const int decimals = *number == std::trunc(*number) ? 0 : 1;
    std::snprintf(digits.data(), digits.size(), "%.*f", decimals, *number);
    return digits.data();
  }
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), *number,
                                          std::chars_format::general, kDigits);
  return {digits.data(), end};
}

std::string PercentText(double share) { return FigureText(NumberText(100.0 * share)) + " %"; }

}  // namespace npar_host
