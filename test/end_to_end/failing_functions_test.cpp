#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/algorithm_element.h"
#include "support/parameters_text.h"
#include "support/process.h"

// What a run tells when a function of the platform refuses. Ours never does for the arguments that
// the tests form, so another provider takes its place at load time.
namespace {

using Message = AlgorithmElement::Message;

constexpr const char* kData =
    "x,group,first,second\n1.5,a,yes,yes\n2.5,a,yes,no\n3.5,b,no,yes\n"
    "4.5,b,yes,no\n5.5,a,no,no\n6.5,b,yes,no\n";

struct FailureCase {
  const char* catches;
  std::string fields;      // parameters that choose family and fields
  std::string test;        // key of the test
  std::string attributes;  // its other settings
  std::string failure;     // the code of the function that fails; empty: it leaves its flag alone
  std::vector<Message> messages;
};

const std::string kX = ListParameter("oneSampleVariables", {"x"}) + Family("OneSample");
const std::string kGroups = ListParameter("independentVariables", {"x"}) +
                            ListParameter("groupVariable", {"group"}) + Family("Independent");
const std::string kPair =
    ListParameter("relatedVariables", {"first", "second"}) + Family("Related");
const std::string kMethod = Attribute("isDoProfileLikelihood", "true");

std::string CutAt(const std::string& point) {
  return Attribute("contVarClassFormation", "givenCutPoint") + Attribute("givenCutPoint", point);
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
    const std::string document =
        folder.Write("parameters.xml", "<Parameters>" + row.fields +
                                           Selected(row.test, row.attributes) + "</Parameters>");
    std::vector<std::string> command{"/usr/bin/env", "ASAN_OPTIONS=verify_asan_link_order=0",
                                     "LD_PRELOAD=" NPAR_BUILD_DIR
                                     "/lib/libfailing_distributions.so"};
    if (!row.failure.empty()) command.push_back("NPAR_TEST_FAILURE=" + row.failure);
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
