#include "host/render/reading_notes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "catalogue/cards/kruskal_wallis.h"
#include "catalogue/cards/ks_one_sample.h"
#include "catalogue/cards/mann_whitney.h"
#include "host/render/extended_figures.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr double kSmallGroup = 5.0;      // records
constexpr std::size_t kMostWords = 100;  // bytes of groups that are named
constexpr double kOtherSpread = 2.0;     // ratio of the widest quartile distance to the narrowest

const std::string* FindFigure(const std::vector<ResultStatistic>& figures, std::string_view name) {
  const auto found = std::ranges::find(figures, name, &ResultStatistic::name);
  return found == figures.end() ? nullptr : &found->text;
}

// Does the hypothesis hold a figure of the tested field itself?
bool HasOwnParameters(const ResultDocument& document, const ResultTest& test) {
  const auto fields = test.ConditionFields(0, document.fields.size());
  if (fields.empty() || !document.fields[fields.front()].distribution) return false;
  const auto& figures = document.fields[fields.front()].distribution->figures;
  for (std::size_t i = 1; i < test.conditionParameters.size(); ++i) {
    for (const std::string_view name : {"Mean", "StdDev", "Min", "Max"}) {
      const std::string* const own = FindFigure(figures, name);
      if (own != nullptr && *own == test.conditionParameters[i]) return true;
    }
  }
  return false;
}

struct GroupSize {
  std::string group;
  std::string records;  // text of a figure
};

std::vector<GroupSize> GroupSizes(const ResultDocument& document, const ResultTest& test) {
  std::vector<GroupSize> sizes;
  for (const ResultGroup& group : test.groups) {
    const std::string* const size = FindFigure(group.figures, "N");
    if (size != nullptr) sizes.push_back({GroupTitle(document, test, group), *size});
  }
  // The document has no sizes of several groups; the extended figures have.
  const ExtendedColumns columns(test, "Groups");
  const std::vector<std::string> labels = columns.Labels();
  const auto at = static_cast<std::size_t>(std::ranges::find(labels, "N") - labels.begin());
  if (at == labels.size()) return sizes;
  for (const ResultBoxPlot& box : test.boxPlots) {
    sizes.push_back(
        {SampleTitle(document, test, box.code), columns.Cells(columns.RowOf(box.code))[at]});
  }
  return sizes;
}

std::string SmallGroups(const ResultDocument& document, const ResultTest& test) {
  const auto deciding = DecidingSignificance(test);
  if (!deciding || deciding->isExact || test.classification != "Independent_Samples") return {};
  std::string groups;
  std::size_t others = 0;
  for (const auto& [group, records] : GroupSizes(document, test)) {
    const auto count = FigureNumber(records);
    if (!count || !(*count < kSmallGroup)) continue;
    if (groups.size() > kMostWords) {
      ++others;
    } else {
      groups += (groups.empty() ? "" : ", ") + group + " has " + FigureText(records);
    }
  }
  if (groups.empty()) return {};
  if (others > 0) groups += ", and " + std::to_string(others) + " more";
  return "an asymptotic significance is rough where a group has fewer than 5 records: " + groups;
}

// The value up to which a share of the bins' counts lies.
double Quantile(std::vector<ResultBin> bins, double share) {
  std::ranges::sort(bins, {}, &ResultBin::value);
  double total = 0.0;
  for (const ResultBin& bin : bins) total += bin.count;
  double sum = 0.0;
  for (const ResultBin& bin : bins) {
    sum += bin.count;
    if (sum >= share * total) return bin.value;
  }
  return bins.back().value;
}

// The distances between the quartiles of each group.
std::vector<double> Spreads(const ResultTest& test) {
  constexpr std::size_t kLower = 1, kUpper = 3;
  constexpr double kLowerShare = 0.25, kUpperShare = 0.75;
  std::vector<double> spreads;
  for (const ResultBoxPlot& box : test.boxPlots) {
    if (box.fiveNumbers.empty()) continue;
    const auto lower = FigureNumber(box.fiveNumbers[kLower]);
    const auto upper = FigureNumber(box.fiveNumbers[kUpper]);
    if (lower && upper) spreads.push_back(*upper - *lower);
  }
  for (const ResultGroup& group : test.groups) {
    if (group.bins.empty()) continue;
    spreads.push_back(Quantile(group.bins, kUpperShare) - Quantile(group.bins, kLowerShare));
  }
  return spreads;
}

bool SpreadsDiffer(const ResultTest& test) {
  if (test.name != catalogue::mann_whitney::kCard.element &&
      test.name != catalogue::kruskal_wallis::kCard.element) {
    return false;
  }
  const std::vector<double> spreads = Spreads(test);
  if (spreads.size() < 2) return false;
  const auto [least, most] = std::ranges::minmax(spreads);
  return most > kOtherSpread * least;
}

}  // namespace

std::vector<std::string> ReadingNotes(const ResultDocument& document, const ResultTest& test) {
  std::vector<std::string> notes;
  if (test.Failed()) return notes;
  if (test.name == catalogue::ks_one_sample::kNormal.element && HasOwnParameters(document, test)) {
    notes.emplace_back(
        "the hypothesised distribution has its parameters from the same data, to which it fits "
        "better than to others: the significance is too large");
  }
  const auto deciding = DecidingSignificance(test);
  const auto exact = ExactBeside(test);
  const bool passesOverTies =
      deciding && deciding->isExact && exact && exact->name == "ConditionalExactSig2Tailed";
  if (passesOverTies && ExactDifference(document, test).empty()) {
    notes.push_back("the exact significance that decides does not count ties; with them it is " +
                    SignificanceCell(exact->text));
  }
  const std::string small = SmallGroups(document, test);
  if (!small.empty()) notes.push_back(small);
  if (SpreadsDiffer(test)) {
    notes.emplace_back(
        "the groups differ in spread, not in place alone: do not read this as a test of medians");
  }
  return notes;
}

}  // namespace npar_host
