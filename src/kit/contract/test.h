#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/extended_figures.h"
#include "kit/contract/message.h"
#include "kit/contract/settings_reader.h"
#include "kit/contract/shared_tallies.h"
#include "kit/records/order_excerpt.h"
#include "kit/records/record_batch.h"
#include "kit/records/record_weight.h"

class TestConstruction;  // what the planner gives to the function that makes a test
class UnivariateResults;

/// One hypothesis test (or interval estimate) on one field or set of fields.
///
/// A worker drives it: SetSharedData once; then for each pass BeginPass, GetRequiredVariables, the
/// records in which no required variable is missing, EndPass; after each pass NeedsAnotherPass; at
/// the end WriteResults. The first error stops the test and stays: a test that failed, also in its
/// construction, is driven on, does nothing and writes its messages.
///
/// What a test does stands in its stages, which the base runs in order and only as long as there is
/// no error:
///   Prepare      reads the settings and says how many passes it takes, by default one
///   Take         records of the first pass
///   Compute      ends the first pass
///   StartPass    before every further pass
///   TakeAgain    records of a further pass
///   Finish       ends it
///   Extend       after the last pass, where the run asks for extended figures
/// Prepare alone is run also for a test that is born failed, so that its condition can name what
/// the settings hold; it stops where only a sound test goes on (HasFailed).
///
/// An error stays the test's own matter; only the code 220012 (no memory) ends the run. A stage may
/// throw std::bad_alloc: the worker turns it into 220012.
class NPARTest {
 public:
  /// Takes the settings over; they may be null.
  explicit NPARTest(QDSettings* settings) noexcept : settings(settings) {}
  NPARTest(const NPARTest&) = delete;
  NPARTest& operator=(const NPARTest&) = delete;
  virtual ~NPARTest() = default;

  /// The run's summaries; not taken over, good until the run's results are written.
  void SetSharedData(UnivariateResults* data) noexcept {
    if (data != nullptr) sharedData = data;
  }
  /// What the tests of the worker count together; not taken over. A test that gets none counts
  /// alone.
  void SetSharedTallies(SharedTallies* tallies) noexcept { sharedTallies = tallies; }
  /// What the test reads of them, which the worker drives; null for none. Known once the first pass
  /// has begun.
  [[nodiscard]] Tally* GetTally() const noexcept { return countsAlone ? nullptr : tally.get(); }
  QDStatus BeginPass();
  /// May the records of the coming pass that hold the same in the required variables, and in the
  /// weight, come together as one (RecordBatch::Counts), whatever their order was? Nothing else may
  /// then be read of them.
  [[nodiscard]] virtual bool TakesCells() const { return tally != nullptr && tally->TakesCells(); }
  /// Does the coming pass, of records in an order, look at some places of it alone? Known at once.
  [[nodiscard]] virtual bool TakesExcerpts() const { return false; }
  /// Adds these places, once the pass has begun.
  virtual void WantPlaces(OrderExcerpt& /*wanted*/) const {}
  /// Takes records, one after the other.
  QDStatus ProcessBatch(RecordBatch& batch);
  /// Takes a batch of one.
  QDStatus ProcessRecord(const Record& record);
  /// Asked once after each pass.
  [[nodiscard]] bool NeedsAnotherPass() const noexcept { return passesLeft > 0; }
  QDStatus EndPass();
  /// Adds the variables that must not be missing in a record for it to reach the test.
  void GetRequiredVariables(std::vector<std::int64_t>& positions) const;
  /// The "Algorithm" element; the caller owns it.
  virtual XMLElement* WriteResults() = 0;
  /// Passes that the test still expects, the running one included; feeds the progress.
  [[nodiscard]] std::int32_t GetPassesLeft() const noexcept { return passesLeft; }
  /// The entry that the test was made of, "RSign"; tells a person which test is in hand. The text
  /// outlives the test.
  [[nodiscard]] std::string_view GetEntryName() const noexcept { return entryName; }
  void SetEntryName(std::string_view name) noexcept { entryName = name; }

  void AddMessages(const std::vector<NPARMessage>& list);
  /// Keeps a message that it does not hold yet. An error sets the status and ends the passes; once
  /// the test has failed, further errors are not kept: the first one stands alone.
  void AddMessage(const NPARMessage& message);
  /// Keeps a message without parameters.
  void ReportStatus(QDStatus newStatus, MessageKind kind);

  // What the document tells of every test.

  [[nodiscard]] bool HasFailed() const noexcept { return status.IsError(); }
  [[nodiscard]] const std::vector<NPARMessage>& GetMessages() const noexcept { return messages; }
  [[nodiscard]] double GetSigLevel() const noexcept { return sigLevel; }
  /// Empty unless the run asks for them.
  [[nodiscard]] const ExtendedFigures& GetExtended() const noexcept { return extended; }

 protected:
  virtual void Prepare(const SettingsReader& settings) = 0;
  virtual void Take(RecordBatch& /*batch*/) {}
  virtual void Compute() = 0;
  virtual void StartPass() {}
  virtual void TakeAgain(RecordBatch& /*batch*/) {}
  virtual void Finish() {}
  /// What stands beside the document's figures, of a test that did not fail.
  virtual void Extend(ExtendedFigures& /*figures*/) {}

  /// How many passes are still to come, the one that is about to start included: in Prepare all of
  /// them, in Compute and Finish those after the one that ends.
  void ExpectPasses(std::int32_t count) noexcept { passesLeft = count; }
  /// In Prepare: records that miss one of these variables stay away.
  void Require(std::vector<std::int32_t> positions) { required = std::move(positions); }
  /// In Prepare: the tally of the key, which takes the records of a batch before the test does and
  /// ends a pass before it. Throws std::bad_alloc.
  template <typename Kind>
  Kind* Share(const typename Kind::Key& key) {
    countsAlone = sharedTallies == nullptr;
    const auto found = countsAlone ? std::make_shared<Kind>(key) : sharedTallies->Find<Kind>(key);
    tally = found;
    return found.get();
  }
  /// The running pass, from 0.
  [[nodiscard]] std::int32_t Pass() const noexcept { return pass; }

  void Fail(std::int32_t code, std::vector<std::string> parameters = {});
  void Warn(std::int32_t code, std::vector<std::string> parameters = {});
  void Help(std::int32_t code, std::vector<std::string> parameters = {});

  UnivariateResults* sharedData = nullptr;
  // Read before Prepare.
  double sigLevel = 0.05;
  double confidenceLevel = 0.95;  // a probability
  bool wantsExtended = false;     // Extend will be asked
  RecordWeight weight;

 private:
  std::unique_ptr<QDSettings> settings;
  QDStatus status;
  std::vector<NPARMessage> messages;
  std::int32_t passesLeft = 0;
  SharedTallies* sharedTallies = nullptr;
  std::shared_ptr<Tally> tally;
  bool countsAlone = false;
  std::int32_t pass = 0;
  std::vector<std::int32_t> required;
  std::string_view entryName;
  ExtendedFigures extended;
};
