#pragma once

#include <npar/component.h>

#include <string>

#include "support/recording_host.h"

/// libnpar.so as a host sees it: loaded once for the process, its functions found by name.
struct LoadedLibrary {
  decltype(&::hb_initialise) initialise;
  decltype(&::hb_cleanup) cleanup;
  decltype(&::hb_create_component) create;
  decltype(&::hb_destroy_component) destroy;
  decltype(&::hb_component_configure) configure;
  decltype(&::hb_component_getDataModel) getDataModel;
  decltype(&::hb_component_getExecutionRequirements) getExecutionRequirements;
  decltype(&::hb_component_getIteratorRequirements) getIteratorRequirements;
  decltype(&::hb_component_beginExecution) beginExecution;
  decltype(&::hb_component_cancelExecution) cancelExecution;
  decltype(&::hb_component_endExecution) endExecution;
  decltype(&::hb_component_nextRecord) nextRecord;
  decltype(&::hb_component_getRecordValue) getRecordValue;
  decltype(&::hb_component_getMessages) getMessages;
  decltype(&::hb_getModuleInformation) getModuleInformation;

  /// The library of this build. A name that is missing ends the program: nothing could be tested.
  static const LoadedLibrary& Instance();
};

/// A component of the loaded library on a host in memory.
class LoadedComponent {
 public:
  explicit LoadedComponent(RecordingHost& host);
  LoadedComponent(const LoadedComponent&) = delete;
  LoadedComponent& operator=(const LoadedComponent&) = delete;
  ~LoadedComponent();

  [[nodiscard]] void* Handle() const { return component; }
  [[nodiscard]] bool IsMade() const { return component != nullptr; }
  std::uint32_t Configure() { return library.configure(component, &err); }
  std::uint32_t Begin() { return library.beginExecution(component, host.Progress(), &err); }
  /// The answer of the first that fails.
  std::uint32_t ConfigureAndRun() {
    const std::uint32_t configured = Configure();
    return configured != HB_OK ? configured : Begin();
  }
  std::uint32_t End() { return library.endExecution(component, &err); }
  [[nodiscard]] std::string Messages() const;
  [[nodiscard]] std::string Requirements() const;

  std::int32_t err = 0;

 private:
  const LoadedLibrary& library = LoadedLibrary::Instance();
  RecordingHost& host;
  void* component = nullptr;
};
