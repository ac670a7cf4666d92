#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// How numbers are written: "1.234,5" has the decimal sign ',' and '.' between thousands.
struct NumberNotation {
  char decimal = '.';
  char thousands = '\0';  ///< none; a blank stands for no-break spaces too

  [[nodiscard]] bool IsPlain() const { return decimal == '.' && thousands == '\0'; }
};

/// As ParseNumber, in another notation: between thousands stand signs of all groups or of none.
[[nodiscard]] bool ParseNumberIn(const NumberNotation& notation, std::string_view text,
                                 double& number);

/// What makes the texts of a column, some of which are no numbers, numbers in another notation or
/// with a sign behind them, and how to read them: "numbers with decimal commas: add --decimal ,".
/// Empty where they are none.
[[nodiscard]] std::string RecogniseNumbers(const std::vector<std::string_view>& texts);

}  // namespace npar_host
