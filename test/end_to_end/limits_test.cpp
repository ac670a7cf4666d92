#include <gmock/gmock.h>
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <string>

#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/parameters_text.h"
#include "support/schema.h"

// Data and documents at the edge of what there is: each gets a valid document or a clean refusal.
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::size_t Occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

/// A run that must give a valid document; its text.
std::string ValidResult(RecordingHost& host) {
  LoadedComponent component(host);
  EXPECT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
  EXPECT_EQ(component.End(), HB_OK);
  const std::string result = host.Published();
  EXPECT_TRUE(IsValid(result, "statxml-7.0.xsd"));
  return result;
}

/// Categories "c0", "c1", ...
std::string CategoricalField(const std::string& name, int categories) {
  std::string text = "<Field name='" + name + "' measure='nominal' storage='string'>";
  for (int i = 0; i < categories; ++i) text += "<Value value='c" + std::to_string(i) + "'/>";
  return text + "</Field>";
}

const std::string kPairwise = Attribute("typeOfMultipleComparison", "pairWise");

/// Every test on one odd kind of data: `edit` sees each record of the usual ones.
TEST(Limits, OddDataGetAValidDocumentOfEveryTest) {
  struct Case {
    const char* data;
    std::function<void(std::vector<double>&, std::size_t)> edit;
  };
  constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
  constexpr double kLargest = std::numeric_limits<double>::max();
  const Case kCases[] = {
      {"one record",
       [](auto& row, std::size_t i) {
         if (i > 0) row[8] = 0.0;
       }},
      {"all equal", [](auto& row, std::size_t) { row[0] = row[1] = row[2] = 7.0; }},
      {"all zero", [](auto& row, std::size_t) { row[0] = row[1] = row[2] = 0.0; }},
      {"all missing",
       [](auto& row, std::size_t) {
         for (int i = 0; i < 3; ++i) row[i] = HB_MISSING_VALUE;
         for (int i = 3; i < 8; ++i) row[i] = -1.0;
       }},
      {"one infinity", [](auto& row, std::size_t i) { row[0] = i == 3 ? kInfinity : row[0]; }},
      {"both infinities",
       [](auto& row, std::size_t i) { row[0] = row[1] = i % 2 ? kInfinity : -kInfinity; }},
      {"one not-a-number", [](auto& row, std::size_t i) { row[0] = i == 3 ? kNaN : row[0]; }},
      {"nothing but not-a-number", [](auto& row, std::size_t) { row[0] = row[1] = row[2] = kNaN; }},
      {"denormals",
       [=](auto& row, std::size_t i) {
         for (int k = 0; k < 3; ++k) row[k] = kDenormal * static_cast<double>((i + k) % 5);
       }},
      {"the largest numbers",
       [=](auto& row, std::size_t i) {
         for (int k = 0; k < 3; ++k) row[k] = (i + k) % 3 ? kLargest : 1 - kLargest / 2;
       }},
      {"weights of 0", [](auto& row, std::size_t) { row[8] = 0.0; }},
      {"negative weights", [](auto& row, std::size_t i) { row[8] = i % 2 ? -3.0 : 2.0; }},
      {"a negative sum of weights", [](auto& row, std::size_t i) { row[8] = i % 3 ? -3.0 : 2.0; }},
      {"missing weights",
       [](auto& row, std::size_t i) { row[8] = i % 2 ? HB_MISSING_VALUE : 2.0; }},
      {"an infinite weight below", [](auto& row, std::size_t i) { row[8] = i ? 2.0 : -kInfinity; }},
      {"fractions of weights", [](auto& row, std::size_t) { row[8] = 0.75; }},
      {"one category",
       [](auto& row, std::size_t) { row[3] = row[4] = row[5] = row[6] = row[7] = 0.0; }},
      {"codes that are none",
       [](auto& row, std::size_t i) {
         for (int k = 3; k < 8; ++k) row[k] = i % 5 == 1 ? 1e300 : i % 5 == 2 ? 99.0 : row[k];
       }},
      {"codes that are no numbers",
       [](auto& row, std::size_t i) {
         for (int k = 3; k < 8; ++k) row[k] = i % 4 == 1 ? kNaN : i % 4 == 2 ? 0.5 : row[k];
       }},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.data);
    AllTestsHost host;
    for (std::size_t i = 0; i < host.records.size(); ++i) row.edit(host.records[i], i);
    EXPECT_GT(Occurrences(ValidResult(host), "<Algorithm "), 30u);
  }
}

