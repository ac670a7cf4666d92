#include "kit/summaries/univariate.h"

#include <algorithm>
#include <atomic>

#include "kit/contract/allocation.h"
#include "kit/contract/stage_progress.h"
#include "kit/order/threads.h"
#include "kit/records/batch_source.h"

namespace {

/// Stands for any reason to refuse a statistic; never leaves this file.
constexpr std::int32_t kRefused = 1;

constexpr double kFirstPass = 0.6;  // its part of the time

template <typename Variable, typename Result, typename Class>
Result Ask(const Variable* variable, Result (Class::*read)() const noexcept, Result absent) {
  return variable == nullptr ? absent : (variable->*read)();
}

}  // namespace

// The run's summaries.

bool QDUnivariateSummaries::Register(std::int32_t variableIndex, std::int32_t statistic) noexcept {
  const QDStatus registered = GuardAllocation(kNoMemory, [&] {
    const QDStatus refused(kRefused);
    const IQDVariable* variable =
        variables == nullptr ? nullptr : variables->GetVarAt(variableIndex);
    if (variable == nullptr) return refused;
    const bool isContinuous = variable->GetType() == VariableKind::Continuous;
    // A summary enters the list when it stands: a lack of memory leaves no empty place.
    auto found = summaries.find(variableIndex);
    if (found == summaries.end()) {
      std::unique_ptr<QDUnivariateVariable> made;
      if (isContinuous) {
        made = std::make_unique<QDContUnivariateVariable>(variableIndex, weightIndex);
      } else if (variable->IsCategorical()) {
        made = std::make_unique<QDCateUnivariateVariable>(variableIndex, weightIndex,
                                                          variable->GetCategoryCount());
      }
      if (made == nullptr) return refused;
      found = summaries.emplace(variableIndex, std::move(made)).first;
    }
    QDUnivariateVariable* summary = found->second.get();
    const auto asked = static_cast<Statistic>(statistic);
    if (isContinuous &&
        (asked == Statistic::Median || asked == Statistic::Quartiles || asked == Statistic::All)) {
      if (sortedData == nullptr) return refused;
      summary->SetSortedData(sortedData);
      summary->SetCountedRecords(counted);
    }
    static_cast<void>(summary->AddStatistic(statistic));  // an unfit one adds nothing
    return QDStatus();
  });
  if (registered.GetErrorCode() == kNoMemory) ranOutOfMemory = true;
  return registered.IsOK();
}

void QDUnivariateSummaries::SetWeightVariable(std::int32_t index) {
  weightIndex = index;
  for (auto& [variable, summary] : summaries) summary->SetWeightVariable(index);
}

std::unique_ptr<BatchSource> QDUnivariateSummaries::WalkCells(std::int32_t variable) {
  if (counted == nullptr) return nullptr;
  const bool isContinuous = variables->GetVarAt(variable)->GetType() == VariableKind::Continuous;
  return counted->WalkCells({&variable, 1}, isContinuous ? variable : ICountedRecords::kAnyOrder);
}

bool QDUnivariateSummaries::ReadRecords() {
  std::vector<QDUnivariateVariable*> reading;
  bool any = false;
  for (auto& [variable, summary] : summaries) {
    if (!summary->NeedsPass()) continue;
    const auto cells = WalkCells(variable);
    if (cells == nullptr) {
      reading.push_back(summary.get());
    } else {
      any = ForEachBatch(
                *cells, [&taking = *summary](RecordBatch& batch) { taking.ProcessBatch(batch); }) ||
            any;
    }
  }
  if (reading.empty() || records == nullptr) return any;
  const bool isWorthIt = Threads::AreWorthIt(records->Count());
  std::vector<std::unique_ptr<BatchSource>> others;
  while (isWorthIt && others.size() + 1 < std::min(Threads::Count(), reading.size())) {
    others.push_back(records->Another());
    if (others.back() != nullptr) continue;
    others.pop_back();
    break;
  }
  const std::size_t walks = others.size() + 1;
  std::atomic<bool> hasAny{any};
  Threads::ForEach(walks, [&](std::size_t walk) {
    BatchSource& source = walk == 0 ? *records : *others[walk - 1];
    WalkProgress progress(source.Count());
    const bool hasRecords = ForEachBatch(source, [&](RecordBatch& batch) {
      for (std::size_t i = walk; i < reading.size(); i += walks) reading[i]->ProcessBatch(batch);
      progress.Step(batch.Size());
    });
    if (hasRecords) hasAny = true;
  });
  return hasAny;
}

