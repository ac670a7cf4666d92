#include "host/render/text.h"

#include <algorithm>
#include <optional>

#include "host/data/number.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/listed.h"
#include "host/render/reading_notes.h"
#include "host/render/sentence.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/text_comparisons.h"
#include "host/render/text_extended.h"
#include "host/render/text_fields.h"
#include "host/render/text_plots.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kHistogramCells = 20;
constexpr std::size_t kWidestBoxPlot = 60;
constexpr std::size_t kWideEnoughForEffects = 100;
constexpr std::size_t kNarrowestBoxPlot = 10;

std::string Text(double number) { return FigureText(NumberText(number)); }

// "Rank-biserial correlation (r)", "Kendall's W".
std::string EffectLabel(const EffectSize& effect, bool ascii) {
  std::string name = effect.name;
  if (ascii) {
    const std::size_t accent = name.find("\u00e9");  // Cramer
    if (accent != std::string::npos) name.replace(accent, 2, "e");
  }
  const bool hasPlainSymbol = static_cast<unsigned char>(effect.symbol[0]) < 0x80;
  if (name.ends_with(" " + effect.symbol) || (ascii && !hasPlainSymbol)) return name;
  return name + " (" + effect.symbol + ")";
}

// "r = 0.29 [0.1, 0.46]".
std::string EffectText(const ResultTest& test, const EffectSize& effect, bool ascii) {
  const bool hasPlainSymbol = static_cast<unsigned char>(effect.symbol[0]) < 0x80;
  const std::string symbol = ascii && !hasPlainSymbol ? "eps2" : effect.symbol;
  const auto limits = EffectLimits(test, effect);
  return symbol + " = " + Text(effect.value) +
         (limits ? " [" + FigureText(limits->lower) + ", " + FigureText(limits->upper) + "]" : "");
}

class TextReport {
 public:
  TextReport(const ResultDocument& document, const TextStyle& style)
      : document(document), page(style) {}

  std::string Render() {
    WriteHead();
    if (document.tests.size() > 1) WriteOverview();
    for (std::size_t i = 0; i < document.tests.size(); ++i) WriteTest(i + 1, document.tests[i]);
    WriteFields(page, document, kIndent);
    WriteTrace();
    return page.Take();
  }

 private:
  [[nodiscard]] bool Ascii() const { return page.Style().ascii; }

  void WriteHead() {
    page.Heading("Nonparametric tests", '=');
    std::string line =
        Text(document.totalCount) + (document.totalCount == 1.0 ? " record" : " records");
    if (document.totalFreq != document.totalCount) {
      line += " with a total weight of " + Text(document.totalFreq);
    }
    if (document.droppedCount > 0.0) {
      line += ", " + Text(document.droppedCount) + " dropped for missing values";
    }
    if (document.badWeightCount > 0.0) {
      line += ", " + Text(document.badWeightCount) + " dropped for a missing weight or one below 1";
    }
    line += "; missing values are excluded ";
    line += document.listwise ? "listwise" : "test by test";
    line += ". Significance level " + Text(document.sigLevel) + ", confidence level " +
            Text(document.confidenceLevel) + ".";
    page.Paragraph(line, 0);
    if (document.tests.empty()) {
      page.Blank();
      page.Paragraph("No test was run.", 0);
    }
  }

  void WriteOverview() {
    TextTable table{{{"Test", "Fields", "N", "Statistic", "p"}}, "", true};
    const bool isAdjusted = document.adjustment != Adjustment::None;
    if (isAdjusted) table.rows[0].push_back("Adj. p");
    const bool hasEffects = page.Style().width >= kWideEnoughForEffects;
    if (hasEffects) table.rows[0].push_back("Effect");
    table.rows[0].push_back("Decision");
    table.alignment =
        "llrrr" + std::string(isAdjusted ? 1 : 0, 'r') + std::string(hasEffects ? 1 : 0, 'r') + "l";
    for (std::size_t i = 0; i < document.tests.size(); ++i) {
      const ResultTest& test = document.tests[i];
      const Headline headline = FindHeadline(document, test);
      const auto significance = DecidingSignificance(test);
      const auto effect = FindEffectSize(document, test);
      table.rows.push_back(
          {std::to_string(i + 1) + ". " + ShortTitle(test), TestedFields(document, test),
           headline.count ? Text(*headline.count) : "", StatisticText(headline, Ascii()),
           significance ? SignificanceCell(significance->figure) : ""});
      auto& row = table.rows.back();
      if (isAdjusted) row.push_back(AdjustedCell(test));
      if (hasEffects) row.push_back(effect ? EffectText(test, *effect, Ascii()) : "");
      row.push_back(test.decision.empty() ? "(estimate)" : test.decision);
    }
    page.Blank();
    page.Table(table, 0);
    if (isAdjusted) page.Paragraph(AdjustmentWords(document), 0);
  }

