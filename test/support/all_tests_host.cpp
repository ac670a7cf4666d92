#include "support/all_tests_host.h"

namespace {

std::string List(const std::string& values) {
  std::string text = "<ListValue>";
  std::size_t start = 0;
  while (start < values.size()) {
    const std::size_t end = std::min(values.find(' ', start), values.size());
    text += "<Value value='" + values.substr(start, end - start) + "'/>";
    start = end + 1;
  }
  return text + "</ListValue>";
}

std::string Fields(const std::string& name, const std::string& values) {
  return "<Parameter name='" + name + "'>" + List(values) + "</Parameter>";
}

std::string Attribute(const std::string& name, const std::string& value) {
  return "<Attribute name='" + name + "' value='" + value + "'/>";
}

std::string ListAttribute(const std::string& name, const std::string& values) {
  return "<Attribute name='" + name + "'>" + List(values) + "</Attribute>";
}

std::string Flag(const std::string& name) {
  return "<Parameter name='" + name + "' value='false'/>";
}

std::string Test(const std::string& key, const std::string& more = {}) {
  return "<Parameter name='" + key + "'><StructuredValue>" + Attribute("isSelected", "true") +
         more + "</StructuredValue></Parameter>";
}

std::string OneSample() {
  const std::string yes = Attribute("catVarClassFormation", "givenCategoryList") +
                          ListAttribute("givenCategoryList", "yes");
  return Flag("isAutomaticallyOneSample") +
         Test("OBinomial", Attribute("isDoClopperPearson", "true") +
                               Attribute("isDoJeffreys", "true") +
                               Attribute("isDoProfileLikelihood", "true")) +
         Test("OChiSquare",
              Attribute("classFormation", "givenExpectedValue") +
                  "<Attribute name='custom'><ListValue><StructuredValue>" +
                  Attribute("categoryValue", "yes") + Attribute("expectedValue", "2") +
                  "</StructuredValue><StructuredValue>" + Attribute("categoryValue", "no") +
                  Attribute("expectedValue", "1") + "</StructuredValue></ListValue></Attribute>") +
         Test("ORuns", yes + Attribute("contVarClassFormation", "cutPointMean")) +
         Test("OKolmogorovSmirnovNormal") + Test("OKolmogorovSmirnovUniform") +
         Test("OKolmogorovSmirnovPoisson") + Test("OKolmogorovSmirnovExponential") +
         Test("OWilcoxonSignedRanks");
}

std::string Related() {
  const std::string pairwise = Attribute("typeOfMultipleComparison", "pairWise");
  const std::string stepwise = Attribute("typeOfMultipleComparison", "stepWise");
  return Flag("isAutomaticallyRelated") + Test("RMcNemar") + Test("RMarginalHomogeneity") +
         Test("RSign") + Test("RWilcoxonSignedRanks") + Test("RHodgesLehmannEstimatePairs") +
         Test("RCochransQ", pairwise) + Test("RCochransQ", stepwise) +
         Test("RFriedmansTwoWayByRanks", pairwise) + Test("RFriedmansTwoWayByRanks", stepwise) +
         Test("RKendallsCoefficient", pairwise);
}

std::string Independent() {
  const std::string groups = Attribute("userSpecifyGroupList", "true") +
                             ListAttribute("group1List", "a") + ListAttribute("group2List", "b c");
  std::string text = Flag("isAutomaticallyIndependent");
  for (const char* key : {"IMannWhitneyU", "IMoses", "IKolmogorovSmirnov", "IWaldWolfowitzRuns",
                          "IHodgesLehmannEstimateIndependent"}) {
    text += Test(key, groups);
  }
  for (const char* key : {"IKMedian", "IKruskalWallis", "IJonckheereTerpstra"}) {
    for (const char* procedure : {"pairWise", "stepWise"}) {
      text += Test(key, Attribute("typeOfMultipleComparison", procedure));
    }
  }
  return text;
}

}  // namespace

std::string AllTestsParameters() {
  return "<Parameters><Parameter name='missingTreatment' value='analysis'/>"
         "<Parameter name='sigLevel' value='0.05'/><Parameter name='confidenceLevel' value='95'/>"
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
