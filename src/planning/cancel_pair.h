#pragma once

#include "foundation/names.h"

/// Whether a run shall stop: the host's source, and the answer once it was yes.
struct CancelPair {
  ICancelSource* source = nullptr;
  bool cancelled = false;

  [[nodiscard]] bool Check() {
    if (!cancelled && source != nullptr) cancelled = source->IsCancelled();
    return cancelled;
  }
};
