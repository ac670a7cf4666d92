#include "bench/cases.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr BenchCase kCases[] = {
    {"mann-whitney", 1, 2, "IMannWhitneyU"},
    {"mann-whitney-20", 20, 2, "IMannWhitneyU"},
    {"ks-two-sample", 1, 2, "IKolmogorovSmirnov"},
    {"wald-wolfowitz", 1, 2, "IWaldWolfowitzRuns"},
    {"moses", 1, 2, "IMoses"},
    {"hodges-lehmann-groups", 1, 2, "IHodgesLehmannEstimateIndependent"},
    {"median", 1, 8, "IKMedian"},
    {"kruskal-wallis", 1, 8, "IKruskalWallis"},
    {"jonckheere-terpstra", 1, 8, "IJonckheereTerpstra"},
    {"wilcoxon-pairs", 2, 0, "RWilcoxonSignedRanks"},
    {"sign", 2, 0, "RSign"},
    {"hodges-lehmann-pairs", 2, 0, "RHodgesLehmannEstimatePairs"},
    {"friedman", 5, 0, "RFriedmansTwoWayByRanks"},
    {"wilcoxon", 1, 0, "OWilcoxonSignedRanks"},
    {"ks-normal", 1, 0, "OKolmogorovSmirnovNormal"},
    {"runs", 1, 0, "ORuns"},
    {"five-tests", 1, 2,
     "OKolmogorovSmirnovNormal IMannWhitneyU IKolmogorovSmirnov IKruskalWallis IKMedian"},
};

struct Family {
  char prefix;  // of its test keys
  const char* fields;
  const char* flag;
};
constexpr Family kFamilies[] = {
    {'O', "oneSampleVariables", "isAutomaticallyOneSample"},
    {'R', "relatedVariables", "isAutomaticallyRelated"},
    {'I', "independentVariables", "isAutomaticallyIndependent"},
};

/// Every option that some test needs; the others pass over it.
constexpr std::string_view kChoice =
    R"(<StructuredValue><Attribute name="isSelected" value="true"/>)"
    R"(<Attribute name="isUseSample" value="true"/>)"
    R"(<Attribute name="typeOfMultipleComparison" value="none"/>)"
    R"(<Attribute name="contVarClassFormation" value="cutPointMedian"/>)"
    R"(<Attribute name="userSpecifyTestValue" value="true"/>)"
    R"(<Attribute name="testValue" value="0.25"/></StructuredValue>)";

void WriteFamily(std::ostream& text, const Family& family, const BenchCase& benchCase) {
  std::ostringstream chosen;
  std::istringstream tests{std::string(benchCase.tests)};
  for (std::string key; tests >> key;) {
    if (key.front() != family.prefix) continue;
    chosen << "<Parameter name=\"" << key << "\">" << kChoice << "</Parameter>";
  }
  if (chosen.str().empty()) return;
  text << "<Parameter name=\"" << family.fields << "\"><ListValue>";
  for (std::size_t i = 0; i < benchCase.fields; ++i) text << "<Value value=\"x" << i << "\"/>";
  text << "</ListValue></Parameter><Parameter name=\"" << family.flag << "\" value=\"false\"/>"
       << chosen.str();
}

}  // namespace

std::span<const BenchCase> BenchCases() { return kCases; }

const BenchCase* FindCase(std::string_view name) {
  const auto* found = std::find_if(std::begin(kCases), std::end(kCases),
                                   [name](const BenchCase& row) { return row.name == name; });
  return found == std::end(kCases) ? nullptr : found;
}

std::string ParametersOf(const BenchCase& benchCase, bool isExtended) {
  std::ostringstream text;
  text << "<Parameters><Parameter name=\"missingTreatment\" value=\"analysis\"/>"
       << "<Parameter name=\"sigLevel\" value=\"0.05\"/>"
       << "<Parameter name=\"confidenceLevel\" value=\"95\"/>";
  if (isExtended) text << "<Parameter name=\"extendedFigures\" value=\"true\"/>";
  if (benchCase.groups > 0)
    text << "<Parameter name=\"groupVariable\"><ListValue><Value value=\"group\"/></ListValue>"
            "</Parameter>";
  for (const Family& family : kFamilies) WriteFamily(text, family, benchCase);
  text << "</Parameters>";
  return text.str();
}
