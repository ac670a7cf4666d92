#pragma once

#include <string>
#include <vector>

#include "foundation/names.h"

/// Categories of a variable that a list of texts names, and those that it does not.
struct CategorySelection {
  std::vector<double> codes;              ///< one for each text, -1 for a text that is no category
  std::vector<std::string> unknownTexts;  ///< the texts that are no category
  std::vector<double> otherCodes;         ///< the categories that no text names, ascending
  std::vector<std::string> otherTexts;

  /// The codes without the -1s.
  [[nodiscard]] std::vector<double> KnownCodes() const;
};

/// The code of a category's text, -1 for a text that is none. For a numeric variable the text is
/// read as a number first, so that "1" finds "1.0".
[[nodiscard]] std::int32_t CategoryCodeOf(const IQDVariable& variable, const std::string& text);

/// The code of a category of `other` among the categories of a variable of the same kind; -1 where
/// it is none of them.
[[nodiscard]] std::int32_t SameCategoryIn(const IQDVariable& variable, const IQDVariable& other,
                                          std::int32_t code);

/// The texts whose code, as CategoryCodeOf gave it, is -1.
[[nodiscard]] std::vector<std::string> TextsOfNoCategory(const std::vector<double>& codes,
                                                         const std::vector<std::string>& texts);

/// Looks texts up among the categories of a categorical variable.
[[nodiscard]] CategorySelection SelectCategories(const IQDVariable& variable,
                                                 const std::vector<std::string>& texts);
