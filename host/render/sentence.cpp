#include "host/render/sentence.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "catalogue/catalogue.h"
#include "host/data/join_words.h"
#include "host/data/number.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

using namespace catalogue;

constexpr std::size_t kMostGroups = 4;  // whose sizes and medians a sentence tells

// "{f} differed significantly between {g}": {f} the fields, {g} the group field.
struct Finding {
  Text element;
  const char* subject;
  const char* does;
  const char* doesNot;
  const char* rest;
};

constexpr const char* kDiffered = "differed";
constexpr const char* kDidNot = "did not differ";
constexpr const char* kBetween = " between the groups of {g}";

constexpr Finding kFindings[] = {
    {binomial::kCard.element, "the share of {f}", kDiffered, kDidNot, " from the hypothesised one"},
    {chi_square::kCard.element, "the proportions of {f}", kDiffered, kDidNot,
     " from the hypothesised ones"},
    {ks_one_sample::kNormal.element, "{f}", "departed", "did not depart",
     " from the hypothesised distribution"},
    {runs::kCard.element, "the order of {f}", "departed", "did not depart", " from randomness"},
    {wilcoxon::kCard.element, "the median of {f}", kDiffered, kDidNot,
     " from the hypothesised one"},
    {sign::kCard.element, "{f}", kDiffered, kDidNot, ""},
    {wilcoxon_pairs::kCard.element, "{f}", kDiffered, kDidNot, ""},
    {mcnemar::kCard.element, "the proportions of {f}", kDiffered, kDidNot, ""},
    {marginal_homogeneity::kCard.element, "the distributions of {f}", kDiffered, kDidNot, ""},
    {cochran_q::kCard.element, "the proportions of {f}", kDiffered, kDidNot, ""},
    {friedman::kCard.element, "the distributions of {f}", kDiffered, kDidNot, ""},
    {kendall_w::kCard.element, "the records", "agreed", "did not agree",
     " in their ranking of {f}"},
    {mann_whitney::kCard.element, "{f}", kDiffered, kDidNot, kBetween},
    {kruskal_wallis::kCard.element, "{f}", kDiffered, kDidNot, kBetween},
    {median::kCard.element, "the medians of {f}", kDiffered, kDidNot, kBetween},
    {jonckheere_terpstra::kCard.element, "{f}", kDiffered, kDidNot,
     " along the order of the groups of {g}"},
    {ks_two_sample::kCard.element, "the distribution of {f}", kDiffered, kDidNot, kBetween},
    {wald_wolfowitz::kCard.element, "the distribution of {f}", kDiffered, kDidNot, kBetween},
    {moses::kCard.element, "the range of {f}", kDiffered, kDidNot, kBetween},
};

// Two decimals of what is no whole number and no half.
std::string ShortFigure(std::string_view text) {
  constexpr double kLargest = 1e15;
  const auto number = FigureNumber(text);
  if (!number || !(std::abs(*number) < kLargest) || *number == std::trunc(*number)) {
    return FigureText(text);
  }
  if (std::abs(*number) < 0.01) return FigureText(text);
  const bool isHalf = 2.0 * *number == std::trunc(2.0 * *number);  // of a sum of ranks
  return FixedText(*number, isHalf ? 1 : 2);
}

// All with two decimals where one of them has two.
std::vector<std::string> AlikeFigures(std::vector<std::string> figures) {
  const auto isShort = [](const std::string& figure) {
    const double twice = 2.0 * FigureNumber(figure).value_or(0.0);
    return twice == std::trunc(twice);
  };
  const bool areShort = std::ranges::all_of(figures, isShort);
  for (std::string& figure : figures) {
    const bool isLonger = !areShort && isShort(figure);
    figure = isLonger ? FixedText(FigureNumber(figure).value_or(0.0), 2) : ShortFigure(figure);
  }
  return figures;
}

// What cannot pass 1 has no 0 before its point.
std::string ShortEffect(const EffectSize& effect, double value) {
  std::string digits = FixedText(value, 2);
  if (effect.symbol == "h" || effect.symbol == "w") return digits;
  if (digits.starts_with("0.")) return digits.substr(1);
  if (digits.starts_with("-0.")) return "-" + digits.substr(2);
  return digits;
}

std::string Subject(const ResultDocument& document, const ResultTest& test) {
  std::vector<std::string> titles = FieldTitles(document, test, 0);
  if (test.classification == "Related_Samples") {
    for (const std::string& title : FieldTitles(document, test, 1)) titles.push_back(title);
  }
  const std::string counted = SuccessPhrase(document, test) + FirstClassPhrase(document, test);
  const std::string of = counted.empty() ? "" : counted + " in ";
  if (titles.size() > kMostGroups) return of + "the " + std::to_string(titles.size()) + " fields";
  return of + FieldPhrase(titles);
}

class Writer {
 public:
  Writer(const ResultDocument& document, const ResultTest& test) : document(document), test(test) {}

  std::vector<SentencePart> Write() {
    if (test.Failed() || test.decision == "unknown") {
      Add(TestTitle(test) + " of " + TestedFields(document, test) + ": it could not be computed");
    } else if (test.decision.empty()) {
      WriteEstimate();
    } else {
      WriteFinding();
      WriteFigures();
    }
    Add(".");
    return std::move(parts);
  }

