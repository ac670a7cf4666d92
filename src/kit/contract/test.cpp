#include "kit/contract/test.h"

#include <algorithm>
#include <utility>

#include "catalogue/run.h"

QDStatus NPARTest::BeginPass() {
  if (pass > 0) {
    if (!HasFailed()) StartPass();
    return status;
  }
  const SettingsReader reader(settings.get());
  sigLevel = reader.Get("sigLevel", sigLevel);
  confidenceLevel = reader.Get("confidenceLevel", confidenceLevel);
  wantsExtended = reader.Get(catalogue::run::kExtendedFigures);
  weight = RecordWeight(reader.Index("weightVariableIndex"));
  passesLeft = 1;
  Prepare(reader);
  if (HasFailed()) passesLeft = 0;
  return status;
}

QDStatus NPARTest::ProcessBatch(RecordBatch& batch) {
  if (HasFailed()) return status;
  if (countsAlone) tally->Take(batch);
  if (pass == 0) {
    Take(batch);
  } else {
    TakeAgain(batch);
  }
  return status;
}

QDStatus NPARTest::ProcessRecord(const Record& record) {
  RowBatch one(record);
  return ProcessBatch(one);
}

QDStatus NPARTest::EndPass() {
  if (HasFailed()) return status;
  --passesLeft;
  if (countsAlone) tally->EndPass();
  if (pass == 0) {
    Compute();
  } else {
    Finish();
  }
  if (wantsExtended && passesLeft == 0 && !HasFailed()) Extend(extended);
  ++pass;
  return status;
}

void NPARTest::GetRequiredVariables(std::vector<std::int64_t>& positions) const {
  positions.insert(positions.end(), required.begin(), required.end());
}

void NPARTest::AddMessages(const std::vector<NPARMessage>& list) {
  for (const NPARMessage& message : list) AddMessage(message);
}

void NPARTest::AddMessage(const NPARMessage& message) {
  const bool isError = message.kind == MessageKind::Error;
  if (isError && HasFailed()) return;
  if (std::find(messages.begin(), messages.end(), message) != messages.end()) return;
  messages.push_back(message);
  if (!isError) return;
  status = message.status;
  passesLeft = 0;
}

void NPARTest::ReportStatus(QDStatus newStatus, MessageKind kind) {
  AddMessage(NPARMessage{newStatus, kind, {}, {}});
}

void NPARTest::Fail(std::int32_t code, std::vector<std::string> parameters) {
  AddMessage({QDStatus(code), MessageKind::Error, std::move(parameters), {}});
}

void NPARTest::Warn(std::int32_t code, std::vector<std::string> parameters) {
  AddMessage({QDStatus(code), MessageKind::Warning, std::move(parameters), {}});
}

void NPARTest::Help(std::int32_t code, std::vector<std::string> parameters) {
  AddMessage({QDStatus(code), MessageKind::Help, std::move(parameters), {}});
}
