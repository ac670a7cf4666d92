#include "host/render/text_extended.h"

#include "host/render/extended_figures.h"
#include "host/render/extended_words.h"
#include "host/render/significance.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

std::string Show(std::string_view name, std::string_view figure) {
  if (IsSignificanceName(name)) return SignificanceCell(figure);
  return IsLevelName(name) ? AttainedText(figure) : FigureText(figure);
}

}  // namespace

std::vector<std::string> FigureTexts(std::vector<std::string> figures) {
  for (std::string& figure : figures) figure = FigureText(figure);
  return figures;
}

void AddExact(TextTable& table, const ResultTest& test) {
  const auto exact = ExactBeside(test);
  if (exact) table.rows.push_back({ExtendedLabel(exact->name), Show(exact->name, exact->text)});
}

void AddEffectLimits(TextTable& table, const ResultDocument& document, const ResultTest& test) {
  const auto effect = FindEffectSize(document, test);
  const auto limits = effect ? EffectLimits(test, *effect) : std::nullopt;
  if (!limits) return;
  table.rows.push_back(
      {"  " + PercentText(document.confidenceLevel) + " CI (" + std::string(limits->method) + ")",
       "[" + FigureText(limits->lower) + ", " + FigureText(limits->upper) + "]"});
}

void AddAttainedLevel(TextTable& table, const ResultTest& test) {
  const std::string_view level = ExtendedFigure(test, "AttainedLevel");
  if (!level.empty()) table.rows.push_back({"  Level attained", AttainedText(level)});
}

void WriteSamples(TextPage& page, const ResultDocument& document, const ResultTest& test,
                  std::size_t indent) {
  const ExtendedSamplesTable samples = ExtendedSamples(document, test);
  if (samples.rows.empty()) return;
  TextTable table{{samples.columns}, "lr", true};
  for (const auto& row : samples.rows) {
    table.rows.push_back({row.front()});
    for (std::size_t i = 1; i < row.size(); ++i) table.rows.back().push_back(FigureText(row[i]));
  }
  page.Blank();
  if (samples.isTold) page.Paragraph(samples.caption, indent);
  page.Table(table, indent);
}

void WriteFurtherFigures(TextPage& page, const ResultDocument& document, const ResultTest& test,
                         std::size_t indent) {
  TextTable table{{}, "lr", false};
  std::vector<FurtherFigure> figures = FurtherFigures(test);
  std::erase_if(figures, [](const FurtherFigure& figure) { return !IsForText(figure.name); });
  for (const FurtherFigure& figure : figures) {
    table.rows.push_back({figure.label, FurtherCell(figure, Show)});
  }
  if (table.rows.empty()) return;
  page.Blank();
  page.Paragraph(FurtherCaption(document, figures), indent);
  page.Table(table, indent);
}

}  // namespace npar_host
