#pragma once

#include <pugixml.hpp>
#include <string>

namespace npar_host {

// Documents that the host makes. A lack of memory is std::bad_alloc; pugixml by itself goes on
// without the element, and a stream without the rest of the text.

pugi::xml_node AddElement(pugi::xml_node parent, const char* name);
void AddAttribute(pugi::xml_node element, const char* name, const char* value);
/// In UTF-8; `format` and `indent` are pugixml's.
[[nodiscard]] std::string TextOfXml(const pugi::xml_document& document, const char* indent,
                                    unsigned format);

}  // namespace npar_host
