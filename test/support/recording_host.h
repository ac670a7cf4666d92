#pragma once

#include <npar/host_interface.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// A host in memory that speaks the C tables: it serves a parameter document, a data model and
/// records of doubles, remembers every call and everything it was given, and fails where it is told
/// to. Its tables are open, so that a test can leave out entries or make a table shorter.
class RecordingHost {
 public:
  struct DeliveredMessage {
    std::int32_t type = 0;
    std::int32_t code = 0;
    std::vector<std::string> parameters;
    friend bool operator==(const DeliveredMessage&, const DeliveredMessage&) = default;
  };
  struct Container {
    std::string key;
    std::size_t streamCount = 0;
    std::string metadata;
    std::string text;
    bool isClosed = false;
  };
  struct Counts {
    double dropped = 0;
    double badWeight = 0;
    double weightedDropped = 0;
  };

  RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;
  ~RecordingHost();

  [[nodiscard]] HBHost* Host();
  [[nodiscard]] HBContext* Context();
  [[nodiscard]] HBIterator* Iterator();
  [[nodiscard]] HBProgress* Progress();
  /// A document of the host's, for readers of documents.
  [[nodiscard]] HBXML* Document(const std::string& text);

  /// From here on the iterator hands out columns: lasting ones as a whole, others by parts of
  /// `mostInABlock`, which the next part of the field overwrites.
  void OfferColumns(bool areLasting);
  /// Fails the call with that number, from 1, of an entry such as "getParameters".
  void FailCall(const std::string& entry, int number, std::uint32_t result = HB_FAILED,
                std::int32_t err = kHostError);
  static constexpr std::int32_t kHostError = 77;
  /// A result for FailCall: the call throws what is no std::exception.
  static constexpr std::uint32_t kThrows = 0xFFFFFFFF;

  /// How often an entry was called.
  [[nodiscard]] int CallCount(const std::string& entry) const;
  /// Documents that were handed out and not released.
  [[nodiscard]] int OpenDocuments() const;
  /// The text of the one closed stream; empty if nothing was published.
  [[nodiscard]] std::string Published() const;

  // What the host serves.
  std::string parameters = "<Parameters/>";
  std::string fields;     ///< Field elements; the record counts come from `records` and `counts`
  std::string modelText;  ///< served as it stands, unless empty
  std::vector<std::vector<double>> records;
  std::size_t mostInABlock = std::numeric_limits<std::size_t>::max();
  Counts counts;
  std::uint32_t threads = 1;

  // What the host was told.
  std::vector<std::string> calls;
  std::vector<DeliveredMessage> messages;
  std::vector<std::unique_ptr<Container>> containers;
  std::vector<std::int32_t> codes;
  std::vector<double> progress;     ///< `done` of each report
  std::vector<std::string> passes;  ///< "field:test test"; without field in the host's order
  std::int64_t lastIdentifier = 0;
  std::function<void(double)> onProgress;
  std::function<void()> onRecords;  ///< before each next or readBlock
  std::function<void()> onMessage;

  // How the host speaks.
  HBHostTable hostTable;
  HBContextTable contextTable;
  HBIteratorTable iteratorTable;
  HBProgressTable progressTable;
  HBContainerFileTable containerTable;
  HBXMLTable xmlTable;

 private:
  struct Entries;
  struct Objects;
  struct Failure {
    int number;
    std::uint32_t result;
    std::int32_t err;
  };

  /// Remembers the call; the result that was asked for, HB_OK otherwise.
  std::uint32_t Called(const std::string& entry, std::int32_t* err);

  std::unique_ptr<Objects> objects;
  std::map<std::string, Failure> failures;
  std::map<std::string, int> callCounts;
  std::int64_t position = -1;
  bool areColumnsLasting = false;
  std::map<std::size_t, std::vector<double>> columns;  // by field; of the run
};
