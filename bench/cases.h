#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// A run that is measured: tests, and the fields that they need.
struct BenchCase {
  std::string_view name;
  std::size_t fields;
  std::size_t groups;      ///< of the group field; 0 without one
  std::string_view tests;  ///< keys of the parameter document, parted by blanks
};

[[nodiscard]] std::span<const BenchCase> BenchCases();
/// Null for a name that is none.
[[nodiscard]] const BenchCase* FindCase(std::string_view name);
/// The parameter document that asks for the case's tests on generated data, perhaps with the
/// extended figures.
[[nodiscard]] std::string ParametersOf(const BenchCase& benchCase, bool isExtended = false);
