#include "frame/progress_listener.h"

#include "frame/component_builder.h"
#include "planning/progress.h"

namespace {

constexpr double kWholeRun = 100.0;  // steps are percentages
constexpr std::int32_t kNothingElse = -1;

}  // namespace

int NPARProgressListener::Report(ProgressReport& report) {
  const auto& reporter = dynamic_cast<NPARReporter&>(report);
  std::int32_t err = 0;
  return static_cast<int>(
      component->Report_Progress(reporter.GetCurrentStepNum(), kWholeRun, &err, kNothingElse));
}
