#include "kit/groups/category_selection.h"

#include <algorithm>
#include <iterator>

std::vector<double> CategorySelection::KnownCodes() const {
  std::vector<double> known;
  std::copy_if(codes.begin(), codes.end(), std::back_inserter(known),
               [](double code) { return code >= 0.0; });
  return known;
}

std::int32_t CategoryCodeOf(const IQDVariable& variable, const std::string& text) {
  const QDCategoryList& categories = *variable.GetCategories();
  if (variable.GetType() == VariableKind::StringCategory) return categories.FindText(text);
  double number = 0.0;
  return variable.TextToNumber(text, number) ? categories.FindNumber(number) : -1;
}

CategorySelection SelectCategories(const IQDVariable& variable,
                                   const std::vector<std::string>& texts) {
  const QDCategoryList& categories = *variable.GetCategories();
  CategorySelection selection;
  std::vector<bool> isNamed(static_cast<std::size_t>(categories.Size()), false);
  for (const std::string& text : texts) {
    const std::int32_t code = CategoryCodeOf(variable, text);
    selection.codes.push_back(code);
    if (code < 0) {
      selection.unknownTexts.push_back(text);
    } else {
      isNamed[static_cast<std::size_t>(code)] = true;
    }
  }
  for (std::int32_t code = 0; code < categories.Size(); ++code) {
    if (isNamed[static_cast<std::size_t>(code)]) continue;
    selection.otherCodes.push_back(code);
    selection.otherTexts.push_back(categories.GetText(code));
  }
  return selection;
}