 private:
  void Add(const std::string& text) { parts.push_back({text}); }
  void AddSymbol(const std::string& symbol, const std::string& text) {
    Add(", ");
    parts.push_back({symbol, true});
    Add(text);
  }

  void AddFilled(std::string_view phrase) {
    const std::size_t at = phrase.find('{');
    Add(std::string(phrase.substr(0, at)));
    if (at == std::string_view::npos) return;
    const bool isGroup = phrase[at + 1] == 'g';
    Add(isGroup ? FieldPhrase(FieldTitles(document, test, 1)) : Subject(document, test));
  }

  void WriteFinding() {
    Add(TestTitle(test) + ": ");
    const auto* const finding = std::ranges::find_if(
        kFindings, [this](const Finding& row) { return row.element == test.name; });
    const bool rejects = test.decision == "reject";
    if (finding == std::end(kFindings)) {
      Add(rejects ? "the null hypothesis was rejected" : "the null hypothesis was retained");
      return;
    }
    AddFilled(finding->subject);
    Add(std::string(" ") + (rejects ? finding->does : finding->doesNot) + " significantly");
    AddFilled(finding->rest);
  }

  void WriteFigures() {
    const Headline headline = FindHeadline(document, test);
    if (!headline.symbol.empty()) {
      std::string text = " = " + ShortFigure(headline.statistic);
      if (!headline.freedom.empty()) text = "(" + FigureText(headline.freedom) + ")" + text;
      AddSymbol(headline.symbol, text);
    }
    WriteSizes(headline);
    if (const auto significance = DecidingSignificance(test)) {
      std::string words = SignificanceText(significance->figure).substr(1);
      const bool isOneSided = significance->sides == 1;
      if (significance->isExact) words += isOneSided ? " (exact, one-sided)" : " (exact)";
      if (!significance->isExact && isOneSided) words += " (one-sided)";
      AddSymbol("p", words);
    }
    WriteEffect();
  }

  // The sizes of two groups or so, or else that of the whole.
  void WriteSizes(const Headline& headline) {
    std::vector<std::string> sizes;
    for (const ResultGroup& group : test.groups) {
      const auto found = std::ranges::find(group.figures, "N", &ResultStatistic::name);
      if (found != group.figures.end()) sizes.push_back(FigureText(found->text));
    }
    const bool areGroups = test.classification == "Independent_Samples";
    if (areGroups && sizes.size() == test.groups.size() && sizes.size() > 1 &&
        sizes.size() <= kMostGroups) {
      AddSymbol("n", " = " + JoinWords(sizes, " and "));
    } else if (headline.count) {
      AddSymbol("N", " = " + FigureText(NumberText(*headline.count)));
    }
    WriteMedians();
  }

  void WriteMedians() {
    const std::vector<std::string> medians = SampleMedians(test);
    if (medians.size() < 2 || medians.size() > kMostGroups) return;
    AddSymbol("Mdn", " = " + JoinWords(AlikeFigures(medians), " and "));
  }

  void WriteEffect() {
    const auto effect = FindEffectSize(document, test);
    if (!effect) return;
    const bool isRankBiserial = effect->name.starts_with("Rank-biserial");
    const bool isNamed = effect->name.ends_with("'s " + effect->symbol);
    Add(", ");
    if (isRankBiserial) Add("rank-biserial ");
    if (isNamed) Add(effect->name.substr(0, effect->name.size() - effect->symbol.size()));
    parts.push_back({effect->symbol, true});
    Add(" = " + ShortEffect(*effect, effect->value));
    if (const auto limits = EffectLimits(test, *effect)) {
      const double lower = FigureNumber(limits->lower).value_or(0.0);
      const double upper = FigureNumber(limits->upper).value_or(0.0);
      Add(", " + PercentText(document.confidenceLevel) + " CI [" + ShortEffect(*effect, lower) +
          ", " + ShortEffect(*effect, upper) + "]");
    }
  }

  void WriteEstimate() {
    const bool hasClass = !FirstClassPhrase(document, test).empty();
    Add(TestTitle(test) + " of " +
        (hasClass ? Subject(document, test) : TestedFields(document, test)) + ": ");
    for (std::size_t i = 0; i < test.intervals.size(); ++i) {
      const ResultInterval& interval = test.intervals[i];
      if (i > 0) Add("; ");
      const auto alike = AlikeFigures({interval.estimate, interval.lower, interval.upper});
      Add(alike[0] + ", " + PercentText(document.confidenceLevel) + " CI [" + alike[1] + ", " +
          alike[2] + "]");
      if (!interval.method.empty()) Add(" (" + FigureLabel(interval.method) + ")");
    }
  }

  const ResultDocument& document;
  const ResultTest& test;
  std::vector<SentencePart> parts;
};

}  // namespace

std::vector<SentencePart> SentenceParts(const ResultDocument& document, const ResultTest& test) {
  return Writer(document, test).Write();
}

std::string Sentence(const ResultDocument& document, const ResultTest& test) {
  std::string sentence;
  for (const SentencePart& part : SentenceParts(document, test)) sentence += part.text;
  return sentence;
}

}  // namespace npar_host
