#pragma once

#include <npar/host_interface.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/export.h"
#include "foundation/host_helpers.h"
#include "foundation/iterators.h"
#include "foundation/progress.h"
#include "foundation/settings.h"
#include "foundation/variables.h"

namespace QDHB_700 {

/// Types of a message.
enum MessageType : std::int32_t {
  kWarningMessage = HB_MESSAGE_WARNING,
  kErrorMessage = HB_MESSAGE_ERROR
};

/// Codes of the platform's own, in *err and as messages.
enum PlatformCode : std::int32_t {
  kNoParameters = 240010,    ///< the host gave no parameter document
  kBadParameters = 240011,   ///< the parameter document cannot be read; parameter: why
  kNoDataModel = 240012,     ///< the host gave no data model
  kBadDataModel = 240013,    ///< the data model cannot be read; parameter: why
  kIteratorFailed = 240014,  ///< the host's iterator reported an error; parameter: its code
  kNotOffered = 240015,      ///< an operation that the component or the host does not offer
};

/// What a host says of itself.
struct QDPeerHostInfo {
  std::string name;
  std::string version;
  std::string copyright;
  std::string vendor;
  std::string serialNumber;
};

/// Reads a host's data model document. What a field leaves out: its measure is nominal where it is
/// stored as string and continuous elsewhere, its storage is string where its measure is nominal or
/// ordinal and real elsewhere. Values with missing="user" are no categories.
class QD_EXPORT DataModelParser {
 public:
  struct Model;

  DataModelParser();
  ~DataModelParser();
  /// Reads the document. `withCounts`: the record counts must be there. False, and `problem` says
  /// where and why, for a document that does not follow schema/datamodel.xsd; the model is then
  /// empty.
  bool Parse(const HbHelperV1::XMLDocument& document, bool withCounts, std::string& problem);
  [[nodiscard]] std::size_t FieldCount() const;

 private:
  friend class InputAdapter;
  std::unique_ptr<Model> model;
};

/// Adapts a host's fields to the run's variables.
class QD_EXPORT InputAdapter {
 public:
  /// Neither helper nor parser is taken over; the helper may be null where only the list is wanted.
  /// The flags, in order: bin continuous fields (a matter of derived adapters: a data model names
  /// no bins); turn fields of role none to input; leave fields of measure "other" out; list the
  /// frequency weight too; take the record counts over.
  InputAdapter(HbHelperV1::DataHelper* dataHelper, const DataModelParser* parser, bool binFields,
               bool changeDirection, bool skipUnfit, bool listWeight, bool takeCounts);
  virtual ~InputAdapter();

  /// Fills the variable list from the data model: every field with a role, in the model's order.
  /// False, with a code in *err, for a model without fields or where no field has a role.
  bool BuildVarlist(std::int32_t* err);
  [[nodiscard]] QDXML_700::QDVarList& GetVarList() noexcept { return variables; }
  /// Fields of the data model.
  [[nodiscard]] std::size_t FieldCount() const;

  /// The next records in variable order, `width` doubles each, as far as they fit; 0 at the end.
  std::uint32_t GetValues(double* buffer, std::size_t capacity, std::size_t* recordCount,
                          std::int32_t* err);
  /// As GetValues, in field order and with every field of the data model.
  std::uint32_t GetRawValues(double* buffer, std::size_t capacity, std::size_t* recordCount,
                             std::int32_t* err);
  /// The field of a variable.
  [[nodiscard]] std::size_t FieldOf(std::int32_t variable) const {
    return fieldOfVariable[static_cast<std::size_t>(variable)];
  }

 protected:
  virtual bool IsValidFields() const;
  virtual void SetFieldIndexVector();
  virtual bool CanAddToVarList(std::size_t field) const;
  virtual void SetFieldsBinningParameter();
  virtual bool AddFrequencyWeightToVarlist(std::size_t field);
  virtual void ChangeFieldDirection();

