#include "host/loader/component.h"

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

ComponentLibrary::ComponentLibrary(const ComponentExports& exports) : exports(exports) {
  if (exports.initialise(&theHost) != HB_OK) {
    throw ComponentError("the component refuses to be initialised");
  }
}

std::string ComponentLibrary::ModuleInformation() const {
  std::string text;
  int32_t error = 0;
  const auto code = FetchText(text, [&](char* buffer, std::size_t capacity, std::size_t* needed) {
    return exports.getModuleInformation(buffer, capacity, needed, &error);
  });
  if (code != HB_OK) {
    throw ComponentError("the component gives no module information (code " + std::to_string(code) +
                         ")");
  }
  return text;
}

Component::Component(const ComponentLibrary& library, HBContext* context) : library(library) {
  int32_t error = 0;
  if (library.exports.create(context, nullptr, &component, &error) != HB_OK ||
      component == nullptr) {
    throw ComponentError("the component could not be created (error " + std::to_string(error) +
                         ")");
  }
}

Component::~Component() {
  if (begun) static_cast<void>(EndExecution());  // nothing is left to be done about a failure
  library.exports.destroy(component);
}

std::uint32_t Component::Configure() {
  int32_t error = 0;
  return library.exports.configure(component, &error);
}

std::uint32_t Component::GetExecutionRequirements(std::string& document) {
  int32_t error = 0;
  return FetchText(document, [&](char* buffer, std::size_t capacity, std::size_t* needed) {
    return library.exports.getExecutionRequirements(component, buffer, capacity, needed, &error);
  });
}

std::uint32_t Component::BeginExecution(HBProgress* progress) {
  int32_t error = 0;
  begun = true;
  return library.exports.beginExecution(component, progress, &error);
}

std::uint32_t Component::EndExecution() {
  int32_t error = 0;
  begun = false;
  return library.exports.endExecution(component, &error);
}

std::uint32_t Component::GetMessages(std::string& document) {
  int32_t error = 0;
  return FetchText(document, [&](char* buffer, std::size_t capacity, std::size_t* needed) {
    return library.exports.getMessages(component, buffer, capacity, needed, &error);
  });
}

void Component::CancelExecution() {
  int32_t error = 0;
  library.exports.cancelExecution(component, &error);
}

}  // namespace npar_host
