#include "report/extended_tables.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "kit/groups/two_groups.h"
#include "kit/statistics/normal.h"
#include "kit/statistics/proportion_interval.h"
#include "report/elements.h"

namespace {

std::string TextOf(const FigureValue& value) {
  if (value.Count() != nullptr) return IntegerText(*value.Count());
  return value.Number() != nullptr ? NumberText(*value.Number()) : std::string();
}

template <typename Items, typename TextOfItem>
std::string Join(const Items& items, TextOfItem textOfItem) {
  std::string text;
  bool isFirst = true;
  for (const auto& item : items) {
    if (!std::exchange(isFirst, false)) text += ';';
    text += textOfItem(item);
  }
  return text;
}

void WriteTable(XMLElement& parent, const FigureTable& table) {
  const bool namesRows = !table.rows.front().label.empty();
  const auto label = [](const FigureTable::Row& row) { return row.label; };
  XMLElement* element =
      AddSimpleTable(parent, table.name, namesRows ? Join(table.rows, label) : std::string(),
                     Join(table.columns, [](std::string_view name) { return name; }));
  for (const FigureTable::Row& row : table.rows) AddRow(*element, Join(row.cells, TextOf));
}

FigureTable SamplesTable(std::string_view name, std::span<const SampleFigures> samples) {
  FigureTable table{name, {"N", "Median", "LowerQuartile", "UpperQuartile"}, {}};
  const bool hasRanks = !samples.empty() && samples.front().meanRank.has_value();
  if (hasRanks) table.columns.push_back("MeanRank");
  for (const SampleFigures& sample : samples) {
    const Quartiles& quartiles = sample.quartiles;
    std::vector<FigureValue> cells = {sample.count, quartiles.median, quartiles.lower,
                                      quartiles.upper};
    if (hasRanks) cells.emplace_back(sample.meanRank);
    table.AddRow(sample.label, std::move(cells));
  }
  return table;
}

}  // namespace

void WriteExtendedFigures(XMLElement& algorithm, const ExtendedFigures& figures) {
  if (figures.IsEmpty()) return;
  XMLElement* element = AddStructuredTable(algorithm, "ExtendedFigures");
  for (const ExtendedFigures::Figure& figure : figures.Figures()) {
    AddAttributeRow(*element, figure.name, std::string_view(TextOf(figure.value)));
  }
  for (const FigureTable& table : figures.Tables()) WriteTable(*element, table);
}

FigureTable GroupsTable(std::span<const SampleFigures> groups) {
  return SamplesTable("Groups", groups);
}

FigureTable GroupsTable(const GroupTally& tally, std::span<const double> meanRanks) {
  std::vector<SampleFigures> groups;
  for (const std::int32_t group : tally.Groups()) {
    SampleFigures figures{IntegerText(group), tally.CountOf(group), tally.QuartilesOf(group)};
    if (!meanRanks.empty()) figures.meanRank = meanRanks[groups.size()];
    groups.push_back(std::move(figures));
  }
  return GroupsTable(groups);
}

FigureTable TwoGroupsTable(const GroupTally& tally, std::span<const double> meanRanks) {
  std::array<SampleFigures, 2> groups;
  for (const TwoGroups::Group group : {TwoGroups::First, TwoGroups::Second}) {
    const auto place = static_cast<std::size_t>(group);
    groups[place] = {"Group" + std::to_string(group), tally.CountOf(group),
                     tally.QuartilesOf(group)};
    if (!meanRanks.empty()) groups[place].meanRank = meanRanks[place];
  }
  return GroupsTable(groups);
}

void AddNormalFigures(ExtendedFigures& figures, double deviation, double standardError) {
  const auto corrected = CorrectedFigures(deviation, standardError);
  if (!corrected) return;
  const NormalTails tails(deviation / standardError);
  figures.Add("AsymptoticSig1TailedLess", tails.less);
  figures.Add("AsymptoticSig1TailedGreater", tails.greater);
  figures.Add("CorrectedStandardTestStatistic", corrected->z);
  figures.Add("CorrectedAsymptoticSig2Tailed", corrected->sig);
  figures.Add("CorrectedAsymptoticSig1TailedLess", corrected->less);
  figures.Add("CorrectedAsymptoticSig1TailedGreater", corrected->greater);
}

void AddConditionalFigures(ExtendedFigures& figures, const ExactTails& tails) {
  figures.Add("ConditionalExactSig2Tailed", tails.twoSided);
  figures.Add("ConditionalExactSig1TailedLess", tails.less);
  figures.Add("ConditionalExactSig1TailedGreater", tails.greater);
}

FigureTable FieldsTable(const FieldQuartiles& fields) {
  std::vector<SampleFigures> samples;
  for (std::size_t place = 0; fields.AreKept() && place < fields.Fields().size(); ++place) {
    samples.push_back(
        {IntegerText(fields.Fields()[place]), fields.Count(), QuartilesOf(fields.Of(place))});
  }
  return SamplesTable("Fields", samples);
}

FigureTable SuccessTable(std::span<const std::int32_t> fields,
                         std::span<const std::int64_t> successes, std::int64_t n,
                         double confidenceLevel) {
  FigureTable table{"Fields", {"SuccessN", "SuccessShare", "WilsonLower", "WilsonUpper"}, {}};
  for (std::size_t i = 0; n > 0 && i < fields.size(); ++i) {
    const ProportionInterval wilson = WilsonInterval(successes[i], n, confidenceLevel);
    table.AddRow(fields[i],
                 {successes[i], static_cast<double>(successes[i]) / static_cast<double>(n),
                  wilson.lower, wilson.upper});
  }
  return table;
}
