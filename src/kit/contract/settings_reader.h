#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "catalogue/card.h"
#include "foundation/names.h"

/// Reads a test's settings by key and type. A key that is absent, or that holds another type, gives
/// the value named for it.
class SettingsReader {
 public:
  /// Not taken over; null: every key is absent.
  explicit SettingsReader(const QDSettings* settings) noexcept : settings(settings) {}

  /// Leaves `out` alone, and answers false, where the key is absent.
  template <typename Value>
  bool Find(std::string_view key, Value& out) const {
    return settings != nullptr && settings->GetSettingValByName(key, out);
  }
  template <typename Value>
  [[nodiscard]] Value Get(std::string_view key, Value absent) const {
    static_cast<void>(Find(key, absent));
    return absent;
  }
  /// Absent: what the card says.
  template <typename Value>
  [[nodiscard]] Value Get(const catalogue::Key<Value>& key) const {
    return Get(key.key, key.fallback);
  }
  [[nodiscard]] std::string Text(std::string_view key, std::string absent = {}) const {
    return Get(key, std::move(absent));
  }
  /// A position in the record, or another index; -1 where it is absent.
  [[nodiscard]] std::int32_t Index(std::string_view key) const {
    return Get(key, std::int32_t{-1});
  }
  [[nodiscard]] bool Flag(std::string_view key) const { return Get(key, false); }
  /// The list; empty where it is absent.
  template <typename Item>
  [[nodiscard]] std::vector<Item> List(std::string_view key) const {
    return Get(key, std::vector<Item>());
  }

 private:
  const QDSettings* settings;
};
