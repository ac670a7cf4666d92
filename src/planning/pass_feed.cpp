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

std::vector<PassFeed::Member*> PassFeed::MembersOf(const BatchSource* cells) {
  std::vector<Member*> found;
  for (Member& member : members) {
    if (member.cells == cells && !member.hasFailed) found.push_back(&member);
  }
  return found;
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
    Part part{.members = MembersOf(walk.get()), .audiences = {}};
    const QDStatus status = WalkFor(part, *walk, 0, cancelPair);
    if (!status.IsOK()) return status;
  }
  return QDStatus();
}

std::size_t PassFeed::Divide(std::size_t most) {
  std::vector<std::vector<Member*>> apart;
  for (Member* member : MembersOf(nullptr)) {
    const Tally* tally = member->test->GetTally();
    const auto same = std::find_if(apart.begin(), apart.end(), [tally](const auto& others) {
      return tally != nullptr && others.front()->test->GetTally() == tally;
    });
    if (same == apart.end()) {
      apart.push_back({member});
    } else {
      same->push_back(member);
    }
  }
  parts.clear();
  parts.resize(std::min(most, apart.size()));
  for (std::size_t i = 0; i < apart.size(); ++i) {
    std::vector<Member*>& list = parts[i % parts.size()].members;
    list.insert(list.end(), apart[i].begin(), apart[i].end());
  }
  return parts.size();
}

QDStatus PassFeed::Walk(std::size_t part, BatchSource& records, CancelPair& cancelPair) {
  return WalkFor(parts[part], records, records.Count(), cancelPair);
}

QDStatus PassFeed::WalkFor(Part& part, BatchSource& records, std::size_t expected,
                           CancelPair& cancelPair) {
  bool isFirst = true;
  WalkProgress progress(expected);
  while (!part.members.empty() && !cancelPair.Check()) {
    RecordBatch* batch = records.NextBatch();
    if (batch == nullptr) break;
    if (std::exchange(isFirst, false)) {
      for (Member* member : part.members) member->marks = MarksOf(*member, records);
      FormAudiences(part);
    }
    bool hasAnyFailed = false;
    const QDStatus status = Deliver(part, *batch, hasAnyFailed);
    if (!status.IsOK()) return status;
    if (hasAnyFailed) {
      std::erase_if(part.members, [](const Member* member) { return member->hasFailed; });
      FormAudiences(part);
    }
    progress.Step(batch->Size());
  }
  return QDStatus();
}

std::vector<NPARTest*> PassFeed::AliveTests() const {
  std::vector<NPARTest*> tests;
  for (const Member& member : members) {
    if (!member.hasFailed) tests.push_back(member.test);
  }
  return tests;
}

std::vector<Tally*> PassFeed::AliveTallies() const {
  std::vector<Tally*> tallies;
  for (const NPARTest* test : AliveTests()) AddOnce(tallies, test->GetTally());
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

void PassFeed::FormAudiences(Part& part) {
  part.audiences.clear();
  for (Member* member : part.members) {
    auto audience = std::find_if(
        part.audiences.begin(), part.audiences.end(),
        [member](const Audience& other) { return other.members[0]->marks == member->marks; });
    if (audience == part.audiences.end()) audience = part.audiences.emplace(part.audiences.end());
    audience->members.push_back(member);
    AddOnce(audience->tallies, member->test->GetTally());
  }
}

QDStatus PassFeed::Deliver(Part& part, RecordBatch& batch, bool& hasAnyFailed) {
  for (Audience& audience : part.audiences) {
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
