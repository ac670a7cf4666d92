#include "foundation/setting_values.h"

#include <string_view>
#include <type_traits>

#include "foundation/numbers.h"
#include "qdcommon/text_numbers.h"

namespace QDXML_700 {

namespace {

// What an item is read as; every pair of types that is not listed is refused.
template <typename From, typename To>
bool Read(const From&, To&) {
  return false;
}

template <typename Same>
bool Read(const Same& item, Same& out) {
  out = item;
  return true;
}

bool Read(const std::string& text, bool& out) {
  if (text != "true" && text != "false") return false;
  out = text == "true";
  return true;
}

bool Read(const std::string& text, std::int32_t& out) {
  return QDCommon_700::SpellsNumber(text, out);
}

bool Read(const std::string& text, double& out) { return QDCommon_700::SpellsNumber(text, out); }

// Not a number is not different from 0 either way, so that it never switches anything on.
bool Read(const double& number, bool& out) {
  out = number < 0.0 || number > 0.0;
  return true;
}

bool Read(const double& number, std::int32_t& out) {
  out = QDCommon_700::TruncateToInt32(number);
  return true;
}

bool Read(const std::int32_t& number, double& out) {
  out = number;
  return true;
}

template <typename From, typename To>
bool ReadList(const std::vector<From>& items, std::vector<To>& out) {
  std::vector<To> read(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (!Read(items[i], read[i])) return false;
  }
  out = std::move(read);
  return true;
}

}  // namespace

template <typename T>
std::unique_ptr<IQDSettingValue> QDScalarValue<T>::Clone() const {
  return std::make_unique<QDScalarValue>(value);
}
template <typename T>
bool QDScalarValue<T>::Get(bool& out) const {
  return Read(value, out);
}
template <typename T>
bool QDScalarValue<T>::Get(std::int32_t& out) const {
  return Read(value, out);
}
template <typename T>
bool QDScalarValue<T>::Get(double& out) const {
  return Read(value, out);
}
template <typename T>
bool QDScalarValue<T>::Get(std::string& out) const {
  return Read(value, out);
}

template <typename T>
std::unique_ptr<IQDSettingValue> QDVecValue<T>::Clone() const {
  return std::make_unique<QDVecValue>(items);
}
template <typename T>
bool QDVecValue<T>::Get(std::string& out) const {
  return items.size() == 1 && Read(items.front(), out);
}
template <typename T>
bool QDVecValue<T>::Get(std::vector<std::int32_t>& out) const {
  return ReadList(items, out);
}
template <typename T>
bool QDVecValue<T>::Get(std::vector<double>& out) const {
  return ReadList(items, out);
}
template <typename T>
bool QDVecValue<T>::Get(std::vector<std::string>& out) const {
  return ReadList(items, out);
}
template <typename T>
bool QDVecValue<T>::Get(std::vector<QDSettings>& out) const {
  return ReadList(items, out);
}

std::unique_ptr<IQDSettingValue> QDSettingListValue::Clone() const {
  return std::make_unique<QDSettingListValue>(settings);
}

template class QDScalarValue<std::string>;
template class QDScalarValue<double>;
template class QDVecValue<std::int32_t>;
template class QDVecValue<double>;
template class QDVecValue<std::string>;
template class QDVecValue<QDSettings>;

}  // namespace QDXML_700
