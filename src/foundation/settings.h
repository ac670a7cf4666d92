#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/export.h"

namespace QDXML_700 {

class QDSettings;

/// Kinds of a setting's value.
enum class SettingKind { Scalar = 1, Vector = 2, Settings = 3 };

/// A setting's value. It is read as a type that it spells: a text as bool ("true", "false"), int or
/// double (C locale, the whole text), or string; a number as int (truncated), double or bool (not
/// 0); a list as a list of every type that all its items spell. A reader returns false and leaves
/// `out` alone where the value is of another type.
class QD_EXPORT IQDSettingValue {
 public:
  virtual ~IQDSettingValue() = default;
  [[nodiscard]] virtual SettingKind GetKind() const = 0;
  [[nodiscard]] virtual std::unique_ptr<IQDSettingValue> Clone() const = 0;
  virtual bool Get(bool& out) const = 0;
  virtual bool Get(std::int32_t& out) const = 0;
  virtual bool Get(double& out) const = 0;
  virtual bool Get(std::string& out) const = 0;
  virtual bool Get(std::vector<std::int32_t>& out) const = 0;
  virtual bool Get(std::vector<double>& out) const = 0;
  virtual bool Get(std::vector<std::string>& out) const = 0;
  virtual bool Get(std::vector<QDSettings>& out) const = 0;
  /// The nested settings of a value of kind Settings, else null. Owned by the value.
  [[nodiscard]] virtual const QDSettings* GetListValue() const = 0;
};

/// One named entry.
class QD_EXPORT QDSetting {
 public:
  QDSetting(std::string name, std::unique_ptr<IQDSettingValue> value);
  QDSetting(const QDSetting& other);
  QDSetting(QDSetting&&) noexcept = default;
  QDSetting& operator=(const QDSetting& other);
  QDSetting& operator=(QDSetting&&) noexcept = default;
  ~QDSetting() = default;

  [[nodiscard]] const std::string& GetName() const noexcept { return name; }
  [[nodiscard]] const IQDSettingValue* GetValue() const noexcept { return value.get(); }
  [[nodiscard]] const std::string& GetType() const noexcept { return type; }
  void SetType(std::string text) { type = std::move(text); }

 private:
  std::string name;
  std::string type;
  std::unique_ptr<IQDSettingValue> value;
};

/// An ordered tree of named settings. A name may stand more than once; readers find the first.
class QD_EXPORT QDSettings {
 public:
  QDSettings();
  QDSettings(const QDSettings& other);
  QDSettings(QDSettings&& other) noexcept;
  QDSettings& operator=(const QDSettings& other);
  QDSettings& operator=(QDSettings&& other) noexcept;
  virtual ~QDSettings();
  /// By number of entries, then names and scalar texts in order.
  [[nodiscard]] bool operator<(const QDSettings& other) const;

  [[nodiscard]] std::size_t Size() const noexcept;
  /// Null past the end.
  [[nodiscard]] const QDSetting* GetSettingAt(std::size_t index) const;
  void GetSettingNames(std::vector<std::string>& names) const;
  [[nodiscard]] const QDSetting* FindSetting(std::string_view name) const;

  /// False, and `out` unchanged, where the name is absent or its value of another type.
  bool GetSettingValByName(std::string_view name, bool& out) const;
  bool GetSettingValByName(std::string_view name, std::int32_t& out) const;
  bool GetSettingValByName(std::string_view name, double& out) const;
  bool GetSettingValByName(std::string_view name, std::string& out) const;
  bool GetSettingValByName(std::string_view name, QDSettings& out) const;
  bool GetSettingValByName(std::string_view name, std::vector<std::int32_t>& out) const;
  bool GetSettingValByName(std::string_view name, std::vector<double>& out) const;
  bool GetSettingValByName(std::string_view name, std::vector<std::string>& out) const;
  bool GetSettingValByName(std::string_view name, std::vector<QDSettings>& out) const;

  /// Appends an entry, also where the name stands already. `type` is free text of the caller's.
  void AddNewSetting(std::string name, std::string value, std::string type);
  void AddNewSetting(std::string name, double value, std::string type);
  void AddNewSetting(std::string name, QDSettings value, std::string type);
  void AddNewSetting(std::string name, std::vector<std::int32_t> value, std::string type);
  void AddNewSetting(std::string name, std::vector<double> value, std::string type);
  void AddNewSetting(std::string name, std::vector<std::string> value, std::string type);
  void AddNewSetting(std::string name, std::vector<QDSettings> value, std::string type);
  /// Appends a copy of an entry as it stands, under another name if one is given.
  void AddNewSetting(const QDSetting& setting, const std::string& newName = {});
  // A text literal would otherwise be taken as a number or a nested tree.
  void AddNewSetting(std::string name, const char* value, std::string type) {
    AddNewSetting(std::move(name), std::string(value), std::move(type));
  }

  /// Adds, or with `replace` puts in the place of the first entry of that name.
  void AddSetting(const std::string& name, const std::string& value, bool replace);
  void AddSetting(const std::string& name, double value, bool replace);
  /// Removes the first entry of that name, with `all` every one. False if there was none.
  bool RemoveSetting(const std::string& name, bool all);

 private:
  std::vector<QDSetting> settings;
};

}  // namespace QDXML_700
