#include "support/algorithm_element.h"

#include <charconv>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace {

pugi::xml_node FirstBelow(const pugi::xml_node& node, std::string_view name) {
  return node.find_node(
      [&](const pugi::xml_node& child) { return name == child.attribute("name").value(); });
}

double ToNumber(const std::string& text) {
  if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::invalid_argument("no number: " + text);
  }
  return number;
}

std::string OutlineOf(const pugi::xml_node& node) {
  std::string outline;
  for (const pugi::xml_node& child : node.children()) {
    const std::string tag = child.name();
    if (!outline.empty()) outline += ' ';
    outline += child.attribute("name").value();
    if (tag == "SimpleTable") outline += "[]";
    if (tag == "StructuredTable") outline += "(" + OutlineOf(child) + ")";
  }
  return outline;
}

}  // namespace

AlgorithmElement::AlgorithmElement(XMLElement* written)
    : document(std::make_shared<pugi::xml_document>()) {
  const std::unique_ptr<XMLElement> owned(written);
  if (owned == nullptr) throw std::invalid_argument("no element was written");
  std::ostringstream stream;
  if (QDXML_700::WriteTree(stream, nullptr, owned.get(), false) != 0 ||
      !document->load_string(stream.str().c_str())) {
    throw std::invalid_argument("not well-formed: " + stream.str());
  }
  element = document->document_element();
}

AlgorithmElement::AlgorithmElement(const pugi::xml_node& node)
    : document(std::make_shared<pugi::xml_document>()) {
  element = document->append_copy(node);
}

std::vector<AlgorithmElement> AlgorithmElement::AllOf(const std::string& text) {
  pugi::xml_document whole;
  if (!whole.load_string(text.c_str())) throw std::invalid_argument("not well-formed: " + text);
  std::vector<AlgorithmElement> all;
  for (const pugi::xpath_node& found : whole.select_nodes("//*[local-name()='Algorithm']")) {
    all.push_back(AlgorithmElement(found.node()));
  }
  return all;
}

std::string AlgorithmElement::Attribute(const char* name) const {
  return element.attribute(name).as_string("(absent)");
}

pugi::xml_node AlgorithmElement::Find(std::string_view path) const {
  pugi::xml_node node = element;
  while (!path.empty() && node) {
    const std::size_t end = path.find('/');
    node = FirstBelow(node, path.substr(0, end));
    path = end == std::string_view::npos ? std::string_view() : path.substr(end + 1);
  }
  return node;
}

std::string AlgorithmElement::Text(std::string_view path) const {
  const pugi::xml_attribute value = Find(path).attribute("value");
  return value ? value.value() : "(absent)";  // as_string takes an empty copy for none
}

std::optional<double> AlgorithmElement::Number(std::string_view path) const {
  const pugi::xml_attribute value = Find(path).attribute("value");
  if (!value) return std::nullopt;
  return ToNumber(value.value());
}

std::string AlgorithmElement::RowNames(std::string_view path) const {
  return Find(path).child("RowNames").text().as_string("");
}

std::string AlgorithmElement::ColumnNames(std::string_view path) const {
  return Find(path).child("ColumnNames").text().as_string("");
}

std::vector<std::string> AlgorithmElement::Rows(std::string_view path) const {
  std::vector<std::string> rows;
  for (const pugi::xml_node& row : Find(path).children("Row")) rows.push_back(row.text().get());
  return rows;
}

std::vector<AlgorithmElement::Message> AlgorithmElement::Messages() const {
  std::vector<Message> messages;
  for (const pugi::xml_node& entry : Find("WarningMessages").children()) {
    const auto value = [&](const std::string& name) {
      return entry.find_child_by_attribute("name", name.c_str()).attribute("value");
    };
    Message message{value("code").as_int(), value("type").value(), {}};
    const int count = value("paramNum").as_int();
    for (int i = 0; i < count; ++i) {
      message.params.push_back(
          value(std::string(1, '%').append(std::to_string(i))).as_string("(absent)"));
    }
    messages.push_back(std::move(message));
  }
  return messages;
}

std::vector<std::int32_t> AlgorithmElement::MessageCodes() const {
  std::vector<std::int32_t> codes;
  for (const Message& message : Messages()) codes.push_back(message.code);
  return codes;
}

std::vector<std::string> AlgorithmElement::ChildNames(std::string_view path) const {
  std::vector<std::string> names;
  for (const pugi::xml_node& child : Find(path).children()) {
    const std::string name = child.attribute("name").value();
    names.push_back(child.name() + (name.empty() ? name : " " + name));
  }
  return names;
}

std::string AlgorithmElement::Outline(std::string_view path) const { return OutlineOf(Find(path)); }

std::string AlgorithmElement::Xml() const {
  std::ostringstream stream;
  element.print(stream, " ");
  return stream.str();
}

std::ostream& operator<<(std::ostream& out, const AlgorithmElement::Message& message) {
  out << message.code << ' ' << message.type;
  for (const std::string& parameter : message.params) out << " [" << parameter << ']';
  return out;
}
