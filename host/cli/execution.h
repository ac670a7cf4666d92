#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/cli/output.h"
#include "host/cli/reading_options.h"
#include "host/data/model.h"
#include "host/requirements/requirements.h"

namespace CLI {
class App;
}

namespace npar_host {

/// A document of the host with the name that messages call it by.
struct NamedText {
  std::string name;
  std::string text;
};

/// Where the data come from and who analyses them: the options that `run` and `analyse` share.
struct ExecutionOptions {
  std::string dataPath;
  ReadingOptions reading;
  std::int64_t modelId = 0;              // 0: one at random
  std::string component;                 // empty: the one installed with this program
  std::optional<std::uint32_t> threads;  // without: as many as the machine has
};

/// Adds --component, --model-id and those of reading.
void AddExecutionOptions(CLI::App& command, ExecutionOptions& options);

/// Reads the whole file, "-" being standard input. Throws InputError.
[[nodiscard]] NamedText ReadDocument(const std::string& path);

/// One run on the command line: reads the data, shows progress, cancels on Ctrl-C, writes the
/// component's messages to standard error.
class Execution {
 public:
  explicit Execution(const ExecutionOptions& options);
  ~Execution();

  /// The header line is read.
  [[nodiscard]] const CsvReader& Reader() const;
  /// Reads the cells by what the data model says of them, first of all.
  Dataset& ReadData(const NamedText& model);
  /// Finds the model of the cells, then. The data model may say more than it did.
  const DataModel& FindModel(const NamedText& model);
  /// The result document, or nothing where the component refused the run or Ctrl-C cancelled it;
  /// ExitCode() tells. At last.
  [[nodiscard]] std::optional<std::string> Run(const NamedText& parameters);
  /// The case identifier's text behind a number of the result document; see AnalysisRun::CaseText.
  [[nodiscard]] std::string CaseText(double number) const;
  /// The records that the component got; null before the run.
  [[nodiscard]] const PreparedData* Records() const;
  [[nodiscard]] int ExitCode() const { return exitCode; }

 private:
  struct State;
  std::unique_ptr<State> state;
  int exitCode = 0;
};

}  // namespace npar_host
