#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Numbers distinct values in the order in which they come, from 0: a code for each. Values are
/// told apart by their bits. Memory: for 100 values 8 KiB, for the most of them 1 MiB.
class ValueCodes {
 public:
  /// With more values than these counting is no quicker than sorting.
  static constexpr std::size_t kMost = std::size_t{1} << 14;

  /// Throws std::bad_alloc.
  ValueCodes();

  /// The codes of some values, new ones among them. False where that would be more than kMost; the
  /// codes are then good for nothing. Throws std::bad_alloc.
  [[nodiscard]] bool Find(const double* values, std::size_t count, std::uint16_t* codes);

  [[nodiscard]] std::size_t Size() const noexcept { return values.size(); }
  [[nodiscard]] double Value(std::uint16_t code) const noexcept { return values[code]; }
  /// By code.
  [[nodiscard]] const std::vector<double>& Values() const noexcept { return values; }

 private:
  static constexpr std::uint16_t kNoCode = 0xFFFF;
  static_assert(kMost < kNoCode);

  struct Slot {
    std::uint64_t bits = 0;
    std::uint16_t code = kNoCode;
  };
  /// Where the search for the bits of a value begins.
  [[nodiscard]] std::size_t FirstSlotOf(std::uint64_t bits) const noexcept {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;  // 2^64 over the golden ratio
    return bits * kFactor >> shift;
  }
  /// The slot that holds the bits or, where none does, will.
  [[nodiscard]] std::size_t SlotOf(std::uint64_t bits) const noexcept {
    std::size_t slot = FirstSlotOf(bits);
    while (slots[slot].bits != bits && slots[slot].code != kNoCode) {
      slot = (slot + 1) & (slots.size() - 1);
    }
    return slot;
  }
  /// The code of a value that is not where its search begins; kNoCode for one too many.
  [[nodiscard]] std::uint16_t FindFurther(std::uint64_t bits);
  void Rebuild(std::size_t slotCount);

  std::vector<double> values;
  std::vector<Slot> slots;  // a power of two of them, most empty
  int shift = 0;
};
