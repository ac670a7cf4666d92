#include "host/data/iso_time.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace npar_host;

using Parse = bool (*)(std::string_view, double&);

void ExpectRead(Parse parse, std::initializer_list<std::pair<const char*, double>> rows) {
  for (const auto& [text, expected] : rows) {
    double number = -17.5;
    EXPECT_TRUE(parse(text, number)) << text;
    EXPECT_EQ(number, expected) << text;
  }
}

void ExpectRefused(Parse parse, std::initializer_list<const char*> texts) {
  for (const char* text : texts) {
    double number = -17.5;
    EXPECT_FALSE(parse(text, number)) << text;
    EXPECT_EQ(number, -17.5) << text;
  }
}

// Days and seconds from GNU coreutils 9.1, date -u -d TEXT +%s.
TEST(IsoTimeTest, DatesAreDaysSince1970) {
  ExpectRead(ParseDate, {{"1970-01-01", 0},
                         {"1969-12-31", -1},
                         {"2024-02-29", 19782},
                         {"2000-02-29", 11016},
                         {"0000-01-01", -719528},
                         {"9999-12-31", 2932896}});
  ExpectRefused(ParseDate, {"2023-02-29", "1900-02-29", "2024-13-01", "2024-00-10", "2024-01-32",
                            "2024-1-1", "20240101", "2024-01-01x", ""});
}

TEST(IsoTimeTest, TimesAreSecondsOfTheDay) {
  ExpectRead(ParseTime, {{"00:00", 0}, {"23:59:59", 86399}, {"12:30:15.25", 45015.25}});
  ExpectRefused(ParseTime, {"24:00", "12:60", "12:00:60", "12:00:5", "12:00:", "12:00:05.",
                            "12:00:0.5", "12", "12:00Z"});
}

TEST(IsoTimeTest, TimestampsAreSecondsSince1970InUtc) {
  ExpectRead(ParseTimestamp, {{"1970-01-01T00:00", 0},
                              {"2024-02-29 12:00:00", 1709208000},
                              {"2024-02-29T12:00:00Z", 1709208000},
                              {"2024-02-29T14:00:00+02:00", 1709208000},
                              {"2024-02-29T09:30:00-02:30", 1709208000},
                              {"2024-02-29", 1709164800},
                              {"1969-12-31T23:59:59.5", -0.5}});
  ExpectRefused(ParseTimestamp,
                {"2024-02-29T", "2024-02-29x12:00", "2024-02-29T12:00+2", "2024-02-29T12:00Zx"});
}

TEST(IsoTimeTest, TextsOfNumbersReadBack) {
  EXPECT_EQ(DateText(19782), "2024-02-29");
  EXPECT_EQ(DateText(2932897), "");
  EXPECT_EQ(DateText(std::nan("")), "");
  EXPECT_EQ(TimeText(3605.25), "01:00:05.25");
  EXPECT_EQ(TimeText(86400), "");
  EXPECT_EQ(TimestampText(-0.5), "1969-12-31T23:59:59.5");
  EXPECT_EQ(TimestampText(1e300), "");
}

}  // namespace
