#include "planning/pass_feed.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "kit/contract/allocation.h"
#include "kit/contract/stage_progress.h"

namespace {

template <typename Item>
bool Contains(const std::vector<Item>& list, Item item) {
  return std::find(list.begin(), list.end(), item) != list.end();
}

void AddOnce(std::vector<Tally*>& tallies, Tally* tally) {
  if (tally != nullptr && !Contains(tallies, tally)) tallies.push_back(tally);
}

}  // namespace

void PassFeed::AddTest(NPARTest* test, std::vector<std::int64_t> required) {
  members.push_back({.test = test, .required = std::move(required), .marks = {}, .cells = nullptr});
}

const PassFeed::Member* PassFeed::NextOf(const BatchSource* cells) const {
  const auto found = std::find_if(members.begin(), members.end(),
                                  [cells](const Member& member) { return member.cells == cells; });
  return found == members.end() ? nullptr : &*found;
}

void PassFeed::FindCells(ICountedRecords& counted, std::int32_t ascendingBy) {
  for (auto member = members.begin(); member != members.end(); ++member) {
    if (!member->test->TakesCells()) continue;
    const auto same = std::find_if(members.begin(), member, [&member](const Member& other) {
      return other.cells != nullptr && other.required == member->required;
    });
    if (same != member) {
      member->cells = same->cells;
      continue;
    }
    const std::vector<std::int32_t> variables(member->required.begin(), member->required.end());
    auto walk = counted.WalkCells(variables, ascendingBy);
    if (walk == nullptr) continue;
    // Another variable may hold records off as well.
    const std::vector<MissingMark> marks = MarksOf(*member, *walk);
    const bool areTold = std::all_of(marks.begin(), marks.end(), [&](const MissingMark& mark) {
      return Contains(variables, mark.variable);
    });
    if (!areTold) continue;
    member->cells = walk.get();
    cellWalks.push_back(std::move(walk));
  }
}

QDStatus PassFeed::WalkCells(ICountedRecords& counted, std::int32_t ascendingBy,
                             CancelPair& cancelPair) {
  FindCells(counted, ascendingBy);
  for (const auto& walk : cellWalks) {
    static_cast<void>(walk->Reset());
    const QDStatus status = WalkFor(walk.get(), *walk, cancelPair);
    if (!status.IsOK()) return status;
  }
  return QDStatus();
}

QDStatus PassFeed::Walk(BatchSource& records, CancelPair& cancelPair) {
  return WalkFor(nullptr, records, cancelPair);
}

QDStatus PassFeed::WalkFor(const BatchSource* cells, BatchSource& records, CancelPair& cancelPair) {
  audiences.clear();
  bool isFirst = true;
  WalkProgress progress(cells == nullptr ? records.Count() : 0);
  while (NextOf(cells) != nullptr && !cancelPair.Check()) {
    RecordBatch* batch = records.NextBatch();
    if (batch == nullptr) break;
    if (std::exchange(isFirst, false)) {
      for (Member& member : members) {
        if (member.cells == cells) member.marks = MarksOf(member, records);
      }
      FormAudiences(cells);
    }
    bool hasAnyFailed = false;
    const QDStatus status = Deliver(*batch, hasAnyFailed);
    if (!status.IsOK()) return status;
    if (hasAnyFailed) {
      std::erase_if(members, [](const Member& member) { return member.hasFailed; });
      FormAudiences(cells);
    }
    progress.Step(batch->Size());
  }
  return QDStatus();
}

std::vector<NPARTest*> PassFeed::AliveTests() const {
  std::vector<NPARTest*> tests;
  for (const Member& member : members) tests.push_back(member.test);
  return tests;
}

std::vector<Tally*> PassFeed::AliveTallies() const {
  std::vector<Tally*> tallies;
  for (const Member& member : members) AddOnce(tallies, member.test->GetTally());
  return tallies;
}

std::vector<MissingMark> PassFeed::MarksOf(const Member& member, const BatchSource& records) const {
  std::vector<MissingMark> marks;
  for (std::int32_t position = 0; position < records.Width(); ++position) {
    const IQDVariable* variable = variables->GetVarAt(position);
    if (variable == nullptr) continue;
    const bool isNeeded = !analysisMissing || member.required.empty() ||
                          Contains(member.required, std::int64_t{position});
    const std::optional<double> missing = MissingValueOf(variable->GetType());
    if (isNeeded && missing && records.MayHold({position, *missing})) {
      marks.push_back({position, *missing});
    }
  }
  return marks;
}

void PassFeed::FormAudiences(const BatchSource* cells) {
  audiences.clear();
  for (Member& member : members) {
    if (member.cells != cells) continue;
    auto audience = std::find_if(
        audiences.begin(), audiences.end(),
        [&member](const Audience& other) { return other.members[0]->marks == member.marks; });
    if (audience == audiences.end()) audience = audiences.emplace(audiences.end());
    audience->members.push_back(&member);
    AddOnce(audience->tallies, member.test->GetTally());
  }
}

QDStatus PassFeed::Deliver(RecordBatch& batch, bool& hasAnyFailed) {
  for (Audience& audience : audiences) {
    RecordBatch& complete = audience.complete.Select(batch, audience.members[0]->marks);
    for (Tally* tally : audience.tallies) tally->Take(complete);
    for (Member* member : audience.members) {
      const QDStatus answer = member->test->ProcessBatch(complete);
      if (answer.GetErrorCode() == kMemoryExhausted) return answer;
      if (answer.IsError()) member->hasFailed = hasAnyFailed = true;
    }
  }
  return QDStatus();
}
