#include "frame/auto_select.h"

#include <gtest/gtest.h>

#include "support/settings_text.h"
#include "support/variables.h"

namespace {

using Names = std::vector<std::string>;

const QDVarList& Variables() {
  static const QDVarList variables = [] {
    VariableListBuilder made;
    made.Continuous("c1").Continuous("c2").Continuous("c3").Other("other");
    made.Nominal("n1", {"no", "yes"}).Nominal("n2", {"yes", "no"}).Nominal("n3", {"yes"});
    made.Nominal("colours", {"red", "green", "blue"}).Nominal("others", {"no", "maybe"});
    made.Nominal("single", {"a"}).Nominal("empty", {});
    made.Ordinal("o1", {"low", "high"}).Ordinal("o2", {"low", "high"});
    made.NominalNumbers("r1", {0, 1}).NominalNumbers("r2", {1, 0}).NominalNumbers("r3", {1, 2});
    made.NominalNumbers("i1", {0, 1}, false, StorageKind::Integer);
    return made.Build();
  }();
  return variables;
}

/// The entries, one a line, and behind "unused:" the fields that no test is for.
std::string Selected(const char* family, const Names& fields, const std::string& groupField = {}) {
  std::vector<std::unique_ptr<QDSettings>> entries;
  Names unused;
  gAutoSelect.Select(entries, unused, family, Variables(), fields, groupField);
  std::string text;
  for (const auto& entry : entries) text += SettingsText(*entry) + "\n";
  for (const std::string& name : unused) text += "unused:" + name + "\n";
  return text;
}

TEST(AutoSelect, OneSampleTestsFollowEachFieldsLevelAndCategories) {
  EXPECT_EQ(Selected("One_Sample", {"colours", "absent", "n1", "c1", "other", "single", "o1"}),
            "algorithmName=OChiSquare classFormation=getFromData variableName=colours \n"
            "algorithmName=OBinomial classFormation=getFromData variableName=n1 \n"
            "algorithmName=OKolmogorovSmirnovNormal classFormation=getFromData "
            "distributionFunction=normal variableName=c1 \n"
            "algorithmName=OBinomial classFormation=getFromData variableName=o1 \n"
            "unused:absent\nunused:other\nunused:single\n");
}

TEST(AutoSelect, IndependentTestsFollowTheNumberOfGroupsAlone) {
  EXPECT_EQ(Selected("Independent_Samples", {"c1", "n1"}, "n1"),
            "algorithmName=IMannWhitneyU variableName=c1 groupVariableName=n1 \n"
            "algorithmName=IMannWhitneyU variableName=n1 groupVariableName=n1 \n");
  EXPECT_EQ(Selected("Independent_Samples", {"c1"}, "colours"),
            "algorithmName=IKruskalWallis typeOfMultipleComparison=pairWise variableName=c1 "
            "groupVariableName=colours \n");
  for (const char* group : {"single", "empty", "c2", "absent", ""}) {
    EXPECT_EQ(Selected("Independent_Samples", {"c1", "c2"}, group), "unused:c1\nunused:c2\n")
        << group;
  }
}

TEST(AutoSelect, RelatedTestsFollowTheFieldsAsAWhole) {
  const std::string wilcoxon = "algorithmName=RWilcoxonSignedRanks variableName=[c1|c2] \n";
  const std::string friedman =
      "algorithmName=RFriedmansTwoWayByRanks typeOfMultipleComparison=pairWise "
      "variableName=[c1|c2|c3] \n";
  const auto mcNemar = [](const char* fields) {
    return std::string("algorithmName=RMcNemar classFormation=getFromData variableName=") + fields +
           " \n";
  };
  const auto cochran = [](const char* fields) {
    return std::string("algorithmName=RCochransQ classFormation=getFromData ") +
           "typeOfMultipleComparison=pairWise variableName=" + fields + " \n";
  };
  const struct {
    const char* catches;
    Names fields;
    std::string entries;
  } rows[] = {
      {"one continuous field", {"c1"}, ""},
      {"two", {"c1", "absent", "c2"}, wilcoxon},
      {"three", {"c1", "c2", "c3"}, friedman},
      {"kinds mixed: continuous, nominal, ordinal",
       {"o1", "n1", "c1", "o2", "n2", "c2"},
       wilcoxon + mcNemar("[n1|n2]") + mcNemar("[o1|o2]")},
      {"one nominal and one ordinal field are no pair", {"n1", "o1"}, ""},
      {"a later field with fewer categories", {"n1", "n2", "n3"}, cochran("[n1|n2|n3]")},
      {"a later field with more categories", {"n3", "n1"}, ""},
      {"three categories", {"colours", "colours"}, ""},
      {"three values in two fields", {"n1", "others"}, ""},
      {"single categories that differ", {"n3", "single"}, mcNemar("[n3|single]")},
      {"numbers in another order", {"r1", "r2"}, mcNemar("[r1|r2]")},
      {"three numbers in two fields", {"r1", "r3"}, ""},
      {"another storage", {"r1", "i1"}, ""},
      {"a later pair fails", {"n1", "n2", "others"}, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Selected("Related_Samples", row.fields), row.entries) << row.catches;
  }
}

TEST(AutoSelect, AnotherFamilyYieldsNothing) {
  EXPECT_EQ(Selected("one_sample", {"c1", "absent"}), "");
}

}  // namespace