TEST(Limits, WeightsBelowZeroAreNoWeightAtAll) {
  const auto testsOf = [](double weight) {
    AllTestsHost host;
    for (std::vector<double>& record : host.records) record[8] = weight;
    std::string tests;
    std::istringstream lines(ValidResult(host));
    for (std::string line; std::getline(lines, line) && line.find("<FieldInfos") == line.npos;) {
      // But for cut points and test values, and modelID.
      const bool isParameter = line.find("name=\"%") != line.npos || line.find("ID=") != line.npos;
      if (!isParameter) tests += line + '\n';
    }
    return tests.substr(tests.find("<NonParametricTests"));
  };
  const std::string none = testsOf(0.0);
  for (const double weight : {-1.0, -7.5, HB_MISSING_VALUE, -kInfinity}) {
    EXPECT_TRUE(testsOf(weight) == none) << weight;
  }
}

TEST(Limits, WeightsAboveTheLimitAndNotANumberAreRefused) {
  for (const double weight : {2147483648.0, kInfinity, kNaN}) {
    AllTestsHost host;
    host.records[3][8] = weight;
    LoadedComponent component(host);
    EXPECT_EQ(component.ConfigureAndRun(), NPAR_FAILED);
    EXPECT_EQ(component.err, 220026) << weight;
  }
}

TEST(Limits, SumsOfWeightsPass31Bits) {
  AllTestsHost host;
  for (std::vector<double>& record : host.records) record[8] = 2147483647.0;
  const std::string total = std::to_string(host.records.size() * 2147483647);
  EXPECT_THAT(ValidResult(host), testing::HasSubstr("name=\"TotalN\" value=\"" + total + "\""));
}

TEST(Limits, TwoThousandFields) {
  RecordingHost host;
  std::vector<std::string> names;
  for (int i = 0; i < 2000; ++i) {
    names.push_back("f" + std::to_string(i));
    host.fields += "<Field name='" + names.back() + "' measure='continuous'/>";
  }
  for (int i = 0; i < 10; ++i) {
    host.records.emplace_back(2000);
    for (int k = 0; k < 2000; ++k) host.records.back()[static_cast<std::size_t>(k)] = i * k % 13;
  }
  host.parameters = "<Parameters>" + ListParameter("oneSampleVariables", names) +
                    ListParameter("relatedVariables", names) + Family("OneSample", true) +
                    Family("Related") + Selected("RFriedmansTwoWayByRanks") + "</Parameters>";
  EXPECT_EQ(Occurrences(ValidResult(host), "<Algorithm "), 2001u);
}

TEST(Limits, HundredThousandCategories) {
  RecordingHost host;
  host.fields = CategoricalField("g", 100000) + "<Field name='x' measure='continuous'/>";
  for (int i = 0; i < 1000; ++i) host.records.push_back({i * 99.0, i * 7 % 50 * 1.0});
  host.parameters = "<Parameters>" + ListParameter("oneSampleVariables", {"g"}) +
                    ListParameter("independentVariables", {"x"}) +
                    ListParameter("groupVariable", {"g"}) + Family("OneSample", true) +
                    Family("Independent") + Selected("IKruskalWallis") + Selected("IKMedian") +
                    Selected("IJonckheereTerpstra") + "</Parameters>";
  EXPECT_EQ(Occurrences(ValidResult(host), "<Algorithm "), 4u);
}

/// Pairs of the categories of a field g, asked of each test that compares groups.
struct PairsHost : RecordingHost {
  explicit PairsHost(int categories) {
    fields = CategoricalField("g", categories) + "<Field name='x' measure='continuous'/>";
    parameters = "<Parameters>" + ListParameter("independentVariables", {"x"}) +
                 ListParameter("groupVariable", {"g"}) + Family("Independent") +
                 Selected("IKruskalWallis", kPairwise) + Selected("IKMedian", kPairwise) +
                 Selected("IJonckheereTerpstra", kPairwise) + "</Parameters>";
  }
};

