#include "frame/settings_translator.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "support/settings_text.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

using Names = std::vector<std::string>;

/// A selected test; "a|b" makes a list, any other value a scalar.
TestSettings Chosen(std::initializer_list<std::pair<const char*, std::string>> keys = {},
                    const char* isSelected = "true") {
  TestSettings test = Entry("isSelected", isSelected);
  for (const auto& [key, value] : keys) {
    if (const std::size_t bar = value.find('|'); bar != std::string::npos) {
      test.Put(key, Names{value.substr(0, bar), value.substr(bar + 1)});
    } else {
      test.Put(key, value);
    }
  }
  return test;
}

const QDVarList& Variables() {
  static const QDVarList variables = [] {
    VariableListBuilder made;
    made.Continuous("c1").Continuous("c2").Continuous("c3").Other("other");
    made.Nominal("n1", {"no", "yes"}).Nominal("n2", {"no", "yes"}).Nominal("n3", {"a", "b", "c"});
    made.Ordinal("o1", {"low", "high"}).Ordinal("o2", {"low", "high"}).Continuous("");
    return made.Build();
  }();
  return variables;
}

/// The flat settings one a line, entries without their name and their running number, then "code:
/// parameter / parameter" for each warning, then the status where it is not 0.
std::string Translated(const TestSettings& host) {
  QDSettings target;
  NPARSettingsTranslator translator(host, Variables(), target);
  const QDStatus status = translator.Run();
  std::string text;
  int testIndex = 0;
  for (std::size_t i = 0; i < target.Size(); ++i) {
    QDSettings setting;
    setting.AddNewSetting(*target.GetSettingAt(i));
    std::string line = SettingsText(setting);
    const std::string numbered = "AlgorithmName=" + target.GetSettingAt(i)->GetName() +
                                 " testIndex=" + std::to_string(testIndex) + " ";
    if (const std::size_t at = line.find(numbered); at != std::string::npos) {
      line.erase(at, numbered.size());
      ++testIndex;
    }
    text += line + "\n";
  }
  for (std::size_t i = 0; i < translator.GetWarningCodes().size(); ++i) {
    const QDStatus warning = translator.GetWarningCodes()[i];
    EXPECT_TRUE(warning.IsWarning());
    std::string parameters;
    for (const std::string& parameter : translator.GetWarningParameters()[i]) {
      parameters += (parameters.empty() ? "" : " / ") + parameter;
    }
    text += std::to_string(warning.GetErrorCode()) + ": " + parameters + "\n";
  }
  EXPECT_EQ(translator.GetWarningCodes().size(), translator.GetWarningParameters().size());
  if (!status.IsOK()) text += "status " + std::to_string(status.GetErrorCode()) + "\n";
  return text;
}

struct Row {
  const char* catches;
  TestSettings host;
  const char* expected;
};

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(Translated(row.host), row.expected) << row.catches;
}

TestSettings OneSample(const Names& fields, const char* automatic = "false") {
  return Entry("oneSampleVariables", fields).Put("isAutomaticallyOneSample", automatic);
}
TestSettings Related(const Names& fields, const char* automatic = "false") {
  return Entry("relatedVariables", fields).Put("isAutomaticallyRelated", automatic);
}
TestSettings Independent(const Names& fields, const char* automatic = "false",
                         const char* group = "n1") {
  return Entry("independentVariables", fields)
      .Put("groupVariable", Names{group})
      .Put("isAutomaticallyIndependent", automatic);
}

TEST(SettingsTranslator, RunKeysAreCopiedWhereTheyCanBeRead) {
  Check({
      {"the percentage becomes a fraction; the case identifier gets its other name",
       Entry("confidenceLevel", "95")
           .Put("missingTreatment", "listwise")
           .Put("sigLevel", "0.01")
           .Put("caseIDField", "c1"),
       "confidenceLevel=0.95 \nmissingTreatment=listwise \nsigLevel=0.01 \n"
       "caseIDVariableName=c1 \nstatus 220001\n"},
      {"texts that are no numbers", Entry("confidenceLevel", "high").Put("sigLevel", "5%"),
       "status 220001\n"},
      {"a flag that is set", Entry("extendedFigures", "true"),
       "extendedFigures=1 \nstatus 220001\n"},
      {"a flag that is not", Entry("extendedFigures", "false"), "status 220001\n"},
      {"any other text", Entry("extendedFigures", "TRUE"), "status 220001\n"},
  });
}

