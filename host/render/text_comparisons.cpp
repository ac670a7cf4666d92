#include "host/render/text_comparisons.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/data/number.h"
#include "host/render/extended_figures.h"
#include "host/render/pairs.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kPositionColumns = 2;

std::string ComparisonFigure(std::string_view column, std::string_view cell) {
  return IsSignificanceName(column) ? SignificanceCell(cell) : FigureText(cell);
}

// Columns that hold anything, such as the standard error where the test has one.
std::vector<std::size_t> FilledColumns(const ResultTable& table) {
  std::vector<std::size_t> columns;
  for (std::size_t i = kPositionColumns; i < table.columnNames.size(); ++i) {
    const bool isFilled = std::ranges::any_of(table.rows, [i](const TextRows::Row& row) {
      return i < row.size() && !FigureText(row[i]).empty();
    });
    if (isFilled) columns.push_back(i);
  }
  return columns;
}

void WritePairwise(TextPage& page, const ResultDocument& document, const ResultTest& test,
                   std::size_t indent) {
  const ResultTable& content = test.pairwise.content;
  const std::vector<std::size_t> columns = FilledColumns(content);
  TextTable table{{{"Sample 1", "Sample 2"}}, "llr", true};
  for (const std::size_t column : columns) {
    table.rows[0].push_back(PairLabel(test.pairwise, content.columnNames[column]));
  }
  const ExtendedColumns further(test, "Pairs", {"Sample1", "Sample2"});
  for (const std::string& label : further.Labels()) table.rows[0].push_back(label);
  bool hasMark = false;
  for (const SamplePair& pair : ListedPairs(test.pairwise)) {
    const bool isMarked = pair.significance < document.sigLevel;
    hasMark = hasMark || isMarked;
    std::vector<std::string> row;
    for (const std::size_t position : {pair.first, pair.second}) {
      row.push_back(SampleTitle(document, test, test.pairwise.order[position]));
    }
    for (const std::size_t column : columns) {
      const std::string& name = content.columnNames[column];
      row.push_back(ComparisonFigure(name, PairCell(test.pairwise, pair, column)));
      if (name == "AdjSig") row.back() += isMarked ? "*" : " ";
    }
    for (const std::string& cell : further.Cells(pair.row)) row.push_back(FigureText(cell));
    table.rows.push_back(row);
  }
  page.Blank();
  page.Paragraph(PairwiseCaption(test.pairwise), indent);
  page.Table(table, indent);
  if (hasMark) {
    page.Paragraph(
        "* " + JudgedBy(test.pairwise) + " below " + FigureText(NumberText(document.sigLevel)),
        indent);
  }
  const std::string unlisted = UnlistedPairs(test.pairwise);
  if (!unlisted.empty()) page.Paragraph(unlisted, indent);
}

struct Subset {
  std::size_t first, last;  // positions
  TextRows::Row cells;
};

std::vector<Subset> Subsets(const ResultComparison& stepwise) {
  std::vector<Subset> subsets;
  const auto end = static_cast<double>(stepwise.order.size());
  for (const TextRows::Row cells : stepwise.content.rows) {
    if (cells.size() < kPositionColumns) continue;
    const auto first = FigureNumber(cells[0]);
    const auto last = FigureNumber(cells[1]);
    if (!first || !last || !(*first >= 0.0) || !(*last >= *first) || !(*last < end)) continue;
    subsets.push_back({static_cast<std::size_t>(*first), static_cast<std::size_t>(*last), cells});
  }
  std::ranges::stable_sort(subsets, {}, &Subset::first);
  return subsets;
}

void WriteStepwise(TextPage& page, const ResultDocument& document, const ResultTest& test,
                   std::size_t indent) {
  const ResultComparison& stepwise = test.stepwise;
  const std::vector<Subset> subsets = Subsets(stepwise);
  TextTable table{{{"Subset"}}, "lr", true};
  for (std::size_t i = 0; i < subsets.size(); ++i) {
    table.rows[0].push_back(std::to_string(i + 1));
  }
  for (std::size_t position = 0; position < stepwise.order.size(); ++position) {
    table.rows.push_back({SampleTitle(document, test, stepwise.order[position])});
    const std::string value =
        position < stepwise.values.size() ? FigureText(stepwise.values[position]) : "x";
    for (const Subset& subset : subsets) {
      const bool isInside = position >= subset.first && position <= subset.last;
      table.rows.back().push_back(isInside ? value : "");
    }
  }
  for (const std::size_t column : FilledColumns(stepwise.content)) {
    const std::string& name = stepwise.content.columnNames[column];
    table.rows.push_back({TableLabel(name)});
    for (const Subset& subset : subsets) {
      table.rows.back().push_back(
          column < subset.cells.size() ? ComparisonFigure(name, subset.cells[column]) : "");
    }
  }
  page.Blank();
  page.Paragraph(kSubsetsCaption, indent);
  page.Table(table, indent);
}

}  // namespace

void WriteComparisons(TextPage& page, const ResultDocument& document, const ResultTest& test,
                      std::size_t indent) {
  if (!test.pairwise.content.Empty()) WritePairwise(page, document, test, indent);
  if (!test.stepwise.content.Empty()) WriteStepwise(page, document, test, indent);
}

}  // namespace npar_host
