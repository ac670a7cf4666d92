#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/stage_progress.h"
#include "planning/progress.h"

/// How far a whole run is. Parts of it tell on any thread how far they are; the run's listener
/// hears of it on the run's own thread alone, each time that the run is a percent further.
class RunProgress {
 public:
  /// In millionths of the run, so that no part of it gets lost in sums.
  static constexpr std::int64_t kWhole = 1'000'000;

  /// The listener is not taken over; null for none. `quietUntil`: a run that is short up to there
  /// tells nothing before.
  RunProgress(ProgressListener* listener, std::int64_t quietUntil) noexcept
      : listener(listener), quietUntil(quietUntil) {}

  /// A stretch of the run, told by one thread at a time.
  class Part final : public ProgressListener, public IPassListener {
   public:
    Part(RunProgress& run, std::int64_t span) noexcept : run(run), span(span) {}
    /// From 0 to 1; less than was told before is passed over.
    void Tell(double part);
    /// Steps are percents of the part.
    int Report(ProgressReport& report) override;
    void PassBegins(const PassInHand& pass) override;

   private:
    friend class RunProgress;
    RunProgress& run;
    std::int64_t span;
    std::int64_t told = 0;
  };
  /// The part is over, which in itself is no news.
  void Finish(Part& part) noexcept;
  /// Passes on what was told meanwhile; on another thread than the run's it does nothing.
  void Publish();

 private:
  [[nodiscard]] bool IsOnOwnThread() const noexcept {
    return std::this_thread::get_id() == ownThread;
  }

  ProgressListener* listener;
  std::int64_t quietUntil;
  std::thread::id ownThread = std::this_thread::get_id();
  std::atomic<std::int64_t> done{0};
  std::int64_t latestPercent = -1;
  std::atomic<bool> hasNewPasses{false};
  std::mutex mutex;
  std::vector<PassInHand> newPasses;
};

/// Tells how far a stage is as how far a part of the run is.
class StageOfRun final : public StageProgress {
 public:
  explicit StageOfRun(RunProgress::Part& part, double share = 1.0) noexcept
      : part(part), share(share) {}

 private:
  void Take(double done) override { part.Tell(share * done); }
  RunProgress::Part& part;
  double share;
};