  void WriteTest(std::size_t number, const ResultTest& test) {
    page.Blank();
    page.Heading(std::to_string(number) + ". " + TestHeading(document, test), '-');
    page.Paragraph(Hypothesis(document, test), kIndent);
    if (!test.chosenBecause.empty()) page.Paragraph(ChoiceWords(test), kIndent);
    WriteDecision(test);
    WriteFigures(test);
    WriteDifferences(test);
    WriteGroups(test);
    WriteBoxPlots(test);
    WriteSamples(page, document, test, kIndent);
    for (const ResultTable& table : test.tables) WriteTable(test, table);
    WriteComparisons(page, document, test, kIndent);
    WriteFurtherFigures(page, document, test, kIndent);
    if (!test.unknownValues.empty()) {
      std::string line = "Given values that are no category:";
      for (const std::string& value : test.unknownValues) line += ' ' + value;
      page.Blank();
      page.Paragraph(line, kIndent);
    }
    WriteMessages(test);
    if (page.Style().sentences) {
      page.Blank();
      page.Paragraph(Sentence(document, test), kIndent);
    }
  }

  void WriteDecision(const ResultTest& test) {
    std::string decision = DecisionText(document, test);
    if (decision.empty()) return;
    const auto significance = DecidingSignificance(test);
    const bool isDecided = test.decision == "reject" || test.decision == "retain";
    if (isDecided && significance) {
      decision.pop_back();
      decision += ": " + SignificanceText(significance->figure) + " (" +
                  SignificanceKind(*significance) + ").";
    }
    page.Paragraph(decision, kIndent, test.decision == "reject" ? Ink::Strong : Ink::Plain);
    const std::string difference = ExactDifference(document, test);
    if (!difference.empty()) page.Paragraph(difference, kIndent, Ink::Strong);
  }

  static void AddFigures(TextTable& table, const std::vector<ResultStatistic>& figures) {
    std::string group;
    for (const ResultStatistic& figure : figures) {
      const bool isRuns = figure.group == "MinimumRuns" || figure.group == "MaximumRuns";
      if (isRuns && figure.group != group) table.rows.push_back({FigureLabel(figure.group)});
      group = figure.group;
      table.rows.push_back({(isRuns ? "  " : "") + FigureLabel(figure.name, figure.group),
                            IsSignificanceName(figure.name) ? SignificanceCell(figure.text)
                                                            : FigureText(figure.text)});
    }
  }

  void WriteFigures(const ResultTest& test) {
    TextTable table{{}, "lr", false};
    if (test.differences) AddFigures(table, test.differences->figures);
    // A cross table's own entries are codes that its titles already tell.
    std::vector<ResultStatistic> details = test.details;
    std::erase_if(details, [](const auto& d) { return d.group == "CategoryFieldsComparison"; });
    AddFigures(table, details);
    AddFigures(table, test.statistics);
    AddExact(table, test);
    const std::string level = PercentText(document.confidenceLevel);
    for (const ResultInterval& interval : test.intervals) {
      if (!interval.method.empty()) {
        table.rows.push_back({FigureLabel(interval.method), FigureText(interval.estimate)});
      }
      table.rows.push_back({"  Lower limit, " + level, FigureText(interval.lower)});
      table.rows.push_back({"  Upper limit, " + level, FigureText(interval.upper)});
    }
    AddAttainedLevel(table, test);
    if (const auto effect = FindEffectSize(document, test)) {
      const std::string label = EffectLabel(*effect, Ascii());
      // Kendall's test gives its own among the statistics.
      const bool isShown = std::ranges::any_of(
          table.rows, [&label](const auto& row) { return row.front() == label; });
      if (!isShown) table.rows.push_back({label, Text(effect->value)});
      AddEffectLimits(table, document, test);
    }
    if (!table.rows.empty()) {
      page.Blank();
      page.Table(table, kIndent);
    }
    for (const std::string& gap : {EffectSizeGap(document, test), LevelGap(document, test)}) {
      if (!gap.empty()) page.Paragraph(gap, kIndent);
    }
  }

