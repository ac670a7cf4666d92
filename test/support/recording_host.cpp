#include "support/recording_host.h"

#include <algorithm>
#include <numeric>
#include <sstream>

namespace {

/// A C object that knows its host.
template <typename Base>
struct Owned : Base {
  RecordingHost* owner = nullptr;
};

struct OwnedDocument : Owned<HBXML> {
  std::string text;
  bool isReleased = false;
};

struct OwnedContainer : Owned<HBContainerFile> {
  RecordingHost::Container* record = nullptr;
};

template <typename Base>
RecordingHost& HostOf(Base* self) {
  return *static_cast<Owned<Base>*>(self)->owner;
}

}  // namespace

struct RecordingHost::Objects {
  Owned<HBHost> host;
  Owned<HBContext> context;
  Owned<HBIterator> iterator;
  Owned<HBProgress> progress;
  std::vector<std::unique_ptr<OwnedDocument>> documents;
  std::vector<std::unique_ptr<OwnedContainer>> containers;
};

/// The entries of the tables.
struct RecordingHost::Entries {
  static std::uint32_t GetInformation(HBHost* self, HBHostInformation* information,
                                      std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("getInformation", err);
    if (result == HB_OK) *information = {"Recording host", "2.1", "(c) Nobody", nullptr, "7"};
    return result;
  }

  static std::uint32_t GetParameters(HBContext* self, HBXML** document, std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("getParameters", err);
    if (result == HB_OK) *document = HostOf(self).Document(HostOf(self).parameters);
    return result;
  }

  static std::uint32_t GetDataModel(HBContext* self, std::uint32_t, HBXML** document,
                                    std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    const std::uint32_t result = host.Called("getDataModel", err);
    if (result != HB_OK) return result;
    std::ostringstream text;
    text << "<DataModel recordCount=\"" << host.records.size() << "\" weightedCount=\""
         << host.records.size() << "\" droppedCount=\"" << host.counts.dropped
         << "\" badWeightCount=\"" << host.counts.badWeight << "\" weightedDroppedCount=\""
         << host.counts.weightedDropped << "\">" << host.fields << "</DataModel>";
    *document = host.Document(host.modelText.empty() ? text.str() : host.modelText);
    return result;
  }

  static std::uint32_t GetInputIterator(HBContext* self, std::uint32_t, HBIterator** iterator,
                                        std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("getInputIterator", err);
    if (result == HB_OK) *iterator = HostOf(self).Iterator();
    HostOf(self).columns.clear();
    return result;
  }

  static std::uint32_t SetCodes(HBContext* self, const std::int32_t* codes, std::size_t count,
                                std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("setCodes", err);
    if (result == HB_OK) HostOf(self).codes.assign(codes, codes + count);
    return result;
  }

  static std::uint32_t NewIdentifier(HBContext* self, std::int64_t* identifier, std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("newIdentifier", err);
    if (result == HB_OK) *identifier = ++HostOf(self).lastIdentifier;
    return result;
  }

  static std::uint32_t GetOutputContainer(HBContext* self, const char* key, std::size_t count,
                                          HBContainerFile** container, std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    const std::uint32_t result = host.Called("getOutputContainer", err);
    if (result != HB_OK) return result;
    host.containers.push_back(std::make_unique<Container>(Container{key, count, {}, {}, false}));
    auto object = std::make_unique<OwnedContainer>();
    object->table = &host.containerTable;
    object->owner = &host;
    object->record = host.containers.back().get();
    *container = object.get();
    host.objects->containers.push_back(std::move(object));
    return result;
  }

  static std::uint32_t DeliverMessage(HBContext* self, std::int32_t type, std::int32_t code,
                                      const char* const* texts, std::size_t count,
                                      std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    host.messages.push_back({type, code, {texts, texts + count}});
    if (host.onMessage) host.onMessage();
    return host.Called("deliverMessage", err);
  }

