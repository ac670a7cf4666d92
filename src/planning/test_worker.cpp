#include "planning/test_worker.h"

#include <algorithm>
#include <utility>

#include "kit/contract/allocation.h"
#include "kit/contract/stage_progress.h"
#include "kit/order/threads.h"
#include "planning/pass_feed.h"
#include "planning/progress.h"
#include "planning/walk_ahead.h"

namespace {

/// Of the walk in a pass.
constexpr double kWalkShare = 0.7;

/// Hands on how far a test has come within a stage.
template <typename Report>
class TestsProgress final : public StageProgress {
 public:
  explicit TestsProgress(Report report) : report(std::move(report)) {}

 private:
  void Take(double part) override { report(part); }
  Report report;
};

}  // namespace

NPARTestWorker::NPARTestWorker(const QDVarList* variables, bool analysisMissing)
    : variables(variables), analysisMissing(analysisMissing) {}

NPARTestWorker::~NPARTestWorker() = default;

void NPARTestWorker::SetProgressRange(ProgressListener* listener, double start, double span) {
  progressListener = listener;
  progressStart = start;
  progressSpan = span;
}

void NPARTestWorker::AddTest(std::unique_ptr<NPARTest> test) { tests.push_back(std::move(test)); }

QDStatus NPARTestWorker::RunWorker(CancelPair& cancelPair) {
  passesTotal = 0;
  passesLeft = 0;
  const QDStatus status = GuardAllocation(kMemoryExhausted, [&] { return RunPasses(cancelPair); });
  passesLeft = 0;
  ReportPassProgress();
  return status;
}

QDStatus NPARTestWorker::RunPasses(CancelPair& cancelPair) {
  std::vector<NPARTest*> active;
  for (const auto& test : tests) {
    test->SetSharedData(sharedData.get());
    test->SetSharedTallies(&sharedTallies);
    active.push_back(test.get());
  }
  while (!active.empty() && !cancelPair.Check()) {
    const QDStatus status = RunPass(active, cancelPair);
    if (!status.IsOK()) return status;
    if (cancelPair.Check()) break;
    active.clear();
    for (const auto& test : tests) {
      if (test->NeedsAnotherPass()) active.push_back(test.get());
    }
  }
  return QDStatus();
}

bool NPARTestWorker::TakesExcerpts() const {
  return std::all_of(tests.begin(), tests.end(),
                     [](const auto& test) { return test->TakesExcerpts(); });
}

void NPARTestWorker::FindWalks(PassFeed& feed) {
  static_assert(ICountedRecords::kAnyOrder == -1);  // as a sort variable
  if (counted != nullptr) feed.FindCells(*counted, sortVariable);
  if (excerpts == nullptr || sortManager->IsSorted(sortVariable)) return;
  const TestsProgress progress([this](double part) { ReportRisenPart(kSortShare * part); });
  feed.FindExcerpts(*excerpts);
}

BatchSource* NPARTestWorker::FindSource() {
  if (sortVariable < 0) return records;
  const TestsProgress progress([this](double part) { ReportRisenPart(kSortShare * part); });
  return sortManager->GetSortedIterator(sortVariable);
}

QDStatus NPARTestWorker::RunPass(const std::vector<NPARTest*>& list, CancelPair& cancelPair) {
  PassFeed feed(variables, analysisMissing);
  const QDStatus begun = BeginPass(list, feed);
  if (!begun.IsOK()) return begun;
  if (firstPass) {
    passesTotal = passesLeft;
    lastReportedLeft = passesLeft + 1;
    firstPass = false;
  }
  TellPass(feed);
  ReportPassProgress();

  const QDStatus walked = WalkRecords(feed, cancelPair);
  if (!walked.IsOK()) return walked;
  const std::int32_t passesDone = passesTotal - passesLeft;
  passesLeft = 0;
  if (!cancelPair.Check()) {
    const QDStatus ended = EndPass(feed, passesDone);
    if (!ended.IsOK()) return ended;
  }
  ReportPassProgress();
  return QDStatus();
}

QDStatus NPARTestWorker::WalkRecords(PassFeed& feed, CancelPair& cancelPair) {
  FindWalks(feed);
  const QDStatus walked = feed.WalkCells(cancelPair);
  if (!walked.IsOK()) return walked;
  if (!feed.NeedsRecords()) return QDStatus();
  BatchSource* source = FindSource();
  if (source == nullptr) return QDStatus();
  static_cast<void>(source->Reset());  // it shows by having no record
  return Walk(*source, feed, cancelPair);
}

