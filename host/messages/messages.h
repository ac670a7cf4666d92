#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace npar_host {

enum class MessageKind { Error, Warning, Help };

/// What the positional parameters of a message are. Names are shown in quotes.
enum class ParameterMeaning {
  Plain,  ///< numbers, or texts that are shown as they are
  Name,   ///< a name as the user wrote it
  Field,  ///< the index of a field of the data, in decimal; or the name of one that is not there
};

/// A message code in words. `text` says what is wrong and continues "error 220010: "; `remedy` is a
/// sentence on what to do. Placeholders in `text`: "%0" to "%9" for one positional parameter, "%*"
/// for all of them, "%group" for the named one; a part in brackets is left out unless each of its
/// placeholders has a parameter.
struct MessageText {
  std::int32_t code;
  MessageKind kind;
  std::string_view text;
  std::string_view remedy;
  ParameterMeaning parameters = ParameterMeaning::Plain;
};

/// All messages, ascending by code.
[[nodiscard]] std::span<const MessageText> AllMessages();

/// Null for a code without a text.
[[nodiscard]] const MessageText* FindMessage(std::int32_t code);

/// What raises the code: "Mann-Whitney U test", "Run".
[[nodiscard]] std::string_view MessageSource(std::int32_t code);

/// "error", "warning", "help".
[[nodiscard]] std::string_view KindName(MessageKind kind);

/// The name of a field by its index, nothing for an index that is none.
using FieldNames = std::function<std::optional<std::string>(std::size_t)>;
using NamedParameters = std::span<const std::pair<std::string, std::string>>;

/// The text of a code with its parameters in place; those that are not given show as nothing.
/// Parameters may hold anything: they are not searched for placeholders, and control characters in
/// them become blanks. A code without a text is told as such, with its parameters.
[[nodiscard]] std::string FillMessage(std::int32_t code, std::span<const std::string> parameters,
                                      NamedParameters named = {}, const FieldNames& fields = {});

}  // namespace npar_host