 private:
  HbHelperV1::DataHelper* dataHelper;
  const DataModelParser* parser;
  bool binFields;
  bool changeDirection;
  bool skipUnfit;
  bool listWeight;
  bool takeCounts;
  QDXML_700::QDVarList variables;
  bool listAllRoles = false;
  std::vector<std::size_t> fieldOfVariable;
  std::vector<double> rawBuffer;
};

/// The host's records as an iterator: reads them in blocks, delivers them one by one or in blocks,
/// or hands out the host's columns. The source is rewound before the first record of every pass.
class QD_EXPORT QDPeerIterator : public QDCommon_700::MultiPassRecordIter,
                                 public QDCommon_700::IRecordBlocks,
                                 public QDCommon_700::IRecordColumns {
 public:
  /// Neither is taken over. `raw`: every field of the data model, in its order.
  QDPeerIterator(HbHelperV1::DataHelper* dataHelper, InputAdapter* adapter, bool raw);
  ~QDPeerIterator() override;

  bool HasNext() override;
  const QDCommon_700::Record* Next() override;
  int GetState() const override;
  int Reset() override;
  bool NextBlock(QDCommon_700::RecordBlock& block) override;
  bool HasColumns() const override { return dataHelper->HasColumns(); }
  bool GetPart(std::int32_t variable, std::size_t record, QDCommon_700::ColumnPart& part) override;
  int GetRecordWidth() const override;

  /// Records delivered since the iterator was made, over all passes; of columns values.
  [[nodiscard]] std::int64_t GetDeliveredCount() const noexcept { return delivered; }
  /// The first code that the host's iterator reported in any pass, 0 if none.
  [[nodiscard]] std::int32_t GetHostError() const noexcept { return hostError; }

 private:
  void MakeRoom(std::size_t records);
  bool Refill();
  bool Fail(std::uint32_t result, std::int32_t err);

  HbHelperV1::DataHelper* dataHelper;
  InputAdapter* adapter;
  bool raw;
  int width;
  std::vector<double> buffer;
  std::vector<const double*> rows;
  std::size_t position = 0;
  std::size_t filled = 0;
  bool rewound = false;
  std::int64_t delivered = 0;
  std::size_t mostOfColumns = 0;            // values that some column has
  std::optional<std::size_t> endOfColumns;  // where one ended, and all must
  std::int32_t hostError = 0;
  int state = 0;
  QDCommon_700::Record current;
};

/// True from the host's call of CancelExecution until the run that it stops has ended: the one
/// under way, or the next. Any thread may set it.
class QD_EXPORT QDCancelSource final : public QDCommon_700::ICancelSource {
 public:
  bool IsCancelled() override { return cancelled.load(std::memory_order_relaxed); }
  void Set(bool value) noexcept { cancelled.store(value, std::memory_order_relaxed); }

 private:
  std::atomic<bool> cancelled{false};
};

/// Base of a component object: everything that a host may ask of a component, and what a component
/// needs for its answers. Functions return 0 for success and leave a code in *err otherwise.
class QD_EXPORT QDPeer {
 public:
  /// Neither is taken over.
  QDPeer(HBContext* context, HBHost* host);
  QDPeer(const QDPeer&) = delete;
  QDPeer& operator=(const QDPeer&) = delete;
  virtual ~QDPeer();

  virtual std::uint32_t Configure(std::int32_t* err);
  virtual std::uint32_t GetDataModel(std::int32_t index, char* buffer, std::size_t capacity,
                                     std::size_t* needed, std::int32_t* err);
  virtual std::uint32_t GetExecutionRequirements(char* buffer, std::size_t capacity,
                                                 std::size_t* needed, std::int32_t* err);
  virtual std::uint32_t GetInputIterator(std::uint32_t index, HBIterator** iterator,
                                         std::int32_t* err);
  virtual std::uint32_t BeginExecution(HBIterator** iterators, HBProgress* progress,
                                       std::int32_t* err);
  virtual std::uint32_t BeginExecution(HBIterator* iterator, HBProgress* progress,
                                       std::int32_t* err);
  virtual std::uint32_t EndExecution(std::int32_t* err);
  virtual std::uint32_t CancelExecution(std::int32_t* err);
  virtual std::uint32_t NextRecord(std::int32_t* err);
  virtual std::uint32_t GetRecordValue(std::size_t index, const void** value, std::size_t* size,
                                       std::int32_t* err);
  virtual std::uint32_t GetErrorDetail(char* buffer, std::size_t capacity, std::size_t* needed,
                                       std::int32_t* err);
  virtual std::uint32_t GetPSMControlInformation(char* buffer, std::size_t capacity,
                                                 std::size_t* needed, std::int32_t* err);
  virtual std::uint32_t PSMMerge(std::int32_t* err);
  virtual std::uint32_t GetWorkerTask(HBWorker* worker, std::int32_t* err);
  virtual std::uint32_t GetWorkerDataModel(HBWorker* worker, HBXML** document, std::int32_t* err);
  virtual std::uint32_t GetWorkerIterator(HBWorker* worker, HBIterator** iterator,
                                          std::int32_t* err);
  virtual std::uint32_t ReadWorkerInputContainer(HBWorker* worker, std::int32_t* err);
  virtual std::uint32_t FollowOnTaskStartExe(HBWorker* worker, std::int32_t* err);
  virtual std::uint32_t FollowOnTaskEndExe(HBWorker* worker, std::int32_t* err);
  virtual std::uint32_t GetIteratorRequirements(std::int32_t* inputs, std::int32_t* passes,
                                                std::int32_t* order, std::int32_t* err);
  virtual std::uint32_t GetInputFieldsFixed(bool* isFixed, std::int32_t* err);
  virtual std::uint32_t GetRecordSynchronizedProcessing(bool* isSynchronized, std::int32_t* err);
  virtual std::uint32_t GetWorkerTaskNumber(std::int32_t* number, std::int32_t* err);
  /// Called by ScanParameters with the parameter document.
  virtual std::uint32_t BuildModelSettings(const HbHelperV1::XMLDocument& document,
                                           std::int32_t* err);

