#include "host/render/csv.h"

#include <cmath>
#include <string_view>

#include "host/data/number.h"
#include "host/render/adjustment.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/pairs.h"
#include "host/render/significance.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

struct CsvRow {
  std::string test, fields, firstSample, secondSample, count, statistic, value, freedom, p, pKind,
      adjusted, adjustment, effect, effectValue, effectLower, effectUpper, decision, interval,
      estimate, lower, upper;
};

struct Column {
  std::string_view name;
  std::string CsvRow::*cell;
};

constexpr Column kColumns[] = {{"test", &CsvRow::test},
                               {"fields", &CsvRow::fields},
                               {"sample1", &CsvRow::firstSample},
                               {"sample2", &CsvRow::secondSample},
                               {"n", &CsvRow::count},
                               {"statistic", &CsvRow::statistic},
                               {"value", &CsvRow::value},
                               {"df", &CsvRow::freedom},
                               {"p", &CsvRow::p},
                               {"p_kind", &CsvRow::pKind},
                               {"p_adjusted", &CsvRow::adjusted},
                               {"adjustment", &CsvRow::adjustment},
                               {"effect_size", &CsvRow::effect},
                               {"effect_value", &CsvRow::effectValue},
                               {"effect_lower", &CsvRow::effectLower},
                               {"effect_upper", &CsvRow::effectUpper},
                               {"decision", &CsvRow::decision},
                               {"interval", &CsvRow::interval},
                               {"estimate", &CsvRow::estimate},
                               {"lower", &CsvRow::lower},
                               {"upper", &CsvRow::upper}};

// Quoted where it needs quotes.
void AppendCell(std::string& text, std::string_view cell) {
  if (cell.find_first_of(",\"\r\n") == std::string_view::npos) {
    text += cell;
    return;
  }
  text += '"';
  for (const char letter : cell) text.append(letter == '"' ? 2 : 1, letter);
  text += '"';
}

void AppendRow(std::string& text, const CsvRow& row) {
  for (const Column& column : kColumns) {
    if (&column != kColumns) text += ',';
    AppendCell(text, row.*column.cell);
  }
  text += '\n';
}

std::string FigureOf(double number) { return std::isnan(number) ? "" : NumberText(number); }

// What all rows of a test have.
CsvRow RowOf(const ResultDocument& document, const ResultTest& test) {
  CsvRow row;
  row.test = TestTitle(test);
  row.fields = TestedFields(document, test);
  return row;
}

void SetInterval(CsvRow& row, const ResultInterval& interval) {
  row.interval = interval.method.empty() ? "Hodges-Lehmann" : FigureLabel(interval.method);
  row.estimate = interval.estimate;
  row.lower = interval.lower;
  row.upper = interval.upper;
}

CsvRow TestRow(const ResultDocument& document, const ResultTest& test) {
  CsvRow row = RowOf(document, test);
  const Headline headline = FindHeadline(document, test);
  if (headline.count) row.count = NumberText(*headline.count);
  row.statistic = headline.symbol;
  row.value = headline.statistic;
  row.freedom = headline.freedom;
  if (const auto significance = DecidingSignificance(test)) {
    row.p = significance->figure;
    row.pKind = SignificanceKind(*significance);
  }
  if (test.adjustedSignificance) {
    row.adjusted = FigureOf(*test.adjustedSignificance);
    row.adjustment = AdjustmentTitle(document.adjustment);
  }
  if (const auto effect = FindEffectSize(document, test)) {
    row.effect = effect->name;
    row.effectValue = NumberText(effect->value);
    if (const auto limits = EffectLimits(test, *effect)) {
      row.effectLower = limits->lower;
      row.effectUpper = limits->upper;
    }
  }
  row.decision = test.decision;
  if (!test.intervals.empty()) SetInterval(row, test.intervals.front());
  return row;
}

void AppendPairs(std::string& text, const ResultDocument& document, const ResultTest& test) {
  const ResultComparison& comparison = test.pairwise;
  const std::size_t statistic = ContentColumn(comparison, "StandardTestStatistic");
  const std::size_t significance = ContentColumn(comparison, "Sig");
  const ExtendedColumns effects(test, "Pairs", {"Sample1", "Sample2"});
  CsvRow row = RowOf(document, test);
  row.pKind = "asymptotic, 2-sided";
  row.adjustment = AdjustmentTitle(comparison.adjustment);
  for (const SamplePair& pair : Pairs(comparison)) {
    row.firstSample = SampleTitle(document, test, comparison.order[pair.first]);
    row.secondSample = SampleTitle(document, test, comparison.order[pair.second]);
    row.value = PairCell(comparison, pair, statistic);
    row.statistic = row.value.empty() ? "" : "z";
    row.p = PairCell(comparison, pair, significance);
    row.adjusted = row.adjustment.empty() ? "" : FigureOf(pair.significance);
    const std::vector<std::string> effect = effects.Cells(pair.row);
    row.effectValue = effect.empty() ? "" : effect.front();
    row.effect = row.effectValue.empty() ? "" : effects.Labels().front();
    row.decision = pair.significance < document.sigLevel ? "differ" : "no difference";
    AppendRow(text, row);
  }
}

}  // namespace

std::string RenderCsv(const ResultDocument& document) {
  std::string text;
  for (const Column& column : kColumns) {
    if (!text.empty()) text += ',';
    text += column.name;
  }
  text += '\n';
  for (const ResultTest& test : document.tests) {
    AppendRow(text, TestRow(document, test));
    for (std::size_t i = 1; i < test.intervals.size(); ++i) {
      CsvRow row = RowOf(document, test);
      SetInterval(row, test.intervals[i]);
      AppendRow(text, row);
    }
    AppendPairs(text, document, test);
  }
  return text;
}

}  // namespace npar_host
