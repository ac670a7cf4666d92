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

// "A or B": the categories whose codes parameter `position` lists. A test that failed lists none.
std::string CategoriesParameter(const ResultDocument& document, const ResultTest& test,
                                std::size_t position) {
  const auto indices = test.ConditionFields(0, document.fields.size());
  if (indices.empty()) return "(unknown)";
  std::string text = CategoriesPhrase(document.fields[indices.front()], Parameter(test, position));
  if (!text.empty()) return text;
  if (!test.Failed()) return "(none of the categories)";
  return position == 1 ? "its first class" : "its second class";
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
  const auto title = [&](std::size_t place) {
    return CategoryTitle(field,
                         static_cast<std::int32_t>(test.groupsDescend ? count - 1 - place : place));
  };
  for (std::size_t place = 0; place < begins; ++place) titles.push_back(title(place));
  if (begins < count) {
    titles.emplace_back("...");
    titles.push_back(title(count - 1));
  }
  return JoinWords(titles, ", ");
}

// What stands for a placeholder, without its braces: "0", "figure 1", "categories 2".
std::string Filling(const ResultDocument& document, const ResultTest& test,
                    std::string_view placeholder) {
  const auto position = static_cast<std::size_t>(placeholder.back() - '0');
  if (placeholder.starts_with("figure")) return FigureParameter(test, position);
  if (placeholder.starts_with("categories")) return CategoriesParameter(document, test, position);
  if (placeholder.starts_with("order")) return OrderParameter(document, test, position);
  return FieldPhrase(FieldTitles(document, test, position));
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

std::string TestTitle(const ResultTest& test) {
  const catalogue::Card* const card = catalogue::FindHypothesis(test.name, test.conditionKey).card;
  return card == nullptr ? TestTitle(test.name) : std::string(card->title);
}

std::string Hypothesis(const ResultDocument& document, const ResultTest& test) {
  std::string_view rest = catalogue::FindHypothesis(test.name, test.conditionKey).sentence;
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
  const std::string success = SuccessPhrase(document, test);
  if (!success.empty()) text += " Success: " + success + ".";
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

std::string FieldPhrase(const std::vector<std::string>& titles) {
  return titles.empty() ? "(unknown field)" : JoinWords(titles, " and ");
}

std::string SuccessPhrase(const ResultDocument& document, const ResultTest& test) {
  if (!test.successes.empty()) return JoinWords(test.successes, " or ");
  const auto fields = test.ConditionFields(0, document.fields.size());
  const auto codes = std::ranges::find(test.details, "RowSuccessList", &ResultStatistic::name);
  if (fields.empty() || codes == test.details.end()) return {};
  return CategoriesPhrase(document.fields[fields.front()], codes->text);
}

std::string FirstClassPhrase(const ResultDocument& document, const ResultTest& test) {
  const bool hasClasses = test.name == catalogue::binomial::kCard.element ||
                          test.name == catalogue::confidence_interval::kCard.element;
  if (!hasClasses || test.Failed()) return {};
  if (test.conditionKey.starts_with("ACutPoint")) {
    return "values at most " + FigureParameter(test, 1);
  }
  return CategoriesParameter(document, test, 1);
}

const ResultField* GroupField(const ResultDocument& document, const ResultTest& test) {
  if (test.classification != "Independent_Samples") return nullptr;
  const auto indices = test.ConditionFields(1, document.fields.size());
  return indices.empty() ? nullptr : &document.fields[indices.front()];
}

std::string CategoriesPhrase(const ResultField& field, const std::string& codes) {
  ResultTest listed;
  listed.conditionParameters = {codes};
  std::vector<std::string> titles;
  for (const std::size_t code : listed.ConditionFields(0, field.categories.size())) {
    titles.push_back(CategoryTitle(field, static_cast<std::int32_t>(code)));
  }
  return JoinWords(titles, " or ");
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

std::vector<std::string> SampleTitles(const ResultDocument& document, const ResultTest& test,
                                      const std::vector<std::int32_t>& codes) {
  std::vector<std::string> titles;
  titles.reserve(codes.size());
  for (const std::int32_t code : codes) titles.push_back(SampleTitle(document, test, code));
  return titles;
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
  if (size >= kFullAbove && size < kLargestInFull) {
    return FixedText(*number, *number == std::trunc(*number) ? 0 : 1);
  }
  std::array<char, 32> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), *number,
                                          std::chars_format::general, kDigits);
  return {digits.data(), end};
}

std::string FixedText(double number, int decimals) {
  std::array<char, 352> digits;  // of the largest double
  std::snprintf(digits.data(), digits.size(), "%.*f", decimals, number);
  return digits.data();
}

std::string PercentText(double share) { return FigureText(NumberText(100.0 * share)) + " %"; }

}  // namespace npar_host
