#include "kit/order/value_codes.h"

#include <limits>

namespace {

/// So few slots are taken that most searches end where they begin.
constexpr std::size_t kSlotsPerValue = 4;
constexpr std::size_t kFirstSlots = 256;

}  // namespace

ValueCodes::ValueCodes() { Rebuild(kFirstSlots); }

bool ValueCodes::Find(const double* from, std::size_t count, std::uint16_t* codes) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(from[i]);
    const Slot& slot = slots[FirstSlotOf(bits)];
    codes[i] = slot.bits == bits ? slot.code : FindFurther(bits);
    if (codes[i] == kNoCode) return false;
  }
  return true;
}

std::uint16_t ValueCodes::FindFurther(std::uint64_t bits) {
  std::size_t slot = SlotOf(bits);
  if (slots[slot].code != kNoCode) return slots[slot].code;
  if (values.size() == kMost) return kNoCode;
  if (values.size() * kSlotsPerValue == slots.size()) {
    Rebuild(2 * slots.size());
    slot = SlotOf(bits);
  }
  values.push_back(std::bit_cast<double>(bits));
  slots[slot] = {bits, static_cast<std::uint16_t>(values.size() - 1)};
  return slots[slot].code;
}

void ValueCodes::Rebuild(std::size_t slotCount) {
  slots.assign(slotCount, Slot());
  // An empty slot has the bits of no value whose search begins there: those of zero begin at 0.
  slots[0].bits = 1;
  shift = std::numeric_limits<std::uint64_t>::digits - std::countr_zero(slotCount);
  for (std::size_t code = 0; code < values.size(); ++code) {
    const auto bits = std::bit_cast<std::uint64_t>(values[code]);
    slots[SlotOf(bits)] = {bits, static_cast<std::uint16_t>(code)};
  }
}
