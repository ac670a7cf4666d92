#include "planning/planner.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

#include "catalogue/catalogue.h"
#include "kit/contract/allocation.h"
#include "kit/order/threads.h"
#include "planning/order_excerpts.h"
#include "planning/test_construction.h"
#include "planning/warning.h"
#include "report/result_writer.h"

namespace {

// Shares of the whole run's progress. The tests' part goes from 25 to 90 percent; writing the
// document, behind it, is no part of a run.
constexpr std::int64_t kReadingSpan = RunProgress::kWhole * 13 / 100;
constexpr std::int64_t kTestsStart = RunProgress::kWhole * 25 / 100;
constexpr std::int64_t kTestsSpan = RunProgress::kWhole * 65 / 100;

struct TableRow {
  std::string_view entryName;
  std::unique_ptr<NPARTest> (*construct)(TestConstruction&);
};

template <std::size_t... index>
constexpr auto MakeTable(std::index_sequence<index...>) {
  return std::array{
      TableRow{catalogue::kCards[index]->entry, ConstructTest<*catalogue::kCards[index]>}...};
}

/// By the name of an entry; null for a name that is none.
const TableRow* FindRow(std::string_view entryName) {
  static constexpr auto kRows = MakeTable(std::make_index_sequence<std::size(catalogue::kCards)>());
  const auto row = std::find_if(kRows.begin(), kRows.end(), [entryName](const TableRow& row) {
    return row.entryName == entryName;
  });
  return row == kRows.end() ? nullptr : &*row;
}

/// Ends a run that is cancelled wherever it is at work; on the way it tells how far the run is.
class RunInterruption final : public Interruption {
 public:
  RunInterruption(CancelPair& cancelPair, RunProgress& progress) noexcept
      : cancelPair(cancelPair), progress(progress) {}

 private:
  bool ShallStop() override {
    progress.Publish();
    return cancelPair.Check();
  }
  CancelPair& cancelPair;
  RunProgress& progress;
};

/// A 64-bit integer in decimal; 0 where it is left out.
std::int64_t ReadModelId(const QDSettings& settings) {
  std::string text;
  std::int64_t modelId = 0;
  static_cast<void>(settings.GetSettingValByName("NParStatXMLModelID", text));
  std::from_chars(text.data(), text.data() + text.size(), modelId);
  return modelId;
}

}  // namespace

NPARPlanner::NPARPlanner(const QDSettings* settings, const QDVarList* variables)
    : settings(settings), variables(variables), varInfo(variables) {}

NPARPlanner::~NPARPlanner() = default;

void NPARPlanner::SetProgressListener(ProgressListener* listener) {
  if (listener != nullptr) progressListener = listener;
}

void NPARPlanner::SetCancelSource(ICancelSource* source) {
  if (source != nullptr) cancelPair.source = source;
}

std::string NPARPlanner::GetDescription() const {
  return "Nonparemetic Tests Component Ver. 1.0Copyright (c) Lyra";  // hosts read it so
}

void NPARPlanner::ResetRun() {
  univariates.reset();
  mainWorker.reset();
  sortedWorkers.clear();
  status = QDStatus();
  executed = false;
  written = false;
}

void NPARPlanner::ReadRunSettings() {
  std::string text;
  if (settings->GetSettingValByName("missingTreatment", text)) analysisMissing = text == "analysis";
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  static_cast<void>(settings->GetSettingValByName("confidenceLevel", confidenceLevel));
  static_cast<void>(
      settings->GetSettingValByName(catalogue::run::kExtendedFigures.key, wantsExtended));
  if (settings->GetSettingValByName("caseIDVariableName", text)) {
    caseIdIndex = variables->FindVariable(text);
  }
}

QDStatus NPARPlanner::Execute(RecordIterator& records, std::int32_t /*reserved*/) {
  ResetRun();
  NPARWarning::Instance().Clear();
  RunProgress progress(progressListener, kTestsStart);
  const RunInterruption interruption(cancelPair, progress);
  status = GuardAllocation(kNoMemory, [&] { return PrepareRun(records, progress); });
  if (status.IsOK()) {
    // A construct function may set the status of the run, which a success does not take back.
    const QDStatus built = GuardAllocation(kNoMemory, [this] { return BuildTests(); });
    if (!built.IsOK()) status = built;
  }
  if (status.IsOK()) status = GuardAllocation(kMemoryExhausted, [&] { return RunTests(progress); });
  executed = !status.IsError();
  if (univariates != nullptr) univariates->SetSortedData(nullptr);
  counted.reset();
  partsOfWorkers.clear();
  sortManager.reset();
  ownWalks.clear();
  memoIterator.reset();
  dataReader.reset();
  hostRecords.reset();
  return status;
}

