#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/data/input_error.h"

namespace npar_host {

/// What was asked for is wrong; the text says what and what to do.
class UsageError : public UserError {
 public:
  using UserError::UserError;
};

/// Splits at a separator. A backslash takes the character after it as it stands, so that a name may
/// hold separators; it stays in the parts, for a further split or for Unescape. An empty text has
/// no part.
[[nodiscard]] std::vector<std::string> SplitWords(std::string_view text, char separator);

/// Cuts at the first unescaped separator; false without one, `head` being the whole then.
bool CutAt(std::string_view text, char separator, std::string& head, std::string& tail);

/// Takes the escaping backslashes away.
[[nodiscard]] std::string Unescape(std::string_view text);

}  // namespace npar_host
