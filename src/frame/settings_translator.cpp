#include "frame/settings_translator.h"

#include <memory>
#include <string_view>
#include <utility>

#include "frame/auto_select.h"
#include "frame/field_kinds.h"

struct NPARSettingsTranslator::Family {
  char prefix;  // of its test keys
  std::string_view flag;
  std::string_view name;
  Names NPARSettingsTranslator::*fields;
  void (NPARSettingsTranslator::*makeEntries)(const TestKey&, const QDSettings&);
  void (NPARSettingsTranslator::*collectWarnings)();
};

const NPARSettingsTranslator::Family NPARSettingsTranslator::kFamilies[] = {
    {'O', "isAutomaticallyOneSample", "One_Sample", &NPARSettingsTranslator::oneSampleFields,
     &NPARSettingsTranslator::MakeOneSampleEntries,
     &NPARSettingsTranslator::CollectOneSampleWarnings},
    {'R', "isAutomaticallyRelated", "Related_Samples", &NPARSettingsTranslator::relatedFields,
     &NPARSettingsTranslator::MakeRelatedEntries, &NPARSettingsTranslator::CollectRelatedWarnings},
    {'I', "isAutomaticallyIndependent", "Independent_Samples",
     &NPARSettingsTranslator::independentFields, &NPARSettingsTranslator::MakeIndependentEntries,
     &NPARSettingsTranslator::CollectIndependentWarnings},
};

namespace {

std::string JoinNames(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    if (!text.empty()) text += " ,";
    text += name;
  }
  return text;
}

bool IsTrue(const QDSettings& settings, std::string_view name) {
  bool value = false;
  return settings.GetSettingValByName(name, value) && value;
}

/// Two keys count only together with what another says, or as what they are meant to be.
bool IsWanted(const QDSettings& chosen, std::string_view key) {
  if (key == "custom") {
    std::string formation;
    chosen.GetSettingValByName("classFormation", formation);
    return formation == "givenExpectedValue" || formation == "custom";
  }
  double number = 0.0;
  return key != "givenCutPoint" || chosen.GetSettingValByName(key, number);
}

void CopyKeys(const QDSettings& chosen, const TestForm::Keys& keys, QDSettings& entry) {
  for (const std::string_view key : keys) {
    const QDSetting* const setting = key.empty() ? nullptr : chosen.FindSetting(key);
    if (setting != nullptr && IsWanted(chosen, key)) entry.AddNewSetting(*setting);
  }
}

std::vector<std::string> ReadNames(const QDSetting& setting) {
  std::vector<std::string> names;
  setting.GetValue()->Get(names);
  return names;
}

}  // namespace

NPARSettingsTranslator::NPARSettingsTranslator(const QDSettings& source, const QDVarList& variables,
                                               QDSettings& target)
    : source(source), variables(variables), target(target) {}

QDStatus NPARSettingsTranslator::Run() {
  CopyRunKeys();
  for (std::size_t index = 0; index < source.Size(); ++index) {
    for (const Family& family : kFamilies) {
      if (source.GetSettingAt(index)->GetName() == family.flag) {
        TranslateFamily(family, index);
        break;
      }
    }
  }
  return testCounter == -1 ? QDStatus(kNoTestEntry) : QDStatus();
}

void NPARSettingsTranslator::CopyRunKeys() {
  for (std::size_t index = 0; index < source.Size(); ++index) {
    const QDSetting& setting = *source.GetSettingAt(index);
    const std::string& name = setting.GetName();
    const IQDSettingValue& value = *setting.GetValue();
    std::string text;
    double number = 0.0;
    if (name == "missingTreatment") {
      if (value.Get(text)) target.AddNewSetting(name, text, "");
    } else if (name == "sigLevel") {
      if (value.Get(number)) target.AddNewSetting(name, number, "");
    } else if (name == "confidenceLevel") {
      if (value.Get(number)) target.AddNewSetting(name, number / 100.0, "");  // from percent
    } else if (name == "oneSampleVariables") {
      oneSampleFields = ReadNames(setting);
    } else if (name == "relatedVariables") {
      relatedFields = ReadNames(setting);
    } else if (name == "independentVariables") {
      independentFields = ReadNames(setting);
    } else if (name == "groupVariable") {
      const Names names = ReadNames(setting);
      if (!names.empty()) {
        groupField = names.front();
      } else {
        value.Get(groupField);
      }
    } else if (name == "caseIDField") {
      target.AddNewSetting(setting, "caseIDVariableName");
    }
  }
  FieldsByKind split = SplitByKind(variables, oneSampleFields);
  oneSampleContinuous = std::move(split.continuous);
  oneSampleCategorical = std::move(split.categorical);
  split = SplitByKind(variables, relatedFields);
  relatedContinuous.names = std::move(split.continuous);
  relatedOrdinal.names = std::move(split.ordinal);
  relatedNominal.names = std::move(split.nominal);
  split = SplitByKind(variables, independentFields);
  independentContinuous = std::move(split.continuous);
  independentCategorical = std::move(split.categorical);
}

