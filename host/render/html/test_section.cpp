#include "host/render/html/test_section.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/html/comparison_tables.h"
#include "host/render/html/distribution_plots.h"
#include "host/render/html/drawing.h"
#include "host/render/html/markup.h"
#include "host/render/html/test_plots.h"
#include "host/render/html/test_tables.h"
#include "host/render/listed.h"
#include "host/render/reading_notes.h"
#include "host/render/sentence.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kLongestValue = 200;

std::string ValuesMarkup(const Plot& plot) {
  if (plot.values.empty()) return {};
  return "<details><summary>Values drawn</summary>\n" + plot.values + "</details>\n";
}

// The same once in a page: tests of the same fields draw the same.
std::string ValuesMarkup(const Plot& plot, std::size_t index, DrawnValues& drawn) {
  const std::string id = TestSectionId(index);
  std::string values = plot.values;  // but for the ids of their tables
  for (std::size_t at = values.find(id); at != std::string::npos; at = values.find(id, at)) {
    values.erase(at, id.size());
  }
  const auto [found, isNew] = drawn.try_emplace(std::move(values), index);
  if (isNew || plot.values.empty()) return ValuesMarkup(plot);
  return "<p class=\"note\"><a href=\"#" + TestSectionId(found->second) +
         "\">Values drawn: as in test " + std::to_string(found->second + 1) + "</a></p>\n";
}

std::string PlotMarkup(const Plot& plot, const std::string& id, const std::string& values) {
  const bool isWide = plot.width > kPlotWidth;
  std::string markup =
      "<figure class=\"plot " + plot.kind + (isWide ? " wide\">\n" : "\">\n") +
      (isWide ? "<div class=\"scroll\" role=\"group\" aria-label=\"Plot\">\n" : "") +
      "<svg role=\"img\" viewBox=\"0 0 " + std::to_string(static_cast<int>(plot.width)) + " " +
      std::to_string(static_cast<int>(plot.height)) + "\" aria-labelledby=\"" + id +
      "-title\" aria-describedby=\"" + id + "-words\">\n<title id=\"" + id + "-title\">" +
      Escaped(plot.title) + "</title>\n<desc id=\"" + id + "-words\">" + Escaped(plot.description) +
      "</desc>\n" + plot.drawing.Markup() + (isWide ? "</svg></div>" : "</svg>") +
      "\n<figcaption>" + Escaped(plot.title);
  if (!plot.note.empty()) markup += "<span class=\"note\">" + Escaped(plot.note) + "</span>";
  return markup + "</figcaption>\n" + values + "</figure>\n";
}

std::string PlotsMarkup(const ResultDocument& document, const ResultTest& test, std::size_t index,
                        DrawnValues& drawn) {
  const std::string id = TestSectionId(index);
  std::string markup;
  std::size_t number = 1;
  for (const Plot& plot : TestPlots(document, test, id)) {
    markup +=
        PlotMarkup(plot, id + "-plot" + std::to_string(number++), ValuesMarkup(plot, index, drawn));
  }
  return markup;
}

std::string TestTables(const ResultDocument& document, const ResultTest& test,
                       const std::string& id) {
  std::string markup = FiguresTable(document, test, id + "-figures") +
                       IntervalsTable(document, test, id + "-intervals") +
                       GroupsTable(document, test, id + "-groups") +
                       BoxesTable(document, test, id + "-boxes") +
                       SamplesTable(document, test, id + "-samples");
  std::size_t number = 1;
  for (const ResultTable& table : test.tables) {
    markup += FrequenciesTable(document, test, table, id + "-table" + std::to_string(number++));
  }
  markup += PairwiseTable(document, test, id + "-pairs");
  markup += SubsetsTables(document, test, id + "-subsets");
  markup += FurtherTable(document, test, id + "-further");
  return markup;
}

