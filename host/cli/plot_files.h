#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// Writes each plot of the tests as SVG to a file of the folder, and as PNG beside it where
/// rsvg-convert (Debian's librsvg2-bin) is installed and takes one so large. Throws OutputError.
void WritePlots(const std::string& folder, const ResultDocument& document);

}  // namespace npar_host
