#include "ranges/sorted_sums.h"

#include <algorithm>
#include <limits>

#include "kit/ranks/ties.h"

bool SortedSums::Take(double value, std::size_t group, std::int64_t weight) {
  if (!hasOpen || value != openValue) {
    if (hasOpen && !(value > openValue)) return false;
    if (value != value) return false;
    EndValue();
    openValue = value;
    hasOpen = true;
  }
  if (openWeights[group] == 0) openGroups.push_back(static_cast<std::uint32_t>(group));
  openWeights[group] += weight;
  count += weight;
  return true;
}

void SortedSums::EndValue() {
  if (openGroups.empty()) return;
  if (!Open().empty() && !Ties(Open().back().value, openValue)) EndCluster();
  std::ranges::sort(openGroups);
  for (const std::uint32_t group : openGroups) {
    Open().push_back({openValue, openWeights[group], group});
    openWeights[group] = 0;
  }
  openGroups.clear();
}

void SortedSums::EndCluster() {
  if (isApart) inner.AddCluster(tail);
  tail.clear();
  isApart = true;
}

SortedSums SortedSums::Ended() const {
  SortedSums ended = *this;
  ended.EndValue();
  ended.hasOpen = false;
  return ended;
}

/// Cells that follow without a gap.
void SortedSums::AppendCells(std::span<const ValueCell> cells) {
  for (const ValueCell& cell : cells) {
    std::vector<ValueCell>& open = Open();
    auto same = open.rbegin();
    while (same != open.rend() && same->value == cell.value && same->group != cell.group) ++same;
    if (same != open.rend() && same->value == cell.value) {
      same->weight += cell.weight;
    } else {
      open.push_back(cell);
    }
  }
}

bool SortedSums::Append(const SortedSums& next) {
  EndValue();
  hasOpen = false;
  const SortedSums following = next.Ended();
  if (following.head.empty()) return true;
  if (!Open().empty()) {
    const double last = Open().back().value;
    const double first = following.head.front().value;
    if (first < last) return false;
    if (!Ties(last, first)) EndCluster();
  }
  AppendCells(following.head);
  if (following.isApart) {
    EndCluster();
    inner.Append(following.inner);
    tail = following.tail;
  }
  count += following.count;
  return true;
}

RunSums SortedSums::Total() const {
  const SortedSums ended = Ended();
  RunSums total(GroupCount(), HasPairs());
  total.AddCluster(ended.head);
  total.Append(ended.inner);
  RunSums last(GroupCount(), HasPairs());
  last.AddCluster(ended.tail);
  total.Append(last);
  return total;
}

SortedSums SortedSums::Regrouped(std::span<const std::size_t> places,
                                 std::size_t groupCount) const {
  SortedSums ended = Ended();
  for (std::vector<ValueCell>* cells : {&ended.head, &ended.tail}) {
    for (ValueCell& cell : *cells) cell.group = static_cast<std::uint32_t>(places[cell.group]);
  }
  ended.inner = ended.inner.Regrouped(places, groupCount);
  ended.openWeights.assign(groupCount, 0);
  return ended;
}

namespace {

void WriteCells(ByteWriter& write, const std::vector<ValueCell>& cells) {
  write(static_cast<std::uint64_t>(cells.size()));
  for (const ValueCell& cell : cells) {
    write(cell.value);
    write(cell.weight);
    write(static_cast<std::uint64_t>(cell.group));
  }
}

std::vector<ValueCell> ReadCells(ByteReader& read) {
  constexpr std::size_t kWidth = 3 * sizeof(std::uint64_t);
  std::vector<ValueCell> cells(read.NextCount(kWidth));
  for (ValueCell& cell : cells) {
    read(cell.value);
    read(cell.weight);
    const std::uint64_t group = read.Next();
    cell.group = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(group, std::numeric_limits<std::uint32_t>::max()));
  }
  return cells;
}

bool IsSum(WideInteger sum, WideInteger most) { return sum >= 0 && sum <= most; }

}  // namespace

void SortedSums::Write(ByteWriter& write) const {
  SortedSums ended = Ended();
  write(static_cast<std::uint64_t>(ended.isApart));
  WriteCells(write, ended.head);
  ended.inner.Visit(write);
  WriteCells(write, ended.tail);
}

bool SortedSums::Read(ByteReader& read) {
  isApart = read.Next() != 0;
  head = ReadCells(read);
  inner.Visit(read);
  tail = ReadCells(read);
  return !read.IsShort() && CountSoundUnits();
}

bool SortedSums::CountSoundUnits() {
  WideInteger units = 0;
  for (const std::vector<ValueCell>* cells : {&head, &tail}) {
    for (std::size_t i = 0; i < cells->size(); ++i) {
      const ValueCell& cell = (*cells)[i];
      const bool ascends = i == 0 ? cell.value == cell.value : cell.value >= (*cells)[i - 1].value;
      if (!ascends || cell.weight < 1 || cell.group >= GroupCount()) return false;
      units += cell.weight;
    }
  }
  WideInteger grouped = 0;
  const WideInteger n = inner.Count();
  if (!IsSum(n, RunSums::kMostUnits)) return false;
  for (const RunSums::Group& group : inner.Groups()) {
    if (!IsSum(group.count, n) || !IsSum(group.twiceRankSum, 2 * n * n + n)) return false;
    grouped += group.count;
  }
  units += n;
  if (isApart ? head.empty() || tail.empty() || !(tail.front().value > head.back().value)
              : n > 0 || !tail.empty()) {
    return false;
  }
  count = static_cast<std::int64_t>(units);
  return grouped == n && units <= RunSums::kMostUnits && IsSum(inner.TiedPairs(), n * n) &&
         IsSum(inner.TiedTriples(), n * n * n) && IsSum(inner.TwiceOrderedPairs(), 2 * n * n) &&
         (!HasPairs() || inner.Pairs()->CanBeOf(n));
}
