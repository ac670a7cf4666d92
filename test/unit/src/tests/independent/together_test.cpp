#include "support/group_run.h"

// All tests of independent samples in one run, where those of one field share their passes.

namespace {

struct Selected {
  const char* entry;
  const char* field;
};

/// In the order of the settings: the fields take turns, and one test names no field of the run.
const Selected kSelected[] = {
    {"IMedian", "x"},
    {"IMannWhitneyU", "y"},
    {"IKruskalWallis", "x"},
    {"IMoses", "nobody"},
    {"IKolmogorovSmirnov", "y"},
    {"IHodgesLehmannEstimateGroups", "x"},
    {"IWaldWolfowitzRuns", "x"},
    {"IJonckheereTerpstra", "x"},
};

QDVarList Variables() {
  return VariableListBuilder()
      .Continuous("x")
      .Continuous("y")
      .Nominal("g", {"a", "b", "c"})
      .Weight("n")
      .Continuous("z")
      .Build();
}

TestSettings EntryOn(const char* field) {
  return Entry("variableName", field, "groupVariableName", "g", "typeOfMultipleComparison",
               "pairwise", "userSpecifyGroupList", "true", "group1List", Texts{"a"}, "group2List",
               Texts{"c", "b"});
}

Rows Records() {
  const double missing = QDMV::gMissingValue;
  Rows rows;
  for (int i = 0; i < 40; ++i) {
    const double x = i % 7 == 3 ? missing : (i * 37) % 23 - 8.0;
    const double y = i % 11 == 5 ? missing : (i * 29) % 31 * 0.5;
    const double z = i % 5 == 2 ? missing : 1.0;
    rows.push_back({x, y, static_cast<double>(i % 3), 1.0 + i % 4, z});
  }
  return rows;
}

std::vector<AlgorithmElement> RunSelected(const std::string& missingTreatment,
                                          const std::vector<Selected>& selected) {
  TestSettings settings = Entry("missingTreatment", missingTreatment);
  for (const Selected& test : selected) settings.Put(test.entry, EntryOn(test.field));
  return AlgorithmElement::AllOf(RunDocument(Variables(), Records(), settings));
}

std::vector<AlgorithmElement> RunAll(const std::string& missingTreatment) {
  return RunSelected(missingTreatment, {std::begin(kSelected), std::end(kSelected)});
}

TEST(IndependentTogetherTest, TheDocumentGoesByFieldsAndWithinThemBySettings) {
  Texts names;
  for (const AlgorithmElement& element : RunAll("analysis")) {
    names.push_back(element.Name() + " " + element.Text("Condition/%0"));
  }
  EXPECT_THAT(
      names, testing::ElementsAre("IMedian 0", "IKruskalWallis 0", "IHodgesLehmannEstimateGroups 0",
                                  "IWaldWolfowitzRuns 0", "IJonckheereTerpstra 0",
                                  "IMannWhitneyU 1", "IKolmogorovSmirnov 1", "IMoses __MISSING__"));
}

TEST(IndependentTogetherTest, EachTestSaysWhatItSaysAlone) {
  for (const char* missingTreatment : {"analysis", "listwise"}) {
    const std::vector<AlgorithmElement> together = RunAll(missingTreatment);
    ASSERT_EQ(together.size(), std::size(kSelected));
    for (const Selected& selected : kSelected) {
      SCOPED_TRACE(std::string(missingTreatment) + " " + selected.entry);
      const AlgorithmElement alone = RunSelected(missingTreatment, {selected}).front();
      EXPECT_EQ(alone.Has("StatisticsResult"), std::string(selected.field) != "nobody");
      EXPECT_THAT(together,
                  testing::Contains(testing::Property(&AlgorithmElement::Xml, alone.Xml())));
    }
  }
}

TEST(IndependentTogetherTest, ListwiseLeavesOutWhatIsMissingAnywhere) {
  double complete = 0.0;
  double withX = 0.0;
  for (const std::vector<double>& row : Records()) {
    const bool hasX = row[0] != QDMV::gMissingValue;
    const bool hasRest = row[1] != QDMV::gMissingValue && row[4] != QDMV::gMissingValue;
    if (hasX) withX += row[3];
    if (hasX && hasRest) complete += row[3];
  }
  ASSERT_LT(complete, withX);
  EXPECT_EQ(RunAll("analysis").front().Number("TotalN"), withX);
  EXPECT_EQ(RunAll("listwise").front().Number("TotalN"), complete);
}

}  // namespace
