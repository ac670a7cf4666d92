#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace npar_host {

/// What a person gave us cannot be used. The text reads "file:line:column: what; what to do".
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// "name:line:column" of an offset in a text. Lines end with LF, CRLF or CR, columns count
/// characters, both from 1. Costs a walk over the text: for messages only.
[[nodiscard]] std::string LocationInText(std::string_view name, std::string_view text,
                                         std::size_t offset);

/// The text in double quotes, cut to a length that a message can carry.
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace npar_host
