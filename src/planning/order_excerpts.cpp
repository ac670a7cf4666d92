#include "planning/order_excerpts.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>
#include <utility>

#include "kit/contract/stage_progress.h"
#include "kit/order/radix_sort.h"
#include "kit/order/threads.h"
#include "planning/record_iterators.h"

namespace {

/// A cell of a group is worth it where it stands for several records. The counts fit a cache close
/// by.
constexpr std::size_t kRecordsPerCell = 8;
constexpr std::size_t kUsualTable = std::size_t{1} << 16;
constexpr std::size_t kLargestTable = std::size_t{1} << 20;
constexpr std::size_t kFewestCells = 64;
/// Below that an order is as quick.
constexpr std::size_t kFewestRecords = std::size_t{1} << 14;
/// One record in so many may be picked; more are as soon sorted with the others.
constexpr std::size_t kPickedShare = 4;
constexpr std::size_t kSampleSize = 4096;

using Places = std::array<std::uint32_t, kRecordsAtOnce>;

/// A record that was picked, or a cell.
struct Item {
  std::uint32_t record;  // of a cell: how many it stands for
  std::int32_t group;
};

/// The cells of a part of the records.
void FindCells(const KeptRecords& records, std::int32_t variable, const GroupedCells& cells,
               std::size_t first, std::size_t count, std::uint16_t* found) {
  std::array<double, kRecordsAtOnce> room;
  const KeptColumn& column = records.Column(variable);
  const double* values = column.Values(first, count, room.data());
  cells.Cells().Find(values, count, found);
  if (!column.Holds(QDMV::gMissingValue)) return;
  for (std::size_t i = 0; i < count; ++i) {
    if (values[i] == QDMV::gMissingValue) found[i] = cells.NoCell();
  }
}

/// Parts of the records for threads: whole batches each.
class Parts {
 public:
  explicit Parts(std::size_t count)
      : count(count),
        partCount(Threads::PartsOf(count)),
        size((count / partCount / kRecordsAtOnce + 1) * kRecordsAtOnce) {}
  [[nodiscard]] std::size_t Count() const noexcept { return partCount; }
  [[nodiscard]] std::size_t Begin(std::size_t part) const noexcept {
    return std::min(part * size, count);
  }
  /// Calls `use(batch, first)` for the records of a part.
  template <typename Use>
  void ForEachBatch(const KeptRecords& records, std::size_t part, Use use) const {
    NParMemoIterator walk(records);
    const std::size_t end = Begin(part + 1);
    WalkProgress progress(end - Begin(part));
    for (std::size_t first = Begin(part); first < end; first += kRecordsAtOnce) {
      Interruption::Check();
      RecordBatch& batch = walk.LookAt(first, kRecordsAtOnce);
      use(batch, first);
      progress.Step(batch.Size());
    }
  }

 private:
  std::size_t count;
  std::size_t partCount;
  std::size_t size;
};

/// What stands in an excerpt, ascending.
struct Excerpt {
  std::int32_t variable = -1;
  std::int32_t groupVariable = -1;
  std::int32_t weight = -1;
  std::size_t recordCount = 0;    // of the items; cells stand behind them
  std::vector<NumberedKey> keys;  // ordered bits of the value, number of the item
  std::vector<Item> items;
  std::vector<std::int64_t> units;  // by cell
  LargeArray<NumberedKey> order;

  [[nodiscard]] bool IsCell(std::size_t place) const noexcept {
    return order[place].number >= recordCount;
  }
  [[nodiscard]] const Item& At(std::size_t place) const noexcept {
    return items[order[place].number];
  }
  [[nodiscard]] std::int64_t UnitsAt(std::size_t place) const noexcept {
    return units[order[place].number - recordCount];
  }
};

/// Walks an excerpt; cells and records come in batches of their own.
class ExcerptWalk final : public BatchSource, private RecordBatch {
 public:
  ExcerptWalk(const KeptRecords& records, Excerpt excerpt)
      : records(records), excerpt(std::move(excerpt)) {}

  int Reset() override {
    next = 0;
    return excerpt.items.empty() ? 1 : 0;
  }
  RecordBatch* NextBatch() override {
    Interruption::Check();
    first = next;
    const std::size_t end = std::min(first + kRecordsAtOnce, excerpt.items.size());
    while (next < end && excerpt.IsCell(next) == excerpt.IsCell(first)) ++next;
    StartAnew(next - first);
    return first < next ? this : nullptr;
  }
  [[nodiscard]] int Width() const override { return records.Width(); }
  [[nodiscard]] bool MayHold(const MissingMark& mark) const override {
    return mark.variable != excerpt.variable && mark.variable != excerpt.groupVariable &&
           records.Column(mark.variable).Holds(mark.value);
  }

