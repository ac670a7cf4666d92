#pragma once

#include "foundation/names.h"
#include "planning/progress.h"

struct HBProgress;
class NPARComponentBuilder;

/// Hands the progress of a run on to the component's host.
class NPARProgressListener final : public ProgressListener, public IPassListener {
 public:
  /// The component is not taken over.
  explicit NPARProgressListener(NPARComponentBuilder* component) noexcept : component(component) {}

  /// Reports the step of a NPARReporter, of 100; another report is a std::bad_cast. The host's
  /// answer.
  int Report(ProgressReport& report) override;
  /// Tells a host that has an entry for it.
  void PassBegins(const PassInHand& pass) override;
  /// The host's handle for the run that begins; it may be null.
  void SetProgressHandle(HBProgress* newHandle) noexcept { handle = newHandle; }

 private:
  NPARComponentBuilder* component;
  HBProgress* handle = nullptr;
};
