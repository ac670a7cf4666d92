#include "support/arrow_data.h"

#include <deque>

namespace {

constexpr std::size_t kViewSize = 16;
constexpr std::size_t kMostInline = 12;

/// An array with its memory.
struct Memory {
  ArrowArray array{};
  std::deque<std::string> bytes;
  std::vector<const void*> buffers;
  std::vector<std::int64_t> lengths;
  std::unique_ptr<Memory> dictionary;
};

std::string Number(std::int64_t value, std::size_t width) {
  std::string bytes(width, '\0');
  std::memcpy(bytes.data(), &value, width);
  return bytes;
}

std::string BitsOf(const std::vector<bool>& values) {
  std::string bits(values.size() / 8 + 1, '\0');
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i]) bits[i / 8] = static_cast<char>(bits[i / 8] | 1 << i % 8);
  }
  return bits;
}

/// Texts as views into one buffer.
void AddViews(const std::vector<std::string>& texts, Memory& memory) {
  std::string views, bytes;
  for (const std::string& text : texts) {
    std::string view = Number(static_cast<std::int64_t>(text.size()), 4);
    if (text.size() <= kMostInline) {
      view += text;
    } else {
      view += text.substr(0, 4) + Number(0, 4) + Number(static_cast<std::int64_t>(bytes.size()), 4);
      bytes += text;
    }
    view.resize(kViewSize);
    views += view;
  }
  memory.lengths = {static_cast<std::int64_t>(bytes.size())};
  memory.bytes.push_back(std::move(views));
  memory.bytes.push_back(std::move(bytes));
}

void AddTexts(const std::vector<std::string>& texts, std::size_t width, Memory& memory) {
  std::string offsets = Number(0, width), bytes;
  for (const std::string& text : texts) {
    bytes += text;
    offsets += Number(static_cast<std::int64_t>(bytes.size()), width);
  }
  memory.bytes.push_back(std::move(offsets));
  memory.bytes.push_back(std::move(bytes));
}

std::unique_ptr<Memory> MakeArray(const ArrowData& data, std::size_t first, std::size_t count,
                                  std::size_t lead) {
  auto memory = std::make_unique<Memory>();
  std::vector<bool> validity(lead, true), bits(lead, true);
  // No UTF-8, no index of an entry, and 64 bits of it no number that a double holds.
  const bool isText = data.format == "u" || data.format == "U" || data.format == "vu";
  std::string junk(1, isText ? '\xFF' : '\x7F');
  for (const auto& record : data.records) {
    if (record && !isText) junk.resize(record->size(), '\x7F');
  }
  std::vector<std::string> values(lead, junk);
  bool hasNulls = false;
  for (std::size_t i = first; i < first + count; ++i) {
    const auto& record = data.records[i];
    validity.push_back(record.has_value());
    hasNulls = hasNulls || !record;
    bits.push_back(record == "1");
    values.push_back(record.value_or(junk));
  }
  memory->bytes.push_back(BitsOf(validity));
  if (data.format == "vu") {
    AddViews(values, *memory);
  } else if (data.format == "u" || data.format == "U") {
    AddTexts(values, data.format == "u" ? 4 : 8, *memory);
  } else if (data.format == "b") {
    memory->bytes.push_back(BitsOf(bits));
  } else if (data.format != "n") {
    std::string all;
    for (const std::string& value : values) all += value;
    memory->bytes.push_back(std::move(all));
  }
  for (const std::string& bytes : memory->bytes) memory->buffers.push_back(bytes.data());
  if (data.format == "n") memory->buffers.clear();
  if (!hasNulls && data.format != "n") memory->buffers[0] = nullptr;
  if (data.format == "vu") memory->buffers.push_back(memory->lengths.data());
  memory->array.length = static_cast<std::int64_t>(count + lead);
  memory->array.null_count = hasNulls ? -1 : 0;
  memory->array.n_buffers = static_cast<std::int64_t>(memory->buffers.size());
  memory->array.buffers = memory->buffers.data();
  if (data.dictionary) {
    memory->dictionary = MakeArray(*data.dictionary, 0, data.dictionary->records.size(), 0);
    memory->array.dictionary = &memory->dictionary->array;
  }
  return memory;
}

