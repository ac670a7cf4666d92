#include "host/render/html.h"

#include "host/data/number.h"
#include "host/render/html/markup.h"
#include "host/render/html/style.h"
#include "host/render/html/test_section.h"
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
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'"/>
<title>Nonparametric tests</title>
<style>)" +
         std::string(PageStyle()) + "</style>\n</head>\n";
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

std::string Overview(const ResultDocument& document) {
  std::string markup =
      "<section class=\"overview\" id=\"overview\" aria-labelledby=\"overview-heading\">\n"
      "<h2 id=\"overview-heading\">Overview</h2>\n";
  if (document.tests.empty()) return markup + "<p>No test was run.</p>\n</section>\n";
  HtmlTable table("overview-table", "Each test with its null hypothesis and its decision");
  table.SetColumns({"Test", "Null hypothesis or estimate", "Significance", "Decision"});
  for (std::size_t i = 0; i < document.tests.size(); ++i) {
    const ResultTest& test = document.tests[i];
    table.AddRow("<a href=\"#" + TestSectionId(i) + "\">" + std::to_string(i + 1) + ". " +
                     Escaped(TestTitle(test.name)) + "</a>",
                 {"<div class=\"sentence\">" + Escaped(Hypothesis(document, test)) + "</div>",
                  OutcomeMarkup(test), DecisionMarkup(test)});
  }
  return markup + table.Markup("overview") + "</section>\n";
}

}  // namespace

std::string RenderHtml(const ResultDocument& original) {
  const ResultDocument document = WithReadableNames(original);
  std::string page = Head() +
                     "<body>\n<a class=\"skip\" href=\"#main\">Skip to the results</a>\n"
                     "<header>\n<h1>Nonparametric tests</h1>\n" +
                     RunFacts(document) + "</header>\n<main id=\"main\" tabindex=\"-1\">\n" +
                     Overview(document);
  for (std::size_t i = 0; i < document.tests.size(); ++i) page += TestSection(document, i);
  page += FieldsSection(document, original) + "</main>\n<footer>\n<p>" +
          Escaped(document.application) + " " + Escaped(document.applicationVersion);
  return page + "</p>\n</footer>\n</body>\n</html>\n";
}

}  // namespace npar_host
