#pragma once

#include <npar/component.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace npar_host {

/// The file given is no component that this host can drive; the text says why and what to do.
class ComponentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a component exports (npar/component.h).
struct ComponentExports {
  decltype(&hb_initialise) initialise = nullptr;
  decltype(&hb_create_component) create = nullptr;
  decltype(&hb_destroy_component) destroy = nullptr;
  decltype(&hb_component_configure) configure = nullptr;
  decltype(&hb_component_getExecutionRequirements) getExecutionRequirements = nullptr;
  decltype(&hb_component_beginExecution) beginExecution = nullptr;
  decltype(&hb_component_cancelExecution) cancelExecution = nullptr;
  decltype(&hb_component_endExecution) endExecution = nullptr;
  decltype(&hb_component_getMessages) getMessages = nullptr;
  decltype(&hb_getModuleInformation) getModuleInformation = nullptr;
};

/// A component library in this process, initialised with the host's description of itself. It is
/// never unloaded: a component may hold process-wide objects that outlive its runs.
class ComponentLibrary {
 public:
  /// One that is linked in. Throws ComponentError where it refuses to be initialised.
  explicit ComponentLibrary(const ComponentExports& exports);
  /// Loads one. Throws ComponentError also for a path that is no file, no library or lacks an
  /// export.
  explicit ComponentLibrary(const std::filesystem::path& path);

  /// Where the library lies that is installed with this program: ../lib beside the program's
  /// folder.
  [[nodiscard]] static std::filesystem::path DefaultPath();

  /// Name, provider, version and copyright as the component's XML text.
  [[nodiscard]] std::string ModuleInformation() const;

 private:
  friend class Component;

  ComponentExports exports;
};

/// One component object, ended and destroyed with this. The library and the context outlive it.
class Component {
 public:
  /// Throws ComponentError where the component cannot be made.
  Component(const ComponentLibrary& library, HBContext* context);
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// The next five answer the component's code, 0 for success.
  [[nodiscard]] std::uint32_t Configure();
  [[nodiscard]] std::uint32_t GetExecutionRequirements(std::string& document);
  [[nodiscard]] std::uint32_t BeginExecution(HBProgress* progress);
  [[nodiscard]] std::uint32_t EndExecution();
  [[nodiscard]] std::uint32_t GetMessages(std::string& document);
  /// Asks a run under way to stop; from any thread.
  void CancelExecution();

 private:
  const ComponentLibrary& library;
  void* component = nullptr;
  bool begun = false;
};

}  // namespace npar_host
