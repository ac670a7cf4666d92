#include "frame/progress_listener.h"

#include <npar/host_interface.h>

#include "frame/component_builder.h"

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

void NPARProgressListener::PassBegins(const PassInHand& pass) {
  if (handle == nullptr || !HB_HAS(handle, HBProgressTable, beginPass)) return;
  std::vector<const char*> names;
  for (const std::string& name : pass.testNames) names.push_back(name.c_str());
  const char* order = pass.orderField.empty() ? nullptr : pass.orderField.c_str();
  std::int32_t err = 0;
  static_cast<void>(HbHelperV1::AskHost(&err, [&] {
    return handle->table->beginPass(handle, names.data(), names.size(), order, &err);
  }));
}
