#include <algorithm>

#include "foundation/peer.h"

namespace QDHB_700 {
namespace {

/// Large enough that a block's cost of call vanishes, small enough to stay in a cache.
constexpr std::size_t kBlockRecords = 4096;
constexpr std::size_t kBlockDoubles = std::size_t{1} << 17;
/// Of the first block: a run of few records shall not pay for the room of many.
constexpr std::size_t kFirstRecords = 256;
constexpr std::size_t kGrowth = 4;

std::size_t RecordsPerBlock(int width) {
  const auto doubles = static_cast<std::size_t>(std::max(width, 1));
  return std::clamp<std::size_t>(kBlockDoubles / doubles, 1, kBlockRecords);
}

}  // namespace

QDPeerIterator::QDPeerIterator(HbHelperV1::DataHelper* dataHelper, InputAdapter* adapter, bool raw)
    : dataHelper(dataHelper),
      adapter(adapter),
      raw(raw),
      width(raw ? static_cast<int>(adapter->FieldCount()) : adapter->GetVarList().Size()),
      current(QDCommon_700::Record::View(nullptr, width)) {}

QDPeerIterator::~QDPeerIterator() = default;

bool QDPeerIterator::HasNext() { return position < filled || Refill(); }

const QDCommon_700::Record* QDPeerIterator::Next() {
  if (!HasNext()) return nullptr;
  current.LookAt(rows[position++]);
  ++delivered;
  return &current;
}

int QDPeerIterator::GetState() const { return state; }

int QDPeerIterator::Reset() {
  position = filled = 0;
  state = 0;
  std::int32_t err = 0;
  const std::uint32_t result = dataHelper->Rewind(&err);
  rewound = true;
  if (result != HB_OK) Fail(result, err);
  return state;
}

bool QDPeerIterator::NextBlock(QDCommon_700::RecordBlock& block) {
  if (!HasNext()) return false;
  block = {rows.data() + position, filled - position};
  delivered += static_cast<std::int64_t>(block.count);
  position = filled;
  return true;
}

bool QDPeerIterator::GetPart(std::int32_t variable, std::size_t record,
                             QDCommon_700::ColumnPart& part) {
  part = {};
  if (state == 2) return false;
  const std::size_t field = raw ? static_cast<std::size_t>(variable) : adapter->FieldOf(variable);
  std::int32_t err = 0;
  const std::uint32_t result = dataHelper->GetPart(field, record, part, &err);
  if (result != HB_OK) return Fail(result, err);
  mostOfColumns = std::max(mostOfColumns, record + part.count);
  if (part.count == 0) {
    if (!endOfColumns) endOfColumns = record;
    mostOfColumns = std::max(mostOfColumns, record);
  }
  // Columns of different lengths.
  if (mostOfColumns > endOfColumns.value_or(mostOfColumns)) {
    part = {};
    return Fail(HB_FAILED, HbHelperV1::DataHelper::kBrokenIterator);
  }
  delivered += static_cast<std::int64_t>(part.count);
  return true;
}

int QDPeerIterator::GetRecordWidth() const { return width; }

void QDPeerIterator::MakeRoom(std::size_t records) {
  buffer.resize(records * static_cast<std::size_t>(width));
  rows.resize(records);
  for (std::size_t row = 0; row < records; ++row) {
    rows[row] = buffer.data() + row * static_cast<std::size_t>(width);
  }
}

bool QDPeerIterator::Refill() {
  if (!rewound) Reset();
  if (state != 0) return false;
  const std::size_t most = RecordsPerBlock(width);
  if (rows.empty()) {
    MakeRoom(std::min(kFirstRecords, most));
  } else if (filled == rows.size() && filled < most) {
    MakeRoom(std::min(filled * kGrowth, most));
  }
  position = filled = 0;
  std::int32_t err = 0;
  const std::uint32_t result =
      raw ? adapter->GetRawValues(buffer.data(), buffer.size(), &filled, &err)
          : adapter->GetValues(buffer.data(), buffer.size(), &filled, &err);
  if (result != HB_OK) return Fail(result, err);
  if (filled == 0) state = 1;
  return filled != 0;
}

bool QDPeerIterator::Fail(std::uint32_t result, std::int32_t err) {
  filled = 0;
  state = 2;
  if (hostError == 0) hostError = err != 0 ? err : static_cast<std::int32_t>(result);
  return false;
}

}  // namespace QDHB_700
