#include "host/loader/component.h"

#include <dlfcn.h>

#include <vector>

namespace npar_host {
namespace {

uint32_t GetInformation(HBHost*, HBHostInformation* information, int32_t*) {
  *information = {"npar", "1.0.0", "Copyright (c) Lyra", "Lyra", nullptr};
  return HB_OK;
}

// One host for the whole process: components keep the pointer that hb_initialise gave them.
const HBHostTable kHostTable = {sizeof(HBHostTable), GetInformation};
HBHost theHost = {&kHostTable};

template <typename Function>
void LookUp(void* handle, const std::filesystem::path& path, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (function == nullptr) {
    throw ComponentError(path.string() + " is no analysis component: it does not export " + name +
                         "; give the path of a component such as libnpar.so with --component");
  }
}

// Fetches a text whose size is not known beforehand, with a larger buffer where the first is too
// small.
template <typename Call>
std::uint32_t FetchText(std::string& text, Call call) {
  std::vector<char> buffer(4096);
  std::size_t needed = 0;
  std::uint32_t code = call(buffer.data(), buffer.size(), &needed);
  while (code == NPAR_BUFFER_TOO_SMALL && needed > buffer.size()) {
    buffer.resize(needed);
    code = call(buffer.data(), buffer.size(), &needed);
  }
  if (code == HB_OK) text.assign(buffer.data(), needed > 0 ? needed - 1 : 0);
  return code;
}

}  // namespace

ComponentLibrary::ComponentLibrary(const std::filesystem::path& path) {
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
  LookUp(handle, path, "hb_create_component", create);
  LookUp(handle, path, "hb_destroy_component", destroy);
  LookUp(handle, path, "hb_component_configure", configure);
  LookUp(handle, path, "hb_component_getExecutionRequirements", getExecutionRequirements);
  LookUp(handle, path, "hb_component_beginExecution", beginExecution);
  LookUp(handle, path, "hb_component_cancelExecution", cancelExecution);
  LookUp(handle, path, "hb_component_endExecution", endExecution);
  LookUp(handle, path, "hb_component_getMessages", getMessages);
  LookUp(handle, path, NPAR_MODULE_INFORMATION_SYMBOL, getModuleInformation);
  decltype(&hb_initialise) initialise = nullptr;
  LookUp(handle, path, "hb_initialise", initialise);
  if (initialise(&theHost) != HB_OK) {
    throw ComponentError("the component " + path.string() + " refuses to be initialised");
  }
}

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

std::string ComponentLibrary::ModuleInformation() const {
  std::string text;
  int32_t error = 0;
  const auto code = FetchText(text, [&](char* buffer, std::size_t capacity, std::size_t* needed) {
    return getModuleInformation(buffer, capacity, needed, &error);
  });
  if (code != HB_OK) {
    throw ComponentError("the component gives no module information (code " + std::to_string(code) +
                         ")");
  }
  return text;
}

Component::Component(const ComponentLibrary& library, HBContext* context) : library(library) {
  int32_t error = 0;
  if (library.create(context, nullptr, &component, &error) != HB_OK || component == nullptr) {
    throw ComponentError("the component could not be created (error " + std::to_string(error) +
                         ")");
  }
}

Component::~Component() {
  if (begun) static_cast<void>(EndExecution());  // nothing is left to be done about a failure
  library.destroy(component);
}

std::uint32_t Component::Configure() {
  int32_t error = 0;
  return library.configure(component, &error);
}

std::uint32_t Component::GetExecutionRequirements(std::string& document) {
  int32_t error = 0;
  return FetchText(document, [&](char* buffer, std::size_t capacity, std::size_t* needed) {
    return library.getExecutionRequirements(component, buffer, capacity, needed, &error);
  });
}

std::uint32_t Component::BeginExecution(HBProgress* progress) {
  int32_t error = 0;
  begun = true;
  return library.beginExecution(component, progress, &error);
}

std::uint32_t Component::EndExecution() {
  int32_t error = 0;
  begun = false;
  return library.endExecution(component, &error);
}

std::uint32_t Component::GetMessages(std::string& document) {
  int32_t error = 0;
  return FetchText(document, [&](char* buffer, std::size_t capacity, std::size_t* needed) {
    return library.getMessages(component, buffer, capacity, needed, &error);
  });
}

void Component::CancelExecution() {
  int32_t error = 0;
  library.cancelExecution(component, &error);
}

}  // namespace npar_host
