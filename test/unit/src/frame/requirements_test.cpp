#include "frame/requirements.h"

#include <gmock/gmock.h>

#include "support/variables.h"

namespace {

using HbHelperV1::XMLDocument;

constexpr char kHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string TextOf(const XMLDocument& document) {
  std::string text;
  document.doc2string(text);
  return text;
}

XMLDocument Execution() {
  XMLDocument document;
  document.addElement(HbHelperV1::XMLElements::Execution);
  return document;
}

QDVarList Variables(bool hasWeight) {
  VariableListBuilder builder;
  builder.Continuous("c").Ordinal("o", {"a"}).NominalNumbers("n", {1}).Other("x").CaseId("id");
  if (hasWeight) builder.Weight("w");
  return builder.Build();
}

/// The names in a list parameter of the missing operation; "absent" where there is no such
/// parameter.
std::vector<std::string> ListOf(const XMLDocument& document, std::string_view parameterName) {
  const auto parameters = document.root().firstChild("Operation").firstChild("Parameters");
  for (auto each = parameters.firstChild(); each; each = each.nextSibling()) {
    if (each.attribute("name") != parameterName) continue;
    std::vector<std::string> names;
    for (auto value = each.firstChild("ListValue").firstChild(); value;
         value = value.nextSibling()) {
      names.emplace_back(value.attribute("value"));
    }
    return names;
  }
  return {"absent"};
}

TEST(Requirements, MissingOperationWithEverythingAskedFor) {
  QDSettings settings;
  settings.AddNewSetting("userMissing", "exclude", "");
  settings.AddNewSetting("missingTreatment", "listwise", "");
  const std::vector<std::string> fields = {"c", "o"};
  const std::string caseId = "id";
  XMLDocument document = Execution();
  AddMissingOperation(document, settings, Variables(true), {fields, caseId});
  EXPECT_EQ(TextOf(document), std::string(kHead) + R"(<Execution>
  <Operation id="1" componentId="Missing" moduleId="MissingModule" inputIds="" dependencyIds="">
    <Parameters>
      <Parameter name="ExcludeUMissField">
        <ListValue>
          <Value value="c" />
          <Value value="o" />
          <Value value="id" />
        </ListValue>
      </Parameter>
      <Parameter name="WeightFeild">
        <StructuredValue>
          <Attribute name="Field_Name" value="w" />
          <Attribute name="FreqWeightAdj" value="Round" />
        </StructuredValue>
      </Parameter>
      <Parameter name="ListwiseDelete">
        <ListValue>
          <Value value="c" />
          <Value value="o" />
          <Value value="w" />
          <Value value="id" />
        </ListValue>
      </Parameter>
    </Parameters>
  </Operation>
</Execution>
)");
}

TEST(Requirements, DeletionAndExclusionFollowTheSettings) {
  using Names = std::vector<std::string>;
  struct Case {
    const char* catches;
    const char* userMissing;
    const char* missingTreatment;
    bool hasWeight;
    const char* caseId;
    Names excluded;
    Names deleted;
  };
  const Case kCases[] = {
      {"nothing to do", "include", "analysis", false, "", {"absent"}, {"absent"}},
      {"keys left out", nullptr, nullptr, false, "", {"absent"}, {"absent"}},
      {"weight alone", "include", "analysis", true, "", {"absent"}, {"w"}},
      {"case identifier alone", "include", "analysis", false, "id", {"absent"}, {"id"}},
      {"both", "exclude", "analysis", true, "id", {"c", "c", "id"}, {"w", "id"}},
      {"listwise alone", "exclude", "listwise", false, "", {"c", "c"}, {"c", "c"}},
      {"another word is no listwise", "Exclude", "Listwise", false, "", {"absent"}, {"absent"}},
  };
  const Names fields = {"c", "c"};  // a group that is also a test field stands twice
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.catches);
    QDSettings settings;
    if (row.userMissing != nullptr) settings.AddNewSetting("userMissing", row.userMissing, "");
    if (row.missingTreatment != nullptr) {
      settings.AddNewSetting("missingTreatment", row.missingTreatment, "");
    }
    const std::string caseId = row.caseId;
    XMLDocument document = Execution();
    AddMissingOperation(document, settings, Variables(row.hasWeight), {fields, caseId});
    EXPECT_EQ(ListOf(document, "ExcludeUMissField"), row.excluded);
    EXPECT_EQ(ListOf(document, "ListwiseDelete"), row.deleted);
  }
}

TEST(Requirements, EncodingNamesEachFieldByItsKind) {
  const std::vector<std::string> fields = {"c", "o", "n", "x", "o"};
  const std::string caseId = "id";
  XMLDocument document = Execution();
  ASSERT_TRUE(AddEncodingOperation(document, Variables(true), {fields, caseId}).IsOK());
  std::string encodings;
  const auto list = document.root()
                        .firstChild("Operation")
                        .firstChild("Parameters")
                        .firstChild("Parameter")
                        .firstChild("ListValue");
  for (auto each = list.firstChild("StructuredValue"); each; each = each.nextSibling()) {
    for (auto pair = each.firstChild("Attribute"); pair; pair = pair.nextSibling()) {
      encodings += std::string(pair.attribute("name")) + "=" + std::string(pair.attribute("value"));
      encodings += ' ';
    }
  }
  EXPECT_EQ(encodings,
            "Field_Name=c CatEncode=None Field_Name=o CatEncode=Ordinal "
            "Field_Name=n CatEncode=Nominal Field_Name=x CatEncode=None "
            "Field_Name=o CatEncode=Ordinal Field_Name=w CatEncode=None "
            "Field_Name=id CatEncode=None ");
  const auto operation = document.root().firstChild("Operation");
  EXPECT_EQ(operation.attribute("id"), "2");
  EXPECT_EQ(operation.attribute("componentId"), "Encoding");
  EXPECT_EQ(operation.attribute("moduleId"), "EncodingModule");
  EXPECT_TRUE(operation.hasAttribute("inputIds"));
  EXPECT_TRUE(operation.hasAttribute("dependencyIds"));
}

TEST(Requirements, EncodingOfAFieldThatDoesNotExistIs220011) {
  const std::vector<std::string> fields = {"c", "absent"};
  XMLDocument document = Execution();
  EXPECT_EQ(AddEncodingOperation(document, Variables(false), {fields, {}}), QDStatus(220011));
}

}  // namespace