TEST(SettingsTranslator, OneSampleTestsMakeAnEntryForEachFieldOfAFittingKind) {
  Check({
      {"categorical fields first; each kind with its own keys; intervals behind their test",
       OneSample({"c1", "o1", "absent"})
           .Put("OBinomial", Chosen({{"testProbability", "0.4"},
                                     {"catVarClassFormation", "givenCategoryList"},
                                     {"givenCategoryList", "low|none"},
                                     {"contVarClassFormation", "givenCutPoint"},
                                     {"givenCutPoint", "3"},
                                     {"isDoClopperPearson", "false"},
                                     {"isDoJeffreys", "true"},
                                     {"unknown", "x"}})),
       "OBinomial={variableName=o1 testProbability=0.4 catVarClassFormation=givenCategoryList "
       "givenCategoryList=[low|none] } \n"
       "OEstimateConfidenceInterval={variableName=o1 isDoClopperPearson=false isDoJeffreys=true "
       "catVarClassFormation=givenCategoryList givenCategoryList=[low|none] } \n"
       "OBinomial={variableName=c1 testProbability=0.4 contVarClassFormation=givenCutPoint "
       "givenCutPoint=3 } \n"
       "OEstimateConfidenceInterval={variableName=c1 isDoClopperPearson=false isDoJeffreys=true "
       "contVarClassFormation=givenCutPoint givenCutPoint=3 } \n"},
      {"no interval is asked for; a cut point that is no number stays out",
       OneSample({"c1"}).Put("OBinomial",
                             Chosen({{"isDoJeffreys", "false"}, {"givenCutPoint", "x"}})),
       "OBinomial={variableName=c1 } \n"},
      {"a test that is not selected, one that does not say so, a key of another family, and what "
       "stands behind it",
       OneSample({"c1"})
           .Put("OBinomial", Chosen({}, "false"))
           .Put("OChiSquare", "true")
           .Put("ORuns",
                Chosen({{"contVarClassFormation", "cutPointValue"}, {"cutPointValue", "2"}}))
           .Put("RSign", Chosen())
           .Put("OWilcoxonSignedRanks", Chosen()),
       "ORuns={variableName=c1 contVarClassFormation=cutPointValue cutPointValue=2 } \n"},
      {"runs of a categorical field read no cut point",
       OneSample({"n1"}).Put("ORuns", Chosen({{"catVarClassFormation", "getFromData"},
                                              {"contVarClassFormation", "cutPointMean"}})),
       "ORuns={variableName=n1 catVarClassFormation=getFromData } \n"},
      {"expected values go along only where they are asked for",
       OneSample({"n1"})
           .Put("OChiSquare", Chosen({{"classFormation", "getFromData"}, {"custom", "a|b"}}))
           .Put("OChiSquare", Chosen({{"classFormation", "custom"}, {"custom", "a|b"}}))
           .Put("OChiSquare",
                Chosen({{"classFormation", "givenExpectedValue"}, {"custom", "a|b"}})),
       "OChiSquare={variableName=n1 classFormation=getFromData } \n"
       "OChiSquare={variableName=n1 classFormation=custom custom=[a|b] } \n"
       "OChiSquare={variableName=n1 classFormation=givenExpectedValue custom=[a|b] } \n"},
  });
}

