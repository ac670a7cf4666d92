#pragma once

#include <string_view>

namespace npar_host {

/// What keeps a text from standing in an XML document, and what to do; null for a text that can:
/// UTF-8 without the control characters that XML 1.0 has no place for.
[[nodiscard]] const char* XmlTextFault(std::string_view text);

}  // namespace npar_host
