#include "host/render/extended_figures.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "host/render/extended_words.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::string_view kConditional = "ConditionalExactSig2Tailed";
constexpr std::array<std::string_view, 4> kExact = {
    kConditional, "ExactSig2Tailed", "ExactMultinomialSig", "FisherFreemanHaltonSig"};
// Beside the effect size, the estimate and the number of records.
constexpr std::array<std::string_view, 9> kElsewhere = {
    "RankBiserial",   "RankBiserialLower", "RankBiserialUpper", "CohensH", "CohensW",
    "EpsilonSquared", "AttainedLevel",     "LevelIsAttainable", "TotalN"};

bool IsElsewhere(std::string_view name) {
  return std::ranges::find(kElsewhere, name) != kElsewhere.end() ||
         std::ranges::find(kExact, name) != kExact.end();
}

const ResultTable* FindTable(const ResultTest& test, std::string_view name) {
  if (!test.extended) return nullptr;
  const auto found = std::ranges::find(test.extended->tables, name, &ResultTable::name);
  return found == test.extended->tables.end() || found->Empty() ? nullptr : &*found;
}

const ResultTable* SamplesOf(const ResultTest& test) {
  const ResultTable* const fields = FindTable(test, "Fields");
  return fields == nullptr ? FindTable(test, "Groups") : fields;
}

bool IsSame(std::string_view first, std::string_view second) {
  constexpr double kRounding = 1e-9;
  const auto a = FigureNumber(first);
  const auto b = FigureNumber(second);
  return a && b && std::abs(*a - *b) <= kRounding * std::abs(*a);
}

// "Wilson" of "WilsonLower" and "WilsonUpper"; nothing where the two are no such pair.
std::optional<std::string_view> CommonStem(std::string_view first, std::string_view second,
                                           std::string_view firstEnd, std::string_view secondEnd) {
  if (!first.ends_with(firstEnd) || !second.ends_with(secondEnd)) return std::nullopt;
  const std::string_view stem = first.substr(0, first.size() - firstEnd.size());
  if (stem != second.substr(0, second.size() - secondEnd.size())) return std::nullopt;
  return stem;
}

}  // namespace

std::string_view ExtendedFigure(const ResultTest& test, std::string_view name) {
  if (!test.extended) return {};
  const auto& figures = test.extended->figures;
  const auto found = std::ranges::find(figures, name, &ResultStatistic::name);
  return found == figures.end() ? std::string_view() : std::string_view(found->text);
}

std::optional<ResultStatistic> ExactBeside(const ResultTest& test) {
  for (const std::string_view name : kExact) {
    const std::string_view figure = ExtendedFigure(test, name);
    if (figure.empty()) continue;
    const std::string* const own = test.Statistic("ExactSig2Tailed");
    if (own != nullptr && IsSame(*own, figure)) return std::nullopt;
    return ResultStatistic{"", std::string(name), std::string(figure)};
  }
  return std::nullopt;
}

std::string ExactDifference(const ResultDocument& document, const ResultTest& test) {
  const auto exact = ExactBeside(test);
  const auto deciding = DecidingSignificance(test);
  if (!exact || !deciding || deciding->sides != 2) return {};
  const auto p = FigureNumber(exact->text);
  const bool isDecided = test.decision == "reject" || test.decision == "retain";
  const bool rejects = p && *p < document.sigLevel;
  if (!p || !isDecided || rejects == (test.decision == "reject")) return {};
  const bool countsTies = exact->name == kConditional;
  const std::string value = SignificanceText(exact->text).substr(2);
  const std::string is = value.starts_with("= ") ? value.substr(2) : value;
  if (deciding->isExact && countsTies) {
    return "The document's exact value does not count ties; with them the exact significance is " +
           is + ".";
  }
  return std::string("The document's decision rests on ") +
         (deciding->isExact ? "another exact value" : "an asymptotic value") +
         "; the exact significance" + (countsTies ? ", with ties counted, is " : " is ") + is + ".";
}

