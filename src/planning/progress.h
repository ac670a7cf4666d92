#pragma once

#include <cstdint>

#include "foundation/names.h"

/// What a worker reports: how far the whole run is, in percent.
class QD_EXPORT NPARReporter : public ProgressReport {
 public:
  NPARReporter();
  ~NPARReporter() override;
  /// 1, whatever the name.
  int DiscreteMeasure(const std::string& name) const override;
  /// The missing value.
  double ScaleMeasure(const std::string& name) const override;
  void SetCurrentStepNum(std::int32_t step);
  [[nodiscard]] std::int32_t GetCurrentStepNum() const;

 private:
  std::int32_t currentStep = 0;
};