const TestKey* NPARSettingsTranslator::FindTestKey(const Family& family, const std::string& name) {
  if (!name.starts_with(family.prefix)) return nullptr;
  for (const TestKey& test : TestKeys()) {
    if (test.key == name) return &test;
  }
  return nullptr;
}

/// `index` stands at the family's flag and moves to the last of the test keys that follow it.
void NPARSettingsTranslator::TranslateFamily(const Family& family, std::size_t& index) {
  if ((this->*family.fields).empty()) return;
  bool isAutomatic = false;
  source.GetSettingAt(index)->GetValue()->Get(isAutomatic);
  if (isAutomatic) {
    MakeAutomaticEntries(family);
    return;
  }
  while (index + 1 < source.Size()) {
    const QDSetting& setting = *source.GetSettingAt(index + 1);
    const TestKey* const test = FindTestKey(family, setting.GetName());
    if (test == nullptr) break;
    ++index;
    const QDSettings* const chosen = setting.GetValue()->GetListValue();
    if (chosen != nullptr && IsTrue(*chosen, "isSelected")) {
      (this->*family.makeEntries)(*test, *chosen);
    }
  }
  (this->*family.collectWarnings)();
}

// Fields that no test is for are not told.
void NPARSettingsTranslator::MakeAutomaticEntries(const Family& family) {
  std::vector<std::unique_ptr<QDSettings>> entries;
  Names unusedFields;
  gAutoSelect.Select(entries, unusedFields, family.name, variables, this->*family.fields,
                     groupField);
  for (const std::unique_ptr<QDSettings>& entry : entries) {
    std::string name;
    entry->GetSettingValByName("algorithmName", name);
    entry->AddNewSetting("testIndex", ++testCounter, "");
    target.AddNewSetting(name, *entry, "");
  }
}

QDSettings NPARSettingsTranslator::StartEntry(const TestForm& form) {
  QDSettings entry;
  entry.AddNewSetting("AlgorithmName", std::string(form.entryName), "");
  entry.AddNewSetting("testIndex", ++testCounter, "");
  if (!form.distribution.empty()) {
    entry.AddNewSetting("distributionFunction", std::string(form.distribution), "");
  }
  return entry;
}

void NPARSettingsTranslator::MakeOneSampleEntry(const TestKey& test, const QDSettings& chosen,
                                                const std::string& field, bool isCategorical) {
  const auto make = [&](const TestForm& form) {
    QDSettings entry = StartEntry(form);
    entry.AddNewSetting("variableName", field, "");
    CopyKeys(chosen, form.keys, entry);
    CopyKeys(chosen, isCategorical ? form.categoricalKeys : form.continuousKeys, entry);
    target.AddNewSetting(std::string(form.entryName), entry, "");
  };
  make(test.form);
  if (test.key != "OBinomial") return;
  for (const std::string_view method : IntervalForm().keys) {
    if (!IsTrue(chosen, method)) continue;
    make(IntervalForm());
    break;
  }
}

void NPARSettingsTranslator::MakeOneSampleEntries(const TestKey& test, const QDSettings& chosen) {
  const bool takesCategorical = (test.kinds & TestKey::kCategorical) != 0;
  const bool takesContinuous = (test.kinds & TestKey::kContinuous) != 0;
  bool made = false;
  if (takesCategorical) {
    for (const std::string& field : oneSampleCategorical) {
      MakeOneSampleEntry(test, chosen, field, true);
      made = true;
    }
  }
  if (takesContinuous) {
    for (const std::string& field : oneSampleContinuous) {
      MakeOneSampleEntry(test, chosen, field, false);
      made = true;
    }
  }
  const std::string displayName(test.displayName);
  if (!made) {
    testsWithoutFields.push_back(displayName);
  } else if (!takesCategorical && !oneSampleCategorical.empty()) {
    // A name that several selected keys share (Kolmogorov-Smirnov) is told once for each.
    testsSkippingCategorical.push_back(displayName);
  } else if (!takesContinuous && !oneSampleContinuous.empty()) {
    chiSquareSkippedContinuous = true;
  }
}

