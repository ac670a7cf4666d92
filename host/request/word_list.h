#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// What was asked for is wrong; the text says what and what to do.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
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
