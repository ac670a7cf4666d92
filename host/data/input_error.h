#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace npar_host {

/// What somebody gave or asked for cannot be used. The text reads "what; what to do".
class UserError : public std::runtime_error {
 public:
  /// `field` is the one that it is about, where that is one.
  explicit UserError(const std::string& text, std::string field = {})
      : std::runtime_error(text), field(std::move(field)) {}

  [[nodiscard]] const std::string& Field() const noexcept { return field; }

 private:
  std::string field;
};

/// Of data and documents. Where they have a file, the text begins with "file:line:column: ".
class InputError : public UserError {
 public:
  using UserError::UserError;
};

/// "name:line:column" of an offset in a text. Lines end with LF, CRLF or CR, columns count
/// characters, both from 1. Costs a walk over the text: for messages only.
[[nodiscard]] std::string LocationInText(std::string_view name, std::string_view text,
                                         std::size_t offset);

/// The text in double quotes, cut to a length that a message can carry.
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace npar_host
