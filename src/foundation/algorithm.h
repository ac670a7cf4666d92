#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "foundation/export.h"
#include "foundation/iterators.h"
#include "foundation/progress.h"
#include "foundation/settings.h"
#include "foundation/status.h"
#include "foundation/variables.h"

struct NPARRunInfo;

namespace QDCommon_700 {

/// Statuses that an algorithm warns of.
struct QDWarnings {
  std::vector<QDStatus> statuses;
};

/// An analysis over records that writes one document.
class QD_EXPORT IQDAlgorithm {
 public:
  virtual ~IQDAlgorithm() = default;
  /// The whole run. `reserved` is passed as 0.
  virtual QDStatus Execute(RecordIterator& records, std::int32_t reserved) = 0;
  /// True after a run that ended without error.
  [[nodiscard]] virtual bool IsExecuted() const = 0;
  virtual QDStatus PostProcess() = 0;
  /// Writes the result of the last run.
  virtual QDStatus WriteOutput(std::ostream& stream, const NPARRunInfo& runInfo) = 0;
  virtual QDStatus GetStatus() const = 0;
  /// Neither the listener nor the cancel source is taken over; null is ignored.
  virtual void SetProgressListener(ProgressListener* listener) = 0;
  virtual void SetCancelSource(ICancelSource* source) = 0;
  virtual void Cancel() = 0;
  [[nodiscard]] virtual std::string GetDescription() const = 0;
  [[nodiscard]] virtual const QDWarnings& GetWarnings() const = 0;
  virtual void Attach(void* observer) = 0;
};

/// Makes algorithms.
class QD_EXPORT IQDFactory {
 public:
  virtual ~IQDFactory() = default;
  /// The caller owns the algorithm; settings and variables must outlive it. Null on failure.
  virtual IQDAlgorithm* CreateQDAlgorithm(QDXML_700::QDSettings& settings,
                                          QDXML_700::QDVarList& variables) = 0;
  virtual QDStatus GetStatus() const = 0;
};

}  // namespace QDCommon_700
