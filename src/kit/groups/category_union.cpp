#include "kit/groups/category_union.h"

#include "kit/contract/var_info.h"
#include "kit/groups/category_selection.h"

CategoryUnion::CategoryUnion(const IQDVariable& first, const IQDVariable& second)
    : isMerged(first.GetType() == second.GetType() && first.GetCategories() != nullptr &&
               second.GetCategories() != nullptr) {
  if (!isMerged) return;
  const bool isNumeric = first.GetType() == VariableKind::NumericCategory;
  const auto append = [&](const QDCategoryList& list, std::int32_t code) {
    texts.push_back(isNumeric ? list.GetText(code) : EscapeListText(list.GetText(code)));
    scores.push_back(isNumeric ? list.GetNumber(code) : static_cast<double>(scores.size()));
  };
  const QDCategoryList& own = *first.GetCategories();
  for (std::int32_t code = 0; code < own.Size(); ++code) append(own, code);
  const QDCategoryList& other = *second.GetCategories();
  for (std::int32_t code = 0; code < other.Size(); ++code) {
    const std::int32_t place = SameCategoryIn(first, second, code);
    placeOfSecond.push_back(place >= 0 ? place : static_cast<std::int32_t>(texts.size()));
    if (place < 0) append(other, code);
  }
}
