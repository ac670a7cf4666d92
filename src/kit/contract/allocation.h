#pragma once

#include <utility>

#include "foundation/names.h"
#include "kit/order/interruption.h"

/// Codes of a failed allocation: the first while a run is set up, the second inside a run, which it
/// ends.
inline constexpr std::int32_t kNoMemory = 220002;
inline constexpr std::int32_t kMemoryExhausted = 220012;

/// The run was cancelled.
inline constexpr std::int32_t kCancelled = 1;

/// Does the work and returns its status; any exception, which only an allocation raises here
/// (a host's own are caught where it is called), becomes `code`, and an interruption kCancelled.
template <typename Work>
QDStatus GuardAllocation(std::int32_t code, Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (const Interrupted&) {
    return QDStatus(kCancelled);
  } catch (...) {
    return QDStatus(code);
  }
}
