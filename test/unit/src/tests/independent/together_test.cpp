#include "support/group_run.h"

// All tests of independent samples in one run, where those of one field share their passes, and
// those of the same groups what they count in them.

namespace {

struct Selected {
  const char* entry;
  const char* field;
  const char* groupField;
  bool fails = false;
};

/// In the order of the settings: the fields take turns, and so do the groups. One test fails after
/// the first pass, one amid it, and one names no field of the run.
const Selected kSelected[] = {
    {"IMoses", "x", "g", true},
    {"IMedian", "x", "g"},
    {"IMannWhitneyU", "y", "g"},
    {"IKruskalWallis", "x", "h"},
    {"IMannWhitneyU", "x", "g"},
    {"OKolmogorovSmirnovPoisson", "x", "g", true},
    {"IMoses", "nobody", "g", true},
    {"IKolmogorovSmirnov", "y", "g"},
    {"IHodgesLehmannEstimateGroups", "x", "g"},
    {"IKolmogorovSmirnov", "x", "g"},
    {"IWaldWolfowitzRuns", "x", "h"},
    {"OKolmogorovSmirnovNormal", "x", "g"},
    {"IJonckheereTerpstra", "x", "h"},
    {"IKruskalWallis", "x", "g"},
};

QDVarList Variables(bool isWeighted) {
  VariableListBuilder builder;
  builder.Continuous("x").Continuous("y").Nominal("g", {"a", "b", "c"});
  builder.Nominal("h", {"a", "b", "c"}).CaseId("id").Continuous("z");
  return (isWeighted ? builder.Weight("n") : builder.Continuous("n")).Build();
}

TestSettings EntryOn(const Selected& test) {
  return Entry("variableName", test.field, "groupVariableName", test.groupField,
               "typeOfMultipleComparison", "pairwise", "userSpecifyGroupList", "true", "group1List",
               Texts{"a"}, "group2List", Texts{"c", "b"}, "userSpecifyNumberOfOutliers", "true",
               "NumberOfOutliers", 1000000);
}

Rows Records() {
  const double missing = QDMV::gMissingValue;
  Rows rows;
  for (int i = 0; i < 700; ++i) {
    const double far = i % 97 == 0 ? 60.0 : 0.0;
    const double x = i % 7 == 3 ? missing : (i * 37) % 23 - 8.0 + far;
    const double y = i % 11 == 5 ? missing : (i * 29) % 31 * 0.5;
    const double g = i % 13 == 4 ? -1.0 : static_cast<double>(i % 3);
    const double h = i % 17 == 6 ? -1.0 : static_cast<double>(i / 2 % 3);
    const double z = i % 5 == 2 ? missing : 1.0;
    rows.push_back({x, y, g, h, static_cast<double>(i), z, 1.0 + i % 4});
  }
  return rows;
}

std::vector<AlgorithmElement> RunSelected(const std::string& missingTreatment,
                                          const std::vector<Selected>& selected,
                                          bool isWeighted = true) {
  TestSettings settings = Entry("missingTreatment", missingTreatment, "caseIDVariableName", "id");
  for (const Selected& test : selected) settings.Put(test.entry, EntryOn(test));
  return AlgorithmElement::AllOf(RunDocument(Variables(isWeighted), Records(), settings));
}

std::vector<AlgorithmElement> RunAll(const std::string& missingTreatment, bool isWeighted = true) {
  return RunSelected(missingTreatment, {std::begin(kSelected), std::end(kSelected)}, isWeighted);
}

TEST(IndependentTogetherTest, TheDocumentGoesByFieldsAndWithinThemBySettings) {
  Texts names;
  for (const AlgorithmElement& element : RunAll("analysis")) {
    names.push_back(element.Name() + " " + element.Text("Condition/%0"));
  }
  EXPECT_THAT(names, testing::ElementsAre(
                         "IMoses 0", "IMedian 0", "IKruskalWallis 0", "IMannWhitneyU 0",
                         "OKolmogorovSmirnov 0", "IHodgesLehmannEstimateGroups 0",
                         "IKolmogorovSmirnov 0", "IWaldWolfowitzRuns 0", "OKolmogorovSmirnov 0",
                         "IJonckheereTerpstra 0", "IKruskalWallis 0", "IMannWhitneyU 1",
                         "IKolmogorovSmirnov 1", "IMoses __MISSING__"));
}

TEST(IndependentTogetherTest, EachTestSaysWhatItSaysAlone) {
  for (const bool isWeighted : {true, false}) {
    for (const char* missingTreatment : {"analysis", "listwise"}) {
      const std::vector<AlgorithmElement> together = RunAll(missingTreatment, isWeighted);
      ASSERT_EQ(together.size(), std::size(kSelected));
      for (const Selected& selected : kSelected) {
        SCOPED_TRACE(std::string(missingTreatment) + " " + selected.entry + " " + selected.field);
        const AlgorithmElement alone =
            RunSelected(missingTreatment, {selected}, isWeighted).front();
        const bool hasResult = alone.Has("StatisticsResult");
        EXPECT_EQ(hasResult, !selected.fails);
        EXPECT_THAT(together,
                    testing::Contains(testing::Property(&AlgorithmElement::Xml, alone.Xml())));
      }
    }
  }
}

}  // namespace
