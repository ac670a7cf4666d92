#include "host/data/number_notation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace npar_host;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(NumberNotationTest, SignsStandBetweenGroupsOfThreeOrNowhere) {
  constexpr double kNone = -1.0;
  const struct {
    NumberNotation notation;
    const char* text;
    double number;
  } rows[] = {
      {{',', '.'}, "1.234,5", 1234.5},      {{',', '.'}, "1234,5", 1234.5},
      {{',', '.'}, "1.234.567", 1234567.0}, {{',', '.'}, "12.34", kNone},
      {{',', '.'}, "1.2345", kNone},        {{',', '.'}, ".123", kNone},
      {{',', '.'}, "1234.567", kNone},      {{',', '.'}, "1,234.5", kNone},
      {{',', '\0'}, "1,5e3", 1500.0},       {{',', '\0'}, "1.5", kNone},
      {{'.', ' '}, "1\u00A0234", 1234.0},   {{'.', ' '}, "1\u202F234.5", 1234.5},
      {{'.', '\''}, "1'000", 1000.0},       {{'.', '\0'}, "1,5", kNone},
  };
  for (const auto& row : rows) {
    double number = kNone;
    EXPECT_EQ(ParseNumberIn(row.notation, row.text, number), row.number != kNone) << row.text;
    EXPECT_EQ(number, row.number) << row.text;
  }
}

TEST(NumberNotationTest, AColumnIsRecognisedByAllItsCells) {
  const struct {
    std::vector<std::string_view> texts;
    const char* told;
  } rows[] = {
      {{"1,5", "2"}, "decimal commas: add --decimal ,"},
      {{"1,500", "980"}, "add --thousands , (or --decimal ,"},
      {{"1.234,5", "7"}, "add --decimal , --thousands ."},
      {{"45%", "5 %"}, "percent signs"},
      {{"\u20AC 4", "1.234,50 \u20AC"}, "currency signs"},
  };
  for (const auto& row : rows) EXPECT_THAT(RecogniseNumbers(row.texts), HasSubstr(row.told));
  EXPECT_THAT(RecogniseNumbers({"1,5", "2.5"}), IsEmpty());
  EXPECT_THAT(RecogniseNumbers({"1,5", "n.d."}), IsEmpty());
  EXPECT_THAT(RecogniseNumbers({"01.02.2024"}), IsEmpty());
}

}  // namespace
