#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Mid-ranks of the few values of one record among themselves, Made once
/// for a number of values; ranking a record allocates nothing.
class RecordRanks {
 public:
  RecordRanks() = default;
  /// For records of up to that many values. Throws std::bad_alloc.
  explicit RecordRanks(std::size_t capacity) : entries(capacity), ranks(capacity) {}

  /// Takes the values, one call for each place from 0; then Rank.
  void Put(std::size_t place, double value) noexcept {
    entries[place] = Entry{value, static_cast<std::uint32_t>(place)};
  }
  /// Ranks the first `count` places.
  void Rank(std::size_t count) noexcept;

  [[nodiscard]] double RankOf(std::size_t place) const noexcept { return ranks[place]; }

 private:
  struct Entry {
    double value;
    std::uint32_t place;
  };
  void Sort(std::size_t count) noexcept;

  std::vector<Entry> entries;
  std::vector<double> ranks;
};
