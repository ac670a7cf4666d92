#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/algorithm_element.h"
#include "support/process.h"

// What a run tells when a function of the platform refuses. Ours never does for the arguments that
// the tests form, so another provider takes its place at load time.
namespace {

using Message = AlgorithmElement::Message;

constexpr const char* kData =
    "x,group,first,second\n1.5,a,yes,yes\n2.5,a,yes,no\n3.5,b,no,yes\n"
    "4.5,b,yes,no\n5.5,a,no,no\n6.5,b,yes,no\n";

std::string List(const std::string& key, const std::vector<std::string>& names) {
  std::string text = "<Parameter name='" + key + "'><ListValue>";
  for (const std::string& name : names) text += "<Value value='" + name + "'/>";
  return text + "</ListValue></Parameter>";
}

struct FailureCase {
  const char* catches;
  std::string fields;      // parameters that choose family and fields
  std::string test;        // key of the test
  std::string attributes;  // its other settings, "key='value'"
  std::string failure;     // the code of the function that fails; empty: it leaves its flag alone
  std::vector<Message> messages;
};

std::string Chosen(const std::string& family) {
  return "<Parameter name='isAutomatically" + family + "' value='false'/>";
}

const std::string kX = List("oneSampleVariables", {"x"}) + Chosen("OneSample");
const std::string kGroups =
    List("independentVariables", {"x"}) + List("groupVariable", {"group"}) + Chosen("Independent");
const std::string kPair = List("relatedVariables", {"first", "second"}) + Chosen("Related");
const std::string kMethod = "<Attribute name='isDoProfileLikelihood' value='true'/>";

std::string CutAt(const std::string& point) {
  return "<Attribute name='contVarClassFormation' value='givenCutPoint'/>"
         "<Attribute name='givenCutPoint' value='" +
         point + "'/>";
}

const FailureCase kCases[] = {
    {"binomial: arguments refused", kX, "OBinomial", CutAt("2"), "1", {{220007, "error", {}}}},
    {"binomial: no convergence", kX, "OBinomial", CutAt("2"), "3", {{220007, "error", {}}}},
    {"binomial: any other flag is none", kX, "OBinomial", CutAt("2"), "2", {}},
    {"interval: overflow", kX, "OBinomial", CutAt("9") + kMethod, "2", {{220007, "error", {}}}},
    {"interval: underflow", kX, "OBinomial", CutAt("0") + kMethod, "1", {{220007, "error", {}}}},
    {"one sample: overflow", kX, "OKolmogorovSmirnovNormal", "", "2", {{220305, "error", {}}}},
    {"one sample: underflow", kX, "OKolmogorovSmirnovNormal", "", "1", {{220305, "error", {}}}},
    {"McNemar", kPair, "RMcNemar", "", "3", {{221612, "helpMessage", {}}, {221605, "error", {}}}},
    {"McNemar: a flag that nobody set",
     kPair,
     "RMcNemar",
     "",
     "",
     {{221612, "helpMessage", {}}, {221605, "error", {}}}},
    {"McNemar: success", kPair, "RMcNemar", "", "0", {{221612, "helpMessage", {}}}},
    {"two samples: overflow", kGroups, "IKolmogorovSmirnov", "", "2", {{222005, "error", {}}}},
    {"two samples: underflow", kGroups, "IKolmogorovSmirnov", "", "1", {{222005, "error", {}}}},
};

TEST(FailingFunctions, EachRefusalHasItsCodeInTheDocument) {
  TemporaryFolder folder;
  const std::string data = folder.Write("data.csv", kData);
  for (const FailureCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    std::string parameters = "<Parameters>" + row.fields;
    parameters += "<Parameter name='" + row.test +
                  "'><StructuredValue><Attribute name='isSelected' value='true'/>" +
                  row.attributes + "</StructuredValue></Parameter></Parameters>";
    std::vector<std::string> command{"/usr/bin/env", "ASAN_OPTIONS=verify_asan_link_order=0",
                                     "LD_PRELOAD=" NPAR_BUILD_DIR
                                     "/lib/libfailing_distributions.so"};
    if (!row.failure.empty()) command.push_back("NPAR_TEST_FAILURE=" + row.failure);
    const std::string document = folder.Write("parameters.xml", parameters);
    command.insert(command.end(),
                   {NPAR_BUILD_DIR "/bin/npar", "run", "--params", document, "--data", data});
    const ProcessResult run = RunProcess(command);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(run.out);
    ASSERT_FALSE(elements.empty());
    const AlgorithmElement& element = elements.back();  // the interval stands behind its test
    EXPECT_EQ(element.Messages(), row.messages);
    const bool isRefused = !row.messages.empty() && row.messages.back().type == "error";
    EXPECT_NE(element.Has("StatisticsResult"), isRefused) << element.Xml();
  }
}

}  // namespace
