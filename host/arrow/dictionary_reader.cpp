#include "host/arrow/dictionary_reader.h"

#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

namespace npar_host {
namespace {

using Layout = ArrowType::Layout;

/// An integer of the width of the layout, one of 64 bits without a sign as one with it: above its
/// half it is below 0, and no index.
std::int64_t IndexAt(const char* bytes, Layout layout, std::size_t record) {
  const auto load = [&]<class Value>(Value value) {
    std::memcpy(&value, bytes + record * sizeof value, sizeof value);
    return static_cast<std::int64_t>(value);
  };
  switch (layout) {
    case Layout::Int8:
      return load(std::int8_t{});
    case Layout::UInt8:
      return load(std::uint8_t{});
    case Layout::Int16:
      return load(std::int16_t{});
    case Layout::UInt16:
      return load(std::uint16_t{});
    case Layout::Int32:
      return load(std::int32_t{});
    case Layout::UInt32:
      return load(std::uint32_t{});
    default:
      return load(std::int64_t{});
  }
}

std::size_t WidthOf(Layout layout) {
  if (layout == Layout::Int8 || layout == Layout::UInt8) return 1;
  if (layout == Layout::Int16 || layout == Layout::UInt16) return 2;
  return layout == Layout::Int32 || layout == Layout::UInt32 ? 4 : 8;
}

class DictionaryReader final : public ColumnReader {
 public:
  DictionaryReader(ColumnLabel label, const ArrowType& indices,
                   std::unique_ptr<ColumnReader> entries, bool isText, bool isOrdered)
      : ColumnReader(std::move(label)),
        indices(indices),
        entries(std::move(entries)),
        missing(isText ? kMissingCode : kMissingNumber),
        isOrdered(isOrdered) {
    this->entries->CallRecords("entry");
  }

  void Open(const ArrowArray& array, std::int64_t first, std::int64_t count,
            const Validity& whole) override {
    view.emplace(array, indices, first, count, label);
    wholeRecords = whole;
    if (array.dictionary == nullptr) label.Fail("an array lacks its dictionary");
    const ArrowArray& dictionary = *array.dictionary;
    CheckExtent(dictionary, label);
    entries->Open(dictionary, 0, dictionary.length, {});
    cellOfEntry.assign(static_cast<std::size_t>(dictionary.length), kUnread);
    if (isOrdered) TakeOrder();
  }

  void Read(std::size_t first, std::size_t count, double* cells) override {
    const char* const bytes = view->Bytes(WidthOf(indices.layout));
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t record = first + i;
      const bool isNull = view->IsNull(record) || !wholeRecords.IsSet(record);
      cells[i] = isNull ? missing : CellOf(IndexAt(bytes, indices.layout, record), record);
    }
  }

 private:
  // An entry that is this number itself is read anew for each record.
  static constexpr double kUnread = -std::numeric_limits<double>::infinity();

  double CellOf(std::int64_t index, std::size_t record) {
    if (index < 0 || static_cast<std::size_t>(index) >= cellOfEntry.size()) {
      label.Fail(PlaceOf(record) + " has the index " + std::to_string(index) +
                 ", but the dictionary has " + std::to_string(cellOfEntry.size()) + " entries");
    }
    const auto entry = static_cast<std::size_t>(index);
    double& cell = cellOfEntry[entry];
    if (cell == kUnread) {
      entries->Read(entry, 1, &cell);
      if (isOrdered && cell != missing) order.isUsed[placeOfEntry[entry]] = true;
    }
    return cell;
  }

  /// Arrays may come with dictionaries of their own: each goes on where the one before ended.
  void TakeOrder() {
    std::unordered_map<std::string, std::size_t> places;
    placeOfEntry.assign(cellOfEntry.size(), 0);
    for (std::size_t entry = 0; entry < cellOfEntry.size(); ++entry) {
      std::optional<std::string> text = entries->TextOf(entry);
      if (!text) continue;
      const auto [known, isNew] = places.emplace(*text, places.size());
      placeOfEntry[entry] = known->second;
      if (isNew) TakeEntry(known->second, *std::move(text));
    }
  }

  void TakeEntry(std::size_t place, std::string text) {
    if (place == order.entries.size()) {
      order.entries.push_back(std::move(text));
      order.isUsed.push_back(false);
    } else if (order.entries[place] != text) {
      label.Fail("the dictionaries of two batches have different orders; give the column one");
    }
  }

  ArrowType indices;
  std::unique_ptr<ColumnReader> entries;
  double missing;
  bool isOrdered;
  std::optional<ArrayView> view;
  Validity wholeRecords;
  std::vector<double> cellOfEntry;
  std::vector<std::size_t> placeOfEntry;  // in the order, where that has a meaning
};

}  // namespace

std::unique_ptr<ColumnReader> MakeDictionaryReader(ColumnLabel label, const ArrowType& indices,
                                                   std::unique_ptr<ColumnReader> entries,
                                                   bool isText, bool isOrdered) {
  return std::make_unique<DictionaryReader>(std::move(label), indices, std::move(entries), isText,
                                            isOrdered);
}

}  // namespace npar_host
