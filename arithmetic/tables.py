#!/usr/bin/env python3
"""tables.py > elementary_tables.h: the constants of elementary_functions.h, each as a sum of two doubles."""
from decimal import Decimal, ROUND_HALF_EVEN, getcontext

getcontext().prec = 60
POWER_BITS, LOGARITHM_BITS = 5, 6
POWERS, STEPS = 1 << POWER_BITS, 1 << LOGARITHM_BITS
FIRST, LAST = 45, 90  # of 64: a number between 2^-1/2 and 2^1/2, nearly
SHORT_BITS = 44       # so that a product with an exponent, or a count of steps, is exact


def pair(value, high=None):
    high = float(value) if high is None else high
    return "{%s, %s}" % (high.hex(), float(value - Decimal(high)).hex())


def short(value, top):
    """With its last digit at 2^(top - SHORT_BITS)."""
    unit = Decimal(2) ** (top - SHORT_BITS)
    return pair(value, float((value / unit).to_integral_value(ROUND_HALF_EVEN) * unit))


two = Decimal(2).ln()
powers = [pair((two * k / POWERS).exp()) for k in range(POWERS)]
logarithms = [short((Decimal(k) / STEPS).ln(), 0) for k in range(FIRST, LAST + 1)]
print(f"""#pragma once

// Written by tables.py.

#include <array>
#include <cstddef>

namespace arithmetic::functions {{

struct TwoDoubles {{
  double high;
  double low;
}};

inline constexpr int kPowerBits = {POWER_BITS};
inline constexpr int kPowers = 1 << kPowerBits;
inline constexpr int kLogarithmBits = {LOGARITHM_BITS};
inline constexpr int kLogarithmSteps = 1 << kLogarithmBits;
inline constexpr int kFirstLogarithm = {FIRST};
inline constexpr double kLogarithmTop = {LAST} / {STEPS}.0;
inline constexpr double kStepsInOne = {float(POWERS / two).hex()};  // {POWERS} / ln(2)
// Shortened: the first part times a whole number of 20 binary digits is exact.
inline constexpr TwoDoubles kStep = {short(two / POWERS, -POWER_BITS)};
inline constexpr TwoDoubles kLogarithmOfTwo = {short(two, 0)};
// 2^(k / {POWERS}).
inline constexpr std::array<TwoDoubles, kPowers> kPower = {{{{
    {", ".join(powers)}}}}};
// ln(k / {STEPS}) from {FIRST} on, shortened alike.
inline constexpr std::array<TwoDoubles, {len(logarithms)}> kLogarithm = {{{{
    {", ".join(logarithms)}}}}};

}}  // namespace arithmetic::functions""")
