#include "ranges/smirnov_extremes.h"

#include <algorithm>

void SmirnovExtremes::Take(double value, std::size_t group, std::int64_t weight) {
  if (IsEmpty()) {
    first = value;
  } else if (value != last) {
    EndValue();
  }
  last = value;
  upTo[group] += weight;
}

void SmirnovExtremes::EndValue() {
  const double f1 = static_cast<double>(upTo[0]) / static_cast<double>(sizes[0]);
  const double f2 = static_cast<double>(upTo[1]) / static_cast<double>(sizes[1]);
  const double d = sizes[0] >= sizes[1] ? f1 - f2 : f2 - f1;
  if (d >= 0.0) positive = std::max(positive, d);
  if (d <= 0.0) negative = std::min(negative, d);
}

bool SmirnovExtremes::Append(const SmirnovExtremes& next) {
  if (next.sizes != sizes || next.before != upTo) return false;
  if (next.IsEmpty()) return true;
  if (IsEmpty()) {
    first = next.first;
  } else if (next.first != last) {
    EndValue();
  }
  positive = std::max(positive, next.positive);
  negative = std::min(negative, next.negative);
  last = next.last;
  upTo = next.upTo;
  return true;
}

bool SmirnovExtremes::Finish() {
  if (upTo != sizes) return false;
  EndValue();
  return true;
}

bool SmirnovExtremes::Read(ByteReader& read) {
  Visit(*this, read);
  for (const std::size_t group : {0U, 1U}) {
    if (before[group] < 0 || upTo[group] < before[group] || sizes[group] < upTo[group])
      return false;
  }
  return !read.IsShort();
}