 private:
  [[nodiscard]] const std::int32_t* Counts() override {
    if (!excerpt.IsCell(first)) return nullptr;
    for (std::size_t i = 0; i < Size(); ++i) {
      counts[i] = static_cast<std::int32_t>(excerpt.At(first + i).record);
    }
    return counts.data();
  }
  void GatherColumn(std::int32_t variable, double* values) override {
    const bool areCells = excerpt.IsCell(first);
    for (std::size_t i = 0; i < Size(); ++i) {
      values[i] = areCells ? OfCell(variable, first + i)
                           : records.Column(variable).ValueAt(excerpt.At(first + i).record);
    }
  }
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override {
    if (variable != excerpt.groupVariable) return false;
    for (std::size_t i = 0; i < Size(); ++i) values[i] = excerpt.At(first + i).group;
    return true;
  }
  [[nodiscard]] double OfCell(std::int32_t variable, std::size_t place) const {
    if (variable == excerpt.variable) return ValueOfOrderedBits(excerpt.order[place].Key());
    if (variable == excerpt.groupVariable) return excerpt.At(place).group;
    if (variable == excerpt.weight) return static_cast<double>(excerpt.UnitsAt(place));
    return QDMV::gMissingValue;
  }

  const KeptRecords& records;
  Excerpt excerpt;
  std::array<std::int32_t, kRecordsAtOnce> counts{};
  std::size_t first = 0;
  std::size_t next = 0;
};

/// Picks the records of the chosen cells, in their order.
void Pick(const KeptRecords& records, const GroupedCells& cells, const std::uint16_t* cellOf,
          Excerpt& excerpt) {
  struct Picked {
    std::vector<NumberedKey> keys;
    std::vector<Item> items;
  };
  const Parts parts(records.Count());
  std::vector<Picked> picked(parts.Count());
  const std::uint8_t* chosen = cells.Chosen();
  const KeptColumn& column = records.Column(excerpt.variable);
  Threads::ForEach(parts.Count(), [&](std::size_t part) {
    Picked& own = picked[part];
    parts.ForEachBatch(records, part, [&](RecordBatch& batch, std::size_t first) {
      Places places;
      Places found;
      cells.Find(cellOf + first, batch.TruncatedOf(excerpt.groupVariable), batch.Size(),
                 places.data());
      std::size_t count = 0;
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        found[count] = static_cast<std::uint32_t>(i);
        count += chosen[places[i]];  // without a branch
      }
      for (std::size_t i = 0; i < count; ++i) {
        const std::size_t number = first + found[i];
        own.keys.emplace_back(OrderedBits(column.ValueAt(number)), 0);
        own.items.push_back({static_cast<std::uint32_t>(number), cells.GroupAt(places[found[i]])});
      }
    });
  });
  for (Picked& own : picked) {
    excerpt.keys.insert(excerpt.keys.end(), own.keys.begin(), own.keys.end());
    excerpt.items.insert(excerpt.items.end(), own.items.begin(), own.items.end());
    own = {};
  }
  excerpt.recordCount = excerpt.items.size();
}

/// Adds the cells of which no record was picked.
void AddCells(const GroupedCells& cells, Excerpt& excerpt) {
  for (std::size_t cell = 0; cell < cells.Cells().Count(); ++cell) {
    for (std::size_t group = 0; group < cells.GroupCount(); ++group) {
      const std::uint32_t count = cells.RecordsAt(cell, group);
      if (count == 0 || cells.IsChosen(cell, group)) continue;
      excerpt.keys.emplace_back(OrderedBits(cells.Cells().MiddleOf(cell)), 0);
      excerpt.items.push_back({count, static_cast<std::int32_t>(group)});
      excerpt.units.push_back(cells.UnitsAt(cell, group));
    }
  }
}

/// Is there, in the upper tail of each group of which some records were not picked, the step that
/// was wanted?
bool HoldsSteps(const Excerpt& excerpt, const GroupedCells& cells, const WantedPlaces& wanted) {
  std::vector<std::uint8_t> lacksStep(wanted.groups.size(), 0);
  for (std::size_t i = excerpt.recordCount; i < excerpt.items.size(); ++i) {
    const auto group = static_cast<std::size_t>(excerpt.items[i].group);
    lacksStep[group] = wanted.groups[group].tails ? 1 : 0;
  }
  constexpr double kNone = -std::numeric_limits<double>::infinity();
  std::vector<double> before(wanted.groups.size(), kNone);
  for (std::size_t place = 0; place < excerpt.items.size(); ++place) {
    const auto group = static_cast<std::size_t>(excerpt.At(place).group);
    if (excerpt.IsCell(place) || lacksStep[group] == 0) continue;
    const double x = ValueOfOrderedBits(excerpt.order[place].Key());
    const auto cell = static_cast<std::size_t>(cells.Cells().CellOf(x));
    if (cell < cells.UpperTailOf(group)) continue;
    const WantedPlaces::Tails& tails = *wanted.groups[group].tails;
    if (before[group] != kNone && x < tails.from && x - before[group] > tails.step) {
      lacksStep[group] = 0;
    }
    before[group] = x;
  }
  return std::none_of(lacksStep.begin(), lacksStep.end(), [](std::uint8_t lacks) { return lacks; });
}