  static std::uint32_t GetThreadCount(HBContext* self, std::uint32_t* count, std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    const std::uint32_t result = host.Called("getThreadCount", err);
    if (result == HB_OK) *count = host.threads;
    return result;
  }

  static std::uint32_t Rewind(HBIterator* self, std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("rewind", err);
    if (result == HB_OK) HostOf(self).position = -1;
    return result;
  }

  static std::uint32_t Next(HBIterator* self, std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    if (host.onRecords) host.onRecords();
    const std::uint32_t result = host.Called("next", err);
    if (result != HB_OK) return result;
    ++host.position;
    return host.position < static_cast<std::int64_t>(host.records.size()) ? HB_OK
                                                                          : HB_END_OF_RECORDS;
  }

  static std::uint32_t GetValue(HBIterator* self, std::size_t fieldIndex, const void** value,
                                std::size_t* valueSize, std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    const std::uint32_t result = host.Called("getValue", err);
    if (result != HB_OK) return result;
    *value = &host.records.at(static_cast<std::size_t>(host.position)).at(fieldIndex);
    *valueSize = sizeof(double);
    return result;
  }

  static std::uint32_t ReadBlock(HBIterator* self, double* buffer, std::size_t capacity,
                                 std::size_t fieldCount, std::size_t* recordCount,
                                 std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    if (host.onRecords) host.onRecords();
    const std::uint32_t result = host.Called("readBlock", err);
    if (result != HB_OK) return result;
    const auto start = static_cast<std::size_t>(host.position + 1);
    const std::size_t left = host.records.size() - std::min(start, host.records.size());
    const std::size_t count = std::min({capacity / fieldCount, host.mostInABlock, left});
    for (std::size_t record = start; record < start + count; ++record) {
      buffer = std::copy_n(host.records[record].data(), fieldCount, buffer);
    }
    host.position += static_cast<std::int64_t>(count);
    *recordCount = count;
    return result;
  }

  static std::uint32_t GetColumn(HBIterator* self, std::size_t fieldIndex, std::size_t record,
                                 const double** values, std::size_t* count, std::int32_t* isLasting,
                                 std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    if (host.onRecords) host.onRecords();
    const std::uint32_t result = host.Called("getColumn", err);
    if (result != HB_OK) return result;
    const bool isWhole = host.areColumnsLasting;
    std::vector<double>& column = host.columns[fieldIndex];
    const bool isLent = isWhole && !column.empty();  // it stays as it is, whatever the records do
    const std::size_t end = isLent ? column.size() : host.records.size();
    if (record >= end) return HB_END_OF_RECORDS;
    const std::size_t start = isWhole ? 0 : record;
    const std::size_t size = isWhole ? end : std::min(end - start, host.mostInABlock);
    if (!isLent) {
      column.assign(size, 0.0);
      for (std::size_t i = 0; i < size; ++i) column[i] = host.records[start + i].at(fieldIndex);
    }
    *values = column.data() + (record - start);
    *count = size - (record - start);
    *isLasting = isWhole ? 1 : 0;
    return result;
  }

  static std::uint32_t Report(HBProgress* self, double done, double, std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    host.progress.push_back(done);
    if (host.onProgress) host.onProgress(done);
    return host.Called("report", err);
  }

  static std::uint32_t BeginPass(HBProgress* self, const char* const* tests, std::size_t count,
                                 const char* orderField, std::int32_t* err) {
    RecordingHost& host = HostOf(self);
    std::string pass = orderField == nullptr ? "" : std::string(orderField) + ":";
    for (std::size_t i = 0; i < count; ++i) pass += std::string(i == 0 ? "" : " ") + tests[i];
    host.passes.push_back(pass);
    return host.Called("beginPass", err);
  }

  static std::uint32_t PutStream(HBContainerFile* self, HBContainerStreamKey*, const char* metadata,
                                 std::size_t metadataLength, const char* bytes, std::size_t length,
                                 std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("putStream", err);
    if (result != HB_OK) return result;
    Container& record = *static_cast<OwnedContainer*>(self)->record;
    record.metadata.assign(metadata, metadataLength);
    record.text.assign(bytes, length);
    return result;
  }

