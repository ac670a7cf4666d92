#pragma once

#include <cstdint>

/// Ascending values told by their ends.
///
/// Most of the values that a walk meets change nothing of what it looks for. A reader of values
/// therefore has two operations: one takes a value; the other passes over a stretch unread, with
/// the same outcome to the last bit, or answers false and does nothing, and then the values go one
/// by one.
struct Stretch {
  std::int64_t weight;  ///< the sum of theirs
  double lowest;        ///< none is below
  double before;        ///< none but the last is above
  double last;
};