std::optional<Limits> EffectLimits(const ResultTest& test, const EffectSize& effect) {
  const Limits limits{ExtendedFigure(test, "RankBiserialLower"),
                      ExtendedFigure(test, "RankBiserialUpper"), LimitsMethod("RankBiserial")};
  constexpr double kRounding = 1e-9;
  const auto value = FigureNumber(ExtendedFigure(test, "RankBiserial"));
  const bool areOfIt = value && std::abs(*value - effect.value) <= kRounding;
  if (limits.lower.empty() || limits.upper.empty() || !areOfIt) return std::nullopt;
  return limits;
}

bool IsLevelName(std::string_view name) { return name.ends_with("AttainedLevel"); }

std::string AttainedText(std::string_view level) {
  constexpr double kSteps = 1e4;  // hundredths of a percent
  const auto share = FigureNumber(level);
  return share ? PercentText(std::round(*share * kSteps) / kSteps) : FigureText(level);
}

std::string LevelGap(const ResultDocument& document, const ResultTest& test) {
  const std::string_view isAttainable = ExtendedFigure(test, "LevelIsAttainable");
  if (isAttainable.empty() || FigureNumber(isAttainable) != 0.0) return {};
  return "No limits of so few records attain a level of " + PercentText(document.confidenceLevel) +
         ".";
}

std::vector<std::string> SampleMedians(const ResultTest& test) {
  constexpr std::size_t kMedian = 2;
  std::vector<std::string> medians;
  for (const ResultBoxPlot& box : test.boxPlots) {
    if (box.fiveNumbers.empty()) return {};
    medians.push_back(box.fiveNumbers[kMedian]);
  }
  const ResultTable* const samples = SamplesOf(test);
  if (!medians.empty() || samples == nullptr) return medians;
  const auto column = std::ranges::find(samples->columnNames, "Median");
  if (column == samples->columnNames.end()) return {};
  const auto at = static_cast<std::size_t>(column - samples->columnNames.begin());
  const ExtendedColumns columns(test, samples->name);
  const std::size_t count = test.groups.empty() ? samples->rows.size() : test.groups.size();
  for (std::size_t i = 0; i < count; ++i) {
    const auto row = test.groups.empty() ? i : columns.RowOfGroup(test, i);
    const std::string median = columns.Cells(row)[at];
    if (median.empty()) return {};
    medians.push_back(median);
  }
  return medians;
}

ExtendedColumns::ExtendedColumns(const ResultTest& test, std::string_view table,
                                 const std::vector<std::string_view>& shown)
    : source(FindTable(test, table)) {
  if (source == nullptr) return;
  for (std::size_t i = 0; i < source->columnNames.size(); ++i) {
    const auto found = std::ranges::find(shown, std::string_view(source->columnNames[i]));
    if (found == shown.end()) columns.push_back(i);
  }
}

std::vector<std::string> ExtendedColumns::Labels() const {
  std::vector<std::string> labels;
  for (const std::size_t i : columns) labels.push_back(ExtendedLabel(source->columnNames[i]));
  return labels;
}

std::vector<std::string> ExtendedColumns::Cells(std::optional<std::size_t> row) const {
  std::vector<std::string> cells(columns.size());
  if (source == nullptr || !row || *row >= source->rows.size()) return cells;
  const TextRows::Row figures = source->rows[*row];
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i] < figures.size()) cells[i] = figures[columns[i]];
  }
  return cells;
}

std::optional<std::size_t> ExtendedColumns::RowNamed(std::string_view name) const {
  if (source == nullptr) return std::nullopt;
  const auto found = std::ranges::find(source->rowNames, name);
  if (found == source->rowNames.end()) return std::nullopt;
  return static_cast<std::size_t>(found - source->rowNames.begin());
}

std::optional<std::size_t> ExtendedColumns::RowOf(std::int32_t code) const {
  return RowNamed(std::to_string(code));
}

std::optional<std::size_t> ExtendedColumns::RowOfGroup(const ResultTest& test,
                                                       std::size_t position) const {
  const auto& codes = test.groups[position].codes;
  const auto row = codes.size() == 1 ? RowOf(codes.front()) : std::nullopt;
  return row ? row : RowNamed("Group" + std::to_string(position));
}

ExtendedColumns GroupColumns(const ResultTest& test) {
  std::vector<std::string_view> shown;
  if (test.groups.empty()) return {test, ""};
  for (const ResultStatistic& figure : test.groups.front().figures) {
    shown.push_back(figure.name == "MeanOfRank" ? std::string_view("MeanRank") : figure.name);
  }
  return {test, test.classification == "Related_Samples" ? "Fields" : "Groups", shown};
}

