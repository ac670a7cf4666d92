#include "host/analysis/linked_component.h"

#include "frame/linked.h"
#include "host/loader/linked_exports.h"

namespace npar_host {

const ComponentLibrary& LinkedComponent() {
  static const ComponentLibrary library([] {
    ComponentExports exports = LinkedExports();
    exports.destroy = EndLinkedComponent;
    return exports;
  }());
  return library;
}

}  // namespace npar_host