  [[nodiscard]] std::string Histogram(const std::vector<ResultBin>& bins) const {
    return HistogramLine(bins, RangeOf(bins), HistogramCells(bins, kHistogramCells), Ascii());
  }

  // The histogram between the ends of its axis, which are values of the data.
  std::string LabelledHistogram(const std::vector<ResultBin>& bins) const {
    const PlotRange range = RangeOf(bins);
    if (range.isEmpty) return {};
    return Text(range.lowest) + " [" + Histogram(bins) + "] " + Text(range.highest);
  }

  void WriteDifferences(const ResultTest& test) {
    if (!test.differences) return;
    const std::string histogram = LabelledHistogram(test.differences->bins);
    if (histogram.empty()) return;
    page.Blank();
    page.Drawing("Differences  " + histogram, kIndent);
  }

  void WriteGroups(const ResultTest& test) {
    if (test.groups.empty()) return;
    TextTable table{{{"Group"}}, "lr", true};
    // One axis for all groups, so that their histograms can be compared.
    std::vector<ResultBin> allBins;
    for (const ResultGroup& group : test.groups) {
      allBins.insert(allBins.end(), group.bins.begin(), group.bins.end());
    }
    const PlotRange range = RangeOf(allBins);
    const std::size_t cells = HistogramCells(allBins, kHistogramCells);
    for (const ResultStatistic& figure : test.groups.front().figures) {
      table.rows[0].push_back(FigureLabel(figure.name));
    }
    const ExtendedColumns further = GroupColumns(test);
    for (const std::string& label : further.Labels()) table.rows[0].push_back(label);
    if (!range.isEmpty) {
      table.alignment = "l" + std::string(table.rows[0].size() - 1, 'r') + "p";
      table.rows[0].push_back("Distribution");
    }
    for (std::size_t i = 0; i < test.groups.size(); ++i) {
      const ResultGroup& group = test.groups[i];
      table.rows.push_back({GroupTitle(document, test, group)});
      for (const ResultStatistic& figure : group.figures) {
        table.rows.back().push_back(FigureText(figure.text));
      }
      for (const std::string& cell : FigureTexts(further.Cells(further.RowOfGroup(test, i)))) {
        table.rows.back().push_back(cell);
      }
      if (!range.isEmpty) {
        table.rows.back().push_back(HistogramLine(group.bins, range, cells, Ascii()));
      }
    }
    page.Blank();
    page.Table(table, kIndent);
  }

  void WriteBoxPlots(const ResultTest& test) {
    if (test.boxPlots.empty()) return;
    const bool hasRanks = test.boxPlots.front().meanRank.has_value();
    TextTable table{{{"Group"}}, "lr", true};
    const ExtendedColumns further = BoxColumns(test);
    for (const std::string& label : further.Labels()) table.rows[0].push_back(label);
    if (hasRanks) table.rows[0].push_back("Mean rank");
    for (const char* column : {"Lower whisker", "25 %", "Median", "75 %", "Upper whisker"}) {
      table.rows[0].push_back(column);
    }
    for (const ResultBoxPlot& plot : test.boxPlots) {
      table.rows.push_back({SampleTitle(document, test, plot.code)});
      for (const std::string& cell : FigureTexts(further.Cells(further.RowOf(plot.code)))) {
        table.rows.back().push_back(cell);
      }
      if (hasRanks) table.rows.back().push_back(FigureText(plot.meanRank.value_or("")));
      for (const std::string& number : plot.fiveNumbers) {
        table.rows.back().push_back(FigureText(number));
      }
    }
    page.Blank();
    page.Table(table, kIndent);
    DrawBoxPlots(test);
    for (const ResultBoxPlot& plot : test.boxPlots) WriteOutliers(test, plot);
  }

