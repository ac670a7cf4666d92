#include "kit/groups/category_selection.h"

#include <algorithm>
#include <iterator>

#include "kit/contract/var_info.h"

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

std::int32_t SameCategoryIn(const IQDVariable& variable, const IQDVariable& other,
                            std::int32_t code) {
  if (variable.GetType() != other.GetType()) return -1;
  const QDCategoryList& categories = *variable.GetCategories();
  return variable.GetType() == VariableKind::NumericCategory
             ? categories.FindNumber(other.GetCategories()->GetNumber(code))
             : categories.FindText(other.GetCategories()->GetText(code));
}

std::vector<std::string> TextsOfNoCategory(const std::vector<double>& codes,
                                           const std::vector<std::string>& texts) {
  std::vector<std::string> unknown;
  for (std::size_t i = 0; i < codes.size() && i < texts.size(); ++i) {
    if (codes[i] < 0.0) unknown.push_back(texts[i]);
  }
  return unknown;
}

CategorySelection SelectCategories(const IQDVariable& variable,
                                   const std::vector<std::string>& texts) {
  CategorySelection selection;
  for (const std::string& text : texts) selection.codes.push_back(CategoryCodeOf(variable, text));
  selection.unknownTexts = TextsOfNoCategory(selection.codes, texts);
  selection.otherCodes = OtherCategories(variable.GetCategories(), selection.codes);
  for (const double code : selection.otherCodes) {
    selection.otherTexts.push_back(variable.GetCategories()->GetText(TruncateToInt32(code)));
  }
  return selection;
}