QDStatus NPARPlanner::PrepareRun(RecordIterator& records, RunProgress& progress) {
  ReadRunSettings();
  std::vector<std::int32_t> allVariables(static_cast<std::size_t>(variables->Size()));
  std::iota(allVariables.begin(), allVariables.end(), 0);
  hostRecords = std::make_unique<IteratorBatches>(records);
  dataReader = std::make_unique<InitialDataReader>(hostRecords.get(), !analysisMissing,
                                                   std::move(allVariables), variables);
  RunProgress::Part reading(progress, kReadingSpan);
  {
    const StageOfRun stage(reading);
    const QDStatus read = dataReader->Read();
    if (read.IsError()) return read;
  }
  progress.Finish(reading);
  memoIterator = std::make_unique<NParMemoIterator>(dataReader->Records());
  sortManager = std::make_unique<NPARSortManager>(dataReader.get());
  univariates = std::make_unique<QDUnivariateSummaries>(memoIterator.get(), variables);
  univariates->SetSortedData(sortManager.get());
  weightIndex = variables->GetFreqWeightVariable();
  counted = std::make_unique<CountedRecords>(dataReader->Records(), weightIndex, counting);
  univariates->SetCountedRecords(counted.get());
  if (HasWeight()) univariates->SetWeightVariable(weightIndex);

  mainWorker = std::make_unique<NPARTestWorker>(variables, analysisMissing);
  // The host's records, as they come; a source that can be read only once is represented by what
  // was kept of it.
  if (hostRecords->CanStartOver()) {
    mainWorker->SetRecords(hostRecords.get());
  } else {
    ownWalks.push_back(memoIterator->Another());
    mainWorker->SetRecords(ownWalks.back().get());
  }
  // Of the host's records some may not be kept.
  if (analysisMissing) mainWorker->SetCountedRecords(counted.get());
  return QDStatus();
}

QDStatus NPARPlanner::BuildTests() {
  bool isAnyEntry = false;
  for (std::size_t i = 0; i < settings->Size(); ++i) {
    const QDSetting* setting = settings->GetSettingAt(i);
    const IQDSettingValue* value = setting->GetValue();
    if (value == nullptr || value->GetKind() != SettingKind::Settings) continue;
    isAnyEntry = true;
    const TableRow* row = FindRow(setting->GetName());
    if (row == nullptr) continue;
    entryInHand = row->entryName;
    TestConstruction construction(*this, *value->GetListValue());
    // A test carries its problem by itself, and the others go on.
    std::unique_ptr<NPARTest> test = row->construct(construction);
    if (construction.SortVariable()) {
      AddSortedTest(std::move(test), *construction.SortVariable(), construction.GetStatus());
    } else {
      AddTest(std::move(test));
    }
  }
  if (univariates->RanOutOfMemory()) return QDStatus(kNoMemory);
  return isAnyEntry ? QDStatus() : QDStatus(catalogue::run::kNoTest);
}

QDStatus NPARPlanner::RunTests(RunProgress& progress) {
  // Sorted walks read them too, behind the groups.
  sortManager->AddCompanion(weightIndex);
  sortManager->AddCompanion(caseIdIndex);
  DivideProgress(progress);
  RunSummaries(progress);
  ReleaseOrdersOfSummaries();
  return RunWorkers();
}

void NPARPlanner::DivideProgress(RunProgress& progress) {
  std::size_t total = mainWorker->TestCount();
  for (const auto& worker : sortedWorkers) total += worker->TestCount();
  if (total == 0) return;
  std::size_t before = 0;
  const auto add = [&](NPARTestWorker& worker) {
    const auto startAfter = [total](std::size_t tests) {
      return kTestsSpan * static_cast<std::int64_t>(tests) / static_cast<std::int64_t>(total);
    };
    const std::size_t after = before + worker.TestCount();
    partsOfWorkers.emplace_back(progress, startAfter(after) - startAfter(before));
    before = after;
  };
  partsOfWorkers.clear();
  partsOfWorkers.reserve(sortedWorkers.size() + 1);
  add(*mainWorker);
  for (const auto& worker : sortedWorkers) add(*worker);
}

