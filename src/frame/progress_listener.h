#pragma once

#include "foundation/names.h"

class NPARComponentBuilder;

/// Hands the progress of a run on to the component's host.
class NPARProgressListener final : public ProgressListener {
 public:
  /// The component is not taken over.
  explicit NPARProgressListener(NPARComponentBuilder* component) noexcept : component(component) {}

  /// Reports the step of a NPARReporter, of 100; another report is a std::bad_cast. The host's
  /// answer.
  int Report(ProgressReport& report) override;

 private:
  NPARComponentBuilder* component;
};
