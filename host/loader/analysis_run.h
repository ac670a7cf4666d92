#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/model.h"
#include "host/loader/component.h"
#include "host/loader/run_host.h"
#include "host/requirements/requirements.h"

namespace npar_host {

/// What came of a run.
struct RunResult {
  std::uint32_t code = 0;            // the component's, 0 for success
  std::vector<RunMessage> messages;  // in the order in which they came
  std::string document;              // the result document; empty after a failure

  [[nodiscard]] bool Succeeded() const { return code == 0; }
};

/// One run of a component on data in memory, as any host would drive it: configure, carry out the
/// requirements on the records, execute, end.
class AnalysisRun {
 public:
  /// The parameter document as text; the data with all their records. The library outlives the run.
  AnalysisRun(const ComponentLibrary& library, std::string parameters, ModelledData data);

  void SetIdentifier(std::int64_t identifier) { host.SetIdentifier(identifier); }
  void ListenToProgress(ProgressListener listener) { host.ListenToProgress(std::move(listener)); }
  void AllowThreads(std::uint32_t count) { host.AllowThreads(count); }
  /// Configures the component and prepares the records, once. Throws InputError for
  /// requirements that the data can't meet and ComponentError for a component that breaks the
  /// interface's rules. What the component refuses is in the result of Execute.
  void Prepare();
  /// Runs once, after Prepare.
  [[nodiscard]] RunResult Execute();
  /// The text of the case identifier that the component saw as that number; empty where the number
  /// is the identifier itself. After Execute.
  [[nodiscard]] std::string_view CaseText(double number) const { return prepared.CaseText(number); }
  /// The records that the component gets; after Prepare.
  [[nodiscard]] const PreparedData& Records() const { return prepared; }
  /// Asks a run under way to stop; from any thread.
  void Cancel() { component.CancelExecution(); }

 private:
  ModelledData data;
  PreparedData prepared;
  std::uint32_t preparation = 0;  // the component's code
  RunHost host;
  Component component;
};

}  // namespace npar_host
