#pragma once

#include <string>
#include <vector>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// The plots that a test has; `id` is unique in the page and begins the ids of their tables.
[[nodiscard]] std::vector<Plot> TestPlots(const ResultDocument& document, const ResultTest& test,
                                          const std::string& id);

/// A plot as a file of its own.
struct PlotFile {
  std::string name;  // "1-mann-whitney-len-by-supp-2.svg"
  std::string svg;
  double longestSide;  // pixels
};

/// All plots of the tests as SVG, in light colours, without what it takes a browser to read.
[[nodiscard]] std::vector<PlotFile> PlotFiles(const ResultDocument& document);

}  // namespace npar_host
