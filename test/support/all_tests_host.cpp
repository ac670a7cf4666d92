#include "support/all_tests_host.h"

#include <iterator>
#include <sstream>

#include "support/parameters_text.h"

namespace {

/// Words divided by blanks.
std::vector<std::string> Words(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

std::string Fields(const std::string& name, const std::string& values) {
  return ListParameter(name, Words(values));
}

std::string OneSample() {
  const std::string yes = Attribute("catVarClassFormation", "givenCategoryList") +
                          ListAttribute("givenCategoryList", Words("yes"));
  return Family("OneSample") +
         Selected("OBinomial", Attribute("isDoClopperPearson", "true") +
                                   Attribute("isDoJeffreys", "true") +
                                   Attribute("isDoProfileLikelihood", "true")) +
         Selected("OChiSquare",
                  Attribute("classFormation", "givenExpectedValue") +
                      "<Attribute name='custom'><ListValue><StructuredValue>" +
                      Attribute("categoryValue", "yes") + Attribute("expectedValue", "2") +
                      "</StructuredValue><StructuredValue>" + Attribute("categoryValue", "no") +
                      Attribute("expectedValue", "1") +
                      "</StructuredValue></ListValue></Attribute>") +
         Selected("ORuns", yes + Attribute("contVarClassFormation", "cutPointMean")) +
         Selected("OKolmogorovSmirnovNormal") + Selected("OKolmogorovSmirnovUniform") +
         Selected("OKolmogorovSmirnovPoisson") + Selected("OKolmogorovSmirnovExponential") +
         Selected("OWilcoxonSignedRanks");
}

std::string Related() {
  const std::string pairwise = Attribute("typeOfMultipleComparison", "pairWise");
  const std::string stepwise = Attribute("typeOfMultipleComparison", "stepWise");
  return Family("Related") + Selected("RMcNemar") + Selected("RMarginalHomogeneity") +
         Selected("RSign") + Selected("RWilcoxonSignedRanks") +
         Selected("RHodgesLehmannEstimatePairs") + Selected("RCochransQ", pairwise) +
         Selected("RCochransQ", stepwise) + Selected("RFriedmansTwoWayByRanks", pairwise) +
         Selected("RFriedmansTwoWayByRanks", stepwise) + Selected("RKendallsCoefficient", pairwise);
}

std::string Independent() {
  const std::string groups = Attribute("userSpecifyGroupList", "true") +
                             ListAttribute("group1List", Words("a")) +
                             ListAttribute("group2List", Words("b c"));
  std::string text = Family("Independent");
  for (const char* key : {"IMannWhitneyU", "IMoses", "IKolmogorovSmirnov", "IWaldWolfowitzRuns",
                          "IHodgesLehmannEstimateIndependent"}) {
    text += Selected(key, groups);
  }
  for (const char* key : {"IKMedian", "IKruskalWallis", "IJonckheereTerpstra"}) {
    for (const char* procedure : {"pairWise", "stepWise"}) {
      text += Selected(key, Attribute("typeOfMultipleComparison", procedure));
    }
  }
  return text;
}

}  // namespace

std::string AllTestsParameters() {
  return "<Parameters><Parameter name='missingTreatment' value='analysis'/>"
         "<Parameter name='sigLevel' value='0.05'/><Parameter name='confidenceLevel' value='95'/>"
         "<Parameter name='extendedFigures' value='true'/>"
         "<Parameter name='caseIDField' value='id'/>" +
         Fields("oneSampleVariables", "p h x count") + Fields("relatedVariables", "x y p q o1 o2") +
         Fields("independentVariables", "x") + Fields("groupVariable", "h") + OneSample() +
         Related() + Independent() + "</Parameters>";
}

std::string AllTestsFields() {
  const auto categorical = [](const char* name, const char* measure,
                              std::initializer_list<const char*> values) {
    std::string text = std::string("<Field name='") + name + "' measure='" + measure + "'";
    text += measure == std::string("ordinal") ? " storage='real'>" : " storage='string'>";
    for (const char* value : values) text += std::string("<Value value='") + value + "'/>";
    return text + "</Field>";
  };
  return "<Field name='x' measure='continuous'/><Field name='y' measure='continuous'/>"
         "<Field name='count' measure='continuous'/>" +
         categorical("p", "nominal", {"yes", "no"}) + categorical("q", "nominal", {"yes", "no"}) +
         categorical("o1", "ordinal", {"1", "2", "4"}) +
         categorical("o2", "ordinal", {"1", "2", "4"}) +
         categorical("h", "nominal", {"a", "b", "c"}) +
         "<Field name='w' measure='continuous' role='frequencyWeight'/>"
         "<Field name='id' measure='continuous' role='caseId'/>";
}

AllTestsHost::AllTestsHost(std::size_t recordCount) {
  parameters = AllTestsParameters();
  fields = AllTestsFields();
  for (std::size_t i = 0; i < recordCount; ++i) {
    const auto cycle = [i](std::size_t step, std::size_t length) {
      return static_cast<double>(i * step % length);
    };
    // The groups differ by 12, so that the comparisons behind a significant test run as well.
    const double x = cycle(17, 23) * 0.5 + 12.0 * cycle(1, 3) + (i % 20 == 19 ? 100.0 : 0.0);
    records.push_back({x, i % 13 == 12 ? HB_MISSING_VALUE : x + 4.0 - cycle(7, 11), cycle(3, 5),
                       i % 4 == 3 ? 1.0 : 0.0, i % 10 == 9 ? -1.0 : cycle(1, 2), cycle(2, 3),
                       i % 3 == 0 ? 0.0 : 2.0, cycle(1, 3), 1.0 + cycle(1, 2),
                       static_cast<double>(1000 + i)});
  }
}
