#pragma once

/// How far long work within a stage of a test has come. Whoever runs stages makes one and keeps it
/// until the end; the work below tells it now and then. A thread tells the latest of its own.
class StageProgress {
 public:
  StageProgress() noexcept : outer(latest) { latest = this; }
  StageProgress(const StageProgress&) = delete;
  StageProgress& operator=(const StageProgress&) = delete;
  virtual ~StageProgress() { latest = outer; }

  /// The part of the stage that is done, from 0 to 1.
  static void Tell(double part) {
    if (latest != nullptr) latest->Take(part);
  }

 private:
  virtual void Take(double part) = 0;

  StageProgress* outer;
  static inline thread_local StageProgress* latest = nullptr;
};
