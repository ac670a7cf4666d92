#include "frame/component_factory.h"

#include "frame/component_builder.h"

NPARComponentBuilder* NPARComponentFactory::CreateComponent(HBContext* context,
                                                            HBHost* host) noexcept {
  try {
    return new NPARComponentBuilder(context, host);
  } catch (...) {
    return nullptr;
  }
}