std::string Messages(const ResultDocument& document, const ResultTest& test) {
  std::string markup;
  if (!test.unknownValues.empty()) {
    markup += "<p class=\"message warning\">Given values that are no category:";
    for (const std::string& value : test.unknownValues) {
      markup += " <bdi>" + Escaped(Shortened(value, kLongestValue)) + "</bdi>";
    }
    markup += "</p>\n";
  }
  const std::vector<std::string> notes = ReadingNotes(document, test);
  if (test.messages.empty() && notes.empty()) return markup;
  markup += "<ul class=\"messages\">\n";
  for (const ListedMessage& listed : ListedMessages(test)) {
    const ResultMessage& message = *listed.message;
    markup += "<li class=\"message " + Escaped(message.type) + "\"><b>" +
              Escaped(MessageKindWord(message)) + " " + std::to_string(message.code) + ":</b> " +
              Escaped(MessageWords(document, test, message)) + MoreMessages(listed) + "</li>\n";
  }
  for (const std::string& note : notes) {
    markup += "<li class=\"message\"><b>note:</b> " + Escaped(note) + "</li>\n";
  }
  return markup + "</ul>\n";
}

std::string ChoiceMarkup(const ResultTest& test) {
  if (test.chosenBecause.empty()) return {};
  return "<p class=\"kind\">" + Escaped(ChoiceWords(test)) + "</p>\n";
}

// The sentence for a results section with its button, which the page's script shows.
std::string SentenceMarkup(const ResultDocument& document, const ResultTest& test) {
  std::string markup = "<p class=\"apa\"><span>";
  bool isOpen = false;
  for (const SentencePart& part : SentenceParts(document, test)) {
    // A symbol stays on the line of its figure.
    if (part.isSymbol) markup += "<span class=\"together\"><i>" + Escaped(part.text) + "</i>";
    if (!part.isSymbol) markup += Escaped(part.text) + (isOpen ? "</span>" : "");
    isOpen = part.isSymbol;
  }
  return markup +
         "</span> <button type=\"button\" class=\"copy\" hidden=\"hidden\" "
         "aria-label=\"Copy the sentence\">Copy</button></p>\n";
}

// The names that are shorter in the page than in the document.
std::string NamesInFull(const ResultField& shown, const ResultField& original) {
  std::string names;
  const auto add = [&names](const std::string& name, const std::string& full) {
    if (name != full && name != Isolated(full)) names += "<li>" + Escaped(Isolated(full)) + "</li>";
  };
  add(shown.name, original.name);
  add(shown.label, original.label);
  for (std::size_t i = 0; i < shown.categories.size(); ++i) {
    add(shown.categories[i].value, original.categories[i].value);
    add(shown.categories[i].label, original.categories[i].label);
  }
  return names.empty()
             ? ""
             : "<details><summary>Names in full</summary><ul>" + names + "</ul></details>\n";
}

}  // namespace

std::string TestSectionId(std::size_t index) { return "test" + std::to_string(index + 1); }

std::string OutcomeMarkup(const ResultTest& test) {
  if (const auto significance = DecidingSignificance(test)) {
    return "<data value=\"" + Escaped(significance->figure) + "\"><b>" +
           Escaped(SignificanceText(significance->figure)) + "</b></data> <span class=\"kind\">" +
           SignificanceKind(*significance) + "</span>";
  }
  std::string markup;
  for (const ResultInterval& interval : test.intervals) {
    markup += "<span class=\"interval\">";
    if (!interval.method.empty()) markup += Escaped(FigureLabel(interval.method)) + ": ";
    markup += FigureMarkup(interval.estimate) + " [" + FigureMarkup(interval.lower) + ", " +
              FigureMarkup(interval.upper) + "]</span> ";
  }
  return markup.empty() ? "<span class=\"none\">\u2013</span>" : markup;
}

std::string DecisionMarkup(const ResultTest& test) {
  const auto badge = [](const char* badgeClass, const char* mark, const char* words) {
    return std::string("<span class=\"badge ") + badgeClass + "\"><span aria-hidden=\"true\">" +
           mark + "</span> " + words + "</span>";
  };
  if (test.decision == "reject") return badge("reject", "\u25cf", "Reject");
  if (test.decision == "retain") return badge("retain", "\u25cb", "Retain");
  if (test.decision.empty() && !test.Failed()) return badge("estimate", "\u25c6", "Estimate");
  return badge("unknown", "\u2715", test.decision.empty() ? "No estimate" : "No decision");
}

