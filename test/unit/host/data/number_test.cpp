#include "host/data/number.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace {

using npar_host::NumberText;
using npar_host::ParseNumber;
using npar_host::ParsePlainNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The number by the fast road, or by the careful one where that gives up, as the CSV reader does.
bool Parse(const std::string& text, double& number) {
  const std::string padded = text + std::string(40, '\0');
  const char* next = ParsePlainNumber(padded.c_str(), number);
  if (next == padded.c_str() + text.size()) return true;
  return ParseNumber(text, number);
}

::testing::AssertionResult AgreesWithStrtod(const std::string& text) {
  const double expected = std::strtod(text.c_str(), nullptr);
  double careful = -1.0;
  double fast = -1.0;
  if (!ParseNumber(text, careful) || !Parse(text, fast)) {
    return ::testing::AssertionFailure() << text << " is refused";
  }
  const auto bits = std::bit_cast<std::uint64_t>(expected);
  if (std::bit_cast<std::uint64_t>(careful) == bits && std::bit_cast<std::uint64_t>(fast) == bits) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure()
         << text << ": " << careful << " and " << fast << ", strtod says " << expected;
}

TEST(NumberTest, HardCasesAreRoundedAsStrtodRoundsThem) {
  constexpr const char* kTexts[] = {
      "0 -0 -0.0 1. .5 007 0.1 123456789.123456789 1e+5 1E5 0.000000000000000000000000000000000001",
      // 2^53 + 1, a tie that goes to even; as a quotient; a mantissa above 2^53, one place.
      "9007199254740993 9007199254740993.0 900719925474099.30 9007199254740992.5 "
      "9007199254740991.5 9007199254740993.5",
      // 19 digits; more than 19.
      "18014398509481985.00 18014398509481986.001 9999999999999999999 0.9999999999999999999",
      "99999999999999999999 123456789012345678e-27 1234567890123456789e-28 9007199254740993e-22",
      // The point behind 8, 9, 16 and 17 digits; 24 digits of which 19, and 20, are not leading
      // zeros.
      "12345678.12345678901 123456789.1234567891 1234567890123456.789 12345678901234567.89",
      "0.00001234567890123456789 0.00012345678901234567891 0.000001234567890123456789 "
      "000009999999999999999999",
      // Just below 1 + 2^-53, on it and just above.
      "1.000000000000000111 1.0000000000000001110223024625156540423631668090820312",
      "1.00000000000000011102230246251565404236316680908203126",
      // The ends of the range and of the exact powers of ten.
      "2.2250738585072011e-308 2.2250738585072014e-308 4.9e-324 2.4e-324 2.5e-324 1e-400",
      "1.7976931348623157e308 1.7976931348623159e308 1e309 -1e309 1e22 1e23 3e22",
      "1e99999999999999999999 1e-99999999999999999999 0e99999999999999999999"};
  for (const char* texts : kTexts) {
    std::istringstream all(texts);
    for (std::string text; all >> text;) EXPECT_TRUE(AgreesWithStrtod(text));
  }
  EXPECT_TRUE(AgreesWithStrtod("1" + std::string(400, '0')));
  EXPECT_TRUE(AgreesWithStrtod("1" + std::string(400, '0') + "e-395"));
  EXPECT_TRUE(AgreesWithStrtod("0." + std::string(400, '0') + "1"));
  EXPECT_TRUE(AgreesWithStrtod("0." + std::string(400, '0') + "1e+400"));
  EXPECT_TRUE(AgreesWithStrtod("1" + std::string(400, '0') + "e-800"));
}

TEST(NumberTest, RandomNumbersAreRoundedAsStrtodRoundsThem) {
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 200000; ++i) {
    char text[64];
    const std::uint64_t bits = random();
    const double anyDouble = std::bit_cast<double>(bits);
    // Doubles of every size, and decimals of up to 19 digits around every point.
    if (i % 2 == 0 && std::isfinite(anyDouble)) {
      std::snprintf(text, sizeof text, "%.*g", static_cast<int>(random() % 20) + 1, anyDouble);
    } else {
      const std::string digits = std::to_string(bits % 10000000000000000000U);
      const std::size_t point = random() % (digits.size() + 1);
      std::snprintf(text, sizeof text, "%s.%se%d", digits.substr(0, point).c_str(),
                    digits.substr(point).c_str(), static_cast<int>(random() % 40) - 30);
    }
    ASSERT_TRUE(AgreesWithStrtod(text));
  }
}

