#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "foundation/algorithm.h"
#include "foundation/names.h"
#include "foundation/peer.h"

class NPARFactory;
class NPARProgressListener;

/// The component object: configures itself from the host's documents, says what must be done to the
/// records, runs the algorithm over them and puts its document into the host's container.
///
/// Operations return 0 or the code of an export; what went wrong is collected as message.
class NPARComponentBuilder final : public QDHB_700::QDPeer {
 public:
  /// Neither is taken over.
  NPARComponentBuilder(HBContext* context, HBHost* host);
  ~NPARComponentBuilder() override;

  /// Messages 240010 to 240013 (no or unreadable documents), 240004 (no variables), 220008 to
  /// 220011 (the selected fields).
  std::uint32_t Configure(std::int32_t* err) override;
  using QDPeer::BeginExecution;
  /// The whole run. NPAR_NOT_CONFIGURED before a configuration that succeeded.
  std::uint32_t BeginExecution(HBIterator* iterator, HBProgress* progress,
                               std::int32_t* err) override;
  /// Frees what a run needed; the configuration stays.
  std::uint32_t EndExecution(std::int32_t* err) override;
  std::uint32_t BuildModelSettings(const HbHelperV1::XMLDocument& document,
                                   std::int32_t* err) override;

  /// False while a call that must be alone is in hand, and until its Leave.
  [[nodiscard]] bool Enter() noexcept { return !isInHand.exchange(true); }
  void Leave() noexcept { isInHand.store(false); }

  /// Collects the message that memory ran out, as far as there is memory for it; NPAR_FAILED.
  std::uint32_t ReportNoMemory(std::int32_t* err) noexcept;

 private:
  void MakeInputAdapter(bool takeCounts);

  std::uint32_t BuildExecutionRequirements(const QDSettings& settings, const QDVarList& variables,
                                           HbHelperV1::XMLDocument& document, std::int32_t* err);
  std::uint32_t CollectRequestedFields(const QDSettings& settings, const QDVarList& variables,
                                       std::vector<std::string>& fields, std::int32_t* err);
  std::uint32_t CheckWeightNotAnalysed(const QDVarList& variables,
                                       const std::vector<std::string>& fields, std::int32_t* err);

  std::uint32_t RunExecution(std::int32_t* err);
  std::uint32_t PrepareAlgorithm(NPARFactory& factory, std::int32_t* err);
  std::uint32_t TranslateSettings(std::int32_t* err);
  std::uint32_t ExecuteAlgorithm(QDHB_700::QDPeerIterator& records, std::int32_t* err);
  /// How many threads the host lets a run use.
  [[nodiscard]] std::size_t AllowedThreads() const;
  std::uint32_t PublishResult(std::int32_t* err);

  void AddModelIdentifier();
  /// Collects the warnings or the error of a status; the host's answer.
  std::uint32_t CollectStatus(QDStatus status, std::int32_t* err);
  /// Collects as CollectStatus; the host's answer or, where that is 0, `fallback`.
  std::uint32_t Fail(std::int32_t code, std::uint32_t fallback, std::int32_t* err);
  /// CollectStatus, and NPAR_FAILED for an error to which the host answered 0.
  std::uint32_t Check(QDStatus status, std::int32_t* err);

  std::unique_ptr<QDSettings> modelSettings;             // the host's parameters
  std::unique_ptr<QDSettings> flatSettings;              // what the planner reads, new in each run
  std::unique_ptr<QDHB_700::InputAdapter> inputAdapter;  // its list holds the run's variables
  std::unique_ptr<QDCommon_700::IQDAlgorithm> algorithm;
  std::unique_ptr<NPARProgressListener> progressListener;
  std::vector<std::string> fieldNames;  // what the selected tests read
  std::string caseIdField;
  std::atomic<bool> isInHand{false};
};
