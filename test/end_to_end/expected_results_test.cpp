#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <pugixml.hpp>

#include "support/process.h"
#include "support/row_matcher.h"

namespace {

constexpr const char* kProgram = NPAR_BUILD_DIR "/bin/npar";
constexpr const char* kFolder = "test/support/references/expected";

/// Figures of one text stand between semicolons.
bool Agree(std::string_view expected, std::string_view found) {
  return std::ranges::equal(
      CellsOf(expected), CellsOf(found),
      [](std::string_view x, std::string_view y) { return AreCellsClose(x, y, 1e-10, 1e-13); });
}

std::string Outline(const pugi::xml_node& node) {
  std::string outline = node.name();
  for (const pugi::xml_attribute& attribute : node.attributes()) {
    outline += std::string(" ") + attribute.name();
  }
  for (const pugi::xml_node& child : node.children()) {
    outline += std::string(" <") + child.name() + " " + child.attribute("name").value() + ">";
  }
  return outline;
}

void Compare(const pugi::xml_node& expected, const pugi::xml_node& found,
             const std::string& above) {
  const std::string path = above + "/" + expected.attribute("name").as_string(expected.name());
  ASSERT_EQ(Outline(expected), Outline(found)) << path;
  for (const pugi::xml_attribute& attribute : expected.attributes()) {
    const char* value = found.attribute(attribute.name()).value();
    EXPECT_TRUE(Agree(attribute.value(), value))
        << path << ": " << value << " instead of " << attribute.value();
  }
  if (expected.first_child().type() == pugi::node_pcdata) {
    EXPECT_TRUE(Agree(expected.child_value(), found.child_value()))
        << path << ": " << found.child_value() << " instead of " << expected.child_value();
    return;
  }
  auto other = found.begin();
  for (const pugi::xml_node& child : expected.children()) Compare(child, *other++, path);
}

/// Elements by their tests and fields: their order is not told.
std::map<std::string, pugi::xml_node> ElementsOf(const pugi::xml_document& document) {
  std::map<std::string, pugi::xml_node> elements;
  for (const pugi::xpath_node& found : document.select_nodes("//Algorithm")) {
    std::string key = found.node().attribute("name").value();
    for (const pugi::xml_node& row : found.node().first_child().children()) {
      key += std::string(" ") + row.attribute("value").value();
    }
    EXPECT_TRUE(elements.emplace(key, found.node()).second) << "twice: " << key;
  }
  return elements;
}

void Compare(const std::filesystem::path& folder) {
  pugi::xml_document expected;
  ASSERT_TRUE(expected.load_file((folder / "expected.xml").c_str()));
  const std::string data = expected.document_element().attribute("data").value();
  const ProcessResult run =
      RunProcess({kProgram, "run", "--params", folder / "params.xml", "--model",
                  folder / "model.xml", "--data", "examples/" + data});
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(run.out.c_str())) << run.err;
  const auto wanted = ElementsOf(expected);
  const auto found = ElementsOf(document);
  ASSERT_EQ(wanted.size(), found.size());
  for (const auto& [key, element] : wanted) {
    const auto other = found.find(key);
    ASSERT_NE(other, found.end()) << key;
    Compare(element, other->second, "");
  }
}

// Computed by a program that shares no line with this one, by the same formulas; it was itself held
// against R, SciPy, statsmodels and mpmath.
TEST(ExpectedResults, AreThoseOfAnIndependentImplementation) {
  std::size_t count = 0;
  for (const auto& folder : std::filesystem::directory_iterator(kFolder)) {
    SCOPED_TRACE(folder.path());
    Compare(folder.path());
    ++count;
  }
  EXPECT_EQ(count, 27);
}

}  // namespace
