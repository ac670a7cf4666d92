#pragma once

#include <npar/host_interface.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host/requirements/record_view.h"

namespace npar_host {

/// A message of the component: its code, whether it is an error or a warning, its parameters.
struct RunMessage {
  bool isError = false;
  std::int32_t code = 0;
  std::vector<std::string> parameters;
};

/// What the component has in hand.
struct PassInHand {
  std::vector<std::string> tests;  // names of their algorithms
  std::string orderField;          // what the records are sorted by; empty: the order of the data
};

/// Told of a run on its own thread; each function may be empty.
struct ProgressListener {
  std::function<void(double done, double total)> report;
  std::function<void(const PassInHand& pass)> beginPass;
};

/// The host's side of one component: the tables of npar/host_interface.h over documents and
/// records in memory. It outlives the component that it serves.
class RunHost {
 public:
  RunHost(std::string parameters, std::string dataModel);
  RunHost(const RunHost&) = delete;
  RunHost& operator=(const RunHost&) = delete;

  [[nodiscard]] HBContext* Context() { return &context; }
  [[nodiscard]] HBProgress* Progress() { return &progress; }

  /// From here on the component is executing: it gets the data model of the prepared records and
  /// the records themselves, which stay the caller's.
  void OfferRecords(std::string preparedModel, const RecordView& records);
  /// The number of the run in its document, instead of one at random.
  void SetIdentifier(std::int64_t identifier) { context.identifier = identifier; }
  /// How many threads a run may use; 1 unless it is told.
  void AllowThreads(std::uint32_t count) { context.threads = count; }
  void ListenToProgress(ProgressListener listener) { progress.listener = std::move(listener); }

  /// What the component delivered, in order.
  [[nodiscard]] const std::vector<RunMessage>& Messages() const { return context.messages; }
  /// Hands over the stream that the component put into its container "StatXML"; empty without one.
  [[nodiscard]] std::string TakeStream() { return std::move(container.stream); }

 private:
  // The interface's objects hold a table and nothing else; each of these adds the host's own state
  // behind it, and the table's functions cast back.
  struct Document : HBXML {
    explicit Document(std::string text);
    std::string text;
    static const HBXMLTable kTable;
  };
  struct Iterator : HBIterator {
    Iterator();
    const RecordView* records = nullptr;
    // In the numbering of the data, where not all are kept.
    std::size_t nextRecord = 0;
    std::vector<double> standing;  // the record that next went on to; none before it
    /// What of a field was handed over last, where it does not stand so in the data.
    struct Delivered {
      std::vector<double> values;
      std::size_t behind = 0;      // the number of the record behind it,
      std::size_t nextRecord = 0;  // and the same in the numbering of the data
    };
    std::vector<Delivered> delivered;  // by field
    /// The values of a field from a record on; none at the end. Throws std::bad_alloc.
    std::span<const double> Deliver(std::size_t field, std::size_t record);
    static const HBIteratorTable kTable;
  };
  struct ProgressHandle : HBProgress {
    ProgressHandle();
    ProgressListener listener;
    static const HBProgressTable kTable;
  };
  struct Container : HBContainerFile {
    Container();
    std::string stream;
    static const HBContainerFileTable kTable;
  };
  struct ContextHandle : HBContext {
    explicit ContextHandle(RunHost& host);
    RunHost& host;
    std::vector<RunMessage> messages;
    std::optional<std::int64_t> identifier;
    std::uint32_t threads = 1;
    static const HBContextTable kTable;
  };

  Document parameters;
  Document configuredModel;
  Document preparedModel;
  bool executing = false;
  Iterator iterator;
  ProgressHandle progress;
  Container container;
  ContextHandle context;
};

}  // namespace npar_host
