#include "foundation/settings.h"

#include <algorithm>
#include <utility>

#include "foundation/setting_values.h"
#include "foundation/xml.h"

namespace QDXML_700 {

QDSetting::QDSetting(std::string name, std::unique_ptr<IQDSettingValue> value)
    : name(std::move(name)), value(std::move(value)) {}

QDSetting::QDSetting(const QDSetting& other)
    : name(other.name), type(other.type), value(other.value ? other.value->Clone() : nullptr) {}

QDSetting& QDSetting::operator=(const QDSetting& other) {
  if (this != &other) *this = QDSetting(other);
  return *this;
}

QDSettings::QDSettings() = default;
QDSettings::QDSettings(const QDSettings& other) = default;
QDSettings::QDSettings(QDSettings&& other) noexcept = default;
QDSettings& QDSettings::operator=(const QDSettings& other) = default;
QDSettings& QDSettings::operator=(QDSettings&& other) noexcept = default;
QDSettings::~QDSettings() = default;

namespace {

// The text by which an entry is ordered; lists and trees stand equal.
std::string OrderText(const QDSetting& setting) {
  std::string text;
  double number = 0.0;
  const IQDSettingValue* const value = setting.GetValue();
  if (value == nullptr || value->GetKind() != SettingKind::Scalar) return text;
  if (!value->Get(text) && value->Get(number)) text = ReplaceSep(number, "%.17g");
  return text;
}

template <typename T>
bool ReadByName(const QDSettings& settings, std::string_view name, T& out) {
  const QDSetting* const setting = settings.FindSetting(name);
  return setting != nullptr && setting->GetValue() != nullptr && setting->GetValue()->Get(out);
}

void Append(std::vector<QDSetting>& settings, std::string name,
            std::unique_ptr<IQDSettingValue> value, std::string type) {
  constexpr std::size_t kUsualCount = 8;
  if (settings.empty()) settings.reserve(kUsualCount);
  settings.emplace_back(std::move(name), std::move(value)).SetType(std::move(type));
}

auto FindByName(std::vector<QDSetting>& settings, std::string_view name) {
  return std::find_if(settings.begin(), settings.end(),
                      [&](const QDSetting& setting) { return setting.GetName() == name; });
}

void AddOrReplace(std::vector<QDSetting>& settings, QDSetting setting, bool replace) {
  const auto place = replace ? FindByName(settings, setting.GetName()) : settings.end();
  if (place == settings.end()) {
    settings.push_back(std::move(setting));
  } else {
    *place = std::move(setting);
  }
}

}  // namespace

bool QDSettings::operator<(const QDSettings& other) const {
  if (Size() != other.Size()) return Size() < other.Size();
  for (std::size_t i = 0; i < Size(); ++i) {
    const QDSetting& left = settings[i];
    const QDSetting& right = other.settings[i];
    if (left.GetName() != right.GetName()) return left.GetName() < right.GetName();
    const std::string leftText = OrderText(left);
    const std::string rightText = OrderText(right);
    if (leftText != rightText) return leftText < rightText;
  }
  return false;
}

std::size_t QDSettings::Size() const noexcept { return settings.size(); }

const QDSetting* QDSettings::GetSettingAt(std::size_t index) const {
  return index < settings.size() ? &settings[index] : nullptr;
}

void QDSettings::GetSettingNames(std::vector<std::string>& names) const {
  names.clear();
  names.reserve(settings.size());
  for (const QDSetting& setting : settings) names.push_back(setting.GetName());
}

const QDSetting* QDSettings::FindSetting(std::string_view name) const {
  for (const QDSetting& setting : settings) {
    if (setting.GetName() == name) return &setting;
  }
  return nullptr;
}

bool QDSettings::GetSettingValByName(std::string_view name, bool& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, std::int32_t& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, double& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, std::string& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, QDSettings& out) const {
  const QDSetting* const setting = FindSetting(name);
  if (setting == nullptr || setting->GetValue() == nullptr) return false;
  const QDSettings* const nested = setting->GetValue()->GetListValue();
  if (nested == nullptr) return false;
  out = QDSettings(*nested);  // a copy first: `out` may be this tree itself
  return true;
}
bool QDSettings::GetSettingValByName(std::string_view name, std::vector<std::int32_t>& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, std::vector<double>& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, std::vector<std::string>& out) const {
  return ReadByName(*this, name, out);
}
bool QDSettings::GetSettingValByName(std::string_view name, std::vector<QDSettings>& out) const {
  return ReadByName(*this, name, out);
}

void QDSettings::AddNewSetting(std::string name, std::string value, std::string type) {
  auto made = std::make_unique<QDScalarValue<std::string>>(std::move(value));
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(std::string name, double value, std::string type) {
  auto made = std::make_unique<QDScalarValue<double>>(value);
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(std::string name, QDSettings value, std::string type) {
  auto made = std::make_unique<QDSettingListValue>(std::move(value));
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(std::string name, std::vector<std::int32_t> value,
                               std::string type) {
  auto made = std::make_unique<QDVecValue<std::int32_t>>(std::move(value));
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(std::string name, std::vector<double> value, std::string type) {
  auto made = std::make_unique<QDVecValue<double>>(std::move(value));
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(std::string name, std::vector<std::string> value, std::string type) {
  auto made = std::make_unique<QDVecValue<std::string>>(std::move(value));
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(std::string name, std::vector<QDSettings> value, std::string type) {
  auto made = std::make_unique<QDVecValue<QDSettings>>(std::move(value));
  Append(settings, std::move(name), std::move(made), std::move(type));
}
void QDSettings::AddNewSetting(const QDSetting& setting, const std::string& newName) {
  const IQDSettingValue* const value = setting.GetValue();
  QDSetting copy(newName.empty() ? setting.GetName() : newName,
                 value == nullptr ? nullptr : value->Clone());
  copy.SetType(setting.GetType());
  settings.push_back(std::move(copy));
}

void QDSettings::AddSetting(const std::string& name, const std::string& value, bool replace) {
  AddOrReplace(settings, QDSetting(name, std::make_unique<QDScalarValue<std::string>>(value)),
               replace);
}
void QDSettings::AddSetting(const std::string& name, double value, bool replace) {
  AddOrReplace(settings, QDSetting(name, std::make_unique<QDScalarValue<double>>(value)), replace);
}

bool QDSettings::RemoveSetting(const std::string& name, bool all) {
  if (all) {
    return std::erase_if(settings,
                         [&](const QDSetting& setting) { return setting.GetName() == name; }) > 0;
  }
  const auto place = FindByName(settings, name);
  if (place == settings.end()) return false;
  settings.erase(place);
  return true;
}

}  // namespace QDXML_700
