#pragma once

#include <vector>

#include "foundation/names.h"

/// The process-wide warnings of the component. Nothing appends to them today; a run clears them.
class NPARWarning {
 public:
  /// Made on first need and never deleted.
  [[nodiscard]] static NPARWarning& Instance();
  virtual ~NPARWarning() = default;
  void Clear() noexcept { statuses.clear(); }
  [[nodiscard]] const std::vector<QDStatus>& GetStatuses() const noexcept { return statuses; }

 private:
  NPARWarning() = default;
  std::vector<QDStatus> statuses;
};
