#include "planning/planner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

#include "catalogue/catalogue.h"
#include "kit/contract/allocation.h"
#include "planning/test_construction.h"
#include "planning/warning.h"
#include "report/result_writer.h"

namespace {

// The tests' part of the whole run's progress.
constexpr double kTestsStart = 0.25;
constexpr double kTestsSpan = 0.65;

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

/// Ends a run that is cancelled wherever it is at work.
class CancelInterruption final : public Interruption {
 public:
  explicit CancelInterruption(CancelPair& cancelPair) noexcept : cancelPair(cancelPair) {}

 private:
  bool ShallStop() override { return cancelPair.Check(); }
  CancelPair& cancelPair;
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
  const CancelInterruption interruption(cancelPair);
  status = GuardAllocation(kNoMemory, [&] { return PrepareRun(records); });
  if (status.IsOK()) {
    // A construct function may set the status of the run, which a success does not take back.
    const QDStatus built = GuardAllocation(kNoMemory, [this] { return BuildTests(); });
    if (!built.IsOK()) status = built;
  }
  if (status.IsOK()) status = GuardAllocation(kMemoryExhausted, [this] { return RunTests(); });
  executed = !status.IsError();
  if (univariates != nullptr) univariates->SetSortedData(nullptr);
  counted.reset();
  sortManager.reset();
  memoIterator.reset();
  dataReader.reset();
  hostRecords.reset();
  return status;
}

QDStatus NPARPlanner::PrepareRun(RecordIterator& records) {
  ReadRunSettings();
  std::vector<std::int32_t> allVariables(static_cast<std::size_t>(variables->Size()));
  std::iota(allVariables.begin(), allVariables.end(), 0);
  hostRecords = std::make_unique<IteratorBatches>(records);
  dataReader = std::make_unique<InitialDataReader>(hostRecords.get(), !analysisMissing,
                                                   std::move(allVariables), variables);
  const QDStatus read = dataReader->Read();
  if (read.IsError()) return read;

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
    mainWorker->SetRecords(memoIterator.get());
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

QDStatus NPARPlanner::RunTests() {
  static_cast<void>(univariates->Run());  // a summary that failed shows in what reads it
  ReleaseOrdersOfSummaries();
  return RunWorkers();
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
  std::size_t total = 0;
  for (NPARTestWorker* worker : plan) {
    worker->SetSharedData(std::make_unique<UnivariateResults>(univariates.get()));
    total += worker->TestCount();
  }

  double start = kTestsStart;
  for (NPARTestWorker* worker : plan) {
    const double share =
        static_cast<double>(worker->TestCount()) * kTestsSpan / static_cast<double>(total);
    worker->SetProgressRange(progressListener, start, share);
    if (cancelPair.Check()) return QDStatus(kCancelled);
    const QDStatus run = worker->RunWorker(cancelPair);
    if (run.IsError()) return run;
    sortManager->Release(worker->GetSortVariable());  // no other worker takes this order
    if (cancelPair.Check()) return QDStatus(kCancelled);
    const QDStatus collected = worker->CollectResults();
    if (collected.IsError()) return collected;
    start += share;
  }
  return QDStatus();
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
  worker->SetRecords(memoIterator.get());
  if (isFit) {
    worker->SetSortVariable(sortVariable, sortManager.get());
    worker->SetCountedRecords(counted.get());
  }
  worker->AddTest(std::move(test));
  sortedWorkers.push_back(std::move(worker));
}
