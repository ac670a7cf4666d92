#include "host/data/xml_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

struct Document {
  const char* catches;
  std::string text;
  const char* says;  // empty: the document is taken
};

TEST(XmlReader, TakesPlainXmlAndNamesThePlaceOfWhatItRefuses) {
  const Document rows[] = {
      {"byte order mark, declaration, comments and blanks around the root",
       "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- <!DOCTYPE &x; "
       "-->\n<a/>\n<!---->\n",
       ""},
      {"the entities of XML", "<a b='&amp;&lt;&gt;&quot;&apos;&#65;&#x1F600;'/>", ""},
      {"marks of no meaning in CDATA", "<a><![CDATA[&x; <!DOCTYPE]]></a>", ""},
      {"the deepest nesting", Nested(200), ""},
      {"one element more", Nested(201), "d.xml:1:601: elements nest"},
      {"document type", "<!DOCTYPE a [<!ENTITY x 'y'>]>\n<a b='&x;'/>",
       "d.xml:1:1: a document type"},
      {"unknown entity", "<a>\n &x;</a>", "d.xml:2:2: this names no entity"},
      {"reference to no character", "<a>&#0;</a>", "d.xml:1:4: this names no entity"},
      {"reference without an end", "<a b='x & y'/>", "d.xml:1:9: this names no entity"},
      {"two roots", "<a/>\n<b/>", "d.xml:2:1: a second root"},
      {"text behind the root", "<a/>\n junk", "d.xml:2:2: text has no place"},
      {"text before the root", "junk<a/>", "d.xml:1:1: text has no place"},
      {"no root", "<!-- -->", "no XML document"},
      {"no element closed", "<a>\n<b>", "d.xml:2:"},
      {"bytes that are no UTF-8", "<a>\n\xFF</a>", "d.xml:2:1: the text is not UTF-8"},
      {"another encoding", std::string("\xFF\xFE<\0a\0/\0>\0", 10),
       "d.xml:1:1: the text is not UTF-8"},
      {"a control character far on", "<a>" + std::string(70, 'x') + "\x01</a>",
       "d.xml:1:74: the text holds a control character"},
      {"zero byte", std::string("<a>\0</a>", 8), "d.xml:1:4: the text holds a control character"},
  };
  for (const Document& row : rows) {
    SCOPED_TRACE(row.catches);
    pugi::xml_document document;
    std::string said;
    try {
      ReadXml(document, row.text, "d.xml");
    } catch (const InputError& error) {
      said = error.what();
    }
    if (*row.says == '\0') {
      EXPECT_EQ(said, "");
      EXPECT_STREQ(document.document_element().name(), "a");
    } else {
      EXPECT_THAT(said, testing::HasSubstr(row.says));
    }
  }
}

}  // namespace
}  // namespace npar_host
