#include "planning/record_cells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "kit/order/radix_sort.h"

namespace {

/// The cells of a grid of codes are as good as the records that they stand for: they fit a cache,
/// and each is counted some times.
constexpr std::size_t kLargestGrid = std::size_t{1} << 20;
constexpr std::size_t kLargestSharedGrid = std::size_t{1} << 16;
constexpr std::size_t kRecordsPerCell = 4;

template <typename Item>
void AddOnce(std::vector<Item>& list, Item item) {
  if (std::find(list.begin(), list.end(), item) == list.end()) list.push_back(item);
}

/// Walks some cells.
class CellWalk final : public BatchSource, private RecordBatch {
 public:
  CellWalk(const KeptRecords& records, std::shared_ptr<const RecordCells> cells)
      : records(records), cells(std::move(cells)) {}

  int Reset() override {
    next = 0;
    return next < cells->Size() ? 0 : 1;
  }
  RecordBatch* NextBatch() override {
    Interruption::Check();
    first = next;
    next = std::min(first + kRecordsAtOnce, cells->Size());
    StartAnew(next - first);
    return first < next ? this : nullptr;
  }
  [[nodiscard]] int Width() const override { return records.Width(); }
  [[nodiscard]] bool MayHold(const MissingMark& mark) const override {
    return records.Column(mark.variable).Holds(mark.value);
  }

 private:
  [[nodiscard]] const std::int32_t* Counts() override { return cells->Counts() + first; }
  const double* FindColumn(std::int32_t variable) override {
    return cells->Column(variable) + first;
  }
  void GatherColumn(std::int32_t /*variable*/, double* /*values*/) override {}

  const KeptRecords& records;
  std::shared_ptr<const RecordCells> cells;
  std::size_t first = 0;
  std::size_t next = 0;
};

}  // namespace

/// A variable with few values. Its codes are those of the kept column, the last one that of the
/// missing category where a column of bytes holds it.
class RecordCells::Axis {
 public:
  explicit Axis(const KeptColumn& column) : column(&column) {
    const bool holdsMissing = column.Holds(QDMV::gMissingCategory);
    if (const std::vector<double>* table = column.Table()) {
      size = table->size();
    } else if (column.IsNarrow()) {
      size = column.CodeCount() + (holdsMissing ? 1U : 0U);
    }
  }

  /// 0 where there are too many.
  [[nodiscard]] std::size_t Size() const noexcept { return size; }
  [[nodiscard]] double ValueOf(std::size_t code) const {
    if (const std::vector<double>* table = column->Table()) return (*table)[code];
    return code < column->CodeCount() ? static_cast<double>(code) : QDMV::gMissingCategory;
  }
  /// Codes by their values. Empty where these have no order of their own.
  [[nodiscard]] std::vector<std::size_t> AscendingCodes() const {
    std::vector<std::size_t> codes(size);
    std::iota(codes.begin(), codes.end(), std::size_t{0});
    std::sort(codes.begin(), codes.end(), [this](std::size_t a, std::size_t b) {
      return OrderedBits(ValueOf(a)) < OrderedBits(ValueOf(b));
    });
    const auto areEqual = [this](std::size_t a, std::size_t b) { return ValueOf(a) == ValueOf(b); };
    if (std::adjacent_find(codes.begin(), codes.end(), areEqual) != codes.end()) codes.clear();
    return codes;
  }
  /// Finds the places in a grid whose last axis this is of those on the axes before it.
  void MoveOn(std::size_t first, std::size_t count, std::uint32_t* places) const {
    if (column->Table() != nullptr) {
      MoveOn(column->Codes(first), count, places);
    } else {
      MoveOn(column->Bytes(first), count, places);
    }
  }

 private:
  template <typename Code>
  void MoveOn(const Code* codes, std::size_t count, std::uint32_t* places) const {
    const auto factor = static_cast<std::uint32_t>(size);
    // The byte of the missing category becomes the last code.
    const auto last = static_cast<Code>(size - 1);
    for (std::size_t i = 0; i < count; ++i) {
      places[i] = places[i] * factor + std::min(codes[i], last);
    }
  }

  const KeptColumn* column;
  std::size_t size = 0;
};

/// The numbers of records by all codes of some variables, those of the last one side by side.
class RecordCells::Grid {
 public:
  Grid(const KeptRecords& records, const std::vector<std::int32_t>& variables) {
    axes.reserve(variables.size());
    std::size_t size = 1;
    for (const std::int32_t variable : variables) {
      axes.emplace_back(records.Column(variable));
      size *= axes.back().Size();
    }
    counts.assign(size, 0);
  }

  /// Has it cells, and no more than `most`? That is asked of every field, and most have not.
  [[nodiscard]] static bool IsPossible(const KeptRecords& records,
                                       const std::vector<std::int32_t>& variables,
                                       std::size_t most) {
    std::size_t size = 1;
    return std::all_of(variables.begin(), variables.end(), [&](std::int32_t variable) {
      const KeptColumn& column = records.Column(variable);
      size *= Axis(column).Size();
      return size > 0 && size <= most && !column.HoldsNotANumber();
    });
  }
  [[nodiscard]] const Axis& First() const noexcept { return axes.front(); }
  /// Cells of each code of the first variable.
  [[nodiscard]] std::size_t Inner() const noexcept { return counts.size() / First().Size(); }
  [[nodiscard]] std::uint32_t At(std::size_t first, std::size_t inner) const noexcept {
    return counts[first * Inner() + inner];
  }
  /// `take(place of the variable, value)` for each variable but the first, of such a cell.
  template <typename Take>
  void TellInner(std::size_t inner, Take take) const {
    for (std::size_t axis = axes.size() - 1; axis > 0; --axis) {
      take(axis, axes[axis].ValueOf(inner % axes[axis].Size()));
      inner /= axes[axis].Size();
    }
  }

