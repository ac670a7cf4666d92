#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>

/// What an entry holds beside its fields and its number.
struct TestForm {
  using Keys = std::array<std::string_view, 5>;

  std::string_view entryName;
  // Keys of the host's entry that are carried over where they stand.
  Keys keys{};
  Keys categoricalKeys{};  // for categorical fields only
  Keys continuousKeys{};   // for continuous fields only
  std::string_view distribution{};
};

/// A test key of the host's document: "O..." one sample, "R..." related, "I..." independent.
struct TestKey {
  enum Kinds : unsigned {
    kContinuous = 1,
    kOrdinal = 2,
    kNominal = 4,
    kCategorical = kOrdinal | kNominal,
    kAll = kContinuous | kCategorical
  };
  static constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

  std::string_view key;
  TestForm form;
  std::string_view displayName{};       // in warnings; independent tests stand in none
  unsigned kinds = kContinuous;         // of the fields that the test takes
  std::size_t mostFields = kAnyNumber;  // related tests take from 2 to this many fields together
};

[[nodiscard]] std::span<const TestKey> TestKeys();

/// The interval estimates that an "OBinomial" entry may ask for, an entry of their own. `keys` are
/// the flags of the methods.
[[nodiscard]] const TestForm& IntervalForm();
