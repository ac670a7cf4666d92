#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/card.h"

namespace npar_host {

/// The names of all tests that can be asked for.
[[nodiscard]] std::vector<std::string> TestNames();

/// A category that an option of a test names.
struct NamedCategory {
  std::string option;
  std::string category;
};

/// A test as it is asked for: NAME[:key=value,..]. A backslash before a separator
/// takes it as a plain character.
class TestRequest {
 public:
  /// Throws UsageError for an unknown test or option, a value that the option can't take, an option
  /// given twice, or one group without the other.
  [[nodiscard]] static TestRequest Parse(std::string_view text);

  [[nodiscard]] const catalogue::Card& Test() const { return *test; }
  [[nodiscard]] bool HasOption(std::string_view name) const { return FindGiven(name) != nullptr; }
  /// The option's value as it was given; empty without it.
  [[nodiscard]] std::string ValueOf(std::string_view name) const;
  /// Those of all options, in the order in which they were given.
  [[nodiscard]] std::vector<NamedCategory> NamedCategories() const;
  /// Appends the test's Parameter to the parameter document.
  void WriteTo(pugi::xml_node parameters) const;

 private:
  explicit TestRequest(const catalogue::Card& test) : test(&test) {}
  void AddOption(std::string_view assignment);
  [[nodiscard]] const std::string* FindGiven(std::string_view name) const;

  const catalogue::Card* test;
  std::vector<std::pair<const catalogue::Option*, std::string>> options;  // values still escaped
};

/// Appends <Parameter name= value=/>.
void AddParameter(pugi::xml_node parameters, std::string_view name, std::string_view value);
/// Appends a Parameter that holds a ListValue of texts.
void AddListParameter(pugi::xml_node parameters, std::string_view name,
                      const std::vector<std::string>& values);

/// The finite number that the whole text spells; throws UsageError, with `what` naming it.
[[nodiscard]] double RequireNumber(std::string_view text, const std::string& what);

}  // namespace npar_host
