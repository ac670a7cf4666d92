#include "host/data/number_notation.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "host/data/number.h"

namespace npar_host {
namespace {

constexpr std::string_view kNoBreakSpaces[] = {"\xC2\xA0", "\xE2\x80\xAF"};
constexpr std::string_view kCurrencies[] = {"$",   "\xE2\x82\xAC", "\xC2\xA3", "\xC2\xA5",
                                            "EUR", "USD",          "GBP",      "CHF"};
constexpr std::size_t kGroup = 3;  // digits between two thousands signs

void Replace(std::string& text, std::string_view what, std::string_view with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
    text.replace(at, what.size(), with);
  }
}

/// Takes the thousands signs out; false where they don't stand between groups of three digits.
bool JoinGroups(std::string& text, const NumberNotation& notation) {
  if (notation.thousands == ' ') {
    for (const std::string_view space : kNoBreakSpaces) Replace(text, space, " ");
  }
  const std::size_t end = std::min(text.find(notation.decimal), text.size());
  const std::size_t last = text.rfind(notation.thousands);
  if (last == std::string::npos) return true;
  if (last > end) return false;
  std::size_t digits = 0;
  for (std::size_t i = end; i-- > 0;) {
    if (number_detail::IsDigit(text[i])) {
      ++digits;
    } else if (text[i] == notation.thousands) {
      if (digits != kGroup || i == 0 || !number_detail::IsDigit(text[i - 1])) return false;
      digits = 0;
    }
    if (digits > kGroup) return false;
  }
  std::erase(text, notation.thousands);
  return true;
}

bool AreNumbers(const NumberNotation& notation, const std::vector<std::string_view>& texts) {
  double number = 0.0;
  return std::ranges::all_of(
      texts, [&](std::string_view text) { return ParseNumberIn(notation, text, number); });
}

std::string_view WithoutBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

/// Takes the sign off one end; whether it was there.
bool TakeSign(std::string_view& text, std::string_view sign) {
  const bool isFirst = text.starts_with(sign);
  if (!isFirst && !text.ends_with(sign)) return false;
  if (isFirst) {
    text.remove_prefix(sign.size());
  } else {
    text.remove_suffix(sign.size());
  }
  text = WithoutBlanks(text);
  return true;
}

struct Candidate {
  NumberNotation notation;
  const char* told;
};
// Thousands before decimals: 1,500 and 12,000 are whole numbers rather than thousandths.
constexpr Candidate kCandidates[] = {
    {{'.', ','},
     "numbers with commas between thousands: add --thousands , (or --decimal , if they are decimal "
     "commas)"},
    {{',', '\0'}, "numbers with decimal commas: add --decimal ,"},
    {{',', '.'}, "numbers with decimal commas: add --decimal , --thousands ."},
    {{',', ' '}, "numbers with decimal commas: add --decimal , --thousands ' '"},
    {{'.', ' '}, "numbers with blanks between thousands: add --thousands ' '"},
    {{'.', '\''}, "numbers with apostrophes between thousands: add --thousands \"'\""},
};

const char* NotationOf(const std::vector<std::string_view>& texts) {
  for (const Candidate& candidate : kCandidates) {
    if (AreNumbers(candidate.notation, texts)) return candidate.told;
  }
  return nullptr;
}

}  // namespace

bool ParseNumberIn(const NumberNotation& notation, std::string_view text, double& number) {
  if (notation.IsPlain()) return ParseNumber(text, number);
  std::string plain(text);
  if (notation.thousands != '\0' && !JoinGroups(plain, notation)) return false;
  if (notation.decimal != '.') {
    if (plain.find('.') != std::string::npos) return false;
    std::ranges::replace(plain, notation.decimal, '.');
  }
  return ParseNumber(plain, number);
}

std::string RecogniseNumbers(const std::vector<std::string_view>& texts) {
  if (texts.empty()) return {};
  if (const char* const told = NotationOf(texts)) return told;
  std::vector<std::string_view> bare(texts);
  bool hasPercent = false;
  bool hasCurrency = false;
  for (std::string_view& text : bare) {
    hasPercent = TakeSign(text, "%") || hasPercent;
    for (const std::string_view sign : kCurrencies) {
      hasCurrency = TakeSign(text, sign) || hasCurrency;
    }
  }
  const char* const notation = NotationOf(bare);
  if ((!hasPercent && !hasCurrency) || (!AreNumbers({}, bare) && notation == nullptr)) return {};
  return std::string("numbers with ") + (hasPercent ? "percent" : "currency") +
         " signs: write the numbers alone (in a spreadsheet, the number format \"General\")";
}

}  // namespace npar_host
