#include "host/data/iso_time.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace npar_host;

struct MomentCase {
  const char* text;
  double number;  // nan: refused
};

const double kRefused = std::nan("");

void Check(bool (*parse)(std::string_view, double&), const MomentCase& row) {
  double number = -17.5;
  const bool isRead = parse(row.text, number);
  EXPECT_EQ(isRead, !std::isnan(row.number)) << row.text;
  EXPECT_EQ(number, isRead ? row.number : -17.5) << row.text;
}

// Days and seconds from GNU coreutils 9.1, date -u -d TEXT +%s.
TEST(IsoTimeTest, DatesAreDaysSince1970) {
  for (const MomentCase& row : {MomentCase{"1970-01-01", 0},
                                {"1969-12-31", -1},
                                {"2024-02-29", 19782},
                                {"2000-02-29", 11016},
                                {"0000-01-01", -719528},
                                {"9999-12-31", 2932896},
                                {"2023-02-29", kRefused},
                                {"1900-02-29", kRefused},
                                {"2024-13-01", kRefused},
                                {"2024-00-10", kRefused},
                                {"2024-01-32", kRefused},
                                {"2024-1-1", kRefused},
                                {"20240101", kRefused},
                                {"2024-01-01x", kRefused},
                                {"", kRefused}}) {
    Check(ParseDate, row);
  }
}

TEST(IsoTimeTest, TimesAreSecondsOfTheDay) {
  for (const MomentCase& row : {MomentCase{"00:00", 0},
                                {"23:59:59", 86399},
                                {"12:30:15.25", 45015.25},
                                {"24:00", kRefused},
                                {"12:60", kRefused},
                                {"12:00:60", kRefused},
                                {"12:00:5", kRefused},
                                {"12:00:", kRefused},
                                {"12:00:05.", kRefused},
                                {"12:00:0.5", kRefused},
                                {"12", kRefused},
                                {"12:00Z", kRefused}}) {
    Check(ParseTime, row);
  }
}

TEST(IsoTimeTest, TimestampsAreSecondsSince1970InUtc) {
  for (const MomentCase& row : {MomentCase{"1970-01-01T00:00", 0},
                                {"2024-02-29 12:00:00", 1709208000},
                                {"2024-02-29T12:00:00Z", 1709208000},
                                {"2024-02-29T14:00:00+02:00", 1709208000},
                                {"2024-02-29T09:30:00-02:30", 1709208000},
                                {"2024-02-29", 1709164800},
                                {"1969-12-31T23:59:59.5", -0.5},
                                {"2024-02-29T", kRefused},
                                {"2024-02-29x12:00", kRefused},
                                {"2024-02-29T12:00+2", kRefused},
                                {"2024-02-29T12:00Zx", kRefused}}) {
    Check(ParseTimestamp, row);
  }
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
