#include "kit/order/value_codes.h"

#include <limits>
#include <utility>

namespace {

/// So few slots are taken that most searches end where they begin.
constexpr std::size_t kSlotsPerValue = 4;
constexpr std::size_t kFirstSlots = 1024;

constexpr int ShiftFor(std::size_t slots) noexcept {
  return std::numeric_limits<std::uint64_t>::digits - std::countr_zero(slots);
}

}  // namespace

ValueCodes::ValueCodes() : slots(kFirstSlots), shift(ShiftFor(kFirstSlots)) {}

bool ValueCodes::Find(const double* from, std::size_t count, std::uint16_t* codes) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(from[i]);
    std::size_t slot = SlotOf(bits);
    if (slots[slot].code == kNoCode) {
      if (values.size() == kMost) return false;
      if (values.size() * kSlotsPerValue == slots.size()) {
        Grow();
        slot = SlotOf(bits);
      }
      Add(slot, bits);
    }
    codes[i] = slots[slot].code;
  }
  return true;
}

void ValueCodes::Add(std::size_t slot, std::uint64_t bits) {
  values.push_back(std::bit_cast<double>(bits));
  slots[slot] = {bits, static_cast<std::uint16_t>(values.size() - 1)};
}

void ValueCodes::Grow() {
  std::vector<Slot> larger(2 * slots.size());
  shift = ShiftFor(larger.size());
  slots = std::move(larger);
  for (std::size_t code = 0; code < values.size(); ++code) {
    const auto bits = std::bit_cast<std::uint64_t>(values[code]);
    slots[SlotOf(bits)] = {bits, static_cast<std::uint16_t>(code)};
  }
}
