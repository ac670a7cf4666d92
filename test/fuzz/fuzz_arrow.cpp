#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "host/arrow/import.h"
#include "host/data/input_error.h"

namespace {

/// Hands out the bytes of an input; zeros behind its end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data(data), size(size) {}

  std::uint8_t Byte() {
    if (size == 0) return 0;
    --size;
    return *data++;
  }
  template <class Value>
  Value Number() {
    Value value{};
    for (std::size_t i = 0; i < sizeof value; ++i) {
      value = static_cast<Value>(value | static_cast<Value>(Byte()) << 8 * i);
    }
    return value;
  }
  std::string Bytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes) byte = static_cast<char>(Byte());
    return bytes;
  }
  std::string Line() {
    std::string line;
    for (char byte = static_cast<char>(Byte()); byte != '\n' && byte != '\0';
         byte = static_cast<char>(Byte())) {
      line += byte;
    }
    return line;
  }

 private:
  const std::uint8_t* data;
  std::size_t size;
};

constexpr std::size_t kMostRecords = 64;  // that buffers have room for
constexpr std::size_t kWidest = 32;       // bytes of a value
constexpr std::size_t kTextBytes = 256;

/// An array of any format whose buffers are as large as the widest type needs, and whose lengths,
/// offsets, counts and content are the input's. What no reader can know is right: no text ends
/// behind its buffer.
struct AnyArray {
  AnyArray(Input& input, const std::string& format) {
    const auto type = npar_host::ParseArrowType(format);
    const bool isView = format == "vu";
    array.length = static_cast<std::int8_t>(input.Byte());
    array.offset = static_cast<std::int8_t>(input.Byte());
    array.null_count = static_cast<std::int8_t>(input.Byte());
    const std::uint8_t shape = input.Byte();
    bitmap = input.Bytes(kMostRecords);
    text = input.Bytes(kTextBytes);
    values = input.Bytes(4 * kMostRecords * kWidest);
    if (format == "u") BoundOffsets<std::int32_t>();
    if (format == "U") BoundOffsets<std::int64_t>();
    lengths = kTextBytes;
    buffers[0] = (shape & 1U) != 0 ? nullptr : bitmap.data();
    buffers[1] = (shape & 2U) != 0 ? nullptr : values.data();
    buffers[2] = (shape & 4U) != 0 ? nullptr : text.data();
    buffers[3] = &lengths;
    array.buffers = buffers;
    array.n_buffers = isView ? 4 : type && type->IsText() ? 3 : format == "n" ? 0 : 2;
    if ((shape & 8U) != 0) array.n_buffers = shape >> 5U;
    if (array.n_buffers == 3 && isView) buffers[2] = &lengths;
  }

  template <class Offset>
  void BoundOffsets() {
    for (std::size_t i = 0; i + sizeof(Offset) <= values.size(); i += sizeof(Offset)) {
      Offset offset;
      std::memcpy(&offset, values.data() + i, sizeof offset);
      if (offset > static_cast<Offset>(kTextBytes)) offset %= static_cast<Offset>(kTextBytes + 1);
      std::memcpy(values.data() + i, &offset, sizeof offset);
    }
  }

  ArrowArray array{};
  const void* buffers[4] = {};
  std::string bitmap, values, text;
  std::int64_t lengths = 0;
};

}  // namespace

/// Any input as a batch of one column, perhaps with a dictionary.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::string format = input.Line();
  const std::string entryFormat = input.Line();
  const std::uint8_t flags = input.Byte();
  ArrowSchema entrySchema{};
  entrySchema.format = entryFormat.c_str();
  ArrowSchema schema{};
  schema.format = format.c_str();
  schema.name = "x";
  schema.flags = flags;
  const auto batchLength = static_cast<std::int8_t>(input.Byte());
  const auto batchOffset = static_cast<std::int8_t>(input.Byte());
  AnyArray values(input, format);
  AnyArray entries(input, entryFormat);
  if (!entryFormat.empty()) schema.dictionary = &entrySchema;
  if (!entryFormat.empty() && (flags & 0x80U) == 0) values.array.dictionary = &entries.array;

  struct Batch {
    ArrowSchema* columns[1];
    ArrowArray* arrays[1];
    const void* bitmap[1];
    ArrowArray array{};
    bool isRead = false;
  } batch{{&schema}, {&values.array}, {nullptr}};
  batch.array.length = batchLength;
  batch.array.offset = batchOffset;
  batch.array.n_buffers = 1;
  batch.array.buffers = batch.bitmap;
  batch.array.n_children = 1;
  batch.array.children = batch.arrays;
  ArrowArrayStream stream{};
  stream.private_data = &batch;
  stream.get_schema = [](ArrowArrayStream* self, ArrowSchema* out) {
    out->format = "+s";
    out->n_children = 1;
    out->children = static_cast<Batch*>(self->private_data)->columns;
    out->release = [](ArrowSchema* own) { own->release = nullptr; };
    return 0;
  };
  stream.get_next = [](ArrowArrayStream* self, ArrowArray* out) {
    auto& own = *static_cast<Batch*>(self->private_data);
    *out = own.array;
    if (!own.isRead) out->release = [](ArrowArray* array) { array->release = nullptr; };
    own.isRead = true;
    return 0;
  };
  stream.get_last_error = [](ArrowArrayStream*) -> const char* { return nullptr; };
  stream.release = [](ArrowArrayStream* self) { self->release = nullptr; };
  try {
    npar_host::ArrowTable table;
    table.TakeStream(stream);
    static_cast<void>(npar_host::ImportColumns(table, {"x"}, [] {}));
  } catch (const npar_host::InputError&) {
    // refused with column and type, as it should be
  }
  return 0;
}