  void Count(const KeptRecords& records) {
    std::array<std::uint32_t, KeptRecords::kBlockSize> places;
    std::uint32_t* cells = counts.data();
    for (std::size_t first = 0; first < records.Count(); first += places.size()) {
      Interruption::Check();
      const std::size_t size = std::min(places.size(), records.Count() - first);
      places.fill(0);
      for (const Axis& axis : axes) axis.MoveOn(first, size, places.data());
      for (std::size_t i = 0; i < size; ++i) ++cells[places[i]];
    }
  }

 private:
  std::vector<Axis> axes;
  std::vector<std::uint32_t> counts;
};

std::shared_ptr<const RecordCells> RecordCells::Count(const KeptRecords& records,
                                                      const std::vector<std::int32_t>& variables,
                                                      std::int32_t weight, std::size_t most) {
  // So that every count fits.
  if (records.Count() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    return nullptr;
  }
  if (!Grid::IsPossible(records, variables, most)) return nullptr;
  Grid grid(records, variables);
  const std::vector<std::size_t> ascending = grid.First().AscendingCodes();
  if (ascending.empty()) return nullptr;
  grid.Count(records);
  std::shared_ptr<RecordCells> cells(new RecordCells);
  cells->variables = variables;
  cells->columns.resize(variables.size());
  for (const std::size_t first : ascending) {
    for (std::size_t inner = 0; inner < grid.Inner(); ++inner) {
      const std::uint32_t count = grid.At(first, inner);
      if (count > 0) cells->Add(grid, first, inner, count);
    }
  }
  return cells->SumWeights(weight) ? cells : nullptr;
}

void RecordCells::Add(const Grid& grid, std::size_t first, std::size_t inner, std::uint32_t count) {
  columns[0].push_back(grid.First().ValueOf(first));
  grid.TellInner(inner, [this](std::size_t axis, double value) { columns[axis].push_back(value); });
  counts.push_back(static_cast<std::int32_t>(count));
}

bool RecordCells::SumWeights(std::int32_t weight) {
  if (weight < 0) return true;
  constexpr double kLargest = std::numeric_limits<std::int32_t>::max();
  const auto found = std::find(variables.begin(), variables.end(), weight);
  std::vector<double>& sums = columns[static_cast<std::size_t>(found - variables.begin())];
  for (std::size_t cell = 0; cell < Size(); ++cell) {
    if (!(sums[cell] >= 0.0 && sums[cell] == std::floor(sums[cell]))) return false;
    sums[cell] *= counts[cell];
    if (!(sums[cell] <= kLargest)) return false;
  }
  return true;
}

bool RecordCells::Hold(std::span<const std::int32_t> asked) const {
  return std::all_of(asked.begin(), asked.end(), [this](std::int32_t variable) {
    return std::find(variables.begin(), variables.end(), variable) != variables.end();
  });
}

const double* RecordCells::Column(std::int32_t variable) const {
  const auto found = std::find(variables.begin(), variables.end(), variable);
  return columns.at(static_cast<std::size_t>(found - variables.begin())).data();
}

void CountedRecords::AddCompanion(std::int32_t variable) {
  if (variable >= 0 && variable < records.Width()) AddOnce(companions, variable);
}

std::unique_ptr<BatchSource> CountedRecords::WalkCells(std::span<const std::int32_t> variables,
                                                       std::int32_t ascendingBy) {
  const auto isInRecord = [this](std::int32_t variable) {
    return variable >= 0 && variable < records.Width() && variable != weight;
  };
  if (counting == Shortcut::Never || variables.empty() || weight >= records.Width()) return nullptr;
  if (!std::all_of(variables.begin(), variables.end(), isInRecord)) return nullptr;
  const std::lock_guard lock(mutex);
  auto cells = Find(variables, ascendingBy);
  if (cells == nullptr) return nullptr;
  return std::make_unique<CellWalk>(records, std::move(cells));
}

std::shared_ptr<const RecordCells> CountedRecords::Find(std::span<const std::int32_t> variables,
                                                        std::int32_t ascendingBy) {
  for (const auto& cells : kept) {
    const bool isInOrder = ascendingBy == kAnyOrder || cells->First() == ascendingBy;
    if (isInOrder && cells->Hold(variables)) return cells;
  }
  std::vector<std::int32_t> wanted;
  if (ascendingBy != kAnyOrder) wanted.push_back(ascendingBy);
  for (const std::int32_t variable : variables) AddOnce(wanted, variable);
  if (ascendingBy != kAnyOrder) {
    // With those that will be asked for one way through the records is enough.
    std::vector<std::int32_t> all = wanted;
    for (const std::int32_t companion : companions) AddOnce(all, companion);
    if (auto cells = Count(std::move(all), kLargestSharedGrid)) return cells;
  }
  return Count(std::move(wanted), kLargestGrid);
}

std::shared_ptr<const RecordCells> CountedRecords::Count(std::vector<std::int32_t> variables,
                                                         std::size_t most) {
  if (weight >= 0) AddOnce(variables, weight);
  if (counting != Shortcut::Always) most = std::min(most, records.Count() / kRecordsPerCell);
  auto cells = RecordCells::Count(records, variables, weight, most);
  if (cells != nullptr) kept.push_back(cells);
  return cells;
}