TEST(NumberTest, DecimalsHalfwayBetweenDoublesAndNextToThemAreRounded) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 30000; ++i) {
    const int halvings = 1 + i % 3;  // of an odd integer of 54 bits: 19 digits at most
    const std::uint64_t odd = std::uint64_t{1} << 53 | random() >> 11 | 1;
    const std::uint64_t rest = odd & ((1U << halvings) - 1);
    std::string text = std::to_string(odd >> halvings) + '.';
    text += std::to_string(1000 + (rest * 1000 >> halvings)).substr(1, halvings);
    ASSERT_TRUE(AgreesWithStrtod(text));
    ASSERT_TRUE(AgreesWithStrtod(text + "01"));
    text.back() = '4';
    ASSERT_TRUE(AgreesWithStrtod(text + "9"));
  }
}

TEST(NumberTest, PlainNumbersTakeTheFastRoadToTheirEnd) {
  for (const std::string text :
       {"0", "-7", ".5", "-.25", "1.", "00012.5", "-0.044662970314123397", "1e22", "2.5E-3",
        "0.00012345678901234567", "1.234567890123456789e-01", "1700000000.123456", "123456789012",
        "9999999999999999999"}) {
    for (const char behind : {',', '\n', 'x', '-', '\0'}) {
      const std::string padded = text + behind + std::string(40, '7');
      double number = 0.0;
      EXPECT_EQ(ParsePlainNumber(padded.c_str(), number), padded.c_str() + text.size()) << text;
    }
  }
}

TEST(NumberTest, BothSearchesFindTheSameNonDigits) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 10000; ++i) {
    char bytes[32];
    std::uint32_t others = 0;
    for (std::size_t place = 0; place < sizeof bytes; ++place) {
      const std::uint64_t bits = random();
      bytes[place] = static_cast<char>(bits % 4 == 0 ? bits >> 8 : '0' + (bits >> 8) % 10);
      if (!npar_host::number_detail::IsDigit(bytes[place])) others |= 1U << place;
    }
    ASSERT_EQ(npar_host::number_detail::NonDigits(bytes), others);
    ASSERT_EQ(npar_host::number_detail::NonDigitsByWords(bytes), others);
  }
}

TEST(NumberTest, SignsAndWordsAreRead) {
  const struct {
    const char* text;
    double number;
  } kRows[] = {{"+1", 1.0},           {"-2.5", -2.5},      {"inf", kInfinity},
               {"-INF", -kInfinity},  {"+Inf", kInfinity}, {"1e400", kInfinity},
               {"-1e400", -kInfinity}};
  for (const auto& row : kRows) {
    double number = 0.0;
    EXPECT_TRUE(Parse(row.text, number)) << row.text;
    EXPECT_EQ(number, row.number) << row.text;
  }
  for (const char* text : {"nan", "NaN", "-NAN"}) {
    double number = 0.0;
    EXPECT_TRUE(Parse(text, number)) << text;
    EXPECT_TRUE(std::isnan(number)) << text;
  }
}

TEST(NumberTest, OtherTextsAreNoNumbersAndLeaveTheNumberAlone) {
  for (const char* text :
       {"",    "+",   "-",   ".",        "e5",     "1e",   "1e+",
        "+-1", "--1", "1,5", "1 000",    "1_000",  "0x10", "1.2.3",
        "12a", " 1",  "1 ",  "infinity", "nan(1)", "1d5",  "12345678901234567890x"}) {
    double number = 17.0;
    EXPECT_FALSE(ParseNumber(text, number)) << text;
    EXPECT_EQ(number, 17.0) << text;
  }
}

TEST(NumberTest, TextOfANumberHasFifteenDigits) {
  EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(NumberText(1e15), "1e+15");
  EXPECT_EQ(NumberText(123456789012345.0), "123456789012345");
  EXPECT_EQ(NumberText(-kInfinity), "-inf");
  EXPECT_EQ(NumberText(std::nan("")), "nan");
}

}  // namespace
