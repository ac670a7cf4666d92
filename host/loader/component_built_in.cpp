// The component is linked into the program.

#include "host/loader/linked_exports.h"

namespace npar_host {
namespace {

ComponentExports ExportsAt(const std::filesystem::path& path) {
  if (path.empty()) return LinkedExports();
  throw ComponentError("this program has its component built in and loads no other; leave " +
                       path.string() + " out");
}

}  // namespace

ComponentLibrary::ComponentLibrary(const std::filesystem::path& path)
    : ComponentLibrary(ExportsAt(path)) {}

std::filesystem::path ComponentLibrary::DefaultPath() { return {}; }

}  // namespace npar_host
