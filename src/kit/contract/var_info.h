#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/names.h"

/// The text with a backslash before each ";" and each backslash, for lists that ";" joins.
[[nodiscard]] std::string EscapeListText(std::string_view text);

/// The codes that are not among the excluded ones, ascending; none for null.
[[nodiscard]] std::vector<double> OtherCategories(const QDCategoryList* categories,
                                                  const std::vector<double>& excluded);

/// The texts of variables and their values, by variable index. A value type; the list is not owned.
class NPARVarInfo {
 public:
  explicit NPARVarInfo(const QDVarList* variables) noexcept : variables(variables) {}

  /// Name and label; empty for an index that is none.
  [[nodiscard]] std::string GetName(std::int32_t index) const;
  [[nodiscard]] std::string GetLabel(std::int32_t index) const;
  /// False for a variable that is not categorical.
  [[nodiscard]] bool IsOrdinal(std::int32_t index) const;
  /// Equal kinds; an index that is none counts as kind None.
  [[nodiscard]] bool SameType(std::int32_t a, std::int32_t b) const;
  /// The text of a category code, escaped for kind StringCategory; empty for other kinds.
  [[nodiscard]] std::string GetValueText(std::int32_t index, double value) const;
  [[nodiscard]] std::string GetNumericValueText(std::int32_t index, double value) const;
  /// The same, escaped: such texts stand in ";"-joined lists.
  [[nodiscard]] std::string GetStringValueText(std::int32_t index, double value) const;
  /// OtherCategories: their texts or numbers, and their codes.
  void ListOtherStringCategories(std::int32_t index, const std::vector<double>& excluded,
                                 std::vector<std::string>& names,
                                 std::vector<double>& positions) const;
  void ListOtherNumericCategories(std::int32_t index, const std::vector<double>& excluded,
                                  std::vector<double>& values,
                                  std::vector<double>& positions) const;

 private:
  const QDVarList* variables;
};
