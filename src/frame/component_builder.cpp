#include "frame/component_builder.h"

#include <npar/component.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "catalogue/platform.h"
#include "catalogue/run.h"
#include "frame/factory.h"
#include "frame/progress_listener.h"
#include "frame/requirements.h"
#include "frame/settings_translator.h"
#include "kit/contract/allocation.h"
#include "kit/order/threads.h"
#include "report/result_writer.h"

using HbHelperV1::AskHost;

namespace {

// The platform's codes, which are told in words under the same numbers.
namespace told = catalogue::platform;
static_assert(told::kNoParameters == QDHB_700::kNoParameters);
static_assert(told::kUnreadableParameters == QDHB_700::kBadParameters);
static_assert(told::kNoDataModel == QDHB_700::kNoDataModel);
static_assert(told::kUnreadableDataModel == QDHB_700::kBadDataModel);
static_assert(told::kUnreadableRecords == QDHB_700::kIteratorFailed);
static_assert(told::kUnknownOperation == QDHB_700::kNotOffered);
static_assert(told::kBrokenIterator == HbHelperV1::DataHelper::kBrokenIterator);
static_assert(told::kHostThrew == HbHelperV1::kHostThrew);

constexpr std::uint32_t kFirstInput = 1;
constexpr const char* kContainerKey = "StatXML";
constexpr const char* kMediaType = "application/vnd.lyra.stat+xml";
constexpr const char* kFileName = "NPARstatxml.xml";

std::uint32_t NotOffered(std::int32_t* err) {
  *err = QDHB_700::kNotOffered;
  return NPAR_NO_HELPER;
}

std::uint32_t OrElse(std::uint32_t result, std::uint32_t fallback) {
  return result != HB_OK ? result : fallback;
}

}  // namespace

NPARComponentBuilder::NPARComponentBuilder(HBContext* context, HBHost* host)
    : QDPeer(context, host), progressListener(std::make_unique<NPARProgressListener>(this)) {}

NPARComponentBuilder::~NPARComponentBuilder() {
  inputAdapter.reset();
  algorithm.reset();
  modelSettings.reset();
  flatSettings.reset();
  progressListener.reset();
}

std::uint32_t NPARComponentBuilder::BuildModelSettings(const HbHelperV1::XMLDocument& document,
                                                       std::int32_t* err) {
  modelSettings = std::make_unique<QDSettings>();
  return QDSettingsFactory::MakeModelSettings(document, *modelSettings, err, GetProblemText());
}

std::uint32_t NPARComponentBuilder::Configure(std::int32_t* err) {
  ClearMsgs();
  GetCancelSource()->Set(false);
  if (ScanParameters(err) != HB_OK) return Fail(*err, NPAR_NOT_CONFIGURED, err);
  if (ParseDataModel(err, false, kFirstInput) != HB_OK) {
    return Fail(*err, NPAR_NOT_CONFIGURED, err);
  }
  MakeInputAdapter(false);
  if (!inputAdapter->BuildVarlist(err)) {
    return Fail(catalogue::platform::kNoVariables, NPAR_FAILED, err);
  }
  HbHelperV1::XMLDocument document;
  const std::uint32_t result =
      BuildExecutionRequirements(*modelSettings, inputAdapter->GetVarList(), document, err);
  if (result == HB_OK) SetExeRequirements(document);
  return result;
}

void NPARComponentBuilder::MakeInputAdapter(bool takeCounts) {
  inputAdapter = std::make_unique<QDHB_700::InputAdapter>(GetDataHelper(), GetDataModelParser(),
                                                          false, false, false, true, takeCounts);
}

std::uint32_t NPARComponentBuilder::BuildExecutionRequirements(const QDSettings& settings,
                                                               const QDVarList& variables,
                                                               HbHelperV1::XMLDocument& document,
                                                               std::int32_t* err) {
  std::vector<std::string> fields;
  std::uint32_t result = CollectRequestedFields(settings, variables, fields, err);
  if (result == HB_OK) result = CheckWeightNotAnalysed(variables, fields, err);
  if (result != HB_OK) return result;
  const auto helper = HbHelperV1::HostHelper::create(GetHBHostHandle());
  if (helper == nullptr) return NotOffered(err);
  document = helper->createNew(HbHelperV1::XMLElements::Execution);
  const RequestedFields requested{fields, caseIdField};
  AddMissingOperation(document, settings, variables, requested);
  const QDStatus encoded = AddEncodingOperation(document, variables, requested);
  return encoded.IsOK() ? HB_OK : Fail(encoded.GetErrorCode(), NPAR_NOT_CONFIGURED, err);
}