std::string TestSection(const ResultDocument& document, std::size_t index, DrawnValues& drawn) {
  const ResultTest& test = document.tests[index];
  const std::string id = TestSectionId(index);
  std::string markup = "<section class=\"test\" id=\"" + id + "\" aria-labelledby=\"" + id +
                       "-heading\">\n<h2 id=\"" + id + "-heading\">" + std::to_string(index + 1) +
                       ". " + Escaped(TestHeading(document, test)) +
                       "</h2>\n<p class=\"hypothesis\">" + Escaped(Hypothesis(document, test)) +
                       "</p>\n" + ChoiceMarkup(test) + "<p class=\"outcome\">" +
                       DecisionMarkup(test) + " " + OutcomeMarkup(test) + "</p>\n";
  const std::string decision = DecisionText(document, test);
  if (!decision.empty()) markup += "<p class=\"decision\">" + Escaped(decision) + "</p>\n";
  const std::string difference = ExactDifference(document, test);
  if (!difference.empty()) {
    markup += "<p class=\"message warning\">" + Escaped(difference) + "</p>\n";
  }
  markup += SentenceMarkup(document, test) + Messages(document, test);
  for (const std::string& gap : {EffectSizeGap(document, test), LevelGap(document, test)}) {
    if (!gap.empty()) markup += "<p class=\"note\">" + gap + "</p>\n";
  }
  markup += "<div class=\"results\">\n" + PlotsMarkup(document, test, index, drawn) +
            TestTables(document, test, id) + "</div>\n";
  return markup +
         "<p class=\"back\"><a href=\"#overview\">Back to the overview<span class=\"away\"> from "
         "test " +
         std::to_string(index + 1) + "</span></a></p>\n</section>\n";
}

std::string FieldsSection(const ResultDocument& document, const ResultDocument& original) {
  std::string fields;
  std::size_t number = 1;
  for (std::size_t i = 0; i < document.fields.size(); ++i) {
    const ResultField& field = document.fields[i];
    if (!field.distribution) continue;
    const std::string id = "field" + std::to_string(number++);
    fields.append("<section class=\"field\" aria-labelledby=\"").append(id);
    fields.append("-heading\">\n<h3 id=\"").append(id).append("-heading\">");
    fields.append(Escaped(field.Title())).append("</h3>\n<p class=\"kind\">");
    if (!field.label.empty()) {
      fields.append("Field <bdi>").append(Escaped(field.name)).append("</bdi>, ");
    }
    fields.append(field.isCategorical ? "categorical" : "continuous");
    fields.append("</p>\n<div class=\"results\">\n");
    if (const auto plot = FieldPlot(field, id + "-values")) {
      fields += PlotMarkup(*plot, id, ValuesMarkup(*plot));
    }
    HtmlTable table(id + "-figures", "Summary of " + field.Title());
    // Of no value there is no minimum and the like, whatever stands in their place.
    const bool isEmpty =
        std::ranges::any_of(field.distribution->figures, [](const ResultStatistic& figure) {
          return figure.name == "TotalN" && FigureNumber(figure.text) == 0.0;
        });
    for (const ResultStatistic& figure : field.distribution->figures) {
      if (isEmpty && figure.name != "TotalN") continue;
      table.AddRow(Escaped(FigureLabel(figure.name)), {FigureMarkup(figure.text)});
    }
    if (!table.IsEmpty()) fields += table.Markup("figures");
    fields += "</div>\n" + NamesInFull(field, original.fields[i]) + "</section>\n";
  }
  if (fields.empty()) return {};
  return "<section id=\"fields\" aria-labelledby=\"fields-heading\">\n<h2 id=\"fields-heading\">"
         "Fields</h2>\n" +
         fields + "</section>\n";
}

}  // namespace npar_host