/// A table of all pairs of ten thousand categories would have 50 million rows.
void ExpectNoTableOfAllPairs(RecordingHost& host, std::size_t refusals) {
  const auto start = std::chrono::steady_clock::now();
  const std::string result = ValidResult(host);
  const auto end = std::chrono::steady_clock::now();
  EXPECT_EQ(Occurrences(result, "<Algorithm "), 3u);
  EXPECT_EQ(Occurrences(result, "name=\"StatisticsResult\""), 3u) << "the overall tests stand";
  EXPECT_EQ(Occurrences(result, "name=\"code\" value=\"220027\""), refusals);
  EXPECT_LT(std::chrono::duration_cast<std::chrono::seconds>(end - start).count(), 20);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  EXPECT_LT(usage.ru_maxrss, 2 << 20) << "kilobytes";
}

TEST(Limits, PairsOfTenThousandCategoriesOfWhichFewHaveData) {
  PairsHost host(10000);
  for (int i = 0; i < 500; ++i) {
    const int group = i % 5;
    host.records.push_back({group * 2000.0, group * 10.0 + i % 7});
  }
  ExpectNoTableOfAllPairs(host, 0);
}

TEST(Limits, PairsOfTenThousandGroupsWithDataAreRefused) {
  PairsHost host(10000);
  for (int i = 0; i < 20000; ++i) host.records.push_back({i / 2 * 1.0, i * 1.0});
  ExpectNoTableOfAllPairs(host, 3);
}

TEST(Limits, FieldNamesMayHoldAnything) {
  const std::string kNames[] = {
      std::string(10000, 'n'),  // written into attributes as they are in XML
      "quotes &quot; and &apos;",
      "semicolons ; and , commas",
      "angles &lt;b&gt; &amp;amp;",
      "\xc3\xa4\xe2\x82\xac\xf0\x9f\x93\x8a \xd7\xa9\xd7\x9c",
      "%0 %s {}",
      "]]&gt;",
      " ",
  };
  for (const std::string& name : kNames) {
    SCOPED_TRACE(name.substr(0, 40));
    RecordingHost host;
    host.fields = "<Field name='" + name + "' label='" + name + "' measure='continuous'/>";
    for (int i = 0; i < 20; ++i) host.records.push_back({i * i * 0.5});
    host.parameters = "<Parameters>" + ListParameter("oneSampleVariables", {name}) +
                      Family("OneSample", true) + "</Parameters>";
    EXPECT_EQ(Occurrences(ValidResult(host), "<Algorithm "), 1u);
  }
}

/// A document that is refused in the configuration, as parameters and as data model.
void ExpectRefused(const std::string& document) {
  for (const bool isModel : {false, true}) {
    AllTestsHost host;
    (isModel ? host.modelText : host.parameters) = document;
    LoadedComponent component(host);
    EXPECT_EQ(component.Configure(), NPAR_NOT_CONFIGURED);
    EXPECT_EQ(component.err, isModel ? 240013 : 240011) << component.Messages().substr(0, 500);
    EXPECT_EQ(component.Begin(), NPAR_NOT_CONFIGURED);
  }
}

std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(Limits, XmlNestedTenThousandDeepIsRefused) {
  constexpr int kDepth = 10000;
  ExpectRefused(Repeated("<a>", kDepth) + Repeated("</a>", kDepth));
  const std::string open = "<Attribute name='a'><StructuredValue>";
  const std::string close = "</StructuredValue></Attribute>";
  ExpectRefused("<Parameters><Parameter name='a'><StructuredValue>" + Repeated(open, kDepth) +
                Repeated(close, kDepth) + "</StructuredValue></Parameter></Parameters>");
}

TEST(Limits, BillionLaughsAreRefused) {
  std::string document = "<!DOCTYPE Parameters [<!ENTITY l0 'ha'>";
  for (int i = 1; i < 10; ++i) {
    document += "<!ENTITY l" + std::to_string(i) + " '" +
                Repeated("&l" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  document += "]>";
  ExpectRefused(document + "<Parameters><Parameter name='a' value='&l9;'/></Parameters>");
}

}  // namespace
