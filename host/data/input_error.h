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

/// "name:line:column" of offsets in a text. Lines end with LF, CRLF or CR, columns count
/// characters, both from 1. Offsets that ascend cost one walk over the text together, any other one
/// a walk.
class Locations {
 public:
  /// Both outlive the object.
  Locations(std::string_view name, std::string_view text) : name(name), text(text) {}

  [[nodiscard]] std::string Of(std::size_t offset);

 private:
  std::string_view name, text;
  std::size_t at = 0;
  std::size_t line = 1;
  std::size_t column = 1;
};

/// One location: for messages only.
[[nodiscard]] std::string LocationInText(std::string_view name, std::string_view text,
                                         std::size_t offset);

/// The text in double quotes, cut to a length that a message can carry.
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace npar_host
