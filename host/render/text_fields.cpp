#include "host/render/text_fields.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "host/data/number.h"
#include "host/render/text_plots.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kHistogramCells = 20;
constexpr std::size_t kBarCells = 30;
constexpr std::size_t kMostCategories = 30;  // of a field's counts

std::string Text(double number) { return FigureText(NumberText(number)); }

std::string FigureOf(const ResultDistribution& distribution, std::string_view name) {
  const auto found = std::ranges::find(distribution.figures, name, &ResultStatistic::name);
  return found == distribution.figures.end() ? "" : FigureText(found->text);
}

std::string Histogram(const std::vector<ResultBin>& bins, bool ascii) {
  return HistogramLine(bins, RangeOf(bins), HistogramCells(bins, kHistogramCells), ascii);
}

// A document may also hold summaries of fields that no test is about.
std::set<std::size_t> FieldsOfTests(const ResultDocument& document) {
  std::set<std::size_t> fields;
  for (const ResultTest& test : document.tests) {
    const std::size_t positions = test.classification == "One_Sample" ? 1 : 2;
    for (std::size_t position = 0; position < positions; ++position) {
      for (const std::size_t index : test.ConditionFields(position, document.fields.size())) {
        if (document.fields[index].distribution) fields.insert(index);
      }
    }
  }
  return fields;
}

void WriteCategories(TextPage& page, const ResultField& field, const std::vector<ResultBin>& bins,
                     std::size_t indent) {
  double most = 0.0;
  for (const ResultBin& bin : bins) most = std::max(most, bin.count);
  TextTable table{{{field.Title(), "Count", ""}}, "lrp", true};
  for (const ResultBin& bin : bins) {
    if (table.rows.size() > kMostCategories) {
      table.rows.push_back({"(and more)"});
      break;
    }
    table.rows.push_back({CategoryTitle(field, static_cast<std::int32_t>(bin.value)),
                          Text(bin.count),
                          BarLine(bin.count / most, kBarCells, page.Style().ascii)});
  }
  page.Table(table, indent);
}

}  // namespace

void WriteFields(TextPage& page, const ResultDocument& document, std::size_t indent) {
  const std::set<std::size_t> tested = FieldsOfTests(document);
  if (tested.empty()) return;
  page.Blank();
  page.Heading("Fields", '-');
  TextTable continuous{
      {{"Field", "N", "Minimum", "Maximum", "Mean", "Std. dev.", "Distribution"}}, "lrrrrrp", true};
  for (const std::size_t index : tested) {
    const ResultField& field = document.fields[index];
    if (field.isCategorical) continue;
    const ResultDistribution& values = *field.distribution;
    continuous.rows.push_back({field.Title()});
    // Of no value there is no minimum and the like, whatever stands in their place.
    const bool isEmpty = FigureOf(values, "TotalN") == "0";
    for (const char* figure : {"TotalN", "Min", "Max", "Mean", "StdDev"}) {
      const bool isShown = !isEmpty || std::string_view(figure) == "TotalN";
      continuous.rows.back().push_back(isShown ? FigureOf(values, figure) : "");
    }
    continuous.rows.back().push_back(Histogram(values.bins, page.Style().ascii));
  }
  if (continuous.rows.size() > 1) page.Table(continuous, indent);
  bool isFirst = continuous.rows.size() == 1;
  for (const std::size_t index : tested) {
    const ResultField& field = document.fields[index];
    if (!field.isCategorical) continue;
    if (!isFirst) page.Blank();
    isFirst = false;
    WriteCategories(page, field, field.distribution->bins, indent);
  }
}

}  // namespace npar_host