  void DrawBoxPlots(const ResultTest& test) {
    PlotRange range;
    std::size_t titleWidth = 0;
    for (const ResultBoxPlot& plot : test.boxPlots) {
      IncludeBoxPlot(plot, range);
      const std::string title = SampleTitle(document, test, plot.code);
      titleWidth = std::max(titleWidth, DisplayWidth(Printable(title, Ascii())));
    }
    if (range.isEmpty) return;
    const std::size_t room = page.Style().width - kIndent;
    titleWidth = std::min(titleWidth, room / 3);
    const std::size_t cells = std::clamp(room - titleWidth - 2, kNarrowestBoxPlot, kWidestBoxPlot);
    TextTable table{{}, "l", false};
    for (const ResultBoxPlot& plot : test.boxPlots) {
      std::string title = Printable(SampleTitle(document, test, plot.code), Ascii());
      title = WrapText(title, titleWidth).front();
      title += std::string(titleWidth - std::min(titleWidth, DisplayWidth(title)), ' ');
      const std::string line = title + "  " + BoxPlotLine(plot, range, cells, Ascii());
      table.rows.push_back({line.substr(0, line.find_last_not_of(' ') + 1)});
    }
    page.Blank();
    for (const auto& row : table.rows) page.Drawing(row[0], kIndent);
    const std::string lowest = Text(range.lowest);
    const std::string highest = Text(range.highest);
    const std::size_t labels = lowest.size() + highest.size();
    page.Drawing(std::string(titleWidth + 2, ' ') + lowest +
                     std::string(cells > labels ? cells - labels : 1, ' ') + highest,
                 kIndent);
  }

  void WriteOutliers(const ResultTest& test, const ResultBoxPlot& plot) {
    if (plot.outliers.empty()) return;
    std::string line = "Outliers of " + SampleTitle(document, test, plot.code) + ": ";
    line += OutlierCount(plot);
    const std::vector<ResultOutlier> outliers = ListedOutliers(plot);
    for (std::size_t i = 0; i < outliers.size(); ++i) {
      const ResultOutlier& outlier = outliers[i];
      line += (i == 0 ? "" : ", ") + FigureText(outlier.value);
      if (!outlier.Case().empty()) line += " (case " + outlier.Case() + ")";
    }
    page.Paragraph(line, kIndent);
  }

  void WriteTable(const ResultTest& test, const ResultTable& table) {
    if (table.Empty()) return;
    TextTable shown{{{""}}, "lr", true};
    for (std::size_t i = 0; i < ColumnCount(table); ++i) {
      shown.rows[0].push_back(ColumnTitle(document, test, table, i));
    }
    const ExtendedColumns further(test, "Categories", {"Observed", "Expected"});
    for (const std::string& label : further.Labels()) shown.rows[0].push_back(label);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
      shown.rows.push_back({RowTitle(document, test, table, i)});
      for (const std::string_view cell : table.rows[i]) {
        shown.rows.back().push_back(FigureText(cell));
      }
      for (const std::string& cell : FigureTexts(further.Cells(i))) {
        shown.rows.back().push_back(cell);
      }
    }
    page.Blank();
    page.Paragraph(TableCaption(document, test, table), kIndent);
    page.Table(shown, kIndent);
  }

  void WriteMessages(const ResultTest& test) {
    const std::vector<std::string> notes = ReadingNotes(document, test);
    if (!test.messages.empty() || !notes.empty()) page.Blank();
    for (const ListedMessage& listed : ListedMessages(test)) {
      const ResultMessage& message = *listed.message;
      const std::string kind = MessageKindWord(message);
      const Ink ink = kind == "error" ? Ink::Error : kind == "warning" ? Ink::Warning : Ink::Plain;
      page.Paragraph(kind + " " + std::to_string(message.code) + ": " +
                         MessageWords(document, test, message) + MoreMessages(listed),
                     kIndent, ink);
    }
    for (const std::string& note : notes) page.Paragraph("note: " + note, kIndent);
  }

  void WriteTrace() {
    if (!document.trace || !page.Style().trace) return;
    page.Blank();
    page.Paragraph(TraceWords(*document.trace), 0);
  }

  const ResultDocument& document;
  TextPage page;
};

}  // namespace

std::string RenderText(const ResultDocument& document, const TextStyle& style) {
  return TextReport(document, style).Render();
}

}  // namespace npar_host