bool AreNumbers(const WantedPlaces& wanted) {
  const auto isNumber = [](double x) { return x == x; };
  return std::all_of(wanted.values.begin(), wanted.values.end(), isNumber) &&
         std::all_of(wanted.groups.begin(), wanted.groups.end(), [&](const auto& group) {
           return !group.tails || (isNumber(group.tails->upTo) && isNumber(group.tails->from) &&
                                   isNumber(group.tails->step));
         });
}

}  // namespace

std::vector<double> OrderExcerpts::Sample() const {
  const KeptColumn& column = records.Column(variable);
  const std::size_t step = std::max(records.Count() / kSampleSize, std::size_t{1});
  std::vector<double> sample;
  for (std::size_t number = 0; number < records.Count(); number += step) {
    const double x = column.ValueAt(number);
    if (x != QDMV::gMissingValue) sample.push_back(x);
  }
  return sample;
}

std::unique_ptr<OrderExcerpts::Counted> OrderExcerpts::Count(std::int32_t groupVariable,
                                                             std::size_t groupCount) const {
  const std::size_t rows = groupCount + 1;
  const std::size_t most = std::min(std::max(kUsualTable / rows, kFewestCells),
                                    records.Count() / kRecordsPerCell / rows);
  const auto range = ValueCells::Over(Sample(), std::min(most, ValueCells::kMost));
  if (!range || range->Count() * rows > kLargestTable) return nullptr;
  const Parts parts(records.Count());
  const bool isWeighted = weight >= 0;
  std::vector<GroupedCells> cells(parts.Count(), GroupedCells(*range, groupCount, isWeighted));
  auto cellOf = MakeLargeArray<std::uint16_t>(records.Count());
  std::atomic<bool> areUnits{true};
  Threads::ForEach(parts.Count(), [&](std::size_t part) {
    GroupedCells& own = cells[part];
    parts.ForEachBatch(records, part, [&](RecordBatch& batch, std::size_t first) {
      Places places;
      FindCells(records, variable, own, first, batch.Size(), &cellOf[first]);
      own.Find(&cellOf[first], batch.TruncatedOf(groupVariable), batch.Size(), places.data());
      if (!isWeighted) {
        own.Count(places.data(), batch.Size());
      } else if (!own.CountWeighted(places.data(), batch.Of(weight), batch.Size())) {
        areUnits = false;
      }
    });
  });
  for (std::size_t part = 1; part < cells.size(); ++part) cells[0].Add(cells[part]);
  // So that every sum is a weight as a record has it.
  const bool fits = cells[0].TotalUnits() <= std::numeric_limits<std::int32_t>::max();
  if (!areUnits || !fits) return nullptr;
  return std::make_unique<Counted>(Counted{std::move(cells[0]), std::move(cellOf)});
}

OrderExcerpts::Counted* OrderExcerpts::Find(std::int32_t groupVariable, std::size_t groupCount) {
  auto found = counted.find(groupVariable);
  if (found == counted.end()) {
    found = counted.emplace(groupVariable, Count(groupVariable, groupCount)).first;
  }
  return found->second.get();
}

std::unique_ptr<BatchSource> OrderExcerpts::Walk(const OrderExcerpt& wanted) {
  if (selecting == Shortcut::Never) return nullptr;
  if (selecting == Shortcut::WhereItPays && records.Count() < kFewestRecords) return nullptr;
  if (records.Count() >= std::numeric_limits<std::uint32_t>::max() - kLargestTable) return nullptr;
  const auto isInRecord = [this](std::int32_t index) {
    return index >= 0 && index < records.Width();
  };
  if (!isInRecord(variable) || !isInRecord(wanted.groupVariable) || weight >= records.Width()) {
    return nullptr;
  }
  if (records.Column(variable).HoldsNotANumber() || !AreNumbers(wanted.places)) return nullptr;
  Counted* found = Find(wanted.groupVariable, wanted.places.groups.size());
  if (found == nullptr) return nullptr;
  GroupedCells& cells = found->cells;
  cells.Choose(wanted.places);
  const std::size_t most =
      selecting == Shortcut::Always ? records.Count() : records.Count() / kPickedShare;
  if (cells.ChosenRecords() > most) return nullptr;
  Excerpt excerpt;
  excerpt.variable = variable;
  excerpt.groupVariable = wanted.groupVariable;
  excerpt.weight = weight;
  if (!wanted.places.AreNone()) Pick(records, cells, found->cellOf.get(), excerpt);
  AddCells(cells, excerpt);
  excerpt.order = SortedEntries<NumberedKey>(excerpt.keys.size(), [&excerpt](std::size_t place) {
    return NumberedKey(excerpt.keys[place].Key(), place);
  });
  excerpt.keys = {};
  if (!HoldsSteps(excerpt, cells, wanted.places)) return nullptr;
  return std::make_unique<ExcerptWalk>(records, std::move(excerpt));
}