QDStatus QDUnivariateSummaries::Run() {
  const QDStatus status = RunFirstPass();
  return status.IsOK() ? FillDistributions() : status;
}

QDStatus QDUnivariateSummaries::RunFirstPass() {
  const StagePart progress(0.0, kFirstPass);
  return RunPass();
}

QDStatus QDUnivariateSummaries::FillDistributions() {
  const StagePart progress(kFirstPass, 1.0);
  QDStatus status;
  while (status.IsOK() && wantsPass) status = RunPass();
  return status;
}

QDStatus QDUnivariateSummaries::RunPass() {
  wantsPass = false;
  if (!ReadRecords()) return QDStatus();
  bool isAnyLeft = false;
  for (auto& [variable, summary] : summaries) {
    if (!summary->NeedsPass()) break;
    const QDStatus ended = summary->EndPass();
    if (!ended.IsOK()) return ended;
    isAnyLeft = isAnyLeft || summary->NeedsPass();
  }
  wantsPass = isAnyLeft;
  return QDStatus();
}

const QDUnivariateVariable* QDUnivariateSummaries::Find(std::int32_t variableIndex) const {
  const auto found = summaries.find(variableIndex);
  return found == summaries.end() ? nullptr : found->second.get();
}

const QDContUnivariateVariable* QDUnivariateSummaries::FindContinuous(
    std::int32_t variableIndex) const {
  return dynamic_cast<const QDContUnivariateVariable*>(Find(variableIndex));
}

const QDCateUnivariateVariable* QDUnivariateSummaries::FindCategorical(
    std::int32_t variableIndex) const {
  return dynamic_cast<const QDCateUnivariateVariable*>(Find(variableIndex));
}

// What tests read.

std::int64_t UnivariateResults::GetTotalWeight(std::int32_t variable) const {
  return Ask(summaries->Find(variable), &QDUnivariateVariable::GetTotalWeight, std::int64_t{-1});
}

bool UnivariateResults::HasVariable(std::int32_t variable) const {
  return summaries->Find(variable) != nullptr;
}

double UnivariateResults::GetMean(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetMean,
             QDMV::gMissingValue);
}

double UnivariateResults::GetMaximum(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetMaximum,
             QDMV::gMissingValue);
}

double UnivariateResults::GetMinimum(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetMinimum,
             QDMV::gMissingValue);
}

double UnivariateResults::GetMedian(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetMedian,
             QDMV::gMissingValue);
}

double UnivariateResults::GetFirstQuartile(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetFirstQuartile,
             QDMV::gMissingValue);
}

double UnivariateResults::GetThirdQuartile(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetThirdQuartile,
             QDMV::gMissingValue);
}

double UnivariateResults::GetStdDev(std::int32_t variable) const {
  return Ask(summaries->FindContinuous(variable), &QDContUnivariateVariable::GetStdDev,
             QDMV::gMissingValue);
}

const std::vector<HistogramBin>* UnivariateResults::GetBins(std::int32_t variable) const {
  const QDContUnivariateVariable* summary = summaries->FindContinuous(variable);
  return summary == nullptr ? nullptr : &summary->GetBins();
}

std::int32_t UnivariateResults::GetMedianCategory(std::int32_t variable) const {
  return Ask(summaries->FindCategorical(variable), &QDCateUnivariateVariable::GetMedianCategory,
             std::int32_t{-1});
}

std::int64_t UnivariateResults::GetLargestFrequency(std::int32_t variable) const {
  return Ask(summaries->FindCategorical(variable), &QDCateUnivariateVariable::GetLargestFrequency,
             std::int64_t{-1});
}

bool UnivariateResults::GetFrequencies(std::int32_t variable,
                                       std::map<std::int32_t, std::int64_t>& out) const {
  const QDCateUnivariateVariable* summary = summaries->FindCategorical(variable);
  if (summary == nullptr) return false;
  out = summary->GetFrequencies();
  return true;
}

std::int32_t UnivariateResults::GetCategoryCount(std::int32_t variable) const {
  return Ask(summaries->FindCategorical(variable), &QDCateUnivariateVariable::GetCategoryCount,
             std::int32_t{-1});
}
