#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/algorithm.h"
#include "foundation/names.h"
#include "kit/contract/test.h"
#include "kit/contract/var_info.h"
#include "kit/summaries/univariate.h"
#include "planning/cancel_pair.h"
#include "planning/record_cells.h"
#include "planning/record_iterators.h"
#include "planning/run_progress.h"
#include "planning/shortcut.h"
#include "planning/sorted_records.h"
#include "planning/test_worker.h"

/// The algorithm object: keeps the records, builds the tests of the settings' entries, computes the
/// shared summaries, runs the tests, writes the document.
///
/// Codes of a run: 1 cancelled; 220001 no entry in the settings; 220002 no memory while the run is
/// set up, 220012 later; 220004 a variable of a kind that no test takes; those of
/// InitialDataReader::Read. A test that fails does not fail the run.
class NPARPlanner final : public QDCommon_700::IQDAlgorithm {
 public:
  /// Neither is taken over; both must outlive the planner.
  NPARPlanner(const QDSettings* settings, const QDVarList* variables);
  NPARPlanner(const NPARPlanner&) = delete;
  NPARPlanner& operator=(const NPARPlanner&) = delete;
  ~NPARPlanner() override;

  /// Before Execute; the results are the same. Fields with few values are counted, places of an
  /// order are selected.
  void SetShortcuts(Shortcut forCounting, Shortcut forSelecting) noexcept {
    counting = forCounting;
    selecting = forSelecting;
  }
  QDStatus Execute(RecordIterator& records, std::int32_t reserved) override;
  bool IsExecuted() const override { return executed; }
  QDStatus PostProcess() override { return QDStatus(); }
  /// The document takes the results over, so that it is written once for a run. 6: no successful
  /// run, or its results are written already.
  QDStatus WriteOutput(std::ostream& stream, const NPARRunInfo& runInfo) override;
  QDStatus GetStatus() const override { return status; }
  void SetProgressListener(ProgressListener* listener) override;
  void SetCancelSource(ICancelSource* source) override;
  void Cancel() override { cancelPair.cancelled = true; }
  std::string GetDescription() const override;
  const QDCommon_700::QDWarnings& GetWarnings() const override { return warnings; }
  void Attach(void* /*observer*/) override {}

  // What the functions that make tests use.

  [[nodiscard]] const QDVarList& GetVariables() const noexcept { return *variables; }
  [[nodiscard]] const NPARVarInfo& GetVarInfo() const noexcept { return varInfo; }
  [[nodiscard]] double GetSigLevel() const noexcept { return sigLevel; }
  [[nodiscard]] double GetConfidenceLevel() const noexcept { return confidenceLevel; }
  [[nodiscard]] bool WantsExtended() const noexcept { return wantsExtended; }
  [[nodiscard]] bool HasWeight() const noexcept { return weightIndex >= 0; }
  [[nodiscard]] std::int32_t GetWeightIndex() const noexcept { return weightIndex; }
  [[nodiscard]] std::int32_t GetCaseIdIndex() const noexcept { return caseIdIndex; }

  /// The kind of a variable, 1 to 3; 0 for an unknown name. A variable of another kind fails the
  /// run with 220004 and gives 0.
  std::int32_t GetVariableLevel(const std::string& name);
  /// Asks for one statistic of a variable.
  void RegisterStatistic(std::int32_t variable, Statistic statistic);
  /// Asks for the records in the order of a variable, and for what the document shows of a
  /// continuous one.
  void RegisterSortedVariable(std::int32_t variable);
  /// Asks for the frequencies of a variable whose categories are the groups of a sorted test.
  void RegisterGroupVariable(std::int32_t variable);
  /// Adds a test that reads the records in the host's order. Takes the test over.
  void AddTest(std::unique_ptr<NPARTest> test);
  /// Adds a test that reads the records ascending by a variable; a test whose construction failed
  /// gets a worker of its own, in the records' order. Takes the test over.
  void AddSortedTest(std::unique_ptr<NPARTest> test, std::int32_t sortVariable,
                     QDStatus constructionStatus);

 private:
  void ResetRun();
  void ReadRunSettings();
  QDStatus PrepareRun(RecordIterator& records, RunProgress& progress);
  QDStatus BuildTests();
  QDStatus RunTests(RunProgress& progress);
  void DivideProgress(RunProgress& progress);
  /// The summaries, as far as tests read them, and beside them the orders that are wanted first.
  void RunSummaries(RunProgress& progress);
  /// Of orders that only a summary walked.
  void ReleaseOrdersOfSummaries();
  QDStatus RunWorkers();
  QDStatus RunWorker(NPARTestWorker& worker);
  /// How many orders may be there at once.
  [[nodiscard]] std::size_t OrdersAtOnce() const;

  const QDSettings* settings;
  std::string_view entryInHand;  // whose tests are being made
  ProgressListener* progressListener = nullptr;
  const QDVarList* variables;
  std::unique_ptr<QDUnivariateSummaries> univariates;
  std::unique_ptr<IteratorBatches> hostRecords;
  std::unique_ptr<NParMemoIterator> memoIterator;
  std::unique_ptr<NPARSortManager> sortManager;
  Shortcut counting = Shortcut::WhereItPays;
  Shortcut selecting = Shortcut::WhereItPays;
  std::unique_ptr<CountedRecords> counted;
  bool fillsBesideTests = false;  // the distributions of fields
  bool executed = false;
  bool written = false;
  CancelPair cancelPair;
  QDCommon_700::QDWarnings warnings;
  QDStatus status;
  std::unique_ptr<NPARTestWorker> mainWorker;
  std::vector<std::unique_ptr<NPARTestWorker>> sortedWorkers;
  std::vector<std::unique_ptr<BatchSource>> ownWalks;  // of workers in the records' order
  std::vector<RunProgress::Part> partsOfWorkers;       // the main worker's first
  std::unique_ptr<InitialDataReader> dataReader;
  std::int32_t caseIdIndex = -1;
  std::int32_t weightIndex = -1;
  bool analysisMissing = true;
  double sigLevel = 0.05;
  double confidenceLevel = 0.95;
  bool wantsExtended = false;
  NPARVarInfo varInfo;
};
