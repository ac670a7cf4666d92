#include "planning/run_progress.h"

#include <utility>

namespace {

constexpr std::int64_t kPercent = RunProgress::kWhole / 100;

}  // namespace

void RunProgress::Part::Tell(double part) {
  const auto reached = TruncateToInt64(part * static_cast<double>(span));
  if (reached <= told) return;
  run.done += reached - told;
  told = reached;
  if (!run.IsOnOwnThread()) return;
  run.quietUntil = 0;
  run.Publish();
}

int RunProgress::Part::Report(ProgressReport& report) {
  const double percent = dynamic_cast<NPARReporter&>(report).GetCurrentStepNum();
  const auto reached = TruncateToInt64(percent / 100.0 * static_cast<double>(span));
  if (reached > told) run.done += reached - std::exchange(told, reached);
  run.Publish();
  return 0;
}

void RunProgress::Part::PassBegins(const PassInHand& pass) {
  {
    const std::lock_guard lock(run.mutex);
    run.newPasses.push_back(pass);
  }
  run.hasNewPasses = true;
  run.Publish();
}

void RunProgress::Finish(Part& part) noexcept {
  done += part.span - std::exchange(part.told, part.span);
}

void RunProgress::Publish() {
  if (listener == nullptr || !IsOnOwnThread()) return;
  ProgressListener& told = *listener;
  if (hasNewPasses.load(std::memory_order_relaxed) && hasNewPasses.exchange(false)) {
    std::vector<PassInHand> passes;
    {
      const std::lock_guard lock(mutex);
      passes.swap(newPasses);
    }
    auto* passListener = dynamic_cast<IPassListener*>(&told);
    for (const PassInHand& pass : passes) {
      if (passListener != nullptr) passListener->PassBegins(pass);
    }
  }
  const std::int64_t reached = done.load(std::memory_order_relaxed);
  const std::int64_t percent = reached / kPercent;
  if (percent <= latestPercent || reached < quietUntil) return;
  latestPercent = percent;
  NPARReporter report;
  report.SetCurrentStepNum(static_cast<std::int32_t>(percent));
  static_cast<void>(told.Report(report));  // a listener's answer stops nothing
}