TEST(SettingsTranslator, OneSampleTestsWarnOfFieldsThatTheyLeaveAside) {
  Check({
      {"every selected test without a field is named, also two of one name",
       OneSample({"other", "absent"})
           .Put("OBinomial", Chosen())
           .Put("OChiSquare", Chosen())
           .Put("ORuns", Chosen())
           .Put("OKolmogorovSmirnovNormal", Chosen())
           .Put("OKolmogorovSmirnovPoisson", Chosen())
           .Put("OWilcoxonSignedRanks", Chosen()),
       "220022: Binomial ,ChiSquare ,Runs ,KolmogorovSmirnov ,KolmogorovSmirnov "
       ",WilcoxonSignedRanks\nstatus 220001\n"},
      {"order of the three warnings, and both lists of the last",
       OneSample({"c1", "n1", "n2", "c2"})
           .Put("OWilcoxonSignedRanks", Chosen())
           .Put("OKolmogorovSmirnovNormal", Chosen({}, "false"))
           .Put("OChiSquare", Chosen()),
       "OWilcoxonSignedRanks={variableName=c1 } \nOWilcoxonSignedRanks={variableName=c2 } \n"
       "OChiSquare={variableName=n1 } \nOChiSquare={variableName=n2 } \n220021: c1 ,c2\n"
       "220023: n1 ,n2 / WilcoxonSignedRanks\n"},
      {"one name for each selected distribution",
       OneSample({"c1", "n1"})
           .Put("OKolmogorovSmirnovNormal", Chosen())
           .Put("OKolmogorovSmirnovPoisson", Chosen()),
       "OKolmogorovSmirnovNormal={distributionFunction=normal variableName=c1 } \n"
       "OKolmogorovSmirnovPoisson={distributionFunction=poisson variableName=c1 } \n"
       "220023: n1 / KolmogorovSmirnov ,KolmogorovSmirnov\n"},
      {"a first name that is empty", OneSample({"", "c1", "n1"}).Put("OChiSquare", Chosen()),
       "OChiSquare={variableName=n1 } \n220021:  ,c1\n"},
      {"only categorical fields for a continuous test: no 220023",
       OneSample({"n1"}).Put("OWilcoxonSignedRanks", Chosen()),
       "220022: WilcoxonSignedRanks\nstatus 220001\n"},
      {"an empty list of fields says nothing", OneSample({}).Put("OBinomial", Chosen()),
       "status 220001\n"},
  });
}

TEST(SettingsTranslator, RelatedTestsTakeAllFieldsOfAKindTogether) {
  Check({
      {"an entry for each kind, ordinal first",
       Related({"n1", "o1", "n2", "o2"})
           .Put("RMcNemar",
                Chosen({{"classFormation", "givenCategoryList"}, {"categoriesList", "yes|no"}}))
           .Put("RCochransQ", Chosen({{"classFormation", "givenCategoryList"},
                                      {"successCategoryList", "yes|no"},
                                      {"typeOfMultipleComparison", "stepWise"}}))
           .Put("RMarginalHomogeneity", Chosen({{"classFormation", "x"}})),
       "RMcNemar={variableName=[o1|o2] classFormation=givenCategoryList categoriesList=[yes|no] "
       "} \n"
       "RMcNemar={variableName=[n1|n2] classFormation=givenCategoryList categoriesList=[yes|no] "
       "} \n"
       "RCochransQ={variableName=[o1|o2] classFormation=givenCategoryList "
       "successCategoryList=[yes|no] typeOfMultipleComparison=stepWise } \n"
       "RCochransQ={variableName=[n1|n2] classFormation=givenCategoryList "
       "successCategoryList=[yes|no] typeOfMultipleComparison=stepWise } \n"
       "RMarginalHomogeneity={variableName=[o1|o2] } \n"},
      {"three fields: none of the pair tests, all of the others",
       Related({"c1", "c2", "c3"})
           .Put("RSign", Chosen())
           .Put("RWilcoxonSignedRanks", Chosen())
           .Put("RHodgesLehmannEstimatePairs", Chosen())
           .Put("RKendallsCoefficient", Chosen()),
       "RKendallsCoefficient={variableName=[c1|c2|c3] } \n"
       "220017: Sign ,WilcoxonSignedRanks ,HodgesLehmannEstimatePairs\n"},
  });
}

TEST(SettingsTranslator, RelatedTestsWarnOfKindsAndCountsThatDoNotFit) {
  Check({
      {"one field of each kind: order of all warnings",
       Related({"n1", "c1", "o1"})
           .Put("RMcNemar", Chosen())
           .Put("RMarginalHomogeneity", Chosen())
           .Put("RCochransQ", Chosen())
           .Put("RFriedmansTwoWayByRanks", Chosen()),
       "220014: c1\n220015: o1\n220016: n1\n220017: FriedmansTwoWayByRanks\n"
       "220018: McNemar ,MarginalHomogeneity ,CochransQ\n220019: McNemar ,CochransQ\n"
       "status 220001\n"},
      {"tests without any field of theirs",
       Related({"n1", "n2", "n3"})
           .Put("RMarginalHomogeneity", Chosen())
           .Put("RSign", Chosen())
           .Put("RCochransQ", Chosen()),
       "RCochransQ={variableName=[n1|n2|n3] } \n220020: MarginalHomogeneity ,Sign\n"},
      {"fields that no selected test takes",
       Related({"c1", "c2", "o1", "o2"}).Put("RSign", Chosen()),
       "RSign={variableName=[c1|c2] } \n220015: o1 ,o2\n"},
  });
}

