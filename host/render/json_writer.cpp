#include "host/render/json_writer.h"

#include <algorithm>

namespace npar_host {
namespace {

constexpr int kIndent = 2;
constexpr std::size_t kPiece = 1 << 16;  // bytes handed on at once

std::string Dump(const Json& value) {
  return value.dump(kIndent, ' ', false, Json::error_handler_t::replace);
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
  // The library makes a writer of a kilobyte for each value; names are mostly plain.
  const bool isPlain = std::ranges::all_of(name, [](char letter) {
    return letter > ' ' && letter <= '~' && letter != '"' && letter != '\\';
  });
  if (isPlain) {
    text.append("\"").append(name).append("\": ");
  } else {
    text += Dump(name) + ": ";
  }
  hasKey = true;
}

void JsonWriter::Value(const Json& value) {
  BeginItem();
  // Inside a string a line break is escaped, so that each one here begins a line of the value.
  const std::string dumped = Dump(value);
  for (std::size_t begin = 0;;) {
    const std::size_t end = dumped.find('\n', begin);
    text.append(dumped, begin, end - begin);
    if (end == std::string::npos) break;
    BreakLine();
    begin = end + 1;
  }
  if (text.size() < kPiece) return;
  sink(text);
  text.clear();
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
  sink(text + '\n');
  text.clear();
}

}  // namespace npar_host
