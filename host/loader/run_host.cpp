#include "host/loader/run_host.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <random>
#include <string_view>
#include <utility>

namespace npar_host {
namespace {

// Codes of this host that a failing function leaves in *err.
constexpr int32_t kNoSuchInput = 1;
constexpr int32_t kNoRecordStands = 2;
constexpr int32_t kOtherFieldCount = 3;
constexpr int32_t kNoSuchContainer = 4;
constexpr int32_t kOutOfMemory = 5;
constexpr int32_t kNoSuchField = 6;

constexpr std::string_view kResultContainer = "StatXML";

uint32_t Fail(int32_t* err, int32_t code) {
  *err = code;
  return HB_FAILED;
}

// Begins at random, so that runs in different processes differ too, and goes through all numbers of
// 31 bits before one comes again. Components keep it as a signed 32-bit integer.
int64_t NewIdentifier() {
  constexpr uint32_t kStep = 0x5F356495;  // odd
  constexpr uint32_t kMask = 0x7FFFFFFF;
  static std::atomic<uint32_t> latest{std::random_device()()};
  while (true) {
    const uint32_t identifier = (latest += kStep) & kMask;
    if (identifier != 0) return identifier;
  }
}

}  // namespace

RunHost::Document::Document(std::string text) : HBXML{&kTable}, text(std::move(text)) {}

const HBXMLTable RunHost::Document::kTable = {
    sizeof(HBXMLTable),
    [](HBXML* self, const char** text, size_t* length, int32_t*) -> uint32_t {
      const auto& document = *static_cast<Document*>(self);
      *text = document.text.c_str();
      *length = document.text.size();
      return HB_OK;
    },
    // Documents live as long as the host object does.
    [](HBXML*, int32_t*) -> uint32_t { return HB_OK; }};

RunHost::Iterator::Iterator() : HBIterator{&kTable} {}

const HBIteratorTable RunHost::Iterator::kTable = {
    sizeof(HBIteratorTable),
    [](HBIterator* self, int32_t*) -> uint32_t {
      auto& iterator = *static_cast<Iterator*>(self);
      iterator.nextRecord = 0;
      iterator.standing.clear();
      return HB_OK;
    },
    [](HBIterator* self, int32_t* err) -> uint32_t {
      auto& iterator = *static_cast<Iterator*>(self);
      try {
        std::vector<double> record(iterator.records->Width());
        if (iterator.records->Read(iterator.nextRecord, 1, record.data()) == 0) {
          return HB_END_OF_RECORDS;
        }
        iterator.standing = std::move(record);
      } catch (const std::bad_alloc&) {
        return Fail(err, kOutOfMemory);
      }
      return HB_OK;
    },
    [](HBIterator* self, size_t fieldIndex, const void** value, size_t* valueSize,
       int32_t* err) -> uint32_t {
      const auto& iterator = *static_cast<Iterator*>(self);
      if (fieldIndex >= iterator.standing.size()) return Fail(err, kNoRecordStands);
      *value = iterator.standing.data() + fieldIndex;
      *valueSize = sizeof(double);
      return HB_OK;
    },
    [](HBIterator* self, double* buffer, size_t capacity, size_t fieldCount, size_t* recordCount,
       int32_t* err) -> uint32_t {
      auto& iterator = *static_cast<Iterator*>(self);
      if (fieldCount != iterator.records->Width() || fieldCount == 0) {
        return Fail(err, kOtherFieldCount);
      }
      *recordCount = iterator.records->Read(iterator.nextRecord, capacity / fieldCount, buffer);
      return HB_OK;
    },
    [](HBIterator* self, size_t fieldIndex, size_t record, const double** values, size_t* count,
       int32_t* isLasting, int32_t* err) -> uint32_t {
      auto& iterator = *static_cast<Iterator*>(self);
      const RecordView& records = *iterator.records;
      if (fieldIndex >= records.Width()) return Fail(err, kNoSuchField);
      const bool areLent = records.IsWhole() && records.Field(fieldIndex).IsPlain();
      std::span<const double> part;
      try {
        part = areLent ? records.Field(fieldIndex).numbers.From(record)
                       : iterator.Deliver(fieldIndex, record);
      } catch (const std::bad_alloc&) {
        return Fail(err, kOutOfMemory);
      }
      if (part.empty()) return HB_END_OF_RECORDS;
      *values = part.data();
      *count = part.size();
      *isLasting = areLent ? 1 : 0;
      return HB_OK;
    }};

std::span<const double> RunHost::Iterator::Deliver(std::size_t field, std::size_t record) {
  constexpr std::size_t kMostAtOnce = 4096;
  constexpr std::size_t kFewestAtOnce = 256;
  constexpr std::size_t kMostValues = std::size_t{1} << 20;  // of all fields
  const std::size_t room = std::clamp(kMostValues / records->Width(), kFewestAtOnce, kMostAtOnce);
  delivered.resize(records->Width());
  Delivered& part = delivered[field];
  if (part.behind != record) part.nextRecord = records->SourceOf(record);
  part.values.resize(room);
  const std::size_t count = records->ReadField(field, part.nextRecord, room, part.values.data());
  part.behind = record + count;
  return {part.values.data(), count};
}

RunHost::ProgressHandle::ProgressHandle() : HBProgress{&kTable} {}

const HBProgressTable RunHost::ProgressHandle::kTable = {
    sizeof(HBProgressTable),
    [](HBProgress* self, double done, double total, int32_t*) -> uint32_t {
      const auto& listener = static_cast<ProgressHandle*>(self)->listener;
      if (listener.report) listener.report(done, total);
      return HB_OK;
    },
    [](HBProgress* self, const char* const* tests, size_t count, const char* orderField,
       int32_t* err) -> uint32_t {
      const auto& listener = static_cast<ProgressHandle*>(self)->listener;
      try {
        if (listener.beginPass) {
          listener.beginPass({{tests, tests + count}, orderField == nullptr ? "" : orderField});
        }
      } catch (const std::bad_alloc&) {
        return Fail(err, kOutOfMemory);
      }
      return HB_OK;
    }};

RunHost::Container::Container() : HBContainerFile{&kTable} {}

const HBContainerFileTable RunHost::Container::kTable = {
    sizeof(HBContainerFileTable),
    [](HBContainerFile* self, HBContainerStreamKey*, const char*, size_t, const char* bytes,
       size_t length, int32_t* err) -> uint32_t {
      try {
        static_cast<Container*>(self)->stream.assign(bytes, length);
      } catch (const std::bad_alloc&) {
        return Fail(err, kOutOfMemory);
      }
      return HB_OK;
    },
    [](HBContainerFile*, int32_t*) -> uint32_t { return HB_OK; }};

RunHost::ContextHandle::ContextHandle(RunHost& host) : HBContext{&kTable}, host(host) {}

const HBContextTable RunHost::ContextHandle::kTable = {
    sizeof(HBContextTable),
    [](HBContext* self, HBXML** document, int32_t*) -> uint32_t {
      *document = &static_cast<ContextHandle*>(self)->host.parameters;
      return HB_OK;
    },
    [](HBContext* self, uint32_t input, HBXML** document, int32_t* err) -> uint32_t {
      auto& host = static_cast<ContextHandle*>(self)->host;
      if (input != 0) return Fail(err, kNoSuchInput);
      *document = host.executing ? &host.preparedModel : &host.configuredModel;
      return HB_OK;
    },
    [](HBContext* self, uint32_t input, HBIterator** iterator, int32_t* err) -> uint32_t {
      auto& host = static_cast<ContextHandle*>(self)->host;
      if (input != 0 || !host.executing) return Fail(err, kNoSuchInput);
      *iterator = &host.iterator;
      return HB_OK;
    },
    // This host carries out the requirements of every component, asked or not.
    [](HBContext*, const int32_t*, size_t, int32_t*) -> uint32_t { return HB_OK; },
    [](HBContext* self, int64_t* identifier, int32_t*) -> uint32_t {
      const auto& given = static_cast<ContextHandle*>(self)->identifier;
      *identifier = given ? *given : NewIdentifier();
      return HB_OK;
    },
    [](HBContext* self, const char* key, size_t, HBContainerFile** container,
       int32_t* err) -> uint32_t {
      if (key == nullptr || key != kResultContainer) return Fail(err, kNoSuchContainer);
      *container = &static_cast<ContextHandle*>(self)->host.container;
      return HB_OK;
    },
    [](HBContext* self, int32_t type, int32_t code, const char* const* parameters,
       size_t parameterCount, int32_t* err) -> uint32_t {
      try {
        RunMessage message{type == HB_MESSAGE_ERROR, code, {}};
        for (size_t i = 0; i < parameterCount; ++i) message.parameters.emplace_back(parameters[i]);
        static_cast<ContextHandle*>(self)->messages.push_back(std::move(message));
      } catch (const std::bad_alloc&) {
        return Fail(err, kOutOfMemory);
      }
      return HB_OK;
    },
    [](HBContext* self, uint32_t* count, int32_t*) -> uint32_t {
      *count = static_cast<ContextHandle*>(self)->threads;
      return HB_OK;
    }};

RunHost::RunHost(std::string parameters, std::string dataModel)
    : parameters(std::move(parameters)),
      configuredModel(std::move(dataModel)),
      preparedModel(""),
      context(*this) {}

void RunHost::OfferRecords(std::string preparedText, const RecordView& records) {
  preparedModel.text = std::move(preparedText);
  iterator.records = &records;
  iterator.nextRecord = 0;
  iterator.standing.clear();
  iterator.delivered.clear();
  executing = true;
}

}  // namespace npar_host
