#include "host/render/html/comparison_tables.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "host/data/number.h"
#include "host/render/adjustment.h"
#include "host/render/extended_figures.h"
#include "host/render/html/comparison_plots.h"
#include "host/render/html/markup.h"
#include "host/render/pairs.h"
#include "host/render/significance.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

// More would run off a printed page.
constexpr std::size_t kMostSubsetsAcross = 6;

bool HasFigures(const ResultTable& table, std::size_t column) {
  return std::ranges::any_of(table.rows, [column](const TextRows::Row& row) {
    return column < row.size() && !FigureText(row[column]).empty();
  });
}

std::string ShowMarkup(std::string_view name, std::string_view figure) {
  return IsSignificanceName(name) ? SignificanceMarkup(figure) : FigureMarkup(figure);
}

constexpr std::string_view kAdjusted = "AdjSig";

std::string FigureOf(double number) { return std::isnan(number) ? "" : NumberText(number); }

// All columns of each pair, with the significance after each adjustment.
std::string PairsInFull(const ResultDocument& document, const ResultTest& test,
                        const std::string& id) {
  const ResultComparison& comparison = test.pairwise;
  constexpr Adjustment kRecomputed[] = {Adjustment::Holm, Adjustment::BenjaminiHochberg};
  const ResultTable& content = comparison.content;
  HtmlTable table(id, "Pairwise comparisons: significances are two-sided");
  std::vector<std::string> columns{"Samples"};
  std::vector<std::size_t> known;  // columns with at least one figure
  for (std::size_t i = 2; i < content.columnNames.size(); ++i) {
    if (!HasFigures(content, i)) continue;
    known.push_back(i);
    const bool isAdjusted = content.columnNames[i] == kAdjusted;
    columns.push_back(isAdjusted ? "Sig. after Bonferroni"
                                 : Escaped(TableLabel(content.columnNames[i])));
  }
  std::vector<std::vector<double>> adjusted;
  for (const Adjustment adjustment : kRecomputed) {
    adjusted.push_back(AdjustedPairs(comparison, adjustment));
    columns.push_back("Sig. after " + std::string(AdjustmentTitle(adjustment)));
  }
  const ExtendedColumns further(test, "Pairs", {"Sample1", "Sample2"});
  for (const std::string& label : further.Labels()) columns.push_back(Escaped(label));
  columns.push_back("Result by " + JudgedBy(comparison));
  table.SetColumns(columns);
  for (const SamplePair& pair : Pairs(comparison)) {
    const TextRows::Row row = content.rows[pair.row];
    std::vector<std::string> cells;
    cells.reserve(columns.size());
    for (const std::size_t i : known) {
      cells.push_back(ShowMarkup(content.columnNames[i], i < row.size() ? row[i] : ""));
    }
    for (const std::vector<double>& significances : adjusted) {
      cells.push_back(SignificanceMarkup(FigureOf(significances[pair.row])));
    }
    for (const std::string& cell : further.Cells(pair.row)) cells.push_back(FigureMarkup(cell));
    const bool differs = pair.significance < document.sigLevel;
    cells.push_back(differs ? "differ" : "no difference");
    table.AddRow(Escaped(SampleTitle(document, test, comparison.order[pair.first]) + " \u2013 " +
                         SampleTitle(document, test, comparison.order[pair.second])),
                 cells, differs ? "differs" : "");
  }
  return table.Markup("wide");
}

// Of many pairs what tells whether they differ, below the first sample of each, with the digits
// that are shown alone: the table is most of the page.
std::string PairsFolded(const ResultDocument& document, const ResultTest& test,
                        const std::string& id) {
  const ResultComparison& comparison = test.pairwise;
  HtmlTable table(id, PairwiseCaption(comparison));
  std::vector<std::string> columns{"Samples"};
  std::vector<std::size_t> shown;
  for (const std::string_view name : {"StandardTestStatistic", "Sig", "AdjSig"}) {
    const std::size_t column = ContentColumn(comparison, name);
    if (!HasFigures(comparison.content, column)) continue;
    shown.push_back(column);
    columns.push_back(Escaped(PairLabel(comparison, name)));
  }
  table.SetColumns(columns);
  std::vector<SamplePair> pairs = ListedPairs(comparison);
  std::ranges::stable_sort(pairs, {}, &SamplePair::first);
  std::optional<std::size_t> above;
  for (const SamplePair& pair : pairs) {
    if (above != pair.first) {
      table.AddSubheading(Escaped(SampleTitle(document, test, comparison.order[pair.first])) +
                          " and");
    }
    above = pair.first;
    std::vector<std::string> cells;
    for (const std::size_t column : shown) {
      const std::string figure = PairCell(comparison, pair, column);
      const bool isSignificance = IsSignificanceName(comparison.content.columnNames[column]);
      cells.push_back(Escaped(isSignificance ? SignificanceCell(figure) : FigureText(figure)));
    }
    table.AddRow(Escaped(SampleTitle(document, test, comparison.order[pair.second])), cells,
                 pair.significance < document.sigLevel ? "differs" : "");
  }
  const std::string unlisted = UnlistedPairs(comparison);
  return "<details class=\"wide\"><summary>Pairs of samples</summary>\n<p class=\"note\">" +
         unlisted + (unlisted.empty() ? "" : " ") + "In bold: they differ by the " +
         JudgedBy(comparison) + ".</p>\n" + table.Markup() + "</details>\n";
}

