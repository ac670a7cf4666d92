#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/test.h"
#include "kit/univariate.h"
#include "planning/record_iterators.h"

/// Whether a run shall stop: the host's source, and the answer once it was yes.
struct CancelPair {
  ICancelSource* source = nullptr;
  bool cancelled = false;

  [[nodiscard]] bool Check() {
    if (!cancelled && source != nullptr) cancelled = source->IsCancelled();
    return cancelled;
  }
};

/// Drives tests through passes over one record source; all tests of a worker share each pass.
class NPARTestWorker final {
 public:
  NPARTestWorker(const QDVarList* variables, bool analysisMissing);
  NPARTestWorker(const NPARTestWorker&) = delete;
  NPARTestWorker& operator=(const NPARTestWorker&) = delete;
  ~NPARTestWorker();

  /// The worker's part of the whole run's progress, as fractions.
  virtual void SetProgressRange(ProgressListener* listener, double start, double span);
  /// Takes the test over.
  void AddTest(std::unique_ptr<NPARTest> test);
  /// All passes. 220012 where memory ran out, else success: errors of tests stay with the tests.
  QDStatus RunWorker(CancelPair& cancelPair);
  /// Asks every test for its element. 220012 where memory ran out.
  QDStatus CollectResults();

  void SetRecords(RecordIterator* source) noexcept { records = source; }
  void SetSortVariable(std::int32_t variable, NPARSortManager* manager) noexcept {
    sortVariable = variable;
    sortManager = manager;
  }
  [[nodiscard]] std::int32_t GetSortVariable() const noexcept { return sortVariable; }
  void SetSharedData(std::unique_ptr<UnivariateResults> data) { sharedData = std::move(data); }
  [[nodiscard]] std::size_t TestCount() const noexcept { return tests.size(); }
  /// Elements in the order of the tests, until the document takes them.
  [[nodiscard]] const std::vector<XMLElement*>& GetResults() const noexcept { return results; }
  /// Gives the elements away.
  std::vector<XMLElement*> TakeResults() noexcept { return std::move(results); }

 private:
  QDStatus RunPass(std::vector<NPARTest*> list, CancelPair& cancelPair);
  void ReportPassProgress();

  std::vector<std::unique_ptr<NPARTest>> tests;
  RecordIterator* records = nullptr;
  std::vector<XMLElement*> results;
  std::unique_ptr<UnivariateResults> sharedData;
  std::int32_t sortVariable = -1;
  NPARSortManager* sortManager = nullptr;
  const QDVarList* variables;
  bool analysisMissing;
  ProgressListener* progressListener = nullptr;
  double progressStart = 0.0;
  double progressSpan = 0.0;
  bool firstPass = true;
  std::int32_t passesTotal = 0;
  std::int32_t passesLeft = 0;
  std::int32_t lastReportedLeft = 0;
};
