#pragma once

#include <vector>

#include "foundation/algorithm.h"
#include "foundation/names.h"

/// Makes the component's algorithm.
class QD_EXPORT NPARFactory : public QDCommon_700::IQDFactory {
 public:
  NPARFactory();
  NPARFactory(const NPARFactory& other);
  NPARFactory& operator=(const NPARFactory& other);
  ~NPARFactory() override;

  /// 220012 in the status, and null, where memory ran out.
  QDCommon_700::IQDAlgorithm* CreateQDAlgorithm(QDSettings& settings,
                                                QDVarList& variables) override;
  QDStatus GetStatus() const override;
  /// A copy of the process-wide warnings.
  [[nodiscard]] std::vector<QDStatus> GetWarnings() const;

 private:
  QDStatus status;
};
