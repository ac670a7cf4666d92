#pragma once

#include <string>

#include "foundation/export.h"

namespace QDCommon_700 {

/// What is reported: named measures of a step.
class QD_EXPORT ProgressReport {
 public:
  virtual ~ProgressReport() = default;
  [[nodiscard]] virtual int DiscreteMeasure(const std::string& name) const = 0;
  [[nodiscard]] virtual double ScaleMeasure(const std::string& name) const = 0;
};

class QD_EXPORT ProgressListener {
 public:
  virtual ~ProgressListener() = default;
  virtual int Report(ProgressReport& report) = 0;
};

/// Asked whether a run shall stop.
class QD_EXPORT ICancelSource {
 public:
  virtual ~ICancelSource() = default;
  [[nodiscard]] virtual bool IsCancelled() = 0;
};

}  // namespace QDCommon_700