QDStatus NPARTestWorker::Walk(BatchSource& source, PassFeed& feed, CancelPair& cancelPair) {
  const std::int32_t passesDone = passesTotal - passesLeft;
  const TestsProgress progress(
      [&](double part) { ReportRisenPart(TimeOf(passesDone + kWalkShare * part)); });
  const auto* order = dynamic_cast<const NPARSortedIterator*>(&source);
  const bool isShared = sharesWork && order != nullptr && Threads::AreWorthIt(source.Count());
  const std::size_t parts = feed.Divide(isShared ? Threads::Count() : 1);
  if (parts > 1) return WalkSideBySide(*order, feed, parts, cancelPair);
  if (!isShared) return feed.Walk(0, source, cancelPair);
  WalkAhead ahead(*order);
  QDStatus walked;
  Threads::ForEach(2, [&](std::size_t task) {
    if (task == 1) return ahead.GatherAhead();
    const WalkAhead::End end(ahead);
    walked = feed.Walk(0, ahead, cancelPair);
  });
  return walked;
}

QDStatus NPARTestWorker::WalkSideBySide(const NPARSortedIterator& order, PassFeed& feed,
                                        std::size_t parts, const CancelPair& cancelPair) {
  std::vector<QDStatus> answers(parts);
  Threads::ForEach(parts, [&](std::size_t part) {
    const auto view = order.AnotherView();
    static_cast<void>(view->Reset());
    CancelPair cancel = cancelPair;
    answers[part] = feed.Walk(part, *view, cancel);
  });
  const auto failed = std::find_if(answers.begin(), answers.end(),
                                   [](const QDStatus& answer) { return !answer.IsOK(); });
  return failed == answers.end() ? QDStatus() : *failed;
}

QDStatus NPARTestWorker::BeginPass(const std::vector<NPARTest*>& list, PassFeed& feed) {
  passesLeft = 0;
  for (NPARTest* test : list) {
    const QDStatus begin = test->BeginPass();
    if (begin.GetErrorCode() == kMemoryExhausted) return begin;
    std::vector<std::int64_t> required;
    test->GetRequiredVariables(required);
    if (!begin.IsError()) feed.AddTest(test, std::move(required));
    passesLeft = std::max(passesLeft, test->GetPassesLeft());
  }
  return QDStatus();
}

QDStatus NPARTestWorker::EndPass(const PassFeed& feed, std::int32_t passesDone) {
  for (Tally* tally : feed.AliveTallies()) tally->EndPass();
  const std::vector<NPARTest*> alive = feed.AliveTests();
  double testsDone = 0.0;
  for (NPARTest* test : alive) {
    const TestsProgress progress([&](double part) {
      const double pass = (testsDone + part) / static_cast<double>(alive.size());
      ReportRisenPart(TimeOf(passesDone + kWalkShare + (1.0 - kWalkShare) * pass));
    });
    const QDStatus answer = test->EndPass();
    testsDone += 1.0;
    if (answer.GetErrorCode() == kMemoryExhausted) return answer;
    if (!answer.IsError()) passesLeft = std::max(passesLeft, test->GetPassesLeft());
  }
  return QDStatus();
}

QDStatus NPARTestWorker::CollectResults() {
  return GuardAllocation(kMemoryExhausted, [this] {
    results.reserve(results.size() + tests.size());
    for (const auto& test : tests) results.emplace_back(test->WriteResults());
    return QDStatus();
  });
}

void NPARTestWorker::TellPass(const PassFeed& feed) const {
  auto* listener = dynamic_cast<IPassListener*>(progressListener);
  if (listener == nullptr) return;
  PassInHand pass;
  for (const NPARTest* test : feed.AliveTests()) pass.testNames.emplace_back(test->GetEntryName());
  if (pass.testNames.empty()) return;
  if (sortVariable >= 0) pass.orderField = variables->GetVarAt(sortVariable)->GetName();
  listener->PassBegins(pass);
}

double NPARTestWorker::TimeOf(double passes) const {
  const double part = std::min(passes / std::max(passesTotal, 1), 1.0);
  const bool isSortTold = sortVariable >= 0 && sortManager->TellsProgress();
  return isSortTold ? kSortShare + (1.0 - kSortShare) * part : part;
}

std::int32_t NPARTestWorker::StepAt(double part) const {
  return TruncateToInt32((part * progressSpan + progressStart) * 100.0);
}

void NPARTestWorker::ReportRisenPart(double part) {
  if (StepAt(part) > lastReportedStep) ReportPart(part);
}

void NPARTestWorker::ReportPart(double part) {
  if (progressListener == nullptr) return;
  lastReportedStep = StepAt(part);
  NPARReporter report;
  report.SetCurrentStepNum(lastReportedStep);
  static_cast<void>(progressListener->Report(report));  // a listener's answer stops nothing
}

void NPARTestWorker::ReportPassProgress() {
  if (passesLeft >= lastReportedLeft) return;
  lastReportedLeft = passesLeft;
  const bool isWithin = passesTotal > 0 && passesLeft >= 0 && passesTotal >= passesLeft;
  if (isWithin && passesLeft == passesTotal) return ReportPart(0.0);  // the sort is still to come
  ReportPart(isWithin ? TimeOf(passesTotal - passesLeft) : 1.0);
}
