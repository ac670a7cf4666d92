#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// The texts of cells in which nothing stands. An empty cell is one always; usual are NA, N/A,
/// #N/A, NaN, nan, null and NULL, and where all other cells of a column are numbers also ".", "-",
/// "?" and "*".
class MissingTokens {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// `given` stand beside the usual ones, or instead of them.
  explicit MissingTokens(const std::vector<std::string>& given = {}, bool onlyGiven = false);

  /// The index of the token that the whole text is, or kNone.
  [[nodiscard]] std::size_t Find(std::string_view text) const {
    if (text.empty()) return 0;
    if (text.size() > longest || !begins[static_cast<unsigned char>(text.front())]) return kNone;
    return FindIn(text);
  }
  /// Is the token a value where texts stand?
  [[nodiscard]] bool IsForNumbersOnly(std::size_t token) const { return token >= firstForNumbers; }
  /// Of cells that spell a not-a-number which is no token, such as "-nan".
  [[nodiscard]] std::size_t NotANumber() const { return texts.size(); }

  /// Of indices, NotANumber included.
  [[nodiscard]] std::size_t Size() const { return texts.size() + 1; }
  [[nodiscard]] std::string_view Text(std::size_t token) const;

 private:
  [[nodiscard]] std::size_t FindIn(std::string_view text) const;
  void Add(std::string_view text);

  std::vector<std::string> texts{""};
  std::size_t firstForNumbers = 0;
  std::size_t longest = 0;
  std::array<bool, 256> begins{};  // whether a token begins with that byte
};

}  // namespace npar_host