void NPARSettingsTranslator::MakeRelatedEntries(const TestKey& test, const QDSettings& chosen) {
  constexpr std::size_t kLeastFields = 2;
  const std::string displayName(test.displayName);
  bool hasFields = false;
  const auto make = [&](TestKey::Kinds kind, RelatedFields& fields) {
    if ((test.kinds & kind) == 0 || fields.names.empty()) return;
    hasFields = true;
    if (fields.names.size() < kLeastFields || fields.names.size() > test.mostFields) {
      fields.mismatch.push_back(displayName);
      return;
    }
    fields.used = true;
    QDSettings entry = StartEntry(test.form);
    entry.AddNewSetting("variableName", fields.names, "");
    CopyKeys(chosen, test.form.keys, entry);
    target.AddNewSetting(std::string(test.form.entryName), entry, "");
  };
  make(TestKey::kContinuous, relatedContinuous);
  make(TestKey::kOrdinal, relatedOrdinal);
  make(TestKey::kNominal, relatedNominal);
  if (!hasFields) relatedTestsWithoutFields.push_back(displayName);
}

void NPARSettingsTranslator::MakeIndependentEntries(const TestKey& test, const QDSettings& chosen) {
  for (const std::string& field : independentContinuous) {
    independentContinuousUsed = true;
    QDSettings entry = StartEntry(test.form);
    entry.AddNewSetting("variableName", field, "");
    if (!groupField.empty()) entry.AddNewSetting("groupVariableName", groupField, "");
    CopyKeys(chosen, test.form.keys, entry);
    target.AddNewSetting(std::string(test.form.entryName), entry, "");
  }
}

void NPARSettingsTranslator::CollectOneSampleWarnings() {
  if (chiSquareSkippedContinuous && !oneSampleContinuous.empty()) {
    Warn(kChiSquareSkipsContinuous, {JoinNames(oneSampleContinuous)});
  }
  if (!testsWithoutFields.empty()) {
    Warn(kOneSampleWithoutFields, {JoinNames(testsWithoutFields)});
  }
  if (!oneSampleCategorical.empty() && !testsSkippingCategorical.empty()) {
    Warn(kTestsSkipCategorical,
         {JoinNames(oneSampleCategorical), JoinNames(testsSkippingCategorical)});
  }
}

void NPARSettingsTranslator::CollectRelatedWarnings() {
  if (!relatedTestsWithoutFields.empty()) {
    Warn(kRelatedWithoutFields, {JoinNames(relatedTestsWithoutFields)});
  }
  const auto warnUnused = [&](const RelatedFields& fields, TranslationCode code) {
    if (!fields.names.empty() && !fields.used) Warn(code, {JoinNames(fields.names)});
  };
  warnUnused(relatedContinuous, kRelatedContinuousUnused);
  warnUnused(relatedOrdinal, kRelatedOrdinalUnused);
  warnUnused(relatedNominal, kRelatedNominalUnused);
  const auto warnMismatch = [&](const RelatedFields& fields, TranslationCode code) {
    if (!fields.mismatch.empty()) Warn(code, {JoinNames(fields.mismatch)});
  };
  warnMismatch(relatedContinuous, kRelatedContinuousMismatch);
  warnMismatch(relatedOrdinal, kRelatedOrdinalMismatch);
  warnMismatch(relatedNominal, kRelatedNominalMismatch);
}

void NPARSettingsTranslator::CollectIndependentWarnings() {
  if (!independentCategorical.empty()) {
    Warn(kIndependentCategorical, {JoinNames(independentCategorical)});
  }
  if (!independentContinuous.empty() && !independentContinuousUsed) {
    // The parameter is the list of categorical fields: hosts read it so.
    Warn(kIndependentContinuousUnused, {JoinNames(independentCategorical)});
  }
}

void NPARSettingsTranslator::Warn(TranslationCode code, std::vector<std::string> parameters) {
  warningCodes.emplace_back(code, true);
  warningParameters.push_back(std::move(parameters));
}
