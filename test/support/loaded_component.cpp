#include "support/loaded_component.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace {

class Finder {
 public:
  Finder() : handle(dlopen(NPAR_BUILD_DIR "/lib/libnpar.so", RTLD_NOW | RTLD_LOCAL)) {
    if (handle == nullptr) GiveUp();
  }
  template <typename Function>
  void Find(Function*& function, const char* name) const {
    function = reinterpret_cast<Function*>(dlsym(handle, name));
    if (function == nullptr) GiveUp();
  }

 private:
  [[noreturn]] static void GiveUp() {
    std::fprintf(stderr, "%s\n", dlerror());
    std::abort();
  }
  void* handle;
};

LoadedLibrary Load() {
  const Finder finder;
  LoadedLibrary library{};
  finder.Find(library.initialise, "hb_initialise");
  finder.Find(library.cleanup, "hb_cleanup");
  finder.Find(library.create, "hb_create_component");
  finder.Find(library.destroy, "hb_destroy_component");
  finder.Find(library.configure, "hb_component_configure");
  finder.Find(library.getDataModel, "hb_component_getDataModel");
  finder.Find(library.getExecutionRequirements, "hb_component_getExecutionRequirements");
  finder.Find(library.getIteratorRequirements, "hb_component_getIteratorRequirements");
  finder.Find(library.beginExecution, "hb_component_beginExecution");
  finder.Find(library.cancelExecution, "hb_component_cancelExecution");
  finder.Find(library.endExecution, "hb_component_endExecution");
  finder.Find(library.nextRecord, "hb_component_nextRecord");
  finder.Find(library.getRecordValue, "hb_component_getRecordValue");
  finder.Find(library.getMessages, "hb_component_getMessages");
  finder.Find(library.getModuleInformation, NPAR_MODULE_INFORMATION_SYMBOL);
  return library;
}

/// The text that a function of the exports' form gives.
template <typename Function>
std::string TextOf(Function* function, void* component) {
  std::size_t needed = 0;
  std::int32_t err = 0;
  if (function(component, nullptr, 0, &needed, &err) != NPAR_BUFFER_TOO_SMALL) return {};
  std::string text(needed, '\0');
  if (function(component, text.data(), needed, &needed, &err) != HB_OK) return {};
  text.pop_back();
  return text;
}

}  // namespace

const LoadedLibrary& LoadedLibrary::Instance() {
  static const LoadedLibrary library = Load();
  return library;
}

LoadedComponent::LoadedComponent(RecordingHost& host) : host(host) {
  library.initialise(host.Host());
  library.create(host.Context(), nullptr, &component, &err);
}

LoadedComponent::~LoadedComponent() {
  if (component == nullptr) return;
  End();
  library.destroy(component);
}

std::string LoadedComponent::Messages() const { return TextOf(library.getMessages, component); }

std::string LoadedComponent::Requirements() const {
  return TextOf(library.getExecutionRequirements, component);
}
