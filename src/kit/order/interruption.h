#pragma once

#include "kit/order/per_thread.h"

/// Thrown where long work stops because it is no longer wanted; caught where the work was begun.
struct Interrupted {};

/// Whether the work in hand is still wanted. Whoever begins long work makes one and keeps it until
/// the end; what does the work, however deep below, asks now and then. A thread asks the latest of
/// its own; Threads carry the answer to the tasks of others.
class Interruption {
 public:
  Interruption() noexcept : outer(latest.Get()) { latest.Set(this); }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  virtual ~Interruption() { latest.Set(outer); }

  [[nodiscard]] static bool IsCalledOff() {
    Interruption* const asked = latest.Get();
    return asked != nullptr && asked->ShallStop();
  }
  /// Throws Interrupted where the work in hand shall stop. Costs about as much as a virtual call:
  /// once for some hundred values is never felt.
  static void Check() {
    if (IsCalledOff()) throw Interrupted();
  }

 protected:
  /// What the thread asked before.
  [[nodiscard]] bool ShallOuterStop() const { return outer != nullptr && outer->ShallStop(); }

 private:
  [[nodiscard]] virtual bool ShallStop() = 0;

  Interruption* outer;
  static inline PerThread<Interruption> latest;
};

/// Asks Interruption::Check once in so many steps of a loop whose steps take next to no time.
class SparseCheck {
 public:
  void Step() {
    if (++steps % kStepsBetween == 0) Interruption::Check();
  }

 private:
  static constexpr unsigned kStepsBetween = 1U << 16;
  unsigned steps = 0;
};
