#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "ranges/bytes.h"

/// The extreme differences between the distribution functions of two groups over one stretch of a
/// sorted sample. They are the doubles that a walk over the whole finds, so that a stretch has to
/// know the sizes of the groups and how many of their units stand before it.
class SmirnovExtremes {
 public:
  using Counts = std::array<std::int64_t, 2>;

  SmirnovExtremes(const Counts& sizes, const Counts& before)
      : sizes(sizes), before(before), upTo(before) {}

  /// Takes units of values that ascend.
  void Take(double value, std::size_t group, std::int64_t weight);
  /// Takes the stretch that follows; false, and nothing done, for another.
  [[nodiscard]] bool Append(const SmirnovExtremes& next);
  /// After the last stretch: false where units of the groups are missing.
  [[nodiscard]] bool Finish();

  [[nodiscard]] const Counts& Sizes() const noexcept { return sizes; }
  /// Of the function of the larger group less that of the other, the first one's where they are of
  /// one size: at least 0, and at most 0. Once they are finished.
  [[nodiscard]] double Positive() const noexcept { return positive; }
  [[nodiscard]] double Negative() const noexcept { return negative; }

  void Write(ByteWriter& write) const { Visit(*this, write); }
  /// False for what was not written so.
  [[nodiscard]] bool Read(ByteReader& read);

 private:
  template <typename Extremes, typename See>
  static void Visit(Extremes& extremes, See& see) {
    for (auto* counts : {&extremes.sizes, &extremes.before, &extremes.upTo}) {
      see((*counts)[0]);
      see((*counts)[1]);
    }
    see(extremes.first);
    see(extremes.last);
    see(extremes.positive);
    see(extremes.negative);
  }
  [[nodiscard]] bool IsEmpty() const noexcept { return upTo == before; }
  /// The last value has all its units.
  void EndValue();

  Counts sizes;
  Counts before;
  Counts upTo;  // units up to and including the last value
  double first = std::numeric_limits<double>::quiet_NaN();
  double last = std::numeric_limits<double>::quiet_NaN();
  // But for the last value, whose units may go on behind the stretch.
  double positive = std::numeric_limits<double>::lowest();
  double negative = std::numeric_limits<double>::max();
};
