#include "host/render/manuscript.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "host/render/headline.h"
#include "host/render/manuscript_tables.h"
#include "host/render/sentence.h"
#include "host/render/text_layout.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

using Replacements = std::vector<std::pair<std::string_view, std::string_view>>;

// Replaces at each place what the first fitting pair says.
std::string Replaced(std::string_view text, const Replacements& replacements) {
  const std::string shown = Printable(text);
  std::string escaped;
  for (std::string_view rest = shown; !rest.empty();) {
    std::size_t taken = 0;
    for (const auto& [from, to] : replacements) {
      if (taken > 0 || !rest.starts_with(from)) continue;
      escaped += to;
      taken = from.size();
    }
    if (taken == 0) {
      escaped += rest.front();
      taken = 1;
    }
    rest.remove_prefix(taken);
  }
  return escaped;
}

std::string Markdown(std::string_view text) {
  static const Replacements kReplacements = {
      {"\\", "\\\\"}, {"|", "\\|"},  {"*", "\\*"},  {"_", "\\_"},   {"`", "\\`"}, {"[", "\\["},
      {"]", "\\]"},   {"<", "&lt;"}, {">", "&gt;"}, {"&", "&amp;"}, {"#", "\\#"}, {"~", "\\~"}};
  return Replaced(text, kReplacements);
}

std::string Latex(std::string_view text) {
  static const Replacements kReplacements = {{"\\", "\\textbackslash{}"},
                                             {"{", "\\{"},
                                             {"}", "\\}"},
                                             {"$", "\\$"},
                                             {"&", "\\&"},
                                             {"#", "\\#"},
                                             {"%", "\\%"},
                                             {"_", "\\_"},
                                             {"^", "\\textasciicircum{}"},
                                             {"~", "\\textasciitilde{}"},
                                             {"<", "$<$"},
                                             {">", "$>$"},
                                             {"\u03c7\u00b2", "$\\chi^2$"},
                                             {"\u03b5\u00b2", "$\\varepsilon^2$"},
                                             {"\u2013", "--"}};
  return Replaced(text, kReplacements);
}

template <typename Escape>
std::string Joined(const std::vector<std::string>& cells, std::string_view between, Escape escape) {
  std::string row;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) row += between;
    row += escape(cells[i]);
  }
  return row;
}

bool IsOfWords(const ManuscriptTable& table, std::size_t column) {
  return std::ranges::find(table.words, column) != table.words.end();
}

std::string MarkdownTable(const ManuscriptTable& table) {
  std::string text = "\n**" + Markdown(table.caption) + "**\n\n| ";
  text += Joined(table.columns, " | ", Markdown) + " |\n|";
  for (std::size_t i = 0; i < table.columns.size(); ++i)
    text += IsOfWords(table, i) ? " :-- |" : " --: |";
  text += '\n';
  for (const auto& row : table.rows) text += "| " + Joined(row, " | ", Markdown) + " |\n";
  return text;
}

std::string LatexTable(const ManuscriptTable& table) {
  std::string text =
      "\n\\begin{table}[htbp]\n\\caption{" + Latex(table.caption) + "}\n\\begin{tabular}{";
  for (std::size_t i = 0; i < table.columns.size(); ++i) text += IsOfWords(table, i) ? 'l' : 'r';
  text += "}\n\\toprule\n";
  text += Joined(table.columns, " & ", Latex) + " \\\\\n\\midrule\n";
  for (const auto& row : table.rows) text += Joined(row, " & ", Latex) + " \\\\\n";
  return text + "\\bottomrule\n\\end{tabular}\n\\end{table}\n";
}

using EscapeText = std::string (*)(std::string_view text);

std::string InItalics(const std::vector<SentencePart>& parts, EscapeText escape,
                      std::string_view begin, std::string_view end) {
  std::string text;
  for (const SentencePart& part : parts) {
    const std::string escaped = escape(part.text);
    text += part.isSymbol ? std::string(begin) + escaped + std::string(end) : escaped;
  }
  return text;
}

}  // namespace

std::string RenderMarkdown(const ResultDocument& document) {
  std::string text = "# Nonparametric tests\n" + MarkdownTable(TestsTable(document));
  for (const ResultTest& test : document.tests) {
    text += "\n## " + Markdown(TestHeading(document, test)) + "\n\n" +
            InItalics(SentenceParts(document, test), Markdown, "*", "*") + "\n";
    for (const ManuscriptTable& table : TablesOf(document, test)) text += MarkdownTable(table);
  }
  return text;
}

std::string RenderLatex(const ResultDocument& document) {
  std::string text = "% \\usepackage{booktabs}\n\\section{Nonparametric tests}\n" +
                     LatexTable(TestsTable(document));
  for (const ResultTest& test : document.tests) {
    text += "\n\\subsection{" + Latex(TestHeading(document, test)) + "}\n\n" +
            InItalics(SentenceParts(document, test), Latex, "\\textit{", "}") + "\n";
    for (const ManuscriptTable& table : TablesOf(document, test)) text += LatexTable(table);
  }
  return text;
}

}  // namespace npar_host
