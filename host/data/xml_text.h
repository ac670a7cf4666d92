#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace npar_host {

/// The fault of a text that is not UTF-8.
extern const char* const kNotUtf8;

/// What keeps a text from standing in an XML document, and what to do; null for a text that can:
/// UTF-8 without the control characters that XML 1.0 has no place for. `offset`, where asked for,
/// is then that of the fault.
[[nodiscard]] const char* XmlTextFault(std::string_view text, std::size_t* offset = nullptr);

/// Has XML 1.0 a place for the character?
[[nodiscard]] bool IsXmlCharacter(std::uint32_t character);

}  // namespace npar_host
