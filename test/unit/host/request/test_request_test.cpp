#include "host/request/test_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "catalogue/catalogue.h"
#include "host/request/word_list.h"
#include "support/parameters_text.h"

namespace npar_host {
namespace {

using testing::HasSubstr;

std::string Written(std::string_view request) {
  pugi::xml_document document;
  TestRequest::Parse(request).WriteTo(document);
  std::ostringstream text;
  document.save(text, "", pugi::format_raw | pugi::format_no_declaration);
  return text.str();
}

struct Row {
  const char* catches;
  const char* request;
  std::string document;
};

TEST(TestRequestTest, BecomesAnEntryOfTheParameterDocument) {
  const Row rows[] = {
      {"a test without options", "sign", Selected("RSign", "")},
      {"formations that must stand also by default", "binomial",
       Selected("OBinomial", Attribute("catVarClassFormation", "getFromData") +
                                 Attribute("contVarClassFormation", "sampleMidPoint"))},
      {"number, categories, cut point and words together",
       "binomial:p=0.35,success=Yes|no\\, never,cut=31.5,intervals=jeffreys|profile",
       Selected("OBinomial", Attribute("testProbability", "0.35") +
                                 Attribute("catVarClassFormation", "givenCategoryList") +
                                 ListAttribute("givenCategoryList", {"Yes", "no, never"}) +
                                 Attribute("contVarClassFormation", "givenCutPoint") +
                                 Attribute("givenCutPoint", "31.5") +
                                 Attribute("isDoJeffreys", "true") +
                                 Attribute("isDoProfileLikelihood", "true"))},
      {"category=number pairs", "chi-square:expected=a=2|b=1",
       Selected("OChiSquare",
                Attribute("classFormation", "givenExpectedValue") +
                    "<Attribute name=\"custom\"><ListValue>"
                    "<StructuredValue><Attribute name=\"categoryValue\" value=\"a\"/>"
                    "<Attribute name=\"expectedValue\" value=\"2\"/></StructuredValue>"
                    "<StructuredValue><Attribute name=\"categoryValue\" value=\"b\"/>"
                    "<Attribute name=\"expectedValue\" value=\"1\"/></StructuredValue>"
                    "</ListValue></Attribute>")},
      {"a formation that is read even without a list", "chi-square",
       Selected("OChiSquare", Attribute("classFormation", "getFromData"))},
      {"a word where a number may stand too", "runs:cut=mean",
       Selected("ORuns", Attribute("contVarClassFormation", "cutPointMean") +
                             Attribute("catVarClassFormation", "getFromData"))},
      {"a number where a word may stand too", "runs:cut=3",
       Selected("ORuns", Attribute("contVarClassFormation", "cutPointValue") +
                             Attribute("cutPointValue", "3") +
                             Attribute("catVarClassFormation", "getFromData"))},
      {"an implied entry of two options written twice", "mann-whitney:group1=A|B,group2=C",
       Selected("IMannWhitneyU", Attribute("userSpecifyGroupList", "true") +
                                     ListAttribute("group1List", {"A", "B"}) +
                                     ListAttribute("group2List", {"C"}))},
      {"the comparison always said", "friedman",
       Selected("RFriedmansTwoWayByRanks", Attribute("typeOfMultipleComparison", "none"))},
      {"a count with its flag", "moses:outliers=2",
       Selected("IMoses", Attribute("userSpecifyNumberOfOutliers", "true") +
                              Attribute("NumberOfOutliers", "2"))},
      {"a flag that also stands switched off", "wilcoxon",
       Selected("OWilcoxonSignedRanks", Attribute("userSpecifyTestValue", "false"))},
      {"categories that hold separators and markup", "mcnemar:success=a\\|b|<\\,>",
       Selected("RMcNemar", Attribute("classFormation", "givenCategoryList") +
                                ListAttribute("categoriesList", {"a|b", "&lt;,>"}))},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.catches);
    EXPECT_EQ(Written(row.request), row.document);
  }
}

struct Refusal {
  const char* request;
  const char* says;
};

TEST(TestRequestTest, RefusalsNameTheFaultAndTheRemedy) {
  const Refusal rows[] = {
      {"man-whitney", R"(there is no test "man-whitney"; did you mean "mann-whitney"?)"},
      {"", R"(there is no test "")"},
      {"binomial:q=1", R"(has no option "q")"},
      {"binomial:sucess=a", R"(did you mean "success"?)"},
      {"sign:p=1", "it takes none"},
      {"binomial:p=half", "must be a number"},
      {"binomial:p=", "has no value"},
      {"binomial:p", "has no value"},
      {"binomial:p=inf", "must be a number"},
      {"binomial:p=0.1,p=0.2", "is given twice"},
      {"binomial:intervals=wald", "clopper-pearson, jeffreys or profile"},
      {"chi-square:expected=2", "category=number pairs"},
      {"chi-square:expected=a=0", "must be above 0"},
      {"chi-square:expected=a=x", "must be a number"},
      {"friedman:compare=all", "none, pairwise or stepwise"},
      {"runs:cut=mode", "must be a number"},
      {"moses:outliers=-1", "whole number"},
      {"moses:outliers=1.5", "whole number"},
      {"mann-whitney:group1=a", "needs both group1 and group2"},
      {"moses:group2=a", "needs both group1 and group2"},
  };
  for (const Refusal& row : rows) {
    SCOPED_TRACE(row.request);
    try {
      static_cast<void>(TestRequest::Parse(row.request));
      ADD_FAILURE() << "was taken";
    } catch (const UsageError& error) {
      EXPECT_THAT(error.what(), HasSubstr(row.says));
    }
  }
}

// What help and npar tests show must be what the program takes.
TEST(TestRequestTest, TheSyntaxThatHelpShowsIsTaken) {
  for (const catalogue::Card* test : catalogue::kTests) {
    for (const catalogue::Option& option : test->options) {
      std::string value(option.syntax);
      if (option.kind == catalogue::OptionKind::Word) value = value.substr(0, value.find('|'));
      if (value.ends_with("NUMBER") || value == "COUNT") value = "2";
      std::string request = test->name + ":" + option.name + "=" + value;
      if (option.name == "group1" && FindOption(*test, "group2") != nullptr) {
        request += ",group2=C";
      }
      if (option.name == "group2") request += ",group1=A";
      SCOPED_TRACE(request);
      EXPECT_NO_THROW(static_cast<void>(TestRequest::Parse(request)));
    }
  }
}

}  // namespace
}  // namespace npar_host
