#include "host/render/html/test_plots.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <string_view>

#include "host/render/headline.h"
#include "host/render/html/comparison_plots.h"
#include "host/render/html/cumulative_plots.h"
#include "host/render/html/distribution_plots.h"
#include "host/render/html/frequency_plots.h"
#include "host/render/html/markup.h"
#include "host/render/html/pair_matrix.h"
#include "host/render/html/profile_plot.h"
#include "host/render/html/sample_plots.h"
#include "host/render/html/style.h"

namespace npar_host {
namespace {

/// Gathers the plots that there are.
class Gallery {
 public:
  explicit Gallery(const std::string& id) : id(id) {}

  void Add(std::optional<Plot> plot) {
    if (plot) plots.push_back(std::move(*plot));
    ++count;
  }
  /// The id of the next plot's table.
  [[nodiscard]] std::string TableId() const {
    return id + "-plot" + std::to_string(count) + "-values";
  }
  [[nodiscard]] std::vector<Plot> Take() { return std::move(plots); }

 private:
  const std::string& id;
  std::vector<Plot> plots;
  std::size_t count = 1;
};

// Lower-case letters and digits, all else a dash; short enough for any file system.
std::string FileWord(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  std::string word;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (word.size() == kLongest) break;
    if (byte < 0x80 && std::isalnum(byte) != 0) {
      word += static_cast<char>(std::tolower(byte));
    } else if (!word.empty() && word.back() != '-') {
      word += '-';
    }
  }
  while (word.ends_with('-')) word.pop_back();
  return word;
}

// The style with each "var(--ink)" as the colour that it stands for: programs other than browsers
// know no variables.
std::string PlainStyle() {
  constexpr std::string_view kBegin = "var(";
  std::string_view rest = PlotStyle();
  const std::size_t open = rest.find('{');
  const std::size_t close = rest.find('}');
  std::map<std::string_view, std::string_view> colours;
  std::string_view variables = rest.substr(open, close - open);
  for (std::size_t at = variables.find("--"); at != std::string_view::npos;
       at = variables.find("--", at)) {
    const std::size_t colon = variables.find(':', at);
    const std::size_t end = variables.find(';', colon);
    colours[variables.substr(at, colon - at)] = variables.substr(colon + 2, end - colon - 2);
    at = end;
  }
  rest.remove_prefix(close + 1);
  std::string style;
  for (std::size_t at = rest.find(kBegin); at != std::string_view::npos; at = rest.find(kBegin)) {
    style += rest.substr(0, at);
    const std::size_t end = rest.find(')', at);
    style += colours[rest.substr(at + kBegin.size(), end - at - kBegin.size())];
    rest.remove_prefix(end + 1);
  }
  return style.append(rest);
}

std::string Svg(const Plot& plot, const std::string& style) {
  const std::string width = std::to_string(static_cast<int>(plot.width));
  const std::string height = std::to_string(static_cast<int>(plot.height));
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
         "width=\"" +
         width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
         "\">\n<title>" + Escaped(plot.title) + "</title>\n<desc>" + Escaped(plot.description) +
         "</desc>\n<style>text { font-family: sans-serif; }" + style + "</style>\n" +
         plot.drawing.Markup() + "</svg>\n";
}

}  // namespace

std::vector<Plot> TestPlots(const ResultDocument& document, const ResultTest& test,
                            const std::string& id) {
  Gallery gallery(id);
  gallery.Add(ProfilePlot(document, test));
  gallery.Add(DifferencesPlot(document, test, gallery.TableId()));
  gallery.Add(MedianPlot(document, test, gallery.TableId()));
  gallery.Add(TwoSampleFunctions(document, test));
  gallery.Add(OneSampleFunctions(document, test));
  gallery.Add(RunsPlot(test));
  if (test.classification == "Independent_Samples") {
    gallery.Add(MirroredPlot(document, test, gallery.TableId()));
  }
  gallery.Add(BoxPlots(document, test));
  gallery.Add(RankPlot(document, test, gallery.TableId()));
  for (const ResultTable& table : test.tables) {
    gallery.Add(FrequencyPlot(document, test, table));
    gallery.Add(CrossPlot(document, test, table));
  }
  gallery.Add(IntervalPlot(document, test));
  gallery.Add(PairwiseGraph(document, test));
  gallery.Add(PairwiseMatrix(document, test));
  return gallery.Take();
}

std::vector<PlotFile> PlotFiles(const ResultDocument& document) {
  const std::string style = PlainStyle();
  std::vector<PlotFile> files;
  for (std::size_t i = 0; i < document.tests.size(); ++i) {
    const ResultTest& test = document.tests[i];
    const std::string name = std::to_string(i + 1) + "-" + FileWord(ShortTitle(test)) + "-" +
                             FileWord(TestedFields(document, test));
    std::size_t number = 1;
    for (const Plot& plot : TestPlots(document, test, "")) {
      files.push_back({name + "-" + std::to_string(number++) + ".svg", Svg(plot, style),
                       std::max(plot.width, plot.height)});
    }
  }
  return files;
}

}  // namespace npar_host
