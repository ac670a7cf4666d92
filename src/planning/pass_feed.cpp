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

void PassFeed::GiveWalk(std::unique_ptr<BatchSource> walk, const std::vector<Member*>& takers) {
  if (walk == nullptr) return;
  const Member& first = *takers.front();
  // Nothing but what they require can be had of it.
  const std::vector<MissingMark> marks = MarksOf(first, *walk);
  const bool areTold = std::all_of(marks.begin(), marks.end(), [&](const MissingMark& mark) {
    return Contains(first.required, std::int64_t{mark.variable});
  });
  if (!areTold) return;
  for (Member* member : takers) member->cells = walk.get();
  cellWalks.push_back(std::move(walk));
}

template <typename IsTaker>
std::vector<std::vector<PassFeed::Member*>> PassFeed::Takers(IsTaker isTaker) {
  std::vector<std::vector<Member*>> takers;
  for (Member& member : members) {
    if (member.cells != nullptr || !isTaker(*member.test)) continue;
    const auto same = std::find_if(takers.begin(), takers.end(), [&member](const auto& others) {
      return others.front()->required == member.required;
    });
    if (same == takers.end()) {
      takers.push_back({&member});
    } else {
      same->push_back(&member);
    }
  }
  return takers;
}

void PassFeed::FindCells(ICountedRecords& counted, std::int32_t ascendingBy) {
  for (const auto& takers : Takers([](const NPARTest& test) { return test.TakesCells(); })) {
    const std::vector<std::int64_t>& required = takers.front()->required;
    const std::vector<std::int32_t> variables(required.begin(), required.end());
    GiveWalk(counted.WalkCells(variables, ascendingBy), takers);
  }
}

void PassFeed::FindExcerpts(IOrderExcerpts& excerpts) {
  const auto takesExcerpts = [](const Member& member) {
    return member.cells != nullptr || member.test->TakesExcerpts();
  };
  if (!std::all_of(members.begin(), members.end(), takesExcerpts)) return;
  for (const auto& takers : Takers([](const NPARTest&) { return true; })) {
    OrderExcerpt wanted;
    for (const Member* member : takers) member->test->WantPlaces(wanted);
    GiveWalk(excerpts.Walk(wanted), takers);
  }
}

QDStatus PassFeed::WalkCells(CancelPair& cancelPair) {
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