  static std::uint32_t Close(HBContainerFile* self, std::int32_t* err) {
    static_cast<OwnedContainer*>(self)->record->isClosed = true;
    return HostOf(self).Called("close", err);
  }

  static std::uint32_t GetText(HBXML* self, const char** text, std::size_t* length,
                               std::int32_t* err) {
    const std::uint32_t result = HostOf(self).Called("getText", err);
    if (result != HB_OK) return result;
    *text = static_cast<OwnedDocument*>(self)->text.c_str();
    *length = static_cast<OwnedDocument*>(self)->text.size();
    return result;
  }

  static std::uint32_t Release(HBXML* self, std::int32_t* err) {
    static_cast<OwnedDocument*>(self)->isReleased = true;
    return HostOf(self).Called("release", err);
  }
};

RecordingHost::RecordingHost()
    : hostTable{sizeof(HBHostTable), Entries::GetInformation},
      contextTable{sizeof(HBContextTable),      Entries::GetParameters,  Entries::GetDataModel,
                   Entries::GetInputIterator,   Entries::SetCodes,       Entries::NewIdentifier,
                   Entries::GetOutputContainer, Entries::DeliverMessage, Entries::GetThreadCount},
      iteratorTable{sizeof(HBIteratorTable), Entries::Rewind,    Entries::Next,
                    Entries::GetValue,       Entries::ReadBlock, nullptr},
      progressTable{sizeof(HBProgressTable), Entries::Report, Entries::BeginPass},
      containerTable{sizeof(HBContainerFileTable), Entries::PutStream, Entries::Close},
      xmlTable{sizeof(HBXMLTable), Entries::GetText, Entries::Release},
      objects(std::make_unique<Objects>()) {
  objects->host = {{&hostTable}, this};
  objects->context = {{&contextTable}, this};
  objects->iterator = {{&iteratorTable}, this};
  objects->progress = {{&progressTable}, this};
}

RecordingHost::~RecordingHost() = default;

HBHost* RecordingHost::Host() { return &objects->host; }
HBContext* RecordingHost::Context() { return &objects->context; }
HBIterator* RecordingHost::Iterator() { return &objects->iterator; }
HBProgress* RecordingHost::Progress() { return &objects->progress; }

HBXML* RecordingHost::Document(const std::string& text) {
  auto document = std::make_unique<OwnedDocument>();
  document->table = &xmlTable;
  document->owner = this;
  document->text = text;
  objects->documents.push_back(std::move(document));
  return objects->documents.back().get();
}

void RecordingHost::OfferColumns(bool areLasting) {
  areColumnsLasting = areLasting;
  iteratorTable.getColumn = Entries::GetColumn;
}

void RecordingHost::FailCall(const std::string& entry, int number, std::uint32_t result,
                             std::int32_t err) {
  failures[entry] = {number, result, err};
  callCounts[entry] = 0;
}

int RecordingHost::CallCount(const std::string& entry) const {
  return static_cast<int>(std::count(calls.begin(), calls.end(), entry));
}

int RecordingHost::OpenDocuments() const {
  return static_cast<int>(std::count_if(objects->documents.begin(), objects->documents.end(),
                                        [](const auto& each) { return !each->isReleased; }));
}

std::string RecordingHost::Published() const {
  std::string text;
  for (const auto& container : containers) {
    if (container->isClosed) text += container->text;
  }
  return text;
}

std::uint32_t RecordingHost::Called(const std::string& entry, std::int32_t* err) {
  calls.push_back(entry);
  const auto failure = failures.find(entry);
  if (failure == failures.end() || ++callCounts[entry] != failure->second.number) return HB_OK;
  if (failure->second.result == kThrows) throw failure->second.err;
  *err = failure->second.err;
  return failure->second.result;
}
