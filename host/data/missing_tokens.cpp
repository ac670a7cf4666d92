#include "host/data/missing_tokens.h"

#include <algorithm>

namespace npar_host {
namespace {

constexpr std::string_view kUsual[] = {"NA", "N/A", "#N/A", "NaN", "nan", "null", "NULL"};
constexpr std::string_view kAmongNumbers[] = {".", "-", "?", "*"};

}  // namespace

MissingTokens::MissingTokens(const std::vector<std::string>& given, bool onlyGiven) {
  for (const std::string& text : given) Add(text);
  if (!onlyGiven) {
    for (const std::string_view text : kUsual) Add(text);
  }
  firstForNumbers = texts.size();
  if (!onlyGiven) {
    for (const std::string_view text : kAmongNumbers) Add(text);
  }
}

std::string_view MissingTokens::Text(std::size_t token) const {
  return token < texts.size() ? std::string_view(texts[token]) : "not a number";
}

std::size_t MissingTokens::FindIn(std::string_view text) const {
  const auto found = std::find(texts.begin(), texts.end(), text);
  return found == texts.end() ? kNone : static_cast<std::size_t>(found - texts.begin());
}

void MissingTokens::Add(std::string_view text) {
  if (Find(text) != kNone) return;
  texts.emplace_back(text);
  longest = std::max(longest, text.size());
  begins[static_cast<unsigned char>(text.front())] = true;
}

}  // namespace npar_host