bool IsMember(const TextRows::Row& subset, std::size_t position) {
  const auto first = subset.empty() ? std::nullopt : FigureNumber(subset[0]);
  const auto last = subset.size() < 2 ? std::nullopt : FigureNumber(subset[1]);
  const auto here = static_cast<double>(position);
  return first && last && here >= *first && here <= *last;
}

// Subsets side by side, numbered from `number`, with the samples that are in one of them.
std::string SubsetsTable(const ResultDocument& document, const ResultTest& test,
                         std::span<const TextRows::Row> subsets, std::size_t number,
                         const std::string& id) {
  const ResultComparison& comparison = test.stepwise;
  HtmlTable table(
      id, number == 1 ? kSubsetsCaption : "Homogeneous subsets from " + std::to_string(number));
  std::vector<std::string> columns{"Sample, by " + Escaped(ComparedMeasure(test))};
  for (std::size_t i = 0; i < subsets.size(); ++i) {
    columns.push_back("Subset\u00a0" + std::to_string(number + i));
  }
  table.SetColumns(columns);
  for (std::size_t position = 0; position < comparison.order.size(); ++position) {
    const auto holds = [position](const auto& subset) { return IsMember(subset, position); };
    if (std::ranges::none_of(subsets, holds)) continue;
    const std::string value =
        position < comparison.values.size() ? comparison.values[position] : "";
    std::vector<std::string> cells;
    for (const auto& subset : subsets) {
      cells.push_back(holds(subset) ? "<span class=\"member\">" + FigureMarkup(value) + "</span>"
                                    : "");
    }
    table.AddRow(Escaped(SampleTitle(document, test, comparison.order[position])), cells);
  }
  const auto& names = comparison.content.columnNames;
  for (std::size_t i = 2; i < names.size(); ++i) {
    if (!HasFigures(comparison.content, i)) continue;
    std::vector<std::string> cells;
    for (const auto& subset : subsets) {
      const std::string_view figure = i < subset.size() ? subset[i] : "";
      cells.push_back(ShowMarkup(names[i], figure));
    }
    table.AddRow(Escaped(TableLabel(names[i])), cells, "foot");
  }
  return table.Markup("wide subsets");
}

}  // namespace

std::string PairwiseTable(const ResultDocument& document, const ResultTest& test,
                          const std::string& id) {
  const ResultComparison& comparison = test.pairwise;
  if (!comparison.present || comparison.content.Empty()) return {};
  return IsTraceable(comparison) ? PairsInFull(document, test, id)
                                 : PairsFolded(document, test, id);
}

std::string SubsetsTables(const ResultDocument& document, const ResultTest& test,
                          const std::string& id) {
  const ResultComparison& comparison = test.stepwise;
  if (!comparison.present || comparison.content.Empty()) return {};
  // By their first sample, as readers expect the columns.
  std::vector<TextRows::Row> subsets(comparison.content.rows.begin(),
                                     comparison.content.rows.end());
  std::ranges::stable_sort(subsets, {}, [](const auto& subset) {
    return subset.empty() ? 0.0 : FigureNumber(subset[0]).value_or(0.0);
  });
  const std::size_t tables = (subsets.size() + kMostSubsetsAcross - 1) / kMostSubsetsAcross;
  std::string markup;
  for (std::size_t i = 0; i < tables; ++i) {
    const std::size_t first = subsets.size() * i / tables;
    const std::size_t last = subsets.size() * (i + 1) / tables;
    markup += SubsetsTable(document, test, std::span(subsets).subspan(first, last - first),
                           first + 1, id + (i == 0 ? "" : std::to_string(i + 1)));
  }
  return markup;
}

}  // namespace npar_host
