#pragma once

#include <string_view>

namespace npar_host {

/// The page's style sheet: light and dark, narrow and wide, screen and paper. It holds no "<" or
/// "&", so that it can stand in XHTML.
[[nodiscard]] std::string_view PageStyle();

}  // namespace npar_host
