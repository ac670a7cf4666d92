#include "frame/auto_select.h"

#include <cstdint>
#include <set>
#include <utility>

#include "frame/field_kinds.h"

namespace {

using Entries = std::vector<std::unique_ptr<QDSettings>>;
using Names = std::vector<std::string>;
using Attributes = std::vector<std::pair<const char*, const char*>>;

constexpr std::pair<const char*, const char*> kClassesFromData{"classFormation", "getFromData"};
constexpr std::pair<const char*, const char*> kPairwise{"typeOfMultipleComparison", "pairWise"};

/// `fields` is one name or a list of names.
template <typename Fields>
QDSettings& AddEntry(Entries& entries, const char* algorithm, const Attributes& attributes,
                     const Fields& fields) {
  auto entry = std::make_unique<QDSettings>();
  entry->AddNewSetting("algorithmName", algorithm, "");
  for (const auto& [name, value] : attributes) entry->AddNewSetting(name, value, "");
  entry->AddNewSetting("variableName", fields, "");
  entries.push_back(std::move(entry));
  return *entries.back();
}

void SelectOneSample(Entries& entries, Names& skippedFields, const QDVarList& variables,
                     const Names& fields) {
  for (const std::string& name : fields) {
    const IQDVariable* const variable = variables.GetVarAt(variables.FindVariable(name));
    const bool isCategorical = variable != nullptr && variable->IsCategorical();
    if (isCategorical && variable->GetCategoryCount() == 2) {
      AddEntry(entries, "OBinomial", {kClassesFromData}, name);
    } else if (isCategorical && variable->GetCategoryCount() > 2) {
      AddEntry(entries, "OChiSquare", {kClassesFromData}, name);
    } else if (variable != nullptr && variable->IsContinuous()) {
      AddEntry(entries, "OKolmogorovSmirnovNormal",
               {kClassesFromData, {"distributionFunction", "normal"}}, name);
    } else {
      skippedFields.push_back(name);
    }
  }
}

// The kind of a test field is not looked at: its test refuses a wrong one, with a message.
void SelectIndependent(Entries& entries, Names& skippedFields, const QDVarList& variables,
                       const Names& fields, const std::string& groupField) {
  const IQDVariable* const group = variables.GetVarAt(variables.FindVariable(groupField));
  const std::int32_t groupCount = group == nullptr ? 0 : group->GetCategoryCount();
  for (const std::string& name : fields) {
    if (groupCount < 2) {
      skippedFields.push_back(name);
      continue;
    }
    QDSettings& entry = groupCount == 2 ? AddEntry(entries, "IMannWhitneyU", {}, name)
                                        : AddEntry(entries, "IKruskalWallis", {kPairwise}, name);
    entry.AddNewSetting("groupVariableName", groupField, "");
  }
}

/// Number of different categories of both variables together, by text or by number.
std::size_t UnionSize(const IQDVariable& first, const IQDVariable& second) {
  std::set<std::string> texts;
  std::set<double> numbers;
  for (const IQDVariable* const variable : {&first, &second}) {
    const QDCategoryList& categories = *variable->GetCategories();
    for (std::int32_t code = 0; code < categories.Size(); ++code) {
      if (variable->GetStorageKind() == StorageKind::String) {
        texts.insert(categories.GetText(code));
      } else {
        numbers.insert(categories.GetNumber(code));
      }
    }
  }
  return texts.size() + numbers.size();
}

/// Whether the fields, all categorical, may be answers to the same yes-or-no question: at most two
/// categories in the first, and each later one stored alike with no more categories, which together
/// with those of the first are still fewer than three.
bool HaveSameTwoCategories(const QDVarList& variables, const Names& fields) {
  const IQDVariable* first = nullptr;
  for (const std::string& name : fields) {
    const IQDVariable* const variable = variables.GetVarAt(variables.FindVariable(name));
    if (first == nullptr) {
      first = variable;
      if (first->GetCategoryCount() > 2) return false;
      continue;
    }
    if (variable->GetStorageKind() != first->GetStorageKind()) return false;
    if (variable->GetCategoryCount() > first->GetCategoryCount()) return false;
    if (UnionSize(*first, *variable) >= 3) return false;
  }
  return true;
}

void SelectCategoricalRelated(Entries& entries, const QDVarList& variables, const Names& fields) {
  if (fields.size() < 2 || !HaveSameTwoCategories(variables, fields)) return;
  if (fields.size() == 2) {
    AddEntry(entries, "RMcNemar", {kClassesFromData}, fields);
  } else {
    AddEntry(entries, "RCochransQ", {kClassesFromData, kPairwise}, fields);
  }
}

void SelectRelated(Entries& entries, const QDVarList& variables, const Names& fields) {
  const FieldsByKind split = SplitByKind(variables, fields);
  if (split.continuous.size() == 2) {
    AddEntry(entries, "RWilcoxonSignedRanks", {}, split.continuous);
  } else if (split.continuous.size() > 2) {
    AddEntry(entries, "RFriedmansTwoWayByRanks", {kPairwise}, split.continuous);
  }
  SelectCategoricalRelated(entries, variables, split.nominal);
  SelectCategoricalRelated(entries, variables, split.ordinal);
}

}  // namespace

void NPARAutoSelect::Select(Entries& entries, Names& unusedFields, std::string_view family,
                            const QDVarList& variables, const Names& fields,
                            const std::string& groupField) const {
  if (family == "One_Sample") {
    SelectOneSample(entries, unusedFields, variables, fields);
  } else if (family == "Related_Samples") {
    SelectRelated(entries, variables, fields);
  } else if (family == "Independent_Samples") {
    SelectIndependent(entries, unusedFields, variables, fields, groupField);
  }
}
