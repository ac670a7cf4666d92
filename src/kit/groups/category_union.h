#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/names.h"

/// The categories of two variables as one list: those of the first in their order, then the others
/// of the second in theirs. Variables of different kinds do not merge.
class CategoryUnion {
 public:
  CategoryUnion() = default;
  /// Empty where the variables do not merge.
  CategoryUnion(const IQDVariable& first, const IQDVariable& second);

  [[nodiscard]] bool IsMerged() const noexcept { return isMerged; }
  [[nodiscard]] std::size_t Size() const noexcept { return texts.size(); }
  /// The category's number, or its place in the union where the categories are texts.
  [[nodiscard]] double Score(std::size_t place) const noexcept { return scores[place]; }
  /// As texts stand in ";"-joined lists.
  [[nodiscard]] const std::vector<std::string>& Texts() const noexcept { return texts; }
  /// The place of a category of the second variable. The first one's codes are places.
  [[nodiscard]] std::int32_t PlaceOfSecond(std::int32_t code) const noexcept {
    return code >= 0 && code < static_cast<std::int32_t>(placeOfSecond.size())
               ? placeOfSecond[static_cast<std::size_t>(code)]
               : -1;
  }

 private:
  bool isMerged = false;
  std::vector<std::string> texts;
  std::vector<double> scores;
  std::vector<std::int32_t> placeOfSecond;
};
