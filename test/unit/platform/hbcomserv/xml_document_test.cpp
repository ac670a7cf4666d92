#include <gmock/gmock.h>

#include <new>
#include <pugixml.hpp>

#include "foundation/host_helpers.h"
#include "support/recording_host.h"

namespace {

using HbHelperV1::XMLDocument;
using HbHelperV1::XMLElement;

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

TEST(XMLDocument, RefusesWhatIsNoPlainXmlAndSaysWhere) {
  struct Case {
    const char* catches;
    std::string text;
    std::string problem;
  };
  const Case kCases[] = {
      {"an unclosed tag", "<a>\n  <b></a>", "line 2, column 8: "},
      {"text that is no XML", "hello", "line 1, column 6: No document element found"},
      {"text behind the root", "<a/>junk", "line 1, column 5: text beside the root element"},
      {"nothing at all", "", "line 1, column 1: No document element found"},
      {"a document type", "<?xml version=\"1.0\"?>\n<!DOCTYPE a []><a/>",
       "line 2, column 1: a document type is not allowed"},
      {"an entity of the document's own", "<a>\n<b c='\xC3\xA9&x;'/></a>",
       "line 2, column 8: unknown entity"},
      {"an ampersand by itself", "<a>R & D</a>", "line 1, column 6: unknown entity"},
      {"a number reference without digits", "<a>&#x;</a>", "line 1, column 4: unknown entity"},
      {"a reference to no character", "<a>&#0;</a>", "line 1, column 4: unknown entity"},
      {"a reference past the last character", "<a>&#x110000;</a>",
       "line 1, column 4: unknown entity"},
      {"a zero byte, which would end the text", std::string("<a/>\0<b/>", 9),
       "line 1, column 5: not a character"},
      {"what follows a long plain text", "<a>" + std::string(70, 'x') + "\x01</a>",
       "line 1, column 74: not a character"},
      {"Latin-1", "<a b='caf\xE9'/>", "line 1, column 10: not a character"},
      {"a character in too many bytes", "<a>\xC0\xBC</a>", "line 1, column 4: not a character"},
      {"half of a surrogate pair", "<a>\xED\xA0\x80</a>", "line 1, column 4: not a character"},
      {"a character cut short by the end", "<a/>\xE2\x82", "line 1, column 5: not a character"},
      {"a second root", "<a/>\n<b/>", "line 2, column 1: a second root element"},
      {"one level too deep", Nested(201), "line 1, column 601: elements nest too deep"},
      {"a depth that would end a recursive reader", Nested(200000),
       "line 1, column 601: elements nest too deep"},
  };
  RecordingHost host;
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.catches);
    const XMLDocument document(host.Document(row.text));
    EXPECT_FALSE(document.isWellFormed());
    EXPECT_THAT(document.problem(), testing::StartsWith(row.problem));
    EXPECT_FALSE(document.root());
  }
  EXPECT_EQ(host.OpenDocuments(), 0);
}

TEST(XMLDocument, ReadsCharactersOfEveryLength) {
  RecordingHost host;
  const std::string text =
      "\x7F \xC2\x80 \xE0\xA0\x80 \xED\x9F\xBF \xF0\x90\x80\x80 \xF4\x8F\xBF\xBF";
  const XMLDocument document(host.Document("<a b='" + text + "'/>"));
  ASSERT_EQ(document.problem(), "");
  EXPECT_EQ(document.root().attribute("b"), text);
}

TEST(XMLDocument, ReadsWhatLooksLikeTroubleInQuietPlaces) {
  RecordingHost host;
  const XMLDocument document(
      host.Document("<!-- <!DOCTYPE & --><a b='&lt;&#65;&#x42;&amp;&quot;'>"
                    "<![CDATA[<!DOCTYPE &x; ]]></a><?pi &x;?>"));
  ASSERT_EQ(document.problem(), "");
  EXPECT_EQ(document.root().attribute("b"), "<AB&\"");
  EXPECT_TRUE(document.root().hasText());
  EXPECT_TRUE(XMLDocument(host.Document(Nested(200))).isWellFormed());
}

TEST(XMLDocument, WalksElementsByNameAndKnowsTheirPlace) {
  RecordingHost host;
  const XMLDocument document(
      host.Document("<r>\n <a x=''/><b/><!-- c -->\n\n  <a y='1' y='2'/></r>"));
  const XMLElement first = document.root().firstChild();
  const XMLElement second = first.nextSibling("a");
  EXPECT_EQ(document.place(first), "line 2, column 2");
  EXPECT_EQ(document.place(second), "line 4, column 3");
  EXPECT_EQ(second.offset(), 32);
  EXPECT_FALSE(second.nextSibling());
  EXPECT_TRUE(first.hasAttribute("x"));
  EXPECT_FALSE(first.hasAttribute("y"));
  EXPECT_EQ(first.unexpectedAttribute({"x"}), "");
  EXPECT_EQ(first.unexpectedAttribute({"y"}), "x");
  EXPECT_EQ(second.unexpectedAttribute({"x", "y"}), "y") << "stands twice";
  EXPECT_FALSE(document.root().hasText());
}

TEST(XMLDocument, WritesWhatAnotherReadsBack) {
  const std::string odd = "a \"b\" <c> & 'd'; \xC3\xA9\xE2\x82\xAC\n\t" + std::string(10000, 'x');
  XMLDocument document;
  document.addElement("Root");
  XMLElement child = document.addElement("Child");
  child.addAttribute("text", odd);
  child.addAttribute("number", -5);
  std::string text;
  document.doc2string(text);
  EXPECT_THAT(text, testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root>"));
  EXPECT_EQ(document.place(child), "");

  RecordingHost host;
  const XMLDocument again(host.Document(text));
  ASSERT_EQ(again.problem(), "");
  EXPECT_EQ(again.root().firstChild("Child").attribute("text"), odd);
  EXPECT_EQ(again.root().firstChild().attribute("number"), "-5");
}

TEST(XMLDocument, HostThatGivesNoTextLeavesItEmptyAndGetsItsDocumentBack) {
  EXPECT_EQ(XMLDocument(nullptr).problem(), "there is no document");
  RecordingHost host;
  host.FailCall("getText", 1);
  EXPECT_FALSE(XMLDocument(host.Document("<a/>")).isWellFormed());
  EXPECT_EQ(host.OpenDocuments(), 0);
  host.xmlTable.size = offsetof(HBXMLTable, release);  // a host that keeps its documents
  EXPECT_TRUE(XMLDocument(host.Document("<a/>")).isWellFormed());
  EXPECT_EQ(host.OpenDocuments(), 1);
}

TEST(XMLDocument, WhatDoesNotFitIntoMemoryIsNotLeftOutInSilence) {
  XMLDocument document;
  XMLElement root = document.addElement("a");
  const pugi::allocation_function allocate = pugi::get_memory_allocation_function();
  const pugi::deallocation_function release = pugi::get_memory_deallocation_function();
  pugi::set_memory_management_functions([](std::size_t) -> void* { return nullptr; }, release);
  const auto fill = [&root](auto add) {
    for (int i = 0; i < 100000; ++i) add(root);
  };
  EXPECT_THROW(fill([](auto& element) { element.addElement("b"); }), std::bad_alloc);
  EXPECT_THROW(fill([](auto& element) { element.addAttribute("c", 1); }), std::bad_alloc);
  EXPECT_THROW(root.addAttribute("d", std::string(100000, 'd')), std::bad_alloc);
  pugi::set_memory_management_functions(allocate, release);
}

}  // namespace
