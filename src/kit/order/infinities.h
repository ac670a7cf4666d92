#pragma once

// Differences and means as they are for numbers, and for infinities where plain arithmetic has no
// answer. Both keep the order of their operands: what ascends in a still does.

/// a - b; equal infinities differ by 0.
[[nodiscard]] constexpr double Difference(double a, double b) noexcept {
  return a == b ? 0.0 : a - b;
}

/// (a + b) / 2; midway between opposite infinities is 0.
[[nodiscard]] constexpr double Middle(double a, double b) noexcept {
  return Difference(a, -b) * 0.5;
}
