#pragma once

#include <algorithm>
#include <cstddef>

#include "kit/order/per_thread.h"

/// How far long work within a stage has come. Whoever runs stages makes one and keeps it until the
/// end; the work below tells it now and then. A thread tells the latest of its own, and what it
/// hands to others goes on without telling.
class StageProgress {
 public:
  StageProgress() noexcept : outer(latest.Get()) { latest.Set(this); }
  StageProgress(const StageProgress&) = delete;
  StageProgress& operator=(const StageProgress&) = delete;
  virtual ~StageProgress() { latest.Set(outer); }

  /// Tells the part of the stage that is done, from 0 to 1.
  static void Tell(double part) {
    if (StageProgress* const told = latest.Get()) told->Take(part);
  }

 protected:
  void TellOuter(double part) const {
    if (outer != nullptr) outer->Take(part);
  }

 private:
  virtual void Take(double part) = 0;

  StageProgress* outer;
  static inline PerThread<StageProgress> latest;
};

/// A stretch of the stage in hand as a stage of its own.
class StagePart final : public StageProgress {
 public:
  StagePart(double from, double to) noexcept : from(from), to(to) {}

 private:
  void Take(double part) override { TellOuter(from + (to - from) * part); }
  double from;
  double to;
};

/// Tells how far a walk over records is.
class WalkProgress {
 public:
  /// 0 for a number that is not known: nothing is told.
  explicit WalkProgress(std::size_t expected) noexcept : expected(expected) {}
  void Step(std::size_t count) {
    walked += count;
    if (walked - told < kStep || expected == 0) return;
    told = walked;
    StageProgress::Tell(std::min(static_cast<double>(walked) / static_cast<double>(expected), 1.0));
  }

 private:
  static constexpr std::size_t kStep = std::size_t{1} << 14;
  std::size_t expected;
  std::size_t walked = 0;
  std::size_t told = 0;
};
