#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "host/render/text_sink.h"

namespace npar_host {

using Json = nlohmann::ordered_json;

/// Writes a JSON text value by value, indented, so that a large one is never held as a whole. A
/// text that is no UTF-8 gets replacement characters.
class JsonWriter {
 public:
  explicit JsonWriter(const TextSink& sink) : sink(sink) {}

  /// Inside an object the name of the value that follows.
  void Key(std::string_view name);
  void Value(const Json& value);
  void Member(std::string_view name, const Json& value) {
    Key(name);
    Value(value);
  }
  void OpenObject() { Open('{', '}'); }
  void OpenArray() { Open('[', ']'); }
  void Close();
  /// Ends the text with a line break.
  void Finish();

 private:
  struct Level {
    char end;
    bool isEmpty;
  };
  void Open(char begin, char end);
  void BeginItem();
  void WriteDumped(const Json& value);
  void BreakLine();

  const TextSink& sink;
  std::string text;  // not yet handed on
  std::vector<Level> levels;
  bool hasKey = false;
};

}  // namespace npar_host
