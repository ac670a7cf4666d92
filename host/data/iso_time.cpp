#include "host/data/iso_time.h"

#include <chrono>
#include <cmath>
#include <cstdio>

#include "host/data/number.h"

namespace npar_host {
namespace {

constexpr double kSecondsOfDay = 86400.0;
constexpr double kFirstDay = -719528.0;  // 0000-01-01
constexpr double kLastDay = 2932896.0;   // 9999-12-31

/// Takes exactly `count` digits from the front of the text.
bool TakeDigits(std::string_view& text, std::size_t count, int& number) {
  if (text.size() < count) return false;
  int value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!number_detail::IsDigit(text[i])) return false;
    value = value * 10 + (text[i] - '0');
  }
  number = value;
  text.remove_prefix(count);
  return true;
}

bool TakeChar(std::string_view& text, char wanted) {
  if (text.empty() || text.front() != wanted) return false;
  text.remove_prefix(1);
  return true;
}

bool TakeDate(std::string_view& text, double& days) {
  int year = 0;
  int month = 0;
  int day = 0;
  if (!TakeDigits(text, 4, year) || !TakeChar(text, '-')) return false;
  if (!TakeDigits(text, 2, month) || !TakeChar(text, '-')) return false;
  if (!TakeDigits(text, 2, day)) return false;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return false;
  days = static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count());
  return true;
}

bool TakeHoursAndMinutes(std::string_view& text, int& seconds) {
  int hours = 0;
  int minutes = 0;
  if (!TakeDigits(text, 2, hours) || !TakeChar(text, ':') || !TakeDigits(text, 2, minutes)) {
    return false;
  }
  if (hours > 23 || minutes > 59) return false;
  seconds = hours * 3600 + minutes * 60;
  return true;
}

bool TakeTime(std::string_view& text, double& seconds) {
  int wholeMinutes = 0;
  if (!TakeHoursAndMinutes(text, wholeMinutes)) return false;
  double inMinute = 0.0;
  if (TakeChar(text, ':')) {
    std::size_t length = 0;
    while (length < text.size() && (number_detail::IsDigit(text[length]) || text[length] == '.')) {
      ++length;
    }
    const bool isWellFormed = length == 2 || (length > 3 && text[2] == '.');
    if (!isWellFormed || !ParseNumber(text.substr(0, length), inMinute)) return false;
    if (!(inMinute < 60.0)) return false;
    text.remove_prefix(length);
  }
  seconds = wholeMinutes + inMinute;
  return true;
}

}  // namespace

bool ParseDate(std::string_view text, double& days) {
  double value = 0.0;
  if (!TakeDate(text, value) || !text.empty()) return false;
  days = value;
  return true;
}

bool ParseTime(std::string_view text, double& seconds) {
  double value = 0.0;
  if (!TakeTime(text, value) || !text.empty()) return false;
  seconds = value;
  return true;
}

bool ParseTimestamp(std::string_view text, double& seconds) {
  double days = 0.0;
  double inDay = 0.0;
  int offset = 0;
  if (!TakeDate(text, days)) return false;
  if (!text.empty()) {
    if (!TakeChar(text, 'T') && !TakeChar(text, ' ')) return false;
    if (!TakeTime(text, inDay)) return false;
    const bool isEast = TakeChar(text, '+');
    if (isEast || TakeChar(text, '-')) {
      if (!TakeHoursAndMinutes(text, offset)) return false;
      if (!isEast) offset = -offset;
    } else {
      static_cast<void>(TakeChar(text, 'Z'));  // UTC, as without it
    }
    if (!text.empty()) return false;
  }
  seconds = days * kSecondsOfDay + inDay - offset;
  return true;
}

std::string DateText(double days) {
  if (!(days >= kFirstDay && days <= kLastDay)) return {};
  const std::chrono::year_month_day date{
      std::chrono::sys_days(std::chrono::days(static_cast<int>(days)))};
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::string TimeText(double seconds) {
  if (!(seconds >= 0.0 && seconds < kSecondsOfDay)) return {};
  const int minutes = static_cast<int>(seconds / 60.0);
  const std::string inMinute = NumberText(seconds - minutes * 60.0);
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:", minutes / 60, minutes % 60);
  const bool isOneDigit = inMinute.find('.') == 1 || inMinute.size() == 1;
  return text + std::string(isOneDigit ? "0" : "") + inMinute;
}

std::string TimestampText(double seconds) {
  const double days = std::floor(seconds / kSecondsOfDay);
  const std::string date = DateText(days);
  return date.empty() ? date : date + "T" + TimeText(seconds - days * kSecondsOfDay);
}

}  // namespace npar_host
