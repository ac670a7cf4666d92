#include "host/arrow/arrow_table.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr const char* kStruct = "+s";

/// Releases a stream.
class StreamGuard {
 public:
  explicit StreamGuard(ArrowArrayStream& stream) : stream(stream) {}
  StreamGuard(const StreamGuard&) = delete;
  StreamGuard& operator=(const StreamGuard&) = delete;
  ~StreamGuard() { stream.release(&stream); }

 private:
  ArrowArrayStream& stream;
};

void CheckStream(ArrowArrayStream& stream, int code) {
  if (code == 0) return;
  const char* const told = stream.get_last_error(&stream);
  throw InputError("the stream of records failed: " +
                   (told == nullptr ? std::string(std::strerror(code)) : std::string(told)));
}

/// The columns of a batch have no label of their own.
ColumnLabel RecordsLabel() { return {"records", "struct"}; }

[[noreturn]] void FailColumn(const NparColumn& column, const std::string& message) {
  const std::string name = column.name == nullptr ? "" : column.name;
  const std::string type = ArrowTypeName(column.format == nullptr ? "" : column.format);
  ColumnLabel{name, type}.Fail(message);
}

/// Fills in the structs of Arrow for arrays that are given by pointers.
void Describe(const NparColumn& column, const std::string& format, ArrowSchema& schema,
              ArrowArray& array, const void** buffers) {
  const auto type = ParseArrowType(format);
  if (column.size < sizeof(NparColumn))
    FailColumn(column, "the member size is not that of the struct");
  if (column.length < 0) FailColumn(column, "the length is below 0");
  if (type && type->layout == ArrowType::Layout::TextView) {
    FailColumn(column, "views come by a stream; give offsets and bytes here");
  }
  schema.format = format.c_str();
  schema.flags = column.ordered != 0 ? ARROW_FLAG_DICTIONARY_ORDERED : 0;
  buffers[0] = column.validity;
  const bool isText = type && type->IsText();
  const bool isNull = type && type->layout == ArrowType::Layout::Null;
  buffers[1] = isText ? column.offsets : column.values;
  if (isText) buffers[2] = column.values;
  array.length = column.length;
  array.null_count = column.validity == nullptr ? 0 : -1;
  array.n_buffers = isText ? 3 : isNull ? 0 : 2;
  array.buffers = buffers;
}

}  // namespace

void ArrowTable::TakeStream(ArrowArrayStream& stream, const std::function<void()>& heedCancel) {
  if (stream.release == nullptr) throw InputError("the stream of records was released before");
  const StreamGuard guard(stream);
  schema = std::make_unique<OwnedSchema>();
  CheckStream(stream, stream.get_schema(&stream, &schema->schema));
  const ArrowSchema& root = schema->schema;
  const std::string_view format = root.format == nullptr ? "" : root.format;
  if (format != kStruct || root.n_children < 0 ||
      (root.n_children > 0 && root.children == nullptr)) {
    throw InputError("the stream holds " + ArrowTypeName(format) +
                     ", not records; give one of a table or a struct");
  }
  for (std::int64_t i = 0; i < root.n_children; ++i) columns.push_back(root.children[i]);
  hasStream = true;
  while (true) {
    auto batch = std::make_shared<OwnedArray>();
    CheckStream(stream, stream.get_next(&stream, &batch->array));
    if (batch->array.release == nullptr) return;
    held.push_back(std::move(batch));
    if (heedCancel) heedCancel();
  }
}

void ArrowTable::AddColumn(const NparColumn& column) {
  if (column.name == nullptr || column.format == nullptr) {
    FailColumn(column, "a column needs a name and a format");
  }
  if (!given.empty() && column.length != given.front()->array.length) {
    FailColumn(column, "the column has " + std::to_string(column.length) +
                           " records, those before " + std::to_string(given.front()->array.length));
  }
  auto added = std::make_unique<Given>();
  added->name = column.name;
  added->format = column.format;
  Describe(column, added->format, added->schema, added->array, added->buffers);
  added->schema.name = added->name.c_str();
  if (column.dictionary != nullptr) {
    const NparColumn& entries = *column.dictionary;
    if (entries.format == nullptr || entries.dictionary != nullptr) {
      FailColumn(column, "a dictionary needs a format, and has no dictionary itself");
    }
    added->entryFormat = entries.format;
    Describe(entries, added->entryFormat, added->entrySchema, added->entries, added->entryBuffers);
    added->schema.dictionary = &added->entrySchema;
    added->array.dictionary = &added->entries;
  }
  columns.push_back(&added->schema);
  given.push_back(std::move(added));
}

std::vector<std::string> ArrowTable::Names() const {
  std::vector<std::string> names;
  for (const ArrowSchema* column : columns) {
    const bool isNamed = column != nullptr && column->name != nullptr && *column->name != '\0';
    names.push_back(isNamed ? column->name : "column" + std::to_string(names.size() + 1));
  }
  return names;
}

std::size_t ArrowTable::BatchCount() const { return hasStream ? held.size() : 1; }

ArrowTable::Batch ArrowTable::BatchAt(std::size_t index) const {
  Batch batch;
  if (!hasStream) {
    for (const auto& column : given) batch.arrays.push_back(&column->array);
    batch.count = given.front()->array.length;
    return batch;
  }
  batch.owner = held[index];
  const ArrowArray& records = held[index]->array;
  CheckExtent(records, RecordsLabel());
  const auto columnCount = static_cast<std::int64_t>(columns.size());
  if (records.n_children != columnCount || (columnCount > 0 && records.children == nullptr)) {
    throw InputError("a batch of the stream has " + std::to_string(records.n_children) +
                     " columns, its schema " + std::to_string(columnCount));
  }
  batch.arrays.assign(records.children, records.children + columnCount);
  batch.first = records.offset;
  batch.count = records.length;
  const bool hasNulls = records.null_count != 0 && records.n_buffers > 0 &&
                        records.buffers != nullptr && records.buffers[0] != nullptr;
  if (hasNulls) {
    batch.whole = {static_cast<const std::uint8_t*>(records.buffers[0]),
                   static_cast<std::size_t>(records.offset)};
  }
  return batch;
}

void ArrowTable::Release(std::size_t index) {
  if (hasStream) held[index].reset();
}

}  // namespace npar_host
