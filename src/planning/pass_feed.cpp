#include "planning/pass_feed.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "kit/contract/allocation.h"

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
  members.push_back({.test = test, .required = std::move(required), .marks = {}});
}

QDStatus PassFeed::Walk(BatchSource& records, CancelPair& cancelPair) {
  bool isFirst = true;
  while (!members.empty() && !cancelPair.Check()) {
    RecordBatch* batch = records.NextBatch();
    if (batch == nullptr) break;
    if (std::exchange(isFirst, false)) {
      FindMarks(records);
      FormAudiences();
    }
    const QDStatus status = Deliver(*batch);
    if (!status.IsOK()) return status;
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

void PassFeed::FindMarks(const BatchSource& records) {
  for (std::int32_t position = 0; position < records.Width(); ++position) {
    const IQDVariable* variable = variables->GetVarAt(position);
    if (variable == nullptr) continue;
    const std::optional<double> missing = MissingValueOf(variable->GetType());
    if (!missing || !records.MayHold({position, *missing})) continue;
    for (Member& member : members) {
      const bool isNeeded = !analysisMissing || member.required.empty() ||
                            Contains(member.required, std::int64_t{position});
      if (isNeeded) member.marks.push_back({position, *missing});
    }
  }
}

void PassFeed::FormAudiences() {
  audiences.clear();
  for (Member& member : members) {
    auto audience = std::find_if(
        audiences.begin(), audiences.end(),
        [&member](const Audience& other) { return other.members[0]->marks == member.marks; });
    if (audience == audiences.end()) audience = audiences.emplace(audiences.end());
    audience->members.push_back(&member);
    AddOnce(audience->tallies, member.test->GetTally());
  }
}

QDStatus PassFeed::Deliver(RecordBatch& batch) {
  bool hasAnyFailed = false;
  for (Audience& audience : audiences) {
    RecordBatch& complete = audience.complete.Select(batch, audience.members[0]->marks);
    for (Tally* tally : audience.tallies) tally->Take(complete);
    for (Member* member : audience.members) {
      const QDStatus answer = member->test->ProcessBatch(complete);
      if (answer.GetErrorCode() == kMemoryExhausted) return answer;
      if (answer.IsError()) member->hasFailed = hasAnyFailed = true;
    }
  }
  if (hasAnyFailed) {
    std::erase_if(members, [](const Member& member) { return member.hasFailed; });
    FormAudiences();
  }
  return QDStatus();
}