TEST(SettingsTranslator, IndependentTestsMakeAnEntryForEachContinuousField) {
  Check({
      {"keys of each test, lists among them; entry names that differ from the host's keys",
       Independent({"c1"})
           .Put("IHodgesLehmannEstimateIndependent", Chosen())
           .Put("IKMedian", Chosen({{"userSpecifyMedian", "true"}, {"median", "4"}}))
           .Put("IMannWhitneyU", Chosen({{"group1List", "a|b"}, {"orderOfHypotheses", "x"}})),
       "IHodgesLehmannEstimateGroups={variableName=c1 groupVariableName=n1 } \n"
       "IMedian={variableName=c1 groupVariableName=n1 userSpecifyMedian=true median=4 } \n"
       "IMannWhitneyU={variableName=c1 groupVariableName=n1 group1List=[a|b] } \n"},
      {"fields of the wrong kind make no entry and a warning",
       Independent({"n2", "o1"}).Put("IMannWhitneyU", Chosen()), "220024: n2 ,o1\nstatus 220001\n"},
      {"the parameter for unused continuous fields is the list of the others",
       Independent({"c1", "n2"}).Put("IMannWhitneyU", Chosen({}, "false")),
       "220025: n2\nstatus 220001\n"},
      {"the group field as plain text",
       Entry("independentVariables", Names{"c1"})
           .Put("groupVariable", "n1")
           .Put("isAutomaticallyIndependent", "false")
           .Put("IMannWhitneyU", Chosen()),
       "IMannWhitneyU={variableName=c1 groupVariableName=n1 } \n"},
  });
}

TEST(SettingsTranslator, AutomaticEntriesAreNumberedThroughAllFamilies) {
  TestSettings all = Entry("independentVariables", Names{"c1"})
                         .Put("groupVariable", Names{"n3"})
                         .Put("relatedVariables", Names{"c1", "c2"});
  // The test keys behind a set flag are not looked at; a flag ends the walk over another family's
  // test keys.
  all.Put("oneSampleVariables", Names{"n1", "c1"})
      .Put("isAutomaticallyOneSample", "true")
      .Put("OWilcoxonSignedRanks", Chosen())
      .Put("isAutomaticallyRelated", "false")
      .Put("RSign", Chosen())
      .Put("isAutomaticallyIndependent", "true");
  Check({
      {"numbers go on from family to family; a key keeps its first letter's case", all,
       "OBinomial={algorithmName=OBinomial classFormation=getFromData variableName=n1 "
       "testIndex=0 } \n"
       "OKolmogorovSmirnovNormal={algorithmName=OKolmogorovSmirnovNormal "
       "classFormation=getFromData distributionFunction=normal variableName=c1 testIndex=1 } \n"
       "RSign={AlgorithmName=RSign testIndex=2 variableName=[c1|c2] } \n"
       "IKruskalWallis={algorithmName=IKruskalWallis typeOfMultipleComparison=pairWise "
       "variableName=c1 groupVariableName=n3 testIndex=3 } \n"},
      {"nothing can be chosen: no warning, the code alone", Independent({"c1"}, "true", "c2"),
       "status 220001\n"},
      {"a flag over an empty list", Related({}, "true"), "status 220001\n"},
      {"related fields by kind", Related({"c1", "c2", "n1", "n2"}, "true"),
       "RWilcoxonSignedRanks={algorithmName=RWilcoxonSignedRanks variableName=[c1|c2] "
       "testIndex=0 } \n"
       "RMcNemar={algorithmName=RMcNemar classFormation=getFromData variableName=[n1|n2] "
       "testIndex=1 } \n"},
  });
}

}  // namespace
