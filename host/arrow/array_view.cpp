#include "host/arrow/array_view.h"

#include <limits>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

using Layout = ArrowType::Layout;

constexpr std::size_t kViewSize = 16;      // bytes of a view
constexpr std::int32_t kMostInline = 12;   // of them, of a text that stands in it
constexpr std::size_t kViewPiece = 8;      // where it names the buffer of a longer one,
constexpr std::size_t kViewPosition = 12;  // and its place there
constexpr std::int64_t kFixedViewBuffers = 3;
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max() / 64;  // in bytes too

std::int64_t BufferCount(Layout layout) {
  if (layout == Layout::Null) return 0;
  return layout == Layout::Text || layout == Layout::LargeText ? 3 : 2;
}

std::int32_t Load32(const char* bytes) {
  std::int32_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

[[noreturn]] void FailText(const ColumnLabel& label, std::size_t record) {
  label.Fail("the text of record " + std::to_string(record + 1) +
             " of a batch lies outside of its buffer; the producer's offsets are wrong");
}

}  // namespace

void ColumnLabel::Fail(const std::string& message) const {
  throw InputError("column " + Quoted(name) + " (" + type + "): " + message, name);
}

void CheckExtent(const ArrowArray& array, const ColumnLabel& label) {
  const bool isFit = array.length >= 0 && array.offset >= 0 && array.length <= kLargest &&
                     array.offset <= kLargest;
  if (isFit) return;
  label.Fail("an array has the length " + std::to_string(array.length) + " and the offset " +
             std::to_string(array.offset) + "; both are to be counts of records");
}

ArrayView::ArrayView(const ArrowArray& array, const ArrowType& type, std::int64_t first,
                     std::int64_t count, const ColumnLabel& label)
    : layout(type.layout) {
  CheckExtent(array, label);
  if (first < 0 || count < 0 || count > array.length || first > array.length - count) {
    label.Fail("an array holds " + std::to_string(array.length) + " records where " +
               std::to_string(count) + " from " + std::to_string(first) + " on are told");
  }
  offset = static_cast<std::size_t>(array.offset + first);
  size = static_cast<std::size_t>(count);
  const bool isView = layout == Layout::TextView;
  const bool hasBuffers =
      isView ? array.n_buffers >= kFixedViewBuffers : array.n_buffers == BufferCount(layout);
  if (!hasBuffers || (array.n_buffers > 0 && array.buffers == nullptr) || array.n_children != 0) {
    label.Fail("an array has " + std::to_string(array.n_buffers) + " buffers and " +
               std::to_string(array.n_children) + " children, which its type does not have");
  }
  if (size == 0) return;
  if (layout == Layout::Null) return;
  validity = {array.null_count == 0 ? nullptr : static_cast<const std::uint8_t*>(array.buffers[0]),
              offset};
  values = array.buffers[1];
  if (values == nullptr || (array.null_count > 0 && validity.bits == nullptr)) {
    label.Fail("an array of " + std::to_string(size) + " records lacks a buffer");
  }
  if (isView) {
    pieceCount = static_cast<std::size_t>(array.n_buffers - kFixedViewBuffers);
    pieces = array.buffers + 2;
    lengths = static_cast<const std::int64_t*>(array.buffers[array.n_buffers - 1]);
    if (pieceCount > 0 && lengths == nullptr) label.Fail("an array of views lacks its lengths");
  } else if (type.IsText()) {
    text = static_cast<const char*>(array.buffers[2]);
    CheckOffsets(label);
  }
}

std::int64_t ArrayView::OffsetAt(std::size_t index) const {
  if (layout == Layout::Text) return Load32(Bytes(sizeof(std::int32_t)) + 4 * index);
  std::int64_t value = 0;
  std::memcpy(&value, Bytes(sizeof value) + sizeof value * index, sizeof value);
  return value;
}

void ArrayView::CheckOffsets(const ColumnLabel& label) {
  firstByte = OffsetAt(0);
  lastByte = OffsetAt(size);
  if (firstByte < 0 || lastByte < firstByte || (lastByte > firstByte && text == nullptr)) {
    label.Fail("an array of texts goes from byte " + std::to_string(firstByte) + " to byte " +
               std::to_string(lastByte) + "; the producer's offsets are wrong");
  }
}

std::string_view ArrayView::Text(std::size_t record, const ColumnLabel& label) const {
  if (layout == Layout::TextView) return ViewedText(record, label);
  const std::int64_t begin = OffsetAt(record);
  const std::int64_t end = OffsetAt(record + 1);
  if (begin < firstByte || end < begin || end > lastByte) FailText(label, record);
  if (begin == end) return {};
  return {text + begin, static_cast<std::size_t>(end - begin)};
}

std::string_view ArrayView::ViewedText(std::size_t record, const ColumnLabel& label) const {
  const char* const view = Bytes(kViewSize) + kViewSize * record;
  const std::int32_t length = Load32(view);
  if (length >= 0 && length <= kMostInline) {
    return {view + sizeof length, static_cast<std::size_t>(length)};
  }
  const std::int32_t piece = Load32(view + kViewPiece);
  const std::int32_t begin = Load32(view + kViewPosition);
  if (length < 0 || piece < 0 || begin < 0 || static_cast<std::size_t>(piece) >= pieceCount) {
    FailText(label, record);
  }
  const auto index = static_cast<std::size_t>(piece);
  const bool isInside = lengths[index] >= begin && lengths[index] - begin >= length;
  if (!isInside || pieces[index] == nullptr) FailText(label, record);
  return {static_cast<const char*>(pieces[index]) + begin, static_cast<std::size_t>(length)};
}

}  // namespace npar_host
