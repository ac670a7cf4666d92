#pragma once

#include <string_view>

namespace npar_host {

/// The style of a page and of all that its classes name, but for plots.
[[nodiscard]] std::string_view PageStyle();
/// The colours, as variables of a light page, and the style of plots.
[[nodiscard]] std::string_view PlotStyle();

}  // namespace npar_host
