#include "host/data/csv_cells.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>

#include "host/data/number.h"

namespace npar_host {
namespace {

[[maybe_unused]] constexpr std::ptrdiff_t kBlock = 64;               // not where there is no SSE2
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

#ifdef __SSE2__
// By 64 bytes at a time, each of which is a bit: the separators, and what needs a closer look.
const char* CsvCells::PassPlain(const char* position, std::size_t& count) const {
  const auto find = [](const char* text, char wanted) {
    std::uint64_t found = 0;
    for (int part = 0; part < 4; ++part) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text) + part);
      const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted)));
      found |= std::uint64_t{static_cast<std::uint32_t>(mask)} << 16 * part;
    }
    return found;
  };
  const char* cell = position;
  for (const char* block = position; count > 0 && block < end; block += kBlock) {
    std::uint64_t separators = find(block, separator);
    const std::uint64_t others = find(block, '\n') | find(block, '\r') | find(block, kQuote);
    separators &= (others & (0 - others)) - 1;  // those before the first of the others
    const auto found = static_cast<std::size_t>(std::popcount(separators));
    if (found >= count) {
      for (; count > 1; --count) separators &= separators - 1;
      count = 0;
      return block + std::countr_zero(separators) + 1;
    }
    count -= found;
    if (found > 0) cell = block + std::bit_width(separators);
    if (others != 0) break;
  }
  return cell;
}
#else
const char* CsvCells::PassPlain(const char* position, std::size_t& count) const {
  for (; count > 0 && *position != kQuote; --count) {
    const char* const next = FindEnd(position);
    if (next == end || *next != separator) break;
    position = next + 1;
  }
  return position;
}
#endif

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
  return static_cast<signed char>(c) > 0 &&
         std::string_view("\"\r\n").find(c) == std::string_view::npos;
}

bool IsInNumbers(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || number_detail::IsDigit(c) || c == '.' || c == '+' || c == '-';
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
