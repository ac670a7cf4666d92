#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "host/data/data_text.h"

namespace npar_host {

/// The cells of a CSV text as RFC 4180 describes them: divided by separators, perhaps in double
/// quotes with a quote inside doubled. Lines end with CRLF, LF or CR; the last may lack its end.
class CsvCells {
 public:
  struct Cell {
    std::string_view text;  // without quotes, good until the next cell
    const char* next;       // the separator or line end behind it, or the end of the text
  };

  explicit CsvCells(const DataText& text) : text(text), end(text.End()) {}

  char separator = ',';
  char comment = '\0';       // begins lines that are passed over; none
  bool skipsBlanks = false;  // in front of each cell
  /// Nobody knows yet whether a cell begins where reading does. A fault is then a TrialFault, found
  /// without looking through the whole text.
  bool isTrial = false;
  struct TrialFault {};

  /// Throws an InputError that says where, but on trial.
  [[noreturn]] void Fail(const char* position, const std::string& message) const {
    if (isTrial) throw TrialFault();
    text.Fail(position, message);
  }

  [[nodiscard]] const char* End() const { return end; }
  [[nodiscard]] std::size_t OffsetOf(const char* position) const {
    return static_cast<std::size_t>(position - text.Text().data());
  }
  [[nodiscard]] bool IsEnd(const char* position) const { return position == end; }
  [[nodiscard]] bool IsLineEnd(const char* position) const {
    return *position == '\n' || *position == '\r' || position == end;
  }

  [[nodiscard]] Cell Next(const char* position) {
    while (skipsBlanks && *position == ' ') ++position;
    if (*position == kQuote && position != end) return NextQuoted(position);
    const char* next = FindEnd(position);
    return {{position, static_cast<std::size_t>(next - position)}, next};
  }

  /// Passes over cells and the separators behind them, at most `count`, which falls by as many;
  /// stops before a cell that is quoted or the last of its line.
  [[nodiscard]] const char* PassPlain(const char* position, std::size_t& count) const;

  /// Behind the line end at `position`, where there is one.
  [[nodiscard]] const char* PassLineEnd(const char* position) const {
    if (position == end) return end;
    return position + (position[0] == '\r' && position[1] == '\n' ? 2 : 1);
  }
  /// Behind the line of `position`, whatever it holds.
  [[nodiscard]] const char* PassLine(const char* position) const {
    while (!IsLineEnd(position)) ++position;
    return PassLineEnd(position);
  }
  [[nodiscard]] const char* PassComments(const char* position) const {
    while (comment != '\0' && position != end && *position == comment) {
      position = PassLine(position);
    }
    return position;
  }

  /// How often the character stands outside quotes in the line of `position`, which moves behind
  /// the line; with `isSpaced`, only where a blank follows.
  [[nodiscard]] std::size_t CountInLine(const char*& position, char wanted,
                                        bool isSpaced = false) const;

 private:
  static constexpr char kQuote = '"';

  static constexpr std::uint64_t Repeat(char byte) {
    return 0x0101010101010101U * static_cast<unsigned char>(byte);
  }
  /// The highest bit of each byte that is zero. Above the first zero byte others may be marked too.
  static constexpr std::uint64_t ZeroBytes(std::uint64_t bytes) {
    return (bytes - 0x0101010101010101U) & ~bytes & 0x8080808080808080U;
  }

  [[nodiscard]] const char* FindEnd(const char* position) const {
    const std::uint64_t separators = Repeat(separator);
    for (;; position += sizeof(std::uint64_t)) {
      if (position >= end) return end;
      std::uint64_t bytes;
      std::memcpy(&bytes, position, sizeof bytes);
      const std::uint64_t found = ZeroBytes(bytes ^ separators) | ZeroBytes(bytes ^ Repeat('\n')) |
                                  ZeroBytes(bytes ^ Repeat('\r'));
      if (found == 0) continue;
      return position + std::countr_zero(found) / 8;
    }
  }
  [[nodiscard]] Cell NextQuoted(const char* position);

  const DataText& text;
  const char* end;
  std::string scratch;  // a cell whose doubled quotes were undone
};

/// Can a text be divided at that character? A quote and the ends of lines have other meanings.
[[nodiscard]] bool CanSeparate(char c);
/// Can a number hold that character, so that its end is no end of a cell?
[[nodiscard]] bool IsInNumbers(char c);

/// That of the candidates which divides the header line and the first record alike, the most
/// frequent if several do or none does; the first where none stands there.
[[nodiscard]] char DetectSeparator(const CsvCells& cells, const char* header,
                                   std::string_view candidates);

}  // namespace npar_host
