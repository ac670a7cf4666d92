#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/export.h"
#include "foundation/settings.h"

namespace QDXML_700 {

/// A text or a number.
template <typename T>
class QD_EXPORT QDScalarValue final : public IQDSettingValue {
 public:
  explicit QDScalarValue(T value) : value(std::move(value)) {}

  SettingKind GetKind() const override { return SettingKind::Scalar; }
  std::unique_ptr<IQDSettingValue> Clone() const override;
  bool Get(bool& out) const override;
  bool Get(std::int32_t& out) const override;
  bool Get(double& out) const override;
  bool Get(std::string& out) const override;
  bool Get(std::vector<std::int32_t>&) const override { return false; }
  bool Get(std::vector<double>&) const override { return false; }
  bool Get(std::vector<std::string>&) const override { return false; }
  bool Get(std::vector<QDSettings>&) const override { return false; }
  const QDSettings* GetListValue() const override { return nullptr; }

 private:
  T value;
};

/// A list of int, double, string or QDSettings. One without items is a list of every type; one of
/// a single text is also read as that text.
template <typename T>
class QD_EXPORT QDVecValue final : public IQDSettingValue {
 public:
  explicit QDVecValue(std::vector<T> items) : items(std::move(items)) {}

  SettingKind GetKind() const override { return SettingKind::Vector; }
  std::unique_ptr<IQDSettingValue> Clone() const override;
  bool Get(bool&) const override { return false; }
  bool Get(std::int32_t&) const override { return false; }
  bool Get(double&) const override { return false; }
  bool Get(std::string& out) const override;
  bool Get(std::vector<std::int32_t>& out) const override;
  bool Get(std::vector<double>& out) const override;
  bool Get(std::vector<std::string>& out) const override;
  bool Get(std::vector<QDSettings>& out) const override;
  const QDSettings* GetListValue() const override { return nullptr; }

 private:
  std::vector<T> items;
};

/// Nested settings.
class QD_EXPORT QDSettingListValue final : public IQDSettingValue {
 public:
  explicit QDSettingListValue(QDSettings settings) : settings(std::move(settings)) {}

  SettingKind GetKind() const override { return SettingKind::Settings; }
  std::unique_ptr<IQDSettingValue> Clone() const override;
  bool Get(bool&) const override { return false; }
  bool Get(std::int32_t&) const override { return false; }
  bool Get(double&) const override { return false; }
  bool Get(std::string&) const override { return false; }
  bool Get(std::vector<std::int32_t>&) const override { return false; }
  bool Get(std::vector<double>&) const override { return false; }
  bool Get(std::vector<std::string>&) const override { return false; }
  bool Get(std::vector<QDSettings>&) const override { return false; }
  const QDSettings* GetListValue() const override { return &settings; }

 private:
  QDSettings settings;
};

extern template class QDScalarValue<std::string>;
extern template class QDScalarValue<double>;
extern template class QDVecValue<std::int32_t>;
extern template class QDVecValue<double>;
extern template class QDVecValue<std::string>;
extern template class QDVecValue<QDSettings>;

}  // namespace QDXML_700
