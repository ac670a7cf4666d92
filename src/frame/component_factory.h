#pragma once

#include <npar/host_interface.h>

class NPARComponentBuilder;

/// Makes component objects.
class NPARComponentFactory {
 public:
  virtual ~NPARComponentFactory() = default;
  /// The caller owns the component; null where it could not be made.
  [[nodiscard]] NPARComponentBuilder* CreateComponent(HBContext* context, HBHost* host) noexcept;
};