std::size_t NPARPlanner::OrdersAtOnce() const {
  // Together they take no more memory than the records.
  if (!Threads::AreWorthIt(dataReader->Records().Count())) return 1;
  const auto width = static_cast<std::size_t>(dataReader->Records().Width());
  const std::size_t fitting =
      std::max(width * sizeof(double) / sizeof(NumberedKey), std::size_t{1});
  return std::min(Threads::Count(), fitting);
}

void NPARPlanner::RunSummaries(RunProgress& progress) {
  std::vector<std::size_t> sortedFirst;
  if (Threads::AreWorthIt(dataReader->Records().Count())) {
    for (std::size_t i = 0; i < sortedWorkers.size() && sortedFirst.size() < OrdersAtOnce(); ++i) {
      const std::int32_t variable = sortedWorkers[i]->GetSortVariable();
      // What can be counted may never be sorted.
      if (variable >= 0 && dataReader->Records().Column(variable).IsWide() &&
          !univariates->WalksOrderOf(variable) && !sortedWorkers[i]->TakesExcerpts()) {
        sortedFirst.push_back(i);
      }
    }
  }
  // Nothing but the document reads the distributions.
  fillsBesideTests = Threads::AreWorthIt(dataReader->Records().Count());
  RunProgress::Part summaries(progress, kTestsStart - kReadingSpan);
  Threads::ForEach(sortedFirst.size() + 1, [&](std::size_t task) {
    if (task == 0) {
      const StageOfRun stage(summaries);
      // A summary that failed shows in what reads it.
      static_cast<void>(fillsBesideTests ? univariates->RunFirstPass() : univariates->Run());
      return;
    }
    const std::size_t worker = sortedFirst[task - 1];
    const StageOfRun stage(partsOfWorkers[worker + 1], NPARTestWorker::kSortShare);
    static_cast<void>(sortManager->GetSortedIterator(sortedWorkers[worker]->GetSortVariable()));
  });
  progress.Finish(summaries);
}

void NPARPlanner::ReleaseOrdersOfSummaries() {
  std::set<std::int32_t> needed;
  for (const auto& worker : sortedWorkers) needed.insert(worker->GetSortVariable());
  for (std::int32_t variable = 0; variable < variables->Size(); ++variable) {
    if (!needed.contains(variable)) sortManager->Release(variable);
  }
}

QDStatus NPARPlanner::RunWorkers() {
  std::vector<NPARTestWorker*> plan;
  if (mainWorker->TestCount() > 0) plan.push_back(mainWorker.get());
  for (const auto& worker : sortedWorkers) plan.push_back(worker.get());
  for (std::size_t i = 0; i < plan.size(); ++i) {
    plan[i]->SetSharedData(std::make_unique<UnivariateResults>(univariates.get()));
    plan[i]->SetProgressRange(&partsOfWorkers[i + sortedWorkers.size() + 1 - plan.size()], 0.0,
                              1.0);
  }

  const std::size_t lanes = std::min(OrdersAtOnce(), plan.size());
  if (lanes == 1) {
    for (NPARTestWorker* worker : plan) worker->SetSharesWork();
  }
  // The lanes take the workers one after the other. The calling thread begins with the first: only
  // the main worker asks the host for records, and it is the first.
  std::vector<QDStatus> answers(plan.size());
  std::atomic<std::size_t> next{1};
  const auto takeWorkers = [&](std::size_t lane) {
    if (lane == lanes) return static_cast<void>(univariates->FillDistributions());
    for (std::size_t i = lane == 0 ? 0 : next++; i < plan.size(); i = next++) {
      answers[i] = RunWorker(*plan[i]);
      if (answers[i].IsError()) throw Interrupted();  // the others are not wanted any more
    }
  };
  try {
    Threads::ForEach(lanes + (fillsBesideTests ? 1 : 0), takeWorkers);
  } catch (const Interrupted&) {
    const auto isFailure = [](const QDStatus& answer) {
      return answer.IsError() && answer.GetErrorCode() != kCancelled;
    };
    const auto failed = std::find_if(answers.begin(), answers.end(), isFailure);
    return failed == answers.end() ? QDStatus(kCancelled) : *failed;
  }
  return QDStatus();
}