struct Batch {
  ArrowArray array{};
  std::vector<std::unique_ptr<Memory>> columns;
  std::vector<ArrowArray*> children;
  const void* noBitmap = nullptr;
};

}  // namespace

struct ArrowStreamOfData::State {
  std::vector<ArrowData> data;
  std::deque<ArrowSchema> schemas;
  std::vector<ArrowSchema*> children;
  std::deque<Batch> batches;
  std::size_t next = 0;
  int held = 0;
  ArrowArrayStream stream{};
};

namespace {

template <class Struct>
void Release(Struct* released) {
  --static_cast<ArrowStreamOfData::State*>(released->private_data)->held;
  released->release = nullptr;
}

}  // namespace

ArrowStreamOfData::ArrowStreamOfData(std::vector<ArrowData> columns, ArrowCut cut)
    : state(std::make_unique<State>()) {
  state->data = std::move(columns);
  for (const ArrowData& column : state->data) {
    ArrowSchema& schema = state->schemas.emplace_back();
    schema.format = column.format.c_str();
    schema.name = column.name.c_str();
    schema.flags = column.isOrdered ? ARROW_FLAG_DICTIONARY_ORDERED : 0;
    state->children.push_back(&schema);
    if (!column.dictionary) continue;
    ArrowSchema& entries = state->schemas.emplace_back();
    entries.format = column.dictionary->format.c_str();
    schema.dictionary = &entries;
    if (column.dictionary->dictionary) entries.dictionary = &state->schemas.front();
  }
  const std::size_t records = state->data.empty() ? 0 : state->data.front().records.size();
  std::size_t first = 0;
  for (const std::size_t size : cut.batches) first += size;
  cut.batches.push_back(records - first);
  first = 0;
  for (const std::size_t size : cut.batches) {
    Batch& batch = state->batches.emplace_back();
    for (const ArrowData& column : state->data) {
      batch.columns.push_back(MakeArray(column, first, size, cut.arrayOffset + cut.structOffset));
      ArrowArray& array = batch.columns.back()->array;
      array.offset = static_cast<std::int64_t>(cut.arrayOffset);
      array.length -= array.offset;
      batch.children.push_back(&array);
    }
    batch.array.length = static_cast<std::int64_t>(size);
    batch.array.offset = static_cast<std::int64_t>(cut.structOffset);
    batch.array.n_buffers = 1;
    batch.array.buffers = &batch.noBitmap;
    batch.array.n_children = static_cast<std::int64_t>(batch.children.size());
    batch.array.children = batch.children.data();
    first += size;
  }
}

ArrowStreamOfData::~ArrowStreamOfData() = default;

ArrowArrayStream* ArrowStreamOfData::Stream() {
  ArrowArrayStream& stream = state->stream;
  stream.get_schema = [](ArrowArrayStream* self, ArrowSchema* out) {
    State& own = *static_cast<State*>(self->private_data);
    *out = {};
    out->format = "+s";
    out->n_children = static_cast<std::int64_t>(own.children.size());
    out->children = own.children.data();
    out->release = Release<ArrowSchema>;
    out->private_data = &own;
    ++own.held;
    return 0;
  };
  stream.get_next = [](ArrowArrayStream* self, ArrowArray* out) {
    State& own = *static_cast<State*>(self->private_data);
    *out = {};
    if (own.next == own.batches.size()) return 0;
    *out = own.batches[own.next++].array;
    out->release = Release<ArrowArray>;
    out->private_data = &own;
    ++own.held;
    return 0;
  };
  stream.get_last_error = [](ArrowArrayStream*) -> const char* { return nullptr; };
  stream.release = Release<ArrowArrayStream>;
  stream.private_data = state.get();
  ++state->held;
  return &stream;
}

int ArrowStreamOfData::Held() const { return state->held; }

ArrowArray& ArrowStreamOfData::ColumnOf(std::size_t batch, std::size_t column) {
  return state->batches[batch].columns[column]->array;
}
