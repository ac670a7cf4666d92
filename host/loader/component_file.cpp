#include <dlfcn.h>

#include "host/loader/component.h"

namespace npar_host {
namespace {

template <typename Function>
void LookUp(void* handle, const std::filesystem::path& path, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (function == nullptr) {
    throw ComponentError(path.string() + " is no analysis component: it does not export " + name +
                         "; give the path of a component such as libnpar.so with --component");
  }
}

ComponentExports LoadExports(const std::filesystem::path& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    throw ComponentError("there is no component at " + path.string() +
                         "; give the path of libnpar.so with --component");
  }
  // A name without a slash would be searched for in the system's folders.
  void* handle = dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    throw ComponentError("cannot load the component " + path.string() + ": " + dlerror());
  }
  ComponentExports exports;
  LookUp(handle, path, "hb_create_component", exports.create);
  LookUp(handle, path, "hb_destroy_component", exports.destroy);
  LookUp(handle, path, "hb_component_configure", exports.configure);
  LookUp(handle, path, "hb_component_getExecutionRequirements", exports.getExecutionRequirements);
  LookUp(handle, path, "hb_component_beginExecution", exports.beginExecution);
  LookUp(handle, path, "hb_component_cancelExecution", exports.cancelExecution);
  LookUp(handle, path, "hb_component_endExecution", exports.endExecution);
  LookUp(handle, path, "hb_component_getMessages", exports.getMessages);
  LookUp(handle, path, NPAR_MODULE_INFORMATION_SYMBOL, exports.getModuleInformation);
  LookUp(handle, path, "hb_initialise", exports.initialise);
  return exports;
}

}  // namespace

ComponentLibrary::ComponentLibrary(const std::filesystem::path& path)
    : ComponentLibrary(LoadExports(path)) {}

std::filesystem::path ComponentLibrary::DefaultPath() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto prefix = program.parent_path().parent_path();
  for (const char* folder : {NPAR_LIBRARY_FOLDER, "lib"}) {
    auto path = prefix / folder / "libnpar.so";
    if (std::filesystem::exists(path, error)) return path;
  }
  return prefix / "lib" / "libnpar.so";
}

}  // namespace npar_host
