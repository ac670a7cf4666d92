#include "host/data/csv_cells.h"

#include <algorithm>

#include "host/data/number.h"

namespace npar_host {
namespace {

constexpr std::ptrdiff_t kLongestOnTrial = std::ptrdiff_t{1} << 20;  // bytes between quotes

}  // namespace

CsvCells::Cell CsvCells::NextQuoted(const char* position) {
  const char* part = position + 1;
  bool hasParts = false;
  for (;;) {
    const std::ptrdiff_t most = isTrial ? std::min(kLongestOnTrial, end - part) : end - part;
    const void* found = std::memchr(part, kQuote, static_cast<std::size_t>(most));
    if (found == nullptr) {
      Fail(position,
           "this quote is never closed; close the cell with a quote, double those inside");
    }
    const char* quote = static_cast<const char*>(found);
    const std::string_view inside(part, static_cast<std::size_t>(quote - part));
    if (quote[1] == kQuote && quote + 1 != end) {
      if (!hasParts) scratch.clear();
      hasParts = true;
      scratch.append(inside).push_back(kQuote);
      part = quote + 2;
      continue;
    }
    const char* next = quote + 1;
    if (!IsLineEnd(next) && *next != separator) {
      Fail(next, "a quoted cell goes on after its closing quote; double the quotes inside a cell");
    }
    if (!hasParts) return {inside, next};
    scratch.append(inside);
    return {scratch, next};
  }
}

std::size_t CsvCells::CountInLine(const char*& position, char wanted, bool isSpaced) const {
  std::size_t count = 0;
  bool isQuoted = false;
  while (position != end && (isQuoted || !IsLineEnd(position))) {
    if (*position == kQuote) isQuoted = !isQuoted;
    if (*position == wanted && !isQuoted && (!isSpaced || position[1] == ' ')) ++count;
    ++position;
  }
  position = PassLineEnd(position);
  return count;
}

bool CanSeparate(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return static_cast<signed char>(c) > 0 && !isLetter && !number_detail::IsDigit(c) &&
         std::string_view("\"\r\n.+-").find(c) == std::string_view::npos;
}

char DetectSeparator(const CsvCells& cells, const char* header, std::string_view candidates) {
  char best = candidates.front();
  std::size_t most = 0;
  bool bestIsEven = false;
  for (const char candidate : candidates) {
    const char* position = header;
    const std::size_t inHeader = cells.CountInLine(position, candidate);
    position = cells.PassComments(position);
    const bool isEven = cells.IsEnd(position) || cells.CountInLine(position, candidate) == inHeader;
    if (inHeader == 0 || (bestIsEven && !isEven)) continue;
    if (inHeader > most || (isEven && !bestIsEven)) {
      best = candidate;
      most = inHeader;
      bestIsEven = isEven;
    }
  }
  return best;
}

}  // namespace npar_host
