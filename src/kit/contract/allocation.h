#pragma once

#include <utility>

#include "catalogue/run.h"
#include "foundation/names.h"
#include "kit/order/interruption.h"

// A failed allocation: the first while a run is set up, the second inside a run, which it ends.
using catalogue::run::kCancelled;
using catalogue::run::kMemoryExhausted;
using catalogue::run::kNoMemory;

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
