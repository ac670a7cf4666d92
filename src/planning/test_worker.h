#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/shared_tallies.h"
#include "kit/contract/test.h"
#include "kit/records/counted_records.h"
#include "kit/records/order_excerpt.h"
#include "kit/summaries/univariate.h"
#include "planning/cancel_pair.h"
#include "planning/sorted_records.h"

class PassFeed;

/// Drives tests through passes over one record source; all tests of a worker share each pass.
///
/// A record with a missing value reaches, with the analysis treatment, the tests that require none
/// of its missing variables (a test that requires nothing takes complete records only), with the
/// listwise one no test at all, whichever variable of the run it is that is missing.
class NPARTestWorker final {
 public:
  /// Of a sort in a worker's progress.
  static constexpr double kSortShare = 0.6;

  /// The variables are not taken over.
  NPARTestWorker(const QDVarList* variables, bool analysisMissing);
  NPARTestWorker(const NPARTestWorker&) = delete;
  NPARTestWorker& operator=(const NPARTestWorker&) = delete;
  ~NPARTestWorker();

  /// The worker's part of the whole run's progress, as fractions.
  void SetProgressRange(ProgressListener* listener, double start, double span);
  /// Takes the test over.
  void AddTest(std::unique_ptr<NPARTest> test);
  /// All passes. 220012 where memory ran out, else success: errors of tests stay with the tests. A
  /// run that was cancelled just stops; the pass that it stopped in is not ended.
  QDStatus RunWorker(CancelPair& cancelPair);
  /// Asks every test for its element. 220012 where memory ran out.
  QDStatus CollectResults();

  /// The source for tests that take records in its order; not taken over.
  void SetRecords(BatchSource* source) noexcept { records = source; }
  /// Tests that can do with cells take them from here, without an order of the records; not taken
  /// over.
  void SetCountedRecords(ICountedRecords* source) noexcept { counted = source; }
  /// Tests that look at some places of the order alone take excerpts, unless it is there already.
  void SetExcerpts(std::unique_ptr<IOrderExcerpts> source) noexcept {
    excerpts = std::move(source);
  }
  /// Do all of them, as far as is known before their first pass?
  [[nodiscard]] bool TakesExcerpts() const;
  /// Tests take the records ascending by that variable instead. The manager is not taken over.
  void SetSortVariable(std::int32_t variable, NPARSortManager* manager) noexcept {
    sortVariable = variable;
    sortManager = manager;
  }
  /// Other threads may take part in a sorted walk: no other worker wants them. Tests that count
  /// nothing together walk side by side; for others one thread gathers the columns ahead.
  void SetSharesWork() noexcept { sharesWork = true; }
  /// -1: the source's order.
  [[nodiscard]] std::int32_t GetSortVariable() const noexcept { return sortVariable; }
  void SetSharedData(std::unique_ptr<UnivariateResults> data) { sharedData = std::move(data); }
  [[nodiscard]] std::size_t TestCount() const noexcept { return tests.size(); }
  /// The elements in the order of the tests; the worker keeps none.
  [[nodiscard]] std::vector<std::unique_ptr<XMLElement>> TakeResults() noexcept {
    return std::move(results);
  }

 private:
  QDStatus RunPasses(CancelPair& cancelPair);
  QDStatus RunPass(const std::vector<NPARTest*>& list, CancelPair& cancelPair);
  QDStatus WalkRecords(PassFeed& feed, CancelPair& cancelPair);
  void FindWalks(PassFeed& feed);
  [[nodiscard]] BatchSource* FindSource();
  QDStatus Walk(BatchSource& source, PassFeed& feed, CancelPair& cancelPair);
  /// Each part of the tests in a walk of its own.
  static QDStatus WalkSideBySide(const NPARSortedIterator& order, PassFeed& feed, std::size_t parts,
                                 const CancelPair& cancelPair);
  QDStatus BeginPass(const std::vector<NPARTest*>& list, PassFeed& feed);
  QDStatus EndPass(const PassFeed& feed, std::int32_t passesDone);
  void TellPass(const PassFeed& feed) const;
  void ReportPassProgress();
  /// Reports a part of the worker's time, from 0 to 1.
  void ReportPart(double part);
  /// Likewise, as often as the step to report changes.
  void ReportRisenPart(double part);
  /// The part of the worker's time that so many passes come to.
  [[nodiscard]] double TimeOf(double passes) const;
  [[nodiscard]] std::int32_t StepAt(double part) const;

  SharedTallies sharedTallies;
  std::vector<std::unique_ptr<NPARTest>> tests;
  BatchSource* records = nullptr;
  ICountedRecords* counted = nullptr;
  std::unique_ptr<IOrderExcerpts> excerpts;
  std::vector<std::unique_ptr<XMLElement>> results;
  std::unique_ptr<UnivariateResults> sharedData;
  std::int32_t sortVariable = -1;
  NPARSortManager* sortManager = nullptr;
  bool sharesWork = false;
  const QDVarList* variables;
  bool analysisMissing;
  ProgressListener* progressListener = nullptr;
  double progressStart = 0.0;
  double progressSpan = 0.0;
  bool firstPass = true;
  std::int32_t passesTotal = 0;
  std::int32_t passesLeft = 0;
  std::int32_t lastReportedLeft = 0;
  std::int32_t lastReportedStep = -1;
};
