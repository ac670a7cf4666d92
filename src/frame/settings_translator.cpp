#include "frame/settings_translator.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "catalogue/catalogue.h"
#include "frame/auto_select.h"
#include "frame/field_kinds.h"

namespace run = catalogue::run;

struct NPARSettingsTranslator::Family {
  catalogue::Family family;
  const catalogue::FlagKey* flag;
  Names NPARSettingsTranslator::*fields;
  void (NPARSettingsTranslator::*makeEntries)(const catalogue::Card&, const QDSettings&);
  void (NPARSettingsTranslator::*collectWarnings)();
};

const NPARSettingsTranslator::Family NPARSettingsTranslator::kFamilies[] = {
    {catalogue::Family::OneSample, &run::kIsAutomaticallyOneSample,
     &NPARSettingsTranslator::oneSampleFields, &NPARSettingsTranslator::MakeOneSampleEntries,
     &NPARSettingsTranslator::CollectOneSampleWarnings},
    {catalogue::Family::Related, &run::kIsAutomaticallyRelated,
     &NPARSettingsTranslator::relatedFields, &NPARSettingsTranslator::MakeRelatedEntries,
     &NPARSettingsTranslator::CollectRelatedWarnings},
    {catalogue::Family::Independent, &run::kIsAutomaticallyIndependent,
     &NPARSettingsTranslator::independentFields, &NPARSettingsTranslator::MakeIndependentEntries,
     &NPARSettingsTranslator::CollectIndependentWarnings},
};

namespace {

std::string JoinNames(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += " ,";
    text += names[i];
  }
  return text;
}

bool IsTrue(const QDSettings& settings, const catalogue::FlagKey& flag) {
  bool value = flag.fallback;
  return settings.GetSettingValByName(flag.key, value) && value;
}

/// Two keys count only together with what another says, or as what they are meant to be.
bool IsWanted(const QDSettings& chosen, const catalogue::Setting& setting) {
  if (&setting == &catalogue::chi_square::kCustom) {
    std::string formation;
    chosen.GetSettingValByName(catalogue::chi_square::kFormation.key, formation);
    return formation == "givenExpectedValue" || formation == "custom";
  }
  double number = 0.0;
  return &setting != &catalogue::settings::kGivenCutPoint ||
         chosen.GetSettingValByName(setting.key, number);
}

void CopySettings(const QDSettings& chosen, catalogue::Settings settings, QDSettings& entry) {
  for (const catalogue::Setting* const each : settings) {
    const QDSetting* const setting = chosen.FindSetting(each->key);
    if (setting != nullptr && IsWanted(chosen, *each)) entry.AddNewSetting(*setting);
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
      if (family.flag->key == source.GetSettingAt(index)->GetName()) {
        TranslateFamily(family, index);
        break;
      }
    }
  }
  return testCounter == -1 ? QDStatus(run::kNoTest) : QDStatus();
}

