#include "host/render/html.h"

#include "host/data/number.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/html/markup.h"
#include "host/render/html/script.h"
#include "host/render/html/style.h"
#include "host/render/html/test_section.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

// Longer names would hide what is said of them. The fields' section has them in full.
constexpr std::size_t kLongestName = 80;

std::string Name(const std::string& text) { return Isolated(Shortened(text, kLongestName)); }

ResultDocument WithReadableNames(const ResultDocument& document) {
  ResultDocument readable = document;
  for (ResultField& field : readable.fields) {
    field.name = Name(field.name);
    field.label = Name(field.label);
    for (ResultCategory& category : field.categories) {
      category.value = Name(category.value);
      category.label = Name(category.label);
    }
  }
  return readable;
}

std::string Head() {
  // The policy leaves nothing that a text could load or run, should one ever get through.
  return R"(<!DOCTYPE html>
<html xmlns="http://www.w3.org/1999/xhtml" lang="en">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src ')" +
         std::string(kPageScriptHash) + R"('"/>
<title>Nonparametric tests</title>
<style>)" +
         std::string(PlotStyle()) + std::string(PageStyle()) + "</style>\n</head>\n";
}

constexpr std::size_t kMany = 20;  // tests, which take long to lay out and many sheets to print

std::string BodyTag(const ResultDocument& document) {
  return document.tests.size() > kMany ? "<body class=\"many\">\n" : "<body>\n";
}

// Of many tests the overview alone is printed, unless a reader wants the sections of all.
std::string PrintChoice(const ResultDocument& document) {
  if (document.tests.size() <= kMany) return {};
  return "<p class=\"tools\"><label><input type=\"checkbox\" id=\"print-all\"/> Print the section "
         "of "
         "each test too</label></p>\n";
}

std::string Fact(const char* name, const std::string& value) {
  return "<div><dt>" + std::string(name) + "</dt><dd>" + value + "</dd></div>\n";
}

std::string RunFacts(const ResultDocument& document) {
  const auto number = [](double value) { return FigureMarkup(NumberText(value)); };
  std::string facts = "<dl class=\"facts\">\n" + Fact("Records", number(document.totalCount));
  if (document.totalFreq != document.totalCount) {
    facts += Fact("Total weight", number(document.totalFreq));
  }
  if (document.droppedCount > 0.0) {
    facts += Fact("Dropped for missing values", number(document.droppedCount));
  }
  if (document.droppedFreq != document.droppedCount) {
    facts += Fact("Weight of the dropped", number(document.droppedFreq));
  }
  if (document.badWeightCount > 0.0) {
    facts += Fact("Dropped for their weight", number(document.badWeightCount));
  }
  facts +=
      Fact("Missing values", document.listwise ? "excluded listwise" : "excluded test by test");
  facts += Fact("Significance level", number(document.sigLevel));
  facts += Fact("Confidence level", number(document.confidenceLevel));
  return facts + "</dl>\n";
}

std::string StatisticMarkup(const ResultTest& test, const Headline& headline) {
  if (headline.symbol.empty()) return test.decision.empty() ? OutcomeMarkup(test) : "";
  std::string markup = "<span class=\"together\"><i>" + headline.symbol + "</i>";
  if (!headline.freedom.empty()) markup += "(" + FigureMarkup(headline.freedom) + ")";
  return markup + " = " + FigureMarkup(headline.statistic) + "</span>";
}

std::string SignificanceOf(const ResultTest& test) {
  const auto significance = DecidingSignificance(test);
  if (!significance) return {};
  std::string markup = SignificanceMarkup(significance->figure) + " <span class=\"kind\">" +
                       SignificanceKind(*significance) + "</span>";
  if (test.adjustedSignificance) {
    markup += " <span class=\"adjusted\">adjusted " +
              SignificanceMarkup(NumberText(*test.adjustedSignificance)) + "</span>";
  }
  return markup;
}

std::string EffectMarkup(const ResultDocument& document, const ResultTest& test) {
  const auto effect = FindEffectSize(document, test);
  if (!effect) return {};
  std::string markup = "<span class=\"together\"><i>" + effect->symbol +
                       "</i> = " + FigureMarkup(NumberText(effect->value)) + "</span>";
  if (const auto limits = EffectLimits(test, *effect)) {
    markup += " <span class=\"kind\">[" + FigureMarkup(limits->lower) + ", " +
              FigureMarkup(limits->upper) + "]</span>";
  }
  return markup;
}

std::string Overview(const ResultDocument& document) {
  std::string markup =
      "<section class=\"overview\" id=\"overview\" aria-labelledby=\"overview-heading\">\n"
      "<h2 id=\"overview-heading\">Overview</h2>\n";
  if (document.tests.empty()) return markup + "<p>No test was run.</p>\n</section>\n";
  HtmlTable table("overview-table", "Each test with its statistic and its decision");
  table.SetColumns({"Test", "Fields", "N", "Statistic or estimate", "<i>p</i>",
                    "Effect size [" + PercentText(document.confidenceLevel) + " CI]", "Decision"});
  const bool isAdjusted = document.adjustment != Adjustment::None;
  for (std::size_t i = 0; i < document.tests.size(); ++i) {
    const ResultTest& test = document.tests[i];
    const Headline headline = FindHeadline(document, test);
    table.AddRow("<a href=\"#" + TestSectionId(i) + "\">" + std::to_string(i + 1) + ". " +
                     Escaped(TestTitle(test)) + "</a>",
                 {Escaped(TestedFields(document, test)),
                  headline.count ? FigureMarkup(NumberText(*headline.count)) : "",
                  StatisticMarkup(test, headline), SignificanceOf(test),
                  EffectMarkup(document, test), DecisionMarkup(test)});
  }
  // The script shows the tools where there is one; without it the table is whole.
  return markup +
         "<p id=\"overview-tools\" class=\"tools\" hidden=\"hidden\"><label><input "
         "type=\"checkbox\" id=\"only-rejected\"/> Rejected hypotheses only</label> "
         "<label>Tests and fields with <input type=\"search\" id=\"overview-filter\"/></label> "
         "<output id=\"overview-count\"></output></p>\n" +
         PrintChoice(document) + table.Markup("overview") +
         (isAdjusted ? "<p class=\"note\">" + AdjustmentWords(document) + "</p>\n" : "") +
         "</section>\n";
}

}  // namespace

std::string RenderHtml(const ResultDocument& original) {
  const ResultDocument document = WithReadableNames(original);
  std::string page = Head() + BodyTag(document) +
                     "<a class=\"skip\" href=\"#main\">Skip to the results</a>\n"
                     "<header>\n<h1>Nonparametric tests</h1>\n" +
                     RunFacts(document) + "</header>\n<main id=\"main\" tabindex=\"-1\">\n" +
                     Overview(document);
  DrawnValues drawn;
  for (std::size_t i = 0; i < document.tests.size(); ++i) page += TestSection(document, i, drawn);
  page += FieldsSection(document, original) + "</main>\n<footer>\n<p>" +
          Escaped(document.application) + " " + Escaped(document.applicationVersion);
  page += "</p>\n";
  if (original.trace) page += "<p>" + Escaped(TraceWords(*original.trace)) + "</p>\n";
  return page + "</footer>\n<script>" + kPageScript + "</script>\n</body>\n</html>\n";
}

}  // namespace npar_host
