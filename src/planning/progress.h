#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/names.h"

/// The tests that share a pass over the records.
struct PassInHand {
  std::vector<std::string> testNames;  // of the entries that they were made of
  std::string orderField;              // what the records are sorted by; empty: the host's order
};

/// A progress listener may also implement this; it is found by a dynamic_cast.
class IPassListener {
 public:
  virtual ~IPassListener() = default;
  virtual void PassBegins(const PassInHand& pass) = 0;
};

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
