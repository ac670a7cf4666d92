#pragma once

#include "arithmetic/extended.h"
#include "arithmetic/limits.h"

/// Functions that give the same bits on every machine, which those of the system's library do not.
/// They stand in the place of the standard ones of their names: in src, platform and host/render
/// nothing else forms a figure.
namespace arithmetic {

/// Of inner figures, found by their argument; small letters, since Boost calls them too. Relative
/// error some 2^-62.
[[nodiscard]] Extended exp(Extended x) noexcept;
[[nodiscard]] Extended expm1(Extended x) noexcept;
[[nodiscard]] Extended log(Extended x) noexcept;
[[nodiscard]] Extended log1p(Extended x) noexcept;
[[nodiscard]] Extended pow(Extended x, Extended y) noexcept;
[[nodiscard]] Extended asin(Extended x) noexcept;
[[nodiscard]] Extended erfc(Extended x) noexcept;
/// ln(Gamma(x)) for x > 0, without loss around its zeros 1 and 2.
[[nodiscard]] Extended lgamma(Extended x) noexcept;
/// The x of erfc(x) = y, y in (0, 2).
[[nodiscard]] Extended erfc_inv(Extended y) noexcept;
/// n! for n <= 170.
[[nodiscard]] Extended Factorial(unsigned n) noexcept;
/// What a * b lacks of the exact product.
[[nodiscard]] Extended ProductRest(Extended a, Extended b) noexcept;
[[nodiscard]] bool IsFinite(Extended x) noexcept;

/// Of doubles: the result, formed with 64 digits, is rounded once.
[[nodiscard]] double Exp(double x) noexcept;
[[nodiscard]] double Expm1(double x) noexcept;
[[nodiscard]] double Log(double x) noexcept;
[[nodiscard]] double Log1p(double x) noexcept;
[[nodiscard]] double Pow(double x, double y) noexcept;
[[nodiscard]] double Log10(double x) noexcept;
[[nodiscard]] double Cbrt(double x) noexcept;  ///< of x >= 0
[[nodiscard]] double Asin(double x) noexcept;
[[nodiscard]] double Erfc(double x) noexcept;
[[nodiscard]] double LogGamma(double x) noexcept;

}  // namespace arithmetic