  /// Tells the host's progress handle; success without one. The flag is -1 where nothing else is
  /// told.
  std::uint32_t Report_Progress(double done, double total, std::int32_t* err, std::int32_t flag);
  [[nodiscard]] HBContext* GetHBContextHandle() const noexcept { return context; }
  [[nodiscard]] HBHost* GetHBHostHandle() const noexcept { return host; }

 protected:
  /// Keeps a message for GetErrorDetail and delivers it to the host; the host's answer to that. An
  /// error that it takes goes into *err as well. A message about an unreadable document, given
  /// without parameters, gets the problem's text.
  std::uint32_t CollectMsgs(std::int32_t type, std::int32_t code, std::int32_t* err);
  std::uint32_t CollectMsgs(std::int32_t type, std::int32_t code,
                            const std::vector<std::string>& parameters, std::int32_t* err);
  void ClearMsgs() noexcept;

  /// Starts a configuration anew: gets the parameter document and hands it to BuildModelSettings.
  std::uint32_t ScanParameters(std::int32_t* err);
  /// `withCounts`: the data model of the prepared records is wanted. `number`: the input's, from 1.
  std::uint32_t ParseDataModel(std::int32_t* err, bool withCounts, std::uint32_t number);
  /// Ends a configuration: what the host must do to the records before a run.
  void SetExeRequirements(const HbHelperV1::XMLDocument& document);
  /// True from SetExeRequirements until the next ScanParameters.
  [[nodiscard]] bool IsConfigured() const noexcept { return !requirements.empty(); }
  /// Takes the helper over.
  void SetDataHelper(HbHelperV1::DataHelper* helper);
  [[nodiscard]] HbHelperV1::DataHelper* GetDataHelper() const noexcept { return dataHelper.get(); }
  [[nodiscard]] const DataModelParser* GetDataModelParser() const noexcept { return &parser; }
  [[nodiscard]] QDCancelSource* GetCancelSource() noexcept { return &cancelSource; }
  /// Where BuildModelSettings leaves what is wrong with the parameters.
  [[nodiscard]] std::string* GetProblemText() noexcept { return &problem; }
  std::uint32_t GetHostInformation(QDPeerHostInfo& info, std::int32_t* err);
  void SetProgressHandle(HBProgress* handle) noexcept { progress = handle; }

 private:
  struct Message {
    std::int32_t type;
    std::int32_t code;
    std::vector<std::string> parameters;
  };

  HBContext* context;
  HBHost* host;
  HBProgress* progress = nullptr;
  std::unique_ptr<HbHelperV1::DataHelper> dataHelper;
  DataModelParser parser;
  QDCancelSource cancelSource;
  std::string requirements;
  std::string problem;
  std::vector<Message> messages;
};

}  // namespace QDHB_700

/// Turns a host's parameter document into settings.
class QD_EXPORT QDSettingsFactory {
 public:
  /// Fills `settings`; QDHB_700::kBadParameters in *err for a document that does not follow
  /// schema/parameters.xsd, and `problem` says where and why.
  static std::uint32_t MakeModelSettings(const HbHelperV1::XMLDocument& document,
                                         QDXML_700::QDSettings& settings, std::int32_t* err,
                                         std::string* problem = nullptr);
};
