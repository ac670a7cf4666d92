#pragma once

#include <set>
#include <string>
#include <utility>

#include "host/cli/output.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Writes the plots of the documents of one call.
class PlotWriter {
 public:
  /// The files of the call but for the plots.
  explicit PlotWriter(CallFiles files) : files(std::move(files)) {}

  /// Writes each plot of the tests as SVG to a file of the folder, and as PNG beside it where
  /// rsvg-convert (Debian's librsvg2-bin) is installed and takes one so large. Throws OutputError,
  /// before the first is written where one would take the place of a file of the call.
  void Write(const std::string& folder, const ResultDocument& document);

 private:
  CallFiles files;
  std::set<std::string> names;
};

}  // namespace npar_host
