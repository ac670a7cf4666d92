#include "host/render/text.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "host/data/number.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kLineWidth = 80;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kColumnGap = 2;

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u; }

// Characters, not bytes: what alignment counts.
std::size_t Width(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return !IsContinuation(c); }));
}

std::string Padding(std::string_view text, std::size_t width) {
  const std::size_t own = Width(text);
  return std::string(width > own ? width - own : 0, ' ');
}

// Breaks at blanks; further lines start under the first.
std::string Wrapped(std::string_view text, std::size_t indent) {
  std::string lines(indent, ' ');
  std::size_t column = indent;
  bool lineIsEmpty = true;
  while (!text.empty()) {
    const std::size_t end = text.find(' ');
    const std::string_view word = text.substr(0, end);
    if (!lineIsEmpty && column + 1 + Width(word) > kLineWidth) {
      lines += '\n' + std::string(indent, ' ');
      column = indent;
      lineIsEmpty = true;
    }
    if (!lineIsEmpty) {
      lines += ' ';
      ++column;
    }
    lines += word;
    column += Width(word);
    lineIsEmpty = false;
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines + '\n';
}

// Rows of texts in aligned columns, the first to the left and the others to the right.
std::string Aligned(const std::vector<std::vector<std::string>>& rows, std::size_t indent) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string text;
  for (const auto& row : rows) {
    std::string line(indent, ' ');
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) line += std::string(kColumnGap, ' ');
      line += i == 0 ? row[i] + Padding(row[i], widths[i]) : Padding(row[i], widths[i]) + row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

class TextReport {
 public:
  explicit TextReport(const ResultDocument& document) : document(document) {}

  std::string Render() {
    WriteHead();
    for (std::size_t i = 0; i < document.tests.size(); ++i) WriteTest(i + 1, document.tests[i]);
    return std::move(text);
  }

 private:
  void WriteHead() {
    text += "Nonparametric tests\n===================\n";
    std::string line = FigureText(NumberText(document.totalCount)) + " records";
    if (document.totalFreq != document.totalCount) {
      line += " with a total weight of " + FigureText(NumberText(document.totalFreq));
    }
    if (document.droppedCount > 0.0) {
      line += ", " + FigureText(NumberText(document.droppedCount)) + " dropped for missing values";
    }
    if (document.badWeightCount > 0.0) {
      line += ", " + FigureText(NumberText(document.badWeightCount)) +
              " dropped for a missing weight or one below 1";
    }
    line += "; missing values are excluded ";
    line += document.listwise ? "listwise" : "test by test";
    line += ". Significance level " + FigureText(NumberText(document.sigLevel)) +
            ", confidence level " + FigureText(NumberText(document.confidenceLevel)) + ".";
    text += Wrapped(line, 0);
    if (document.tests.empty()) text += "\nNo test was run.\n";
  }

  void WriteTest(std::size_t number, const ResultTest& test) {
    const std::string heading = std::to_string(number) + ". " + Printable(TestTitle(test));
    text += '\n' + heading + '\n' + std::string(Width(heading), '-') + '\n';
    text += Wrapped(Printable(Hypothesis(document, test)), kIndent);
    const std::string decision = DecisionText(document, test);
    if (!decision.empty()) text += Wrapped(decision, kIndent);
    WriteFigures(test);
    WriteGroups(test);
    WriteBoxPlots(test);
    for (const ResultTable& table : test.tables) WriteTable(test, table);
    WriteComparison(test, test.pairwise, "PairwiseResult");
    WriteComparison(test, test.stepwise, "StepwiseResult");
    if (!test.unknownValues.empty()) {
      std::string line = "Given values that are no category:";
      for (const std::string& value : test.unknownValues) line += ' ' + Printable(value);
      text += '\n' + Wrapped(line, kIndent);
    }
    WriteMessages(test);
  }

  void AddFigures(std::vector<std::vector<std::string>>& rows,
                  const std::vector<ResultStatistic>& figures) {
    std::string group;
    for (const ResultStatistic& figure : figures) {
      const bool isRuns = figure.group == "MinimumRuns" || figure.group == "MaximumRuns";
      if (isRuns && figure.group != group) rows.push_back({FigureLabel(figure.group)});
      group = figure.group;
      rows.push_back({(isRuns ? "  " : "") + FigureLabel(figure.name), FigureText(figure.text)});
    }
  }

  void WriteFigures(const ResultTest& test) {
    std::vector<std::vector<std::string>> rows;
    if (test.differences) AddFigures(rows, test.differences->figures);
    // A cross table's own entries are codes that its labels already tell.
    std::vector<ResultStatistic> details = test.details;
    std::erase_if(details, [](const auto& d) { return d.group == "CategoryFieldsComparison"; });
    AddFigures(rows, details);
    AddFigures(rows, test.statistics);
    for (const ResultInterval& interval : test.intervals) {
      if (!interval.method.empty())
        rows.push_back({interval.method, FigureText(interval.estimate)});
      rows.push_back({"  Lower limit", FigureText(interval.lower)});
      rows.push_back({"  Upper limit", FigureText(interval.upper)});
    }
    if (!rows.empty()) text += '\n' + Aligned(rows, kIndent);
  }

  void WriteGroups(const ResultTest& test) {
    if (test.groups.empty()) return;
    std::vector<std::vector<std::string>> rows{{"Group"}};
    for (const ResultStatistic& figure : test.groups.front().figures) {
      rows[0].push_back(FigureLabel(figure.name));
    }
    for (const ResultGroup& group : test.groups) {
      rows.push_back({Printable(GroupTitle(document, test, group))});
      for (const ResultStatistic& figure : group.figures) {
        rows.back().push_back(FigureText(figure.text));
      }
    }
    text += '\n' + Aligned(rows, kIndent);
  }

  void WriteBoxPlots(const ResultTest& test) {
    if (test.boxPlots.empty()) return;
    const bool hasRanks = test.boxPlots.front().meanRank.has_value();
    std::vector<std::vector<std::string>> rows{{"Group"}};
    if (hasRanks) rows[0].push_back("Mean rank");
    for (const char* column : {"Lowest", "25 %", "Median", "75 %", "Highest", "Outliers"}) {
      rows[0].push_back(column);
    }
    for (const ResultBoxPlot& plot : test.boxPlots) {
      rows.push_back({Printable(SampleTitle(document, test, plot.code))});
      if (hasRanks) rows.back().push_back(FigureText(plot.meanRank.value_or("")));
      for (std::size_t i = 0; i < 5; ++i) {
        rows.back().push_back(plot.fiveNumbers.empty() ? "" : FigureText(plot.fiveNumbers[i]));
      }
      rows.back().push_back(std::to_string(plot.outliers.size()));
    }
    text += '\n' + Aligned(rows, kIndent);
  }

  void WriteTable(const ResultTest& test, const ResultTable& table) {
    if (table.Empty()) return;
    text +=
        '\n' + std::string(kIndent, ' ') + Printable(TableCaption(document, test, table)) + '\n';
    std::vector<std::vector<std::string>> rows{{""}};
    for (std::size_t i = 0; i < ColumnCount(table); ++i) {
      rows[0].push_back(Printable(ColumnTitle(test, table, i)));
    }
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
      rows.push_back({Printable(RowTitle(document, test, table, i))});
      for (const std::string& cell : table.rows[i]) rows.back().push_back(FigureText(cell));
    }
    text += Aligned(rows, kIndent);
  }

  void WriteComparison(const ResultTest& test, const ResultComparison& comparison,
                       std::string_view name) {
    if (!comparison.present || comparison.content.Empty()) return;
    text += '\n' + std::string(kIndent, ' ') + TableLabel(name) + '\n';
    std::vector<std::vector<std::string>> rows(1);
    for (const std::string& column : comparison.content.columnNames) {
      rows[0].push_back(TableLabel(column));
    }
    for (const auto& cells : comparison.content.rows) {
      rows.emplace_back();
      for (std::size_t i = 0; i < cells.size(); ++i) {
        rows.back().push_back(i < 2 ? Printable(PositionTitle(document, test, comparison, cells[i]))
                                    : FigureText(cells[i]));
      }
    }
    text += Aligned(rows, kIndent);
  }

  void WriteMessages(const ResultTest& test) {
    if (!test.messages.empty()) text += '\n';
    for (const ResultMessage& message : test.messages) {
      text += Wrapped(MessageKindWord(message) + " " + std::to_string(message.code) + ": " +
                          Printable(MessageWords(document, message)),
                      kIndent);
    }
  }

  const ResultDocument& document;
  std::string text;
};

}  // namespace

std::string RenderText(const ResultDocument& document, const TextStyle&) {
  return TextReport(document).Render();
}

std::string Printable(std::string_view text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    std::array<char, 8> escape{};
    if (byte < 0x20 || byte == 0x7F) {
      std::snprintf(escape.data(), escape.size(), "\\x%02x", byte);
      shown += escape.data();
    } else if (byte == 0xC2 && i + 1 < text.size() &&
               static_cast<unsigned char>(text[i + 1]) < 0xA0) {
      // U+0080 to U+009F: control characters that some terminals obey.
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned char>(text[++i]));
      shown += escape.data();
    } else {
      shown += text[i];
    }
  }
  return shown;
}

}  // namespace npar_host
