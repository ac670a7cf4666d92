#include "host/render/html/frequency_plots.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/binomial.h"
#include "host/render/html/markup.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr double kLabelEnd = 122.0;
constexpr double kLeft = 132.0;
constexpr double kRight = kPlotWidth - 70.0;
constexpr std::size_t kLargestCrossTable = 12;

struct Pair {
  std::string title;
  std::string_view first;
  std::string_view second;
};

double Count(std::string_view text) {
  const double value = FigureNumber(text).value_or(0.0);
  return std::isfinite(value) ? value : 0.0;
}

}  // namespace

std::optional<Plot> FrequencyPlot(const ResultDocument& document, const ResultTest& test,
                                  const ResultTable& table) {
  if (table.name != "TwoClassComparison" || table.Empty() || ColumnCount(table) != 2) {
    return std::nullopt;
  }
  const bool areAllPairs =
      std::ranges::all_of(table.rows, [](const TextRows::Row& row) { return row.size() == 2; });
  // The binomial test has its series in rows, all others in columns.
  const bool isTurned = test.name == catalogue::binomial::kCard.element;
  if (!areAllPairs || (isTurned && table.rows.size() != 2)) return std::nullopt;
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    if (isTurned) {
      pairs.push_back({ColumnTitle(document, test, table, i), table.rows[0][i], table.rows[1][i]});
    } else {
      pairs.push_back({RowTitle(document, test, table, i), table.rows[i][0], table.rows[i][1]});
    }
  }
  const std::string firstSeries =
      isTurned ? RowTitle(document, test, table, 0) : ColumnTitle(document, test, table, 0);
  const std::string secondSeries =
      isTurned ? RowTitle(document, test, table, 1) : ColumnTitle(document, test, table, 1);
  Plot plot;
  plot.kind = "frequencies";
  plot.title = TableCaption(document, test, table);
  double highest = 0.0;
  std::vector<std::string> titles;
  for (const Pair& pair : pairs) {
    titles.push_back(pair.title);
    highest = std::max({highest, Count(pair.first), Count(pair.second)});
  }
  const Scale across{0.0, highest > 0.0 ? highest : 1.0, kLeft, kRight};
  constexpr double kFirstSeries = 92.0;
  constexpr double kSecondSeries = 262.0;
  constexpr double kBeside = 20.0;
  plot.drawing.Box(kFirstSeries, 6.0, 14.0, 10.0, "first");
  plot.drawing.Name(kFirstSeries + kBeside, 15.0, "start", firstSeries, 146.0);
  plot.drawing.Box(kSecondSeries, 6.0, 14.0, 10.0, "second hollow");
  plot.drawing.Name(kSecondSeries + kBeside, 15.0, "start", secondSeries, 154.0);
  const std::size_t shared = SharedBeginning(titles);
  double y = 30.0;
  for (const Pair& pair : pairs) {
    plot.drawing.Name(kLabelEnd, y + 17.0, "end", pair.title, kLabelEnd - 2.0, "name", shared);
    double bar = y;
    for (const auto& [text, shapeClass] :
         {std::pair{&pair.first, "first"}, std::pair{&pair.second, "second hollow"}}) {
      const double end = across(Count(*text));
      plot.drawing.Box(kLeft, bar, end - kLeft, 12.0, shapeClass);
      plot.drawing.Text(end + 6.0, bar + 10.0, "start", FigureText(*text), "value");
      bar += 14.0;
    }
    plot.description.append(" ").append(pair.title).append(": ");
    plot.description.append(firstSeries).append(" ").append(FigureText(pair.first)).append(", ");
    plot.description.append(secondSeries).append(" ").append(FigureText(pair.second)).append(".");
    y += 40.0;
  }
  plot.description.erase(0, 1);
  plot.drawing.Line(kLeft, 24.0, kLeft, y - 6.0, "axis");
  plot.height = y + 4.0;
  return plot;
}

std::optional<Plot> CrossPlot(const ResultDocument& document, const ResultTest& test,
                              const ResultTable& table) {
  const std::size_t size = table.rows.size();
  if (table.name != "CategoryFieldsComparison" || size == 0 || size > kLargestCrossTable ||
      ColumnCount(table) > kLargestCrossTable) {
    return std::nullopt;
  }
  double highest = 0.0;
  for (const auto& row : table.rows) {
    for (const std::string_view cell : row) highest = std::max(highest, Count(cell));
  }
  if (!(highest > 0.0)) return std::nullopt;
  const std::size_t columns = ColumnCount(table);
  const double left = 132.0;
  const double top = 52.0;
  const double width = std::min(110.0, (kPlotWidth - left - 8.0) / static_cast<double>(columns));
  const double height = std::min(width, 46.0);
  const auto rowFields = FieldTitles(document, test, 0);
  const auto columnFields = FieldTitles(document, test, 1);
  Plot plot;
  plot.kind = "cross";
  plot.title = TableCaption(document, test, table);
  if (!rowFields.empty()) {
    plot.drawing.Name(left - 10.0, top - 10.0, "end", rowFields[0], left - 14.0, "title");
  }
  if (!columnFields.empty()) {
    plot.drawing.Name(left + width * static_cast<double>(columns) / 2.0, 16.0, "middle",
                      columnFields[0], 2.0 * width, "title");
  }
  for (std::size_t j = 0; j < columns; ++j) {
    plot.drawing.Name(left + width * (static_cast<double>(j) + 0.5), top - 10.0, "middle",
                      ColumnTitle(document, test, table, j), width - 4.0);
  }
  for (std::size_t i = 0; i < size; ++i) {
    const double y = top + height * static_cast<double>(i);
    const std::string rowTitle = RowTitle(document, test, table, i);
    plot.drawing.Name(left - 10.0, y + height / 2.0 + 4.0, "end", rowTitle, left - 14.0);
    for (std::size_t j = 0; j < table.rows[i].size(); ++j) {
      const double x = left + width * static_cast<double>(j);
      const double share = Count(table.rows[i][j]) / highest;
      // Five steps of shade: their text colours are chosen for contrast.
      const int shade = share > 0.0 ? 1 + static_cast<int>(share * 3.999) : 0;
      const std::string kind = i == j ? "cell" : "cell change";
      plot.drawing.Box(x + 1.0, y + 1.0, width - 2.0, height - 2.0,
                       kind + " shade" + std::to_string(shade));
      plot.drawing.Text(x + width / 2.0, y + height / 2.0 + 4.0, "middle",
                        FigureText(table.rows[i][j]), shade >= 3 ? "value onshade" : "value");
      if (size <= 4) {
        plot.description += " " + rowTitle + " and " + ColumnTitle(document, test, table, j) +
                            ": " + FigureText(table.rows[i][j]) + ".";
      }
    }
  }
  if (plot.description.empty()) plot.description = " The table below holds the counts.";
  plot.description.erase(0, 1);
  plot.height = top + height * static_cast<double>(size) + 10.0;
  plot.note = "Framed cells are off the diagonal: the records whose class changed.";
  return plot;
}

}  // namespace npar_host
