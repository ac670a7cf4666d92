#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace npar_host {

/// Reads a document that another program or a person wrote. It is what XML 1.0 takes for well
/// formed, in UTF-8, with one root and nothing but comments beside it, and elements that nest at
/// most 200 deep. A document type is refused, and with it every entity but the five of XML: nothing
/// is expanded and nothing outside is read. `parsing` is how pugixml keeps it. Throws InputError
/// with the place.
void ReadXml(pugi::xml_document& document, std::string_view text, std::string_view name,
             unsigned parsing = pugi::parse_default);

/// Where a node stands in the text that its document was read from.
[[nodiscard]] std::size_t OffsetOf(pugi::xml_node node, std::string_view text);

/// "name:line:column" of a node in the text that its document was read from.
[[nodiscard]] std::string PlaceOf(pugi::xml_node node, std::string_view text,
                                  std::string_view name);

}  // namespace npar_host
