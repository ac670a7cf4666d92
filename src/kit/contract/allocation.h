#pragma once

#include <exception>
#include <utility>

#include "foundation/names.h"

/// Codes of a failed allocation: the first while a run is set up, the second inside a run, which it
/// ends.
inline constexpr std::int32_t kNoMemory = 220002;
inline constexpr std::int32_t kMemoryExhausted = 220012;

/// Does the work and returns its status; any exception, which only an allocation raises here,
/// becomes `code`.
template <typename Work>
QDStatus GuardAllocation(std::int32_t code, Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (const std::exception&) {
    return QDStatus(code);
  }
}
