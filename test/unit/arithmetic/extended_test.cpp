#include "arithmetic/extended.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "arithmetic/elementary_functions.h"

namespace arithmetic {
namespace {

/// Multiplicative congruential numbers, the same everywhere: D. E. Knuth, MMIX.
class Numbers {
 public:
  std::uint64_t Next() {
    state = state * 6364136223846793005U + 1442695040888963407U;
    return state ^ (state >> 31);
  }

  /// A significand and an exponent up to `reach`; many end in zeros or ones, where rounding is
  /// hard.
  template <typename Use>
  void NextNumber(int reach, Use use) {
    std::uint64_t significand = Next();
    switch (Next() % 6) {
      case 0:
        significand &= ~std::uint64_t{0} << 40;
        break;
      case 1:
        significand |= ~std::uint64_t{0} >> 24;
        break;
      case 2:
        significand = 0;
        break;
      default:
        break;
    }
    const auto span = static_cast<std::uint64_t>(2 * reach);
    const int exponent = static_cast<int>(Next() % span) - reach - 63;
    use(significand | std::uint64_t{1} << 63, exponent, Next() % 2 == 0);
  }

 private:
  std::uint64_t state = 1;
};

/// All the digits of numbers, made into one.
class Digest {
 public:
  void Add(double x) {
    value = (std::rotl(value, 5) ^ std::bit_cast<std::uint64_t>(x != x ? 0.5 : x)) *
            0x9E3779B97F4A7C15U;
  }
  template <typename Real>
  void Add(Real x) {
    Add(static_cast<double>(x));
    if (!(x - x == 0) || x == 0) return;
    const int exponent = x.Exponent();
    const Real significand = ldexp(x, -exponent);
    Add(static_cast<double>(exponent));
    Add(static_cast<double>(significand - Real(static_cast<double>(significand))));
  }
  [[nodiscard]] std::uint64_t Value() const { return value; }

 private:
  std::uint64_t value = 1;
};

constexpr std::array<int, 6> kReaches = {2, 5, 70, 200, 1100, 16400};

template <typename Real, typename Use>
void ForPairs(Use use) {
  constexpr int kPairs = 20000;
  Numbers numbers;
  for (const int reach : kReaches) {
    for (int i = 0; i < kPairs; ++i) {
      std::array<Real, 2> pair;
      for (Real& number : pair) {
        numbers.NextNumber(reach, [&](std::uint64_t significand, int exponent, bool isNegative) {
          number = ldexp(Real(significand), exponent);
          if (isNegative) number = -number;
        });
      }
      use(pair[0], pair[1]);
    }
  }
}

template <typename Real>
std::uint64_t DigestOfOperations() {
  Digest digest;
  ForPairs<Real>([&](Real a, Real b) {
    for (const Real result : {a + b, a - b, a * b, a / b, sqrt(fabs(a)), floor(a)}) {
      digest.Add(result);
    }
    digest.Add(a < b ? 1.0 : 0.0);
  });
  return digest.Value();
}

template <typename Real>
std::uint64_t DigestOfFunctions() {
  Digest digest;
  ForPairs<Real>([&](Real a, Real b) {
    for (const Real result :
         {functions::Exponential(a), functions::ExponentialLessOne(a),
          functions::Logarithm(fabs(a)), functions::LogarithmOfOneMore(a),
          functions::Power(fabs(a), b), functions::ArcSine(a), functions::ProductRest(a, b)}) {
      digest.Add(result);
    }
  });
  return digest.Value();
}

// Figures of the processor of x86-64, which the first test finds again where there is one.
constexpr std::uint64_t kOperations = 17688819665379827551U;
constexpr std::uint64_t kFunctions = 16011892244925174482U;

TEST(ExtendedTest, SoftwareHasTheBitsOfTheProcessor) {
  EXPECT_EQ(DigestOfOperations<SoftwareExtended>(), kOperations);
  EXPECT_EQ(DigestOfFunctions<SoftwareExtended>(), kFunctions);
}

TEST(ExtendedTest, TheTypeInUseHasThem) {
  EXPECT_EQ(DigestOfOperations<Extended>(), kOperations);
  EXPECT_EQ(DigestOfFunctions<Extended>(), kFunctions);
}

TEST(ExtendedTest, DecimalDigitsAreRoundedOnce) {
  struct Case {
    const char* decimal;
    std::uint64_t significand;
    int exponent;
  };
  // Found with Python's fractions.
  for (const auto& [decimal, significand, exponent] :
       {Case{"0.1", 0xcccccccccccccccd, -67}, Case{"1.5e+3", 1500, 0},
        Case{"1.644934066848226436472415166646025", 0xd28d3312983e9918, -63},
        Case{"6.02214076E+23", 0xff0c2e52be28b98c, 15}, Case{"1e-200", 0xc3f490aa77bd60fd, -728},
        Case{"36893488147419103233", std::uint64_t{1} << 63, 2},
        Case{"36893488147419103235", (std::uint64_t{1} << 63) + 1, 2},
        Case{"18446744073709551615.5", std::uint64_t{1} << 63, 1},
        Case{"9223372036854775808.5", std::uint64_t{1} << 63, 0},
        Case{"9223372036854775809.5", (std::uint64_t{1} << 63) + 2, 0},
        Case{"9223372036854775808.50000000000000000001", (std::uint64_t{1} << 63) + 1, 0}}) {
    EXPECT_EQ(SoftwareExtended(decimal), SoftwareExtended::Scaled(significand, exponent))
        << decimal;
  }
  EXPECT_EQ(SoftwareExtended("0.000"), SoftwareExtended(0));
  EXPECT_GT(SoftwareExtended("1e-4900"), SoftwareExtended(0));
  EXPECT_LT(SoftwareExtended("1e4900"), SoftwareExtended("1.0000000000000001e+4900"));
  EXPECT_EQ(SoftwareExtended("-0.25"), SoftwareExtended(-0.25));
}

}  // namespace
}  // namespace arithmetic
