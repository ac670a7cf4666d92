#pragma once

#include "foundation/names.h"
#include "kit/order/interruption.h"

/// Whether a run shall stop: the host's source, and the answer once it was yes.
struct CancelPair {
  ICancelSource* source = nullptr;
  bool cancelled = false;

  [[nodiscard]] bool Check() {
    if (!cancelled && source != nullptr) cancelled = source->IsCancelled();
    return cancelled;
  }
};

/// Answers for the work that the thread has in hand, which may be a part of a run.
class WorkCancelSource final : public ICancelSource {
 public:
  bool IsCancelled() override { return Interruption::IsCalledOff(); }
};
