#include "host/render/json_writer.h"

#include <algorithm>
#include <cstdint>

namespace npar_host {
namespace {

constexpr int kIndent = 2;
constexpr std::size_t kPiece = 1 << 16;  // bytes handed on at once

// The library makes a writer of a kilobyte for each value, which is only worth it for a value that
// holds others, and for what has to be escaped or is no whole number.
std::string Dump(const Json& value) {
  return value.dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

bool IsPlain(std::string_view text) {
  return std::ranges::all_of(text, [](char letter) {
    return letter >= ' ' && letter <= '~' && letter != '"' && letter != '\\';
  });
}

}  // namespace

void JsonWriter::BreakLine() {
  text += '\n';
  text.append(kIndent * levels.size(), ' ');
}

void JsonWriter::BeginItem() {
  if (hasKey) {
    hasKey = false;
    return;
  }
  if (levels.empty()) return;
  if (!levels.back().isEmpty) text += ',';
  levels.back().isEmpty = false;
  BreakLine();
}

void JsonWriter::Key(std::string_view name) {
  BeginItem();
  if (IsPlain(name)) {
    text.append("\"").append(name).append("\": ");
  } else {
    text += Dump(name) + ": ";
  }
  hasKey = true;
}

void JsonWriter::Value(const Json& value) {
  BeginItem();
  if (value.is_null()) {
    text += "null";
  } else if (value.is_number_integer() && !value.is_number_unsigned()) {
    text += std::to_string(value.get<std::int64_t>());
  } else if (const auto* const given = value.get_ptr<const std::string*>();
             given && IsPlain(*given)) {
    text.append("\"").append(*given).append("\"");
  } else {
    WriteDumped(value);
  }
  if (text.size() < kPiece) return;
  sink(text);
  text.clear();
}

void JsonWriter::WriteDumped(const Json& value) {
  // Inside a string a line break is escaped, so that each one here begins a line of the value.
  const std::string dumped = Dump(value);
  for (std::size_t begin = 0;;) {
    const std::size_t end = dumped.find('\n', begin);
    text.append(dumped, begin, end - begin);
    if (end == std::string::npos) break;
    BreakLine();
    begin = end + 1;
  }
}

void JsonWriter::Open(char begin, char end) {
  BeginItem();
  text += begin;
  levels.push_back({end, true});
}

void JsonWriter::Close() {
  const Level level = levels.back();
  levels.pop_back();
  if (!level.isEmpty) BreakLine();
  text += level.end;
}

void JsonWriter::Finish() {
  text += '\n';
  sink(text);
  text.clear();
}

}  // namespace npar_host