std::uint32_t NPARComponentBuilder::CollectRequestedFields(const QDSettings& settings,
                                                           const QDVarList& variables,
                                                           std::vector<std::string>& fields,
                                                           std::int32_t* err) {
  std::vector<std::string> independent;
  for (const catalogue::Setting* setting :
       {&catalogue::run::kOneSampleVariables, &catalogue::run::kRelatedVariables,
        &catalogue::run::kIndependentVariables}) {
    std::vector<std::string> names;
    static_cast<void>(
        settings.GetSettingValByName(setting->key, names));  // a list left out is empty
    for (const std::string& name : names) {
      if (std::find(fields.begin(), fields.end(), name) == fields.end()) fields.push_back(name);
    }
    independent = std::move(names);
  }
  std::int32_t problem = 0;
  if (!independent.empty()) {
    std::vector<std::string> group;
    static_cast<void>(settings.GetSettingValByName(catalogue::run::kGroupVariable.key, group));
    if (group.empty()) {
      problem = catalogue::run::kNoGroupField;
    } else {
      fields.push_back(group.front());  // also where it is an analysed field already
    }
  }
  if (problem == 0 && fields.empty()) problem = catalogue::run::kNoField;
  if (problem == 0) {
    fieldNames = fields;
    const bool areKnown = std::all_of(fields.begin(), fields.end(), [&](const std::string& name) {
      return variables.FindVariable(name) >= 0;
    });
    if (!areKnown) problem = catalogue::run::kUnknownField;
  }
  const std::uint32_t result = problem == 0 ? HB_OK : Fail(problem, NPAR_NOT_CONFIGURED, err);
  caseIdField.clear();
  static_cast<void>(settings.GetSettingValByName(catalogue::run::kCaseIdField.key, caseIdField));
  return result;
}

std::uint32_t NPARComponentBuilder::CheckWeightNotAnalysed(const QDVarList& variables,
                                                           const std::vector<std::string>& fields,
                                                           std::int32_t* err) {
  const IQDVariable* weight = variables.GetVarAt(variables.GetFreqWeightVariable());
  const bool isAnalysed = weight != nullptr && std::find(fields.begin(), fields.end(),
                                                         weight->GetName()) != fields.end();
  return isAnalysed ? Fail(catalogue::run::kWeightAnalysed, NPAR_NOT_CONFIGURED, err) : HB_OK;
}

std::uint32_t NPARComponentBuilder::BeginExecution(HBIterator* iterator, HBProgress* progress,
                                                   std::int32_t* err) {
  if (!IsConfigured()) return NPAR_NOT_CONFIGURED;
  ClearMsgs();
  // A cancel that came before the run is meant for it; with its end it is done with.
  struct CancelEnd {
    QDHB_700::QDCancelSource* source;
    ~CancelEnd() { source->Set(false); }
  } const cancelEnd{GetCancelSource()};
  SetDataHelper(std::make_unique<HbHelperV1::DataHelper>(iterator, true).release());
  SetProgressHandle(progress);
  progressListener->SetProgressHandle(progress);
  return RunExecution(err);
}

std::uint32_t NPARComponentBuilder::RunExecution(std::int32_t* err) {
  if (ParseDataModel(err, true, kFirstInput) != HB_OK) return Fail(*err, NPAR_FAILED, err);
  MakeInputAdapter(true);
  NPARFactory factory;
  if (const std::uint32_t result = PrepareAlgorithm(factory, err); result != HB_OK) return result;
  // The algorithm may look at the records as long as it lives on in this run.
  QDHB_700::QDPeerIterator records(GetDataHelper(), inputAdapter.get(), false);
  const std::uint32_t result = ExecuteAlgorithm(records, err);
  return result != HB_OK ? result : PublishResult(err);
}

std::uint32_t NPARComponentBuilder::PrepareAlgorithm(NPARFactory& factory, std::int32_t* err) {
  if (!inputAdapter->BuildVarlist(err)) {
    return Fail(catalogue::platform::kNoVariables, NPAR_FAILED, err);
  }
  if (const std::uint32_t result = TranslateSettings(err); result != HB_OK) return result;
  algorithm.reset();
  AddModelIdentifier();
  algorithm.reset(factory.CreateQDAlgorithm(*flatSettings, inputAdapter->GetVarList()));
  const std::uint32_t result = Check(factory.GetStatus(), err);
  return result == HB_OK && algorithm == nullptr ? NPAR_FAILED : result;
}

std::uint32_t NPARComponentBuilder::TranslateSettings(std::int32_t* err) {
  flatSettings = std::make_unique<QDSettings>();
  NPARSettingsTranslator translator(*modelSettings, inputAdapter->GetVarList(), *flatSettings);
  const QDStatus translated = translator.Run();
  const auto& codes = translator.GetWarningCodes();
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const std::uint32_t result = CollectMsgs(QDHB_700::kWarningMessage, codes[i].GetErrorCode(),
                                             translator.GetWarningParameters()[i], err);
    if (result != HB_OK) return result;
  }
  return Check(translated, err);
}

void NPARComponentBuilder::AddModelIdentifier() {
  HBContext* context = GetHBContextHandle();
  std::int64_t identifier = 0;
  std::int32_t ignored = 0;  // a host that has no number to give leaves 0 in the document
  if (HB_HAS(context, HBContextTable, newIdentifier)) {
    static_cast<void>(AskHost(
        &ignored, [&] { return context->table->newIdentifier(context, &identifier, &ignored); }));
  }
  // As a text, since a double rounds numbers above 2^53.
  flatSettings->AddNewSetting("NParStatXMLModelID", std::to_string(identifier), "");
}