void NPARSettingsTranslator::CopyRunKeys() {
  for (std::size_t index = 0; index < source.Size(); ++index) {
    const QDSetting& setting = *source.GetSettingAt(index);
    const std::string& name = setting.GetName();
    const IQDSettingValue& value = *setting.GetValue();
    std::string text;
    double number = 0.0;
    bool flag = false;
    if (run::kMissingTreatment.key == name) {
      if (value.Get(text)) target.AddNewSetting(name, text, "");
    } else if (run::kSigLevel.key == name) {
      if (value.Get(number)) target.AddNewSetting(name, number, "");
    } else if (run::kConfidenceLevel.key == name) {
      if (value.Get(number)) target.AddNewSetting(name, number / 100.0, "");  // from percent
    } else if (run::kExtendedFigures.key == name) {
      if (value.Get(flag) && flag) target.AddNewSetting(name, 1.0, "");
    } else if (run::kOneSampleVariables.key == name) {
      oneSampleFields = ReadNames(setting);
    } else if (run::kRelatedVariables.key == name) {
      relatedFields = ReadNames(setting);
    } else if (run::kIndependentVariables.key == name) {
      independentFields = ReadNames(setting);
    } else if (run::kGroupVariable.key == name) {
      const Names names = ReadNames(setting);
      if (!names.empty()) {
        groupField = names.front();
      } else {
        value.Get(groupField);
      }
    } else if (run::kCaseIdField.key == name) {
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

const catalogue::Card* NPARSettingsTranslator::FindTest(const Family& family,
                                                        const std::string& name) {
  for (const catalogue::Card* const card : catalogue::kCards) {
    if (card->family == family.family && card->askedBy.empty() && card->key == name) return card;
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
    const catalogue::Card* const test = FindTest(family, setting.GetName());
    if (test == nullptr) break;
    ++index;
    const QDSettings* const chosen = setting.GetValue()->GetListValue();
    if (chosen != nullptr && IsTrue(*chosen, catalogue::settings::kIsSelected)) {
      (this->*family.makeEntries)(*test, *chosen);
    }
  }
  (this->*family.collectWarnings)();
}

// Fields that no test is for are not told.
void NPARSettingsTranslator::MakeAutomaticEntries(const Family& family) {
  std::vector<std::unique_ptr<QDSettings>> entries;
  Names unusedFields;
  gAutoSelect.Select(entries, unusedFields, catalogue::Classification(family.family), variables,
                     this->*family.fields, groupField);
  for (const std::unique_ptr<QDSettings>& entry : entries) {
    std::string name;
    entry->GetSettingValByName("algorithmName", name);
    entry->AddNewSetting("testIndex", ++testCounter, "");
    target.AddNewSetting(name, std::move(*entry), "");
  }
}

QDSettings NPARSettingsTranslator::StartEntry(const catalogue::Card& test) {
  QDSettings entry;
  entry.AddNewSetting("AlgorithmName", test.entry.c_str(), "");
  entry.AddNewSetting("testIndex", ++testCounter, "");
  if (!test.distribution.empty()) {
    entry.AddNewSetting("distributionFunction", test.distribution.c_str(), "");
  }
  return entry;
}

void NPARSettingsTranslator::MakeOneSampleEntry(const catalogue::Card& test,
                                                const QDSettings& chosen, const std::string& field,
                                                bool isCategorical) {
  const auto make = [&](const catalogue::Card& made) {
    QDSettings entry = StartEntry(made);
    entry.AddNewSetting("variableName", field, "");
    CopySettings(chosen, made.settings, entry);
    CopySettings(chosen, isCategorical ? made.categoricalSettings : made.continuousSettings, entry);
    target.AddNewSetting(made.entry.c_str(), std::move(entry), "");
  };
  make(test);
  for (const catalogue::Card* const other : catalogue::kCards) {
    if (!(other->key == test.key)) continue;
    const auto isWanted = [&](const catalogue::FlagKey* flag) { return IsTrue(chosen, *flag); };
    if (std::any_of(other->askedBy.begin(), other->askedBy.end(), isWanted)) make(*other);
  }
}

void NPARSettingsTranslator::MakeOneSampleEntries(const catalogue::Card& test,
                                                  const QDSettings& chosen) {
  const bool takesCategorical = (test.fields.measures & catalogue::kCategorical) != 0;
  const bool takesContinuous = (test.fields.measures & catalogue::kContinuous) != 0;
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
  const std::string displayName(test.warningName);
  if (!made) {
    testsWithoutFields.push_back(displayName);
  } else if (!takesCategorical && !oneSampleCategorical.empty()) {
    // A name that several selected keys share (Kolmogorov-Smirnov) is told once for each.
    testsSkippingCategorical.push_back(displayName);
  } else if (!takesContinuous && !oneSampleContinuous.empty()) {
    chiSquareSkippedContinuous = true;
  }
}

void NPARSettingsTranslator::MakeRelatedEntries(const catalogue::Card& test,
                                                const QDSettings& chosen) {
  const std::string displayName(test.warningName);
  bool hasFields = false;
  const auto make = [&](catalogue::Measures measure, RelatedFields& fields) {
    if ((test.fields.measures & measure) == 0 || fields.names.empty()) return;
    hasFields = true;
    if (fields.names.size() < test.fields.fewest || fields.names.size() > test.fields.most) {
      fields.mismatch.push_back(displayName);
      return;
    }
    fields.used = true;
    QDSettings entry = StartEntry(test);
    entry.AddNewSetting("variableName", fields.names, "");
    CopySettings(chosen, test.settings, entry);
    target.AddNewSetting(test.entry.c_str(), std::move(entry), "");
  };
  make(catalogue::kContinuous, relatedContinuous);
  make(catalogue::kOrdinal, relatedOrdinal);
  make(catalogue::kNominal, relatedNominal);
  if (!hasFields) relatedTestsWithoutFields.push_back(displayName);
}

void NPARSettingsTranslator::MakeIndependentEntries(const catalogue::Card& test,
                                                    const QDSettings& chosen) {
  isIndependentSelected = true;
  for (const std::string& field : independentContinuous) {
    QDSettings entry = StartEntry(test);
    entry.AddNewSetting("variableName", field, "");
    if (!groupField.empty()) entry.AddNewSetting("groupVariableName", groupField, "");
    CopySettings(chosen, test.settings, entry);
    target.AddNewSetting(test.entry.c_str(), std::move(entry), "");
  }
}

void NPARSettingsTranslator::CollectOneSampleWarnings() {
  if (chiSquareSkippedContinuous && !oneSampleContinuous.empty()) {
    Warn(run::kChiSquareSkipsContinuous, {JoinNames(oneSampleContinuous)});
  }
  if (!testsWithoutFields.empty()) {
    Warn(run::kOneSampleWithoutFields, {JoinNames(testsWithoutFields)});
  }
  if (!oneSampleCategorical.empty() && !testsSkippingCategorical.empty()) {
    Warn(run::kTestsSkipCategorical,
         {JoinNames(oneSampleCategorical), JoinNames(testsSkippingCategorical)});
  }
}

void NPARSettingsTranslator::CollectRelatedWarnings() {
  if (!relatedTestsWithoutFields.empty()) {
    Warn(run::kRelatedWithoutFields, {JoinNames(relatedTestsWithoutFields)});
  }
  const auto warnUnused = [&](const RelatedFields& fields, const catalogue::Code& code) {
    if (!fields.names.empty() && !fields.used) Warn(code, {JoinNames(fields.names)});
  };
  warnUnused(relatedContinuous, run::kRelatedContinuousUnused);
  warnUnused(relatedOrdinal, run::kRelatedOrdinalUnused);
  warnUnused(relatedNominal, run::kRelatedNominalUnused);
  const auto warnMismatch = [&](const RelatedFields& fields, const catalogue::Code& code) {
    if (!fields.mismatch.empty()) Warn(code, {JoinNames(fields.mismatch)});
  };
  warnMismatch(relatedContinuous, run::kRelatedContinuousMismatch);
  warnMismatch(relatedOrdinal, run::kRelatedOrdinalMismatch);
  warnMismatch(relatedNominal, run::kRelatedNominalMismatch);
}

void NPARSettingsTranslator::CollectIndependentWarnings() {
  if (isIndependentSelected && !independentCategorical.empty()) {
    Warn(run::kIndependentCategorical, {JoinNames(independentCategorical)});
  }
  if (!isIndependentSelected && !independentContinuous.empty()) {
    // The parameter is the list of categorical fields: hosts read it so.
    Warn(run::kIndependentContinuousUnused, {JoinNames(independentCategorical)});
  }
}

void NPARSettingsTranslator::Warn(const catalogue::Code& code,
                                  std::vector<std::string> parameters) {
  warningCodes.emplace_back(code, true);
  warningParameters.push_back(std::move(parameters));
}
