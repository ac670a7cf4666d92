#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/settings_reader.h"
#include "kit/summaries/univariate.h"

/// Which categories of related categorical variables count as success: given values, or the value
/// of the first record's first variable. Variables are told apart by their place in the test's
/// list.
class SuccessCategories {
 public:
  /// The codes of a test for what stands against a split in two classes.
  struct Codes {
    std::int32_t noSharedData;
    std::int32_t notTwoCategories;  ///< the variables do not share two categories at most
    std::int32_t tooManyValues;     ///< constant variables with more than two values between them
    std::int32_t noGivenSplit;      ///< no given value is a category, or all categories are given
  };

  /// The list is not taken over.
  SuccessCategories(const QDVarList* variables, const Codes& codes) noexcept
      : variables(variables), codes(codes) {}

  /// Takes the variables and, where "userSpecifyGroupList" is set, the values that count as
  /// success: "successCategoryListNum" or "successCategoryListStr".
  void Read(const SettingsReader& settings, std::vector<std::int32_t> variableIndices);
  [[nodiscard]] bool AreGiven() const noexcept { return areGiven; }
  /// Do the given values, or may the data, say what success is? 0, or the code of what stands
  /// against it.
  [[nodiscard]] std::int32_t Check(const UnivariateResults* sharedData);
  /// Makes the category of the first record's first variable the success, unless success is known
  /// already.
  void LearnFrom(std::int32_t category) {
    if (isSuccess.empty()) DeriveFrom(category);
  }
  /// Is that category of the variable at that place a success?
  [[nodiscard]] bool IsSuccess(std::size_t place, std::int32_t category) const noexcept {
    const std::vector<char>& flags = isSuccess[place];
    const auto code = static_cast<std::size_t>(category);
    return code < flags.size() && flags[code] != 0;
  }
  /// The category codes of a variable that are, or are not, successes; none before success is
  /// known.
  [[nodiscard]] std::vector<double> CategoriesOf(std::size_t place, bool success) const;

 private:
  [[nodiscard]] std::int32_t CheckCategories(const UnivariateResults& sharedData) const;
  [[nodiscard]] std::int32_t TakeGiven();
  void DeriveFrom(std::int32_t code);
  [[nodiscard]] const IQDVariable& Variable(std::size_t place) const {
    return *variables->GetVarAt(tested[place]);
  }
  [[nodiscard]] bool SameCategory(std::size_t placeA, std::int32_t codeA, std::size_t placeB,
                                  std::int32_t codeB) const;

  const QDVarList* variables;
  Codes codes;
  std::vector<std::int32_t> tested;
  bool areGiven = false;
  std::vector<double> givenNumbers;
  std::vector<std::string> givenTexts;       // read where there are no numbers
  std::vector<std::vector<char>> isSuccess;  // by place, then category code
};
