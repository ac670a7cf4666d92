#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/message.h"

class SharedTallies;
class UnivariateResults;

/// One hypothesis test (or interval estimate) on one field or set of fields.
///
/// A worker drives it: SetSharedData once; then for each pass BeginPass, GetRequiredVariables,
/// ProcessRecord for every record in which no required variable is missing, EndPass; after each
/// pass NeedsAnotherPass; at the end WriteResults. The first error stops the test and stays: a test
/// that failed, also in its construction, is driven on, does nothing and writes its messages.
///
/// Operations return a copy of the test's status. An error stays the test's own matter; only the
/// code 220012 (no memory) ends the run. A test may throw std::bad_alloc: the worker turns it into
/// 220012.
class NPARTest {
 public:
  /// Takes the settings over; they may be null.
  explicit NPARTest(QDSettings* settings) noexcept : settings(settings) {}
  NPARTest(const NPARTest&) = delete;
  NPARTest& operator=(const NPARTest&) = delete;
  virtual ~NPARTest() = default;

  /// The run's summaries; not taken over, good until the run's results are written.
  virtual void SetSharedData(UnivariateResults* sharedData) = 0;
  /// What the tests of the worker count together; not taken over. A test that gets none counts
  /// alone.
  void SetSharedTallies(SharedTallies* tallies) noexcept { sharedTallies = tallies; }
  /// Starts a pass; in the first one the test reads its settings and sets passesLeft.
  virtual QDStatus BeginPass() = 0;
  virtual QDStatus ProcessRecord(const Record& record) = 0;
  /// Asked once after each pass.
  virtual bool NeedsAnotherPass() = 0;
  /// Computes.
  virtual QDStatus EndPass() = 0;
  /// Variables that must not be missing in a record for it to reach ProcessRecord.
  virtual void GetRequiredVariables(std::vector<std::int64_t>& positions) = 0;
  /// The "Algorithm" element; the caller owns it.
  virtual XMLElement* WriteResults() = 0;

  /// Passes that the test still expects, the running one included; feeds the progress.
  [[nodiscard]] virtual std::int32_t GetPassesLeft() const { return passesLeft; }
  /// The entry that the test was made of, "RSign"; tells a person which test is in hand. The text
  /// outlives the test.
  [[nodiscard]] std::string_view GetEntryName() const noexcept { return entryName; }
  void SetEntryName(std::string_view name) noexcept { entryName = name; }
  virtual void AddMessages(const std::vector<NPARMessage>& list);
  /// Keeps a message that it does not hold yet. An error sets the status and ends the passes; once
  /// the test has failed, further errors are not kept: the first one stands alone.
  virtual void AddMessage(const NPARMessage& message);
  /// Keeps a message without parameters.
  virtual void ReportStatus(QDStatus newStatus, MessageKind kind);

 protected:
  std::unique_ptr<QDSettings> settings;
  QDStatus status;
  std::vector<NPARMessage> messages;
  std::int32_t passesLeft = 0;
  SharedTallies* sharedTallies = nullptr;

 private:
  std::string_view entryName;
};