QDStatus NPARPlanner::RunWorker(NPARTestWorker& worker) {
  WorkCancelSource source;
  CancelPair cancel{.source = &source};
  if (cancel.Check()) return QDStatus(kCancelled);
  const QDStatus run = worker.RunWorker(cancel);
  if (run.IsError()) return run;
  sortManager->Release(worker.GetSortVariable());  // no other worker takes this order
  if (cancel.Check()) return QDStatus(kCancelled);
  return worker.CollectResults();
}

QDStatus NPARPlanner::WriteOutput(std::ostream& stream, const NPARRunInfo& runInfo) {
  if (!executed || written) return QDStatus(catalogue::run::kNoResult);
  written = true;
  return GuardAllocation(kMemoryExhausted, [&] {
    std::vector<std::unique_ptr<XMLElement>> results = mainWorker->TakeResults();
    for (const auto& worker : sortedWorkers) {
      for (auto& element : worker->TakeResults()) results.push_back(std::move(element));
    }
    const UnivariateResults univariateResults(univariates.get());
    NPARResultWriter writer(variables, &univariateResults, std::move(results), analysisMissing,
                            sigLevel, confidenceLevel, weightIndex, caseIdIndex);
    return writer.Write(stream, ReadModelId(*settings), runInfo);
  });
}

std::int32_t NPARPlanner::GetVariableLevel(const std::string& name) {
  const IQDVariable* variable = variables->GetVarAt(variables->FindVariable(name));
  if (variable == nullptr) return 0;
  const VariableKind kind = variable->GetType();
  if (kind == VariableKind::Continuous || kind == VariableKind::NumericCategory ||
      kind == VariableKind::StringCategory) {
    return static_cast<std::int32_t>(kind);
  }
  status = QDStatus(catalogue::run::kUnfitVariable);
  return 0;
}

void NPARPlanner::RegisterStatistic(std::int32_t variable, Statistic statistic) {
  // A statistic that the variable refuses stays away from what the tests read.
  static_cast<void>(univariates->Register(variable, static_cast<std::int32_t>(statistic)));
}

void NPARPlanner::RegisterSortedVariable(std::int32_t variable) {
  static_cast<void>(sortManager->AddSortVariable(variable));  // a variable outside is left out
  for (const Statistic statistic : {Statistic::Distribution, Statistic::Minimum, Statistic::Maximum,
                                    Statistic::Mean, Statistic::MeanStdDev}) {
    RegisterStatistic(variable, statistic);
  }
}

void NPARPlanner::RegisterGroupVariable(std::int32_t variable) {
  sortManager->AddCompanion(variable);
  counted->AddCompanion(variable);
  RegisterStatistic(variable, Statistic::Frequencies);
}

void NPARPlanner::AddTest(std::unique_ptr<NPARTest> test) {
  test->SetEntryName(entryInHand);
  mainWorker->AddTest(std::move(test));
}

void NPARPlanner::AddSortedTest(std::unique_ptr<NPARTest> test, std::int32_t sortVariable,
                                QDStatus constructionStatus) {
  test->SetEntryName(entryInHand);
  const bool isFit = !constructionStatus.IsError() && sortManager->AddSortVariable(sortVariable);
  const auto sameOrder = std::find_if(
      sortedWorkers.begin(), sortedWorkers.end(),
      [&](const auto& worker) { return isFit && worker->GetSortVariable() == sortVariable; });
  if (sameOrder != sortedWorkers.end()) {
    (*sameOrder)->AddTest(std::move(test));
    return;
  }
  auto worker = std::make_unique<NPARTestWorker>(variables, analysisMissing);
  if (isFit) {
    worker->SetSortVariable(sortVariable, sortManager.get());
    worker->SetCountedRecords(counted.get());
    worker->SetExcerpts(std::make_unique<OrderExcerpts>(dataReader->Records(), sortVariable,
                                                        weightIndex, selecting));
  } else {
    ownWalks.push_back(memoIterator->Another());
    worker->SetRecords(ownWalks.back().get());
  }
  worker->AddTest(std::move(test));
  sortedWorkers.push_back(std::move(worker));
}