ExtendedColumns BoxColumns(const ResultTest& test) {
  if (test.boxPlots.empty()) return {test, ""};
  // With the limits of the medians the table would run off a printed page.
  std::vector<std::string_view> shown = {"LowerQuartile", "Median",      "UpperQuartile",
                                         "MedianLower",   "MedianUpper", "MedianAttainedLevel"};
  if (test.boxPlots.front().meanRank) shown.emplace_back("MeanRank");
  return {test, "Groups", shown};
}

ExtendedSamplesTable ExtendedSamples(const ResultDocument& document, const ResultTest& test) {
  const ResultTable* const source = SamplesOf(test);
  if (source == nullptr || !test.groups.empty() || !test.boxPlots.empty()) return {};
  const bool areFields = source->name == "Fields";
  ExtendedSamplesTable table;
  table.caption = source->name;
  table.columns = {areFields ? "Field" : "Group"};
  const std::string success = SuccessPhrase(document, test);
  if (!success.empty()) table.caption += "; success: " + success;
  if (std::ranges::find(source->columnNames, "WilsonLower") != source->columnNames.end()) {
    table.caption += "; Wilson limits of " + PercentText(document.confidenceLevel);
  }
  table.isTold = table.caption != source->name;
  const ExtendedColumns columns(test, source->name);
  for (const std::string& label : columns.Labels()) table.columns.push_back(label);
  for (std::size_t row = 0; row < source->rows.size() && row < source->rowNames.size(); ++row) {
    const auto index = FigureNumber(source->rowNames[row]);
    table.rows.push_back({areFields && index
                              ? SampleTitle(document, test, static_cast<std::int32_t>(*index))
                              : ExtendedRowTitle(document, test, *source, row)});
    for (const std::string& cell : columns.Cells(row)) table.rows.back().push_back(cell);
  }
  return table;
}

std::vector<FurtherFigure> FurtherFigures(const ResultTest& test) {
  std::vector<FurtherFigure> rows;
  if (!test.extended) return rows;
  const auto& figures = test.extended->figures;
  for (std::size_t i = 0; i < figures.size(); ++i) {
    const std::string& name = figures[i].name;
    if (IsElsewhere(name)) continue;
    const std::string_view next =
        i + 1 < figures.size() ? std::string_view(figures[i + 1].name) : std::string_view();
    if (const auto limited = CommonStem(name, next, "Lower", "Upper")) {
      if (rows.empty() || rows.back().name != *limited) {
        rows.push_back({std::string(*limited), ExtendedLabel(*limited), {}, {}});
      }
      const std::string_view method = LimitsMethod(*limited);
      if (!method.empty()) rows.back().label.append(" (").append(method).append(")");
      rows.back().limits = Limits{figures[i].text, figures[i + 1].text};
      ++i;
    } else if (const auto tailed = CommonStem(name, next, "Less", "Greater")) {
      rows.push_back({std::string(*tailed),
                      ExtendedLabel(*tailed),
                      {figures[i].text, figures[i + 1].text},
                      {}});
      ++i;
    } else {
      rows.push_back({name, ExtendedLabel(name), {figures[i].text}, {}});
    }
  }
  return rows;
}

std::string FurtherCaption(const ResultDocument& document,
                           const std::vector<FurtherFigure>& figures) {
  const bool haveLimits = std::ranges::any_of(
      figures, [](const FurtherFigure& figure) { return figure.limits.has_value(); });
  return haveLimits ? "Further figures; limits of " + PercentText(document.confidenceLevel)
                    : "Further figures";
}

std::string FurtherCell(const FurtherFigure& figure, ShowFigure show) {
  std::string cell;
  for (const std::string_view value : figure.figures) {
    cell += (cell.empty() ? "" : ", ") + show(figure.name, value);
  }
  if (!figure.limits) return cell;
  return cell + (cell.empty() ? "[" : " [") + show(figure.name, figure.limits->lower) + ", " +
         show(figure.name, figure.limits->upper) + "]";
}

}  // namespace npar_host
