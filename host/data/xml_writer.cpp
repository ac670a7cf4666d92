#include "host/data/xml_writer.h"

#include <new>
#include <utility>

namespace npar_host {
namespace {

void CheckMemory(bool isThere) {
  if (!isThere) throw std::bad_alloc();
}

struct Writer final : pugi::xml_writer {
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

}  // namespace

pugi::xml_node AddElement(pugi::xml_node parent, const char* name) {
  pugi::xml_node element = parent.append_child(pugi::node_element);
  CheckMemory(element.set_name(name));
  return element;
}

void AddAttribute(pugi::xml_node element, const char* name, const char* value) {
  pugi::xml_attribute attribute = element.append_attribute("");
  CheckMemory(attribute.set_name(name) && attribute.set_value(value));
}

std::string TextOfXml(const pugi::xml_document& document, const char* indent, unsigned format) {
  Writer writer;
  document.save(writer, indent, format, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace npar_host
