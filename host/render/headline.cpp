#include "host/render/headline.h"

#include <algorithm>
#include <iterator>

#include "catalogue/catalogue.h"
#include "host/render/effect_size.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

using namespace catalogue;

constexpr std::size_t kMostFields = 4;

struct Names {
  Text element;
  const char* title;
  const char* symbol;  // empty: the test has no statistic of its own
};

constexpr const char* kChiSquare = "\u03c7\u00b2";

constexpr Names kNames[] = {
    {binomial::kCard.element, "Binomial", "X"},
    {chi_square::kCard.element, "Chi-square", kChiSquare},
    {cochran_q::kCard.element, "Cochran's Q", "Q"},
    {confidence_interval::kCard.element, "Interval of a proportion", ""},
    {friedman::kCard.element, "Friedman", kChiSquare},
    {hodges_lehmann_groups::kCard.element, "Hodges-Lehmann", ""},
    {hodges_lehmann_pairs::kCard.element, "Hodges-Lehmann", ""},
    {jonckheere_terpstra::kCard.element, "Jonckheere-Terpstra", "J"},
    {kendall_w::kCard.element, "Kendall's W", kChiSquare},
    {kruskal_wallis::kCard.element, "Kruskal-Wallis", "H"},
    {ks_one_sample::kNormal.element, "Kolmogorov-Smirnov", "Z"},
    {ks_two_sample::kCard.element, "Kolmogorov-Smirnov", "Z"},
    {mann_whitney::kCard.element, "Mann-Whitney U", "U"},
    {marginal_homogeneity::kCard.element, "Marginal homogeneity", "MH"},
    {mcnemar::kCard.element, "McNemar", kChiSquare},
    {median::kCard.element, "Median", kChiSquare},
    {moses::kCard.element, "Moses", "span"},
    {runs::kCard.element, "Runs", "R"},
    {sign::kCard.element, "Sign", "S"},
    {wald_wolfowitz::kCard.element, "Wald-Wolfowitz runs", "R"},
    {wilcoxon::kCard.element, "Wilcoxon signed-rank", "T+"},
    {wilcoxon_pairs::kCard.element, "Wilcoxon signed-rank", "T+"},
};

const Names* FindNames(const ResultTest& test) {
  const auto* found = std::ranges::find_if(
      kNames, [&test](const Names& names) { return names.element == test.name; });
  return found == std::end(kNames) ? nullptr : found;
}

std::string Joined(const std::vector<std::string>& titles) {
  std::string text;
  for (std::size_t i = 0; i < titles.size(); ++i) {
    if (i == kMostFields) return text + " and " + std::to_string(titles.size() - i) + " more";
    text += (i == 0 ? "" : ", ") + titles[i];
  }
  return text;
}

}  // namespace

Headline FindHeadline(const ResultDocument& document, const ResultTest& test) {
  Headline headline;
  headline.count = CountedRecords(document, test);
  const Names* const names = FindNames(test);
  const Card* const card = FindElement(test.name);
  if (names == nullptr || card == nullptr || test.Failed()) return headline;
  for (const ResultStatistic& figure : test.statistics) {
    if (card->decision.table != figure.group) continue;
    if (figure.name == "TestStatistic") headline.statistic = figure.text;
    if (figure.name == "DegreeOfFreedom") headline.freedom = figure.text;
  }
  if (!headline.statistic.empty()) headline.symbol = names->symbol;
  return headline;
}

std::string StatisticText(const Headline& headline, bool ascii) {
  if (headline.symbol.empty()) return {};
  std::string text = ascii && headline.symbol == kChiSquare ? "chi2" : headline.symbol;
  if (!headline.freedom.empty()) text += "(" + FigureText(headline.freedom) + ")";
  return text + " = " + FigureText(headline.statistic);
}

std::string ShortTitle(const ResultTest& test) {
  const Names* const names = FindNames(test);
  if (names == nullptr) return TestTitle(test);
  const Card* const card = FindHypothesis(test.name, test.conditionKey).card;
  const bool isOfMany = card != nullptr && !card->distribution.empty();
  return names->title + (isOfMany ? ", " + std::string(card->distribution) : "");
}

std::string TestedFields(const ResultDocument& document, const ResultTest& test) {
  std::vector<std::string> titles = FieldTitles(document, test, 0);
  if (test.classification == "Related_Samples") {
    for (const std::string& title : FieldTitles(document, test, 1)) titles.push_back(title);
  }
  std::string text = Joined(titles);
  if (test.classification == "Independent_Samples") {
    const std::string groups = Joined(FieldTitles(document, test, 1));
    if (!groups.empty()) text += " by " + groups;
  }
  return text;
}

std::string TestHeading(const ResultDocument& document, const ResultTest& test) {
  const std::string fields = TestedFields(document, test);
  const std::string success = SuccessPhrase(document, test);
  return TestTitle(test) + (fields.empty() ? "" : ": " + fields) +
         (success.empty() ? "" : " (success: " + success + ")");
}

}  // namespace npar_host