std::size_t NPARComponentBuilder::AllowedThreads() const {
  constexpr std::uint32_t kMost = 1024;
  HBContext* context = GetHBContextHandle();
  if (!HB_HAS(context, HBContextTable, getThreadCount)) return 1;
  std::uint32_t count = 1;
  std::int32_t ignored = 0;  // one is always allowed
  const std::uint32_t asked =
      AskHost(&ignored, [&] { return context->table->getThreadCount(context, &count, &ignored); });
  return asked == HB_OK ? std::clamp(count, std::uint32_t{1}, kMost) : 1;
}

std::uint32_t NPARComponentBuilder::ExecuteAlgorithm(QDHB_700::QDPeerIterator& records,
                                                     std::int32_t* err) {
  const Threads threads(AllowedThreads());
  algorithm->SetCancelSource(GetCancelSource());
  algorithm->SetProgressListener(progressListener.get());
  const QDStatus status = algorithm->Execute(records, 0);
  // What was read before the host's records broke off is no sample of anything.
  if (records.GetHostError() != 0) {
    return OrElse(CollectMsgs(QDHB_700::kErrorMessage, QDHB_700::kIteratorFailed,
                              {std::to_string(records.GetHostError())}, err),
                  NPAR_FAILED);
  }
  if (records.GetDeliveredCount() == 0 && status.GetErrorCode() != kCancelled) {
    return Fail(catalogue::platform::kNoRecord, NPAR_FAILED, err);
  }
  return Check(status, err);
}

std::uint32_t NPARComponentBuilder::PublishResult(std::int32_t* err) {
  constexpr std::size_t kUsualSize = std::size_t{1} << 14;  // bytes
  std::string room;
  room.reserve(kUsualSize);
  std::ostringstream stream(std::move(room));
  NPARRunInfo runInfo;
  QDHB_700::QDPeerHostInfo hostInfo;
  std::int32_t ignored = 0;  // a host may fail to name itself, and to close what it has taken
  if (GetHostInformation(hostInfo, &ignored) == HB_OK) {
    runInfo.applicationName = hostInfo.name;
    runInfo.applicationVersion = hostInfo.version;
    runInfo.copyright = hostInfo.copyright;
  }
  const std::uint32_t written = Check(algorithm->WriteOutput(stream, runInfo), err);
  if (written != HB_OK) return written;

  HBContext* context = GetHBContextHandle();
  HBContainerFile* container = nullptr;
  if (!HB_HAS(context, HBContextTable, getOutputContainer)) return NotOffered(err);
  const std::uint32_t asked = AskHost(err, [&] {
    return context->table->getOutputContainer(context, kContainerKey, 1, &container, err);
  });
  if (asked != HB_OK) return asked;
  const auto helper = HbHelperV1::ContainerHelper::create(container);
  if (helper == nullptr) return NotOffered(err);
  const std::uint32_t result = helper->putString(
      nullptr, helper->constructMetadata(kMediaType, kFileName), std::move(stream).str(), err);
  if (HB_HAS(container, HBContainerFileTable, close)) {
    static_cast<void>(
        AskHost(&ignored, [&] { return container->table->close(container, &ignored); }));
  }
  return result;
}

std::uint32_t NPARComponentBuilder::EndExecution(std::int32_t* err) {
  SetDataHelper(nullptr);
  inputAdapter.reset();
  algorithm.reset();
  flatSettings.reset();
  GetCancelSource()->Set(false);
  *err = 0;
  return HB_OK;
}

std::uint32_t NPARComponentBuilder::ReportNoMemory(std::int32_t* err) noexcept {
  *err = kMemoryExhausted;
  try {
    return Fail(kMemoryExhausted, NPAR_FAILED, err);
  } catch (...) {
    return NPAR_FAILED;
  }
}

std::uint32_t NPARComponentBuilder::CollectStatus(QDStatus status, std::int32_t* err) {
  if (status.IsError()) {
    return CollectMsgs(QDHB_700::kErrorMessage, status.GetErrorCode(), err);
  }
  if (!status.IsWarning()) return HB_OK;
  std::uint32_t result = HB_OK;
  for (std::size_t i = 0; result == HB_OK && i < algorithm->GetWarnings().statuses.size(); ++i) {
    result = CollectMsgs(QDHB_700::kWarningMessage,
                         algorithm->GetWarnings().statuses[i].GetErrorCode(), err);
  }
  return result;
}

std::uint32_t NPARComponentBuilder::Fail(std::int32_t code, std::uint32_t fallback,
                                         std::int32_t* err) {
  return OrElse(CollectMsgs(QDHB_700::kErrorMessage, code, err), fallback);
}

std::uint32_t NPARComponentBuilder::Check(QDStatus status, std::int32_t* err) {
  const std::uint32_t result = CollectStatus(status, err);
  return result == HB_OK && status.IsError() ? NPAR_FAILED : result;
}
