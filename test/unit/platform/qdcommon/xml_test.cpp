#include "foundation/xml.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <pugixml.hpp>
#include <random>
#include <sstream>
#include <string>

#include "foundation/record.h"

namespace QDXML_700 {
namespace {

using Element = std::unique_ptr<XMLElement>;

Element Make(const char* name) { return Element(XMLElement::Create(name)); }

XMLElement& AddChild(XMLElement& parent, const char* name) {
  XMLElement* const child = XMLElement::Create(name);
  parent.Append(child);
  return *child;
}

std::string Written(const XMLElement& root, bool indented, const char* documentType = nullptr) {
  std::ostringstream stream;
  EXPECT_EQ(WriteTree(stream, documentType, &root, indented), 0);
  return stream.str();
}

TEST(Xml, IndentedOutputLeavesContentOfElementsWithTextAlone) {
  const Element root = Make("A");
  root->AddAttribute("name", "x");
  root->AddAttribute("value", 0.1);
  AddChild(*root, "Empty");
  XMLElement& text = AddChild(*root, "Text");
  text.Append(XMLString::Create("some "));
  AddChild(*text.AddElement("Inner"), "Deep");
  root->AddElement("Outer")->AddElement("Inner")->AddText("");
  EXPECT_EQ(Written(*root, true),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<A name=\"x\" value=\"0.1\">\n"
            " <Empty/>\n"
            " <Text>some <Inner><Deep/></Inner></Text>\n"
            " <Outer>\n"
            "  <Inner></Inner>\n"
            " </Outer>\n"
            "</A>\n");
  EXPECT_EQ(Written(*root, false, "A SYSTEM \"a.dtd\""),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE A SYSTEM \"a.dtd\">\n"
            "<A name=\"x\" value=\"0.1\"><Empty/><Text>some <Inner><Deep/></Inner></Text>"
            "<Outer><Inner></Inner></Outer></A>\n");
}

TEST(Xml, WhatAParserReadsBackIsTheTextThatWasWritten) {
  const std::string replacement = "\xEF\xBF\xBD";
  const struct {
    const char* catches;
    std::string text;
    std::string read;  // empty: the text itself
  } rows[] = {
      {"markup", "a & b < c > d ]]> &amp; <!-- -->", ""},
      {"markup behind a long plain text", std::string(70, 'x') + "<&>\"" + std::string(40, 'y'),
       ""},
      {"quotes", "\"double\" and 'single'", ""},
      {"line ends and tabs", " \n\r\n\r\t ", ""},
      {"two, three and four bytes", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", ""},
      {"the ends of the ranges", "\xC2\x80 \xEE\x80\x80 \xED\x9F\xBF \xEF\xBF\xBD \xF4\x8F\xBF\xBF",
       ""},
      {"control characters", std::string("a\0\x01\x1F\x7F", 5),
       "a" + replacement + replacement + replacement + "\x7F"},
      {"lone bytes", "\x80 \xFF\xC0", replacement + " " + replacement + replacement},
      {"a sequence cut by the end", "a\xE2\x82", "a" + replacement + replacement},
      {"a sequence cut by another character", "\xC3z", replacement + "z"},
      {"overlong forms", "\xC0\xAF \xE0\x9F\xBF \xF0\x8F\xBF\xBF",
       replacement + replacement + " " + replacement + replacement + replacement + " " +
           replacement + replacement + replacement + replacement},
      {"a surrogate", "\xED\xA0\x80", replacement + replacement + replacement},
      {"U+FFFE and U+FFFF", "\xEF\xBF\xBE\xEF\xBF\xBF",
       replacement + replacement + replacement + replacement + replacement + replacement},
      {"beyond U+10FFFF", "\xF4\x90\x80\x80 \xF5",
       replacement + replacement + replacement + replacement + " " + replacement},
      {"ten thousand characters", std::string(10000, '"'), ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.catches);
    const std::string& expected = row.read.empty() ? row.text : row.read;
    for (const bool indented : {false, true}) {
      const Element root = Make("root");
      XMLElement& child = AddChild(*root, "child");
      child.AddAttribute("value", row.text);
      child.Append(XMLString::Create(row.text));
      pugi::xml_document document;
      // Attribute values as a conforming reader normalises them; no blank text is dropped.
      ASSERT_TRUE(document.load_string(
          Written(*root, indented).c_str(),
          pugi::parse_full | pugi::parse_ws_pcdata | pugi::parse_wconv_attribute));
      const pugi::xml_node read = document.child("root").child("child");
      EXPECT_EQ(read.attribute("value").value(), expected);
      EXPECT_EQ(read.child_value(), expected);
    }
  }
}

TEST(Xml, ATreeAMillionDeepIsWrittenAndFreed) {
  const Element root = Make("a");
  XMLElement* deepest = root.get();
  for (int i = 0; i < 1000000; ++i) {
    deepest->Append(XMLString::Create("x"));
    XMLElement* const child = &AddChild(*deepest, "a");
    AddChild(*deepest, "b");
    deepest = child;
  }
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  EXPECT_EQ(Written(*root, true).size(),
            declaration.size() + 1000000 * std::string("<a>x</a><b/>").size() + 5);
}

TEST(Xml, AFailedStreamIsTold) {
  const Element root = Make("a");
  std::ostringstream stream;
  stream.setstate(std::ios::badbit);
  EXPECT_EQ(WriteTree(stream, nullptr, root.get(), true), 1);
}

TEST(Xml, NumbersAreWrittenAsPrintfWritesThemInTheCLocale) {
  constexpr double inf = std::numeric_limits<double>::infinity();
  const struct {
    double value;
    const char* format;
    const char* text;
  } rows[] = {
      {0.1, "%.15g", "0.1"},
      {1.0 / 3, "%.15g", "0.333333333333333"},
      {2.0 / 3, "%.15g", "0.666666666666667"},
      {-1.5, "%.15g", "-1.5"},
      {100000, "%.15g", "100000"},
      {1e14, "%.15g", "100000000000000"},
      {1e15, "%.15g", "1e+15"},
      {123456789012345678.0, "%.15g", "1.23456789012346e+17"},
      {0.0001, "%.15g", "0.0001"},
      {0.00001, "%.15g", "1e-05"},
      {5e-324, "%.15g", "4.94065645841247e-324"},
      {1.7976931348623157e308, "%.15g", "1.79769313486232e+308"},
      {0.1, "%.17g", "0.10000000000000001"},
      {1234567, "%g", "1.23457e+06"},
      {25, "%.1g", "2e+01"},  // to even
      {0.0, "%.15g", "0"},
      {-0.0, "%.15g", "0"},
      {inf, "%.15g", "inf"},
      {-inf, "%.15g", "-inf"},
      {std::numeric_limits<double>::quiet_NaN(), "%.15g", "nan"},
      {-std::numeric_limits<double>::quiet_NaN(), "%.15g", "nan"},
      {QDCommon_700::QDMV::gMissingValue, "%.15g", "nan"},
      {std::numeric_limits<double>::lowest(), "%.15g", "-1.79769313486232e+308"},
  };
  for (const auto& row : rows) EXPECT_EQ(ReplaceSep(row.value, row.format), row.text) << row.format;
}

// Against printf, whose digits are exact: of all sizes; of few digits, so that halves of the last
// one occur; and one step beside powers of ten, where a digit more or less is wanted.
TEST(Xml, NumbersOfAnySizeAreWrittenAsPrintfWritesThem) {
  std::mt19937_64 random(20);
  const auto check = [](double value) {
    std::array<char, 64> text{};
    ASSERT_GT(std::snprintf(text.data(), text.size(), "%.15g", value), 0);
    ASSERT_EQ(ReplaceSep(value, "%.15g"), text.data());
  };
  for (int i = 0; i < 100000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (std::isfinite(value) && value != QDCommon_700::QDMV::gMissingValue) check(value);
    const auto small = static_cast<double>(random() % 100000 + 1);
    check(std::ldexp(-small, static_cast<int>(random() % 100) - 60));
    check(small / 1000.0);
    check(std::nextafter(std::pow(10.0, static_cast<int>(random() % 32) - 15), small - 50000.0));
  }
}

}  // namespace
}  // namespace QDXML_700
