#include "host/cli/reading_options.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "host/data/input_error.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr std::pair<const char*, char> kNames[] = {
    {"comma", ','}, {"semicolon", ';'}, {"tab", '\t'},        {"\\t", '\t'},  {"space", ' '},
    {"pipe", '|'},  {"point", '.'},     {"apostrophe", '\''}, {"none", '\0'},
};

/// One character, or its name; `unset` for an empty text.
char CharacterOf(const char* option, const std::string& text, char unset) {
  if (text.empty()) return unset;
  for (const auto& [name, character] : kNames) {
    if (text == name) return character;
  }
  if (text == "\xC2\xA0") return ' ';  // a no-break space
  if (text.size() == 1 && text != "\"" && text != "\n" && text != "\r") return text.front();
  throw UsageError(std::string(option) + " is comma, semicolon, tab or one character, not " +
                   Quoted(text));
}

NumberNotation NotationOf(const ReadingOptions& options) {
  NumberNotation notation;
  notation.decimal = CharacterOf("--decimal", options.decimal, '.');
  notation.thousands = CharacterOf("--thousands", options.thousands, '\0');
  if (notation.decimal == '\0') throw UsageError("--decimal is a character, such as ,");
  if (notation.decimal == notation.thousands) {
    throw UsageError("--decimal and --thousands are the same sign; give the one of the other too");
  }
  return notation;
}

}  // namespace

void AddReadingOptions(CLI::App& command, ReadingOptions& options) {
  const auto add = [&](const char* name, auto& value, const char* type, const char* help) {
    return command.add_option(name, value, help)->type_name(type);
  };
  add("--separator", options.separator, "S",
      "between cells: comma, semicolon, tab or a character (default: detected)");
  add("--decimal", options.decimal, "C", "the decimal sign of numbers (default: .)");
  add("--thousands", options.thousands, "C", "the sign between thousands (default: none)");
  add("--missing-token", options.missingTokens, "TEXT",
      "cells that are missing, besides empty ones, NA, N/A, #N/A, NaN, null and, among numbers, "
      ". - ? *")
      ->allow_extra_args(false);
  add("--only-missing-tokens", options.onlyMissingTokens, "TEXT",
      "cells that are missing besides empty ones; instead of those")
      ->allow_extra_args(false);
  add("--skip", options.skip, "N", "lines above the header that are passed over");
  add("--comment", options.comment, "C", "begins lines that are passed over, such as #");
  add("--encoding", options.encoding, "NAME",
      "utf-8, utf-16, utf-16be or latin1 (default: by the byte order mark, or UTF-8)");
}

CsvOptions CsvOptionsOf(const ReadingOptions& options) {
  CsvOptions csv;
  csv.separator = CharacterOf("--separator", options.separator, '\0');
  csv.notation = NotationOf(options);
  csv.missingTokens = options.missingTokens;
  csv.onlyMissingTokens = !options.onlyMissingTokens.empty();
  csv.missingTokens.insert(csv.missingTokens.end(), options.onlyMissingTokens.begin(),
                           options.onlyMissingTokens.end());
  csv.skippedLines = options.skip;
  csv.comment = CharacterOf("--comment", options.comment, '\0');
  if (!options.encoding.empty()) {
    const auto encoding = FindEncoding(options.encoding);
    if (!encoding) {
      throw UsageError("--encoding is utf-8, utf-16, utf-16be or latin1, not " +
                       Quoted(options.encoding));
    }
    csv.encoding = *encoding;
  }
  return csv;
}

}  // namespace npar_host
