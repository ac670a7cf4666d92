#include "host/render/extended_words.h"

#include <algorithm>
#include <iterator>

namespace npar_host {
namespace {

struct Entry {
  std::string_view name;
  std::string_view words;
  bool isForText = true;
  std::string_view limitsMethod = {};  // where it is the same in all tests
};

constexpr bool kPageOnly = false;
constexpr bool kAlways = true;

constexpr Entry kEntries[] = {
    // Significances; the one-sided ones stand as a pair.
    {"ConditionalExactSig2Tailed", "Exact significance with ties (2-sided)"},
    {"ConditionalExactSig1Tailed", "Exact with ties, less and greater"},
    {"ConditionalExactPointProbability", "Exact probability of the statistic", kPageOnly},
    {"ExactSig2Tailed", "Exact significance (2-sided)"},
    {"ExactSig1Tailed", "Exact, less and greater"},
    {"ExactMultinomialSig", "Exact multinomial significance"},
    {"FisherFreemanHaltonSig", "Exact significance (Fisher-Freeman-Halton)"},
    {"AsymptoticSig1Tailed", "Asymptotic, less and greater", kPageOnly},
    {"CorrectedStandardTestStatistic", "Standardised statistic, corrected", kPageOnly},
    {"CorrectedAsymptoticSig2Tailed", "Corrected significance (2-sided)", kPageOnly},
    {"CorrectedAsymptoticSig1Tailed", "Corrected, less and greater", kPageOnly},
    {"UncorrectedTestStatistic", "Statistic without correction", kPageOnly},
    {"UncorrectedStandardTestStatistic", "Standardised statistic, not corrected", kPageOnly},
    {"UncorrectedAsymptoticSig2Tailed", "Significance without correction (2-sided)", kPageOnly},
    {"LimitingSig2Tailed", "Limiting significance (2-sided)", kPageOnly},
    {"LillieforsSig", "Lilliefors significance"},
    {"LillieforsSigAtLeast", "Lilliefors significance at least"},
    {"LillieforsSigAtMost", "Lilliefors significance at most"},
    {"MidPSig2Tailed", "Mid-p significance (2-sided)"},
    {"MinimumRunsExactSig1Tailed", "Exact, fewest runs (1-sided)"},
    {"MinimumRunsExactSig2Tailed", "Exact, fewest runs (2-sided)"},
    {"MaximumRunsExactSig1Tailed", "Exact, most runs (1-sided)"},
    {"MaximumRunsExactSig2Tailed", "Exact, most runs (2-sided)"},
    // Other tests on the same data.
    {"LikelihoodRatioStatistic", "Likelihood ratio G", kPageOnly},
    {"LikelihoodRatioSig", "Likelihood ratio significance", kPageOnly},
    {"PrattTestStatistic", "Pratt's statistic", kPageOnly},
    {"PrattStandardTestStatistic", "Pratt's standardised statistic", kPageOnly},
    {"PrattAsymptoticSig2Tailed", "Pratt's significance (2-sided)", kPageOnly},
    {"StuartMaxwellStatistic", "Stuart-Maxwell statistic"},
    {"StuartMaxwellDegreeOfFreedom", "Stuart-Maxwell degrees of freedom", kPageOnly},
    {"StuartMaxwellSig", "Stuart-Maxwell significance"},
    {"BowkerStatistic", "Bowker statistic"},
    {"BowkerDegreeOfFreedom", "Bowker degrees of freedom", kPageOnly},
    {"BowkerSig", "Bowker significance"},
    {"ImanDavenportF", "Iman-Davenport F"},
    {"ImanDavenportFDegreeOfFreedom1", "Iman-Davenport degrees of freedom 1", kPageOnly},
    {"ImanDavenportFDegreeOfFreedom2", "Iman-Davenport degrees of freedom 2", kPageOnly},
    {"ImanDavenportFSig", "Iman-Davenport significance"},
    {"BrunnerMunzelStatistic", "Brunner-Munzel statistic"},
    {"BrunnerMunzelDegreeOfFreedom", "Brunner-Munzel degrees of freedom", kPageOnly},
    {"BrunnerMunzelSig2Tailed", "Brunner-Munzel significance (2-sided)"},
    {"BrunnerMunzelSig1Tailed", "Brunner-Munzel, less and greater", kPageOnly},
    {"BrunnerMunzel", "Superiority, Brunner-Munzel limits", kPageOnly},
    {"ConoverF", "Conover-Iman F"},
    {"ConoverFDegreeOfFreedom1", "Conover-Iman degrees of freedom 1", kPageOnly},
    {"ConoverFDegreeOfFreedom2", "Conover-Iman degrees of freedom 2", kPageOnly},
    {"ConoverFSig", "Conover-Iman significance"},
    // Sizes of effects, with their limits.
    {"CohensH", "Cohen's h"},
    {"CohensW", "Cohen's w"},
    {"RankBiserial", "Rank-biserial correlation", kAlways, "Newcombe"},
    {"ProbabilityOfSuperiority", "Probability of superiority", kAlways, "Newcombe"},
    {"EpsilonSquared", "Epsilon squared"},
    {"EtaSquaredH", "Eta squared"},
    {"EtaSquaredQ", "Eta squared"},
    {"KendallsTauB", "Kendall's tau-b"},
    {"SomersD", "Somers' D"},
    {"OddsRatio", "Odds ratio", kAlways, "Clopper-Pearson"},
    {"MeanSpearman", "Mean rank correlation of the records"},
    {"PseudoMedian", "Pseudo-median", kAlways, "order statistics"},
    {"PseudoMedianAttainedLevel", "Pseudo-median, level attained", kPageOnly},
    {"MedianDifference", "Median difference", kAlways, "order statistics"},
    {"MedianDifferenceAttainedLevel", "Median difference, level attained", kPageOnly},
    {"FirstClassShare", "Share of the first class"},
    {"PositiveShare", "Share of positive differences", kAlways, "Wilson"},
    {"Wilson", "Share, Wilson limits"},
    {"AgrestiCoull", "Share, Agresti-Coull limits", kPageOnly},
    {"Exact", "Exact limits"},
    {"ExactAttainedLevel", "Exact limits, level attained"},
    // Counts and places.
    {"TotalN", "Total N"},
    {"ValidN", "Valid N"},
    {"FirstClassN", "First class, N"},
    {"SecondClassN", "Second class, N"},
    {"FirstGroupN", "Below the cut, N"},
    {"SecondGroupN", "At and above the cut, N"},
    {"PositiveN", "Positive differences"},
    {"NegativeN", "Negative differences"},
    {"ZeroN", "Ties"},
    {"AbsoluteDifferenceLocation", "Greatest difference at"},
    // Columns of tables.
    {"LowerQuartile", "25 %"},
    {"UpperQuartile", "75 %"},
    {"MeanRank", "Mean rank"},
    {"MedianLower", "Median, lower limit"},
    {"MedianUpper", "Median, upper limit"},
    {"MedianAttainedLevel", "Level attained"},
    {"SuccessN", "Successes"},
    {"SuccessShare", "Share"},
    {"WilsonLower", "Wilson lower"},
    {"WilsonUpper", "Wilson upper"},
    {"PearsonResidual", "Residual"},
    {"StandardizedResidual", "Std. residual"},
    {"EffectR", "Effect r"},
};

const Entry* Find(std::string_view name) {
  const auto* const found = std::ranges::find(kEntries, name, &Entry::name);
  return found == std::end(kEntries) ? nullptr : found;
}

bool IsCapital(char letter) { return letter >= 'A' && letter <= 'Z'; }

// "NewFigureOfN" is "New figure of N".
std::string SplitAtCapitals(std::string_view name) {
  std::string words;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const bool begins = i > 0 && IsCapital(name[i]);
    const bool isWord = i + 1 < name.size() && !IsCapital(name[i + 1]);
    if (begins && (isWord || !IsCapital(name[i - 1]))) words += ' ';
    words += begins && isWord ? static_cast<char>(name[i] - 'A' + 'a') : name[i];
  }
  return words;
}

std::string Words(std::string_view name) {
  const Entry* const entry = Find(name);
  return entry == nullptr ? SplitAtCapitals(name) : std::string(entry->words);
}

}  // namespace

std::string ExtendedLabel(std::string_view name) {
  constexpr std::size_t kSuffix = std::string_view("Lower").size();
  const bool isLower = name.ends_with("Lower");
  if (Find(name) != nullptr || (!isLower && !name.ends_with("Upper"))) return Words(name);
  return Words(name.substr(0, name.size() - kSuffix)) +
         (isLower ? ", lower limit" : ", upper limit");
}

std::string_view LimitsMethod(std::string_view name) {
  const Entry* const entry = Find(name);
  return entry == nullptr ? std::string_view() : entry->limitsMethod;
}

bool IsForText(std::string_view name) {
  const Entry* const entry = Find(name);
  return entry == nullptr || entry->isForText;
}

}  // namespace npar_host
