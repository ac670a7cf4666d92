#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/names.h"
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

  void SetVariables(std::vector<std::int32_t> indices) { tested = std::move(indices); }
  /// May the data say what success is? 0, or the code of what stands against it.
  [[nodiscard]] std::int32_t CheckCategories(const UnivariateResults* sharedData) const;
  /// Takes the given values, numbers where there are any, else texts. 0, or a code.
  [[nodiscard]] std::int32_t TakeGiven(const UnivariateResults* sharedData,
                                       const std::vector<double>& numbers,
                                       const std::vector<std::string>& texts);
  /// Makes the first variable's value in this record the success, unless success is known already.
  void LearnFrom(const Record& record) {
    if (isSuccess.empty()) DeriveFrom(TruncateToInt32(record[tested.front()]));
  }
  /// Is the value of the variable at that place a success?
  [[nodiscard]] bool IsSuccess(std::size_t place, double value) const noexcept {
    const std::vector<char>& flags = isSuccess[place];
    const auto code = static_cast<std::size_t>(TruncateToInt32(value));
    return code < flags.size() && flags[code] != 0;
  }
  /// The category codes of a variable that are, or are not, successes; none before success is
  /// known.
  [[nodiscard]] std::vector<double> CategoriesOf(std::size_t place, bool success) const;

 private:
  void DeriveFrom(std::int32_t code);
  [[nodiscard]] const IQDVariable& Variable(std::size_t place) const {
    return *variables->GetVarAt(tested[place]);
  }
  [[nodiscard]] bool SameCategory(std::size_t placeA, std::int32_t codeA, std::size_t placeB,
                                  std::int32_t codeB) const;

  const QDVarList* variables;
  Codes codes;
  std::vector<std::int32_t> tested;
  std::vector<std::vector<char>> isSuccess;  // by place, then category code
};
