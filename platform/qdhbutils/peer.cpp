#include "foundation/peer.h"

#include <npar/component.h>

namespace QDHB_700 {

using HbHelperV1::AskHost;

namespace {

std::uint32_t NotOffered(std::int32_t* err) {
  *err = kNotOffered;
  return HB_FAILED;
}

std::uint32_t Answer(const std::string& text, char* buffer, std::size_t capacity,
                     std::size_t* needed) {
  return HbHelperV1::FillBuffer(text, buffer, capacity, needed) ? HB_OK : NPAR_BUFFER_TOO_SMALL;
}

const char* TypeWord(std::int32_t type) { return type == kWarningMessage ? "warning" : "error"; }

}  // namespace

QDPeer::QDPeer(HBContext* context, HBHost* host) : context(context), host(host) {}

QDPeer::~QDPeer() = default;

std::uint32_t QDPeer::Configure(std::int32_t* err) { return ScanParameters(err); }

std::uint32_t QDPeer::GetDataModel(std::int32_t, char* buffer, std::size_t capacity,
                                   std::size_t* needed, std::int32_t*) {
  HbHelperV1::XMLDocument model;
  model.addElement("DataModel");  // no output has records, so none has fields
  std::string text;
  model.doc2string(text);
  return Answer(text, buffer, capacity, needed);
}

std::uint32_t QDPeer::GetExecutionRequirements(char* buffer, std::size_t capacity,
                                               std::size_t* needed, std::int32_t*) {
  if (!IsConfigured()) return NPAR_NOT_CONFIGURED;
  return Answer(requirements, buffer, capacity, needed);
}

std::uint32_t QDPeer::GetInputIterator(std::uint32_t index, HBIterator** iterator,
                                       std::int32_t* err) {
  *iterator = nullptr;
  if (context == nullptr || !HB_HAS(context, HBContextTable, getInputIterator)) {
    return NotOffered(err);
  }
  const std::uint32_t result =
      AskHost(err, [&] { return context->table->getInputIterator(context, index, iterator, err); });
  return result == HB_OK && *iterator == nullptr ? HB_FAILED : result;
}

std::uint32_t QDPeer::BeginExecution(HBIterator** iterators, HBProgress* handle,
                                     std::int32_t* err) {
  if (iterators == nullptr) return NPAR_NULL_ARGUMENT;
  return BeginExecution(iterators[0], handle, err);
}

std::uint32_t QDPeer::BeginExecution(HBIterator*, HBProgress*, std::int32_t* err) {
  return NotOffered(err);
}

std::uint32_t QDPeer::EndExecution(std::int32_t*) {
  SetDataHelper(nullptr);
  return HB_OK;
}

std::uint32_t QDPeer::CancelExecution(std::int32_t*) {
  cancelSource.Set(true);
  return HB_OK;
}

std::uint32_t QDPeer::NextRecord(std::int32_t*) { return HB_END_OF_RECORDS; }

std::uint32_t QDPeer::GetRecordValue(std::size_t, const void**, std::size_t*, std::int32_t*) {
  return HB_END_OF_RECORDS;
}

std::uint32_t QDPeer::GetErrorDetail(char* buffer, std::size_t capacity, std::size_t* needed,
                                     std::int32_t*) {
  HbHelperV1::XMLDocument document;
  document.addElement("Messages");
  for (const Message& message : messages) {
    HbHelperV1::XMLElement element = document.addElement("Message");
    element.addAttribute("type", std::string(TypeWord(message.type)));
    element.addAttribute("code", message.code);
    for (const std::string& parameter : message.parameters) {
      element.addElement("Parameter").addAttribute("value", parameter);
    }
  }
  std::string text;
  document.doc2string(text);
  return Answer(text, buffer, capacity, needed);
}

std::uint32_t QDPeer::GetPSMControlInformation(char*, std::size_t, std::size_t*,
                                               std::int32_t* err) {
  return NotOffered(err);
}

std::uint32_t QDPeer::PSMMerge(std::int32_t* err) { return NotOffered(err); }

std::uint32_t QDPeer::GetWorkerTask(HBWorker*, std::int32_t* err) { return NotOffered(err); }

std::uint32_t QDPeer::GetWorkerDataModel(HBWorker*, HBXML**, std::int32_t* err) {
  return NotOffered(err);
}

std::uint32_t QDPeer::GetWorkerIterator(HBWorker*, HBIterator**, std::int32_t* err) {
  return NotOffered(err);
}

std::uint32_t QDPeer::ReadWorkerInputContainer(HBWorker*, std::int32_t* err) {
  return NotOffered(err);
}

std::uint32_t QDPeer::FollowOnTaskStartExe(HBWorker*, std::int32_t* err) { return NotOffered(err); }

std::uint32_t QDPeer::FollowOnTaskEndExe(HBWorker*, std::int32_t* err) { return NotOffered(err); }

std::uint32_t QDPeer::GetIteratorRequirements(std::int32_t* inputs, std::int32_t* passes,
                                              std::int32_t* order, std::int32_t*) {
  if (inputs == nullptr || passes == nullptr || order == nullptr) return NPAR_NULL_ARGUMENT;
  *inputs = 1;
  *passes = NPAR_READ_REPEATEDLY;
  *order = NPAR_STORED_ORDER;
  return HB_OK;
}

std::uint32_t QDPeer::GetInputFieldsFixed(bool* isFixed, std::int32_t*) {
  *isFixed = true;
  return HB_OK;
}

std::uint32_t QDPeer::GetRecordSynchronizedProcessing(bool* isSynchronized, std::int32_t*) {
  *isSynchronized = false;
  return HB_OK;
}

std::uint32_t QDPeer::GetWorkerTaskNumber(std::int32_t* number, std::int32_t*) {
  *number = 0;
  return HB_OK;
}

std::uint32_t QDPeer::BuildModelSettings(const HbHelperV1::XMLDocument&, std::int32_t*) {
  return HB_OK;
}

std::uint32_t QDPeer::Report_Progress(double done, double total, std::int32_t* err, std::int32_t) {
  if (progress == nullptr || !HB_HAS(progress, HBProgressTable, report)) return HB_OK;
  return AskHost(err, [&] { return progress->table->report(progress, done, total, err); });
}

std::uint32_t QDPeer::CollectMsgs(std::int32_t type, std::int32_t code, std::int32_t* err) {
  if (code == kBadParameters || code == kBadDataModel) {
    return CollectMsgs(type, code, {problem}, err);
  }
  return CollectMsgs(type, code, {}, err);
}

std::uint32_t QDPeer::CollectMsgs(std::int32_t type, std::int32_t code,
                                  const std::vector<std::string>& parameters, std::int32_t* err) {
  messages.push_back({type, code, parameters});
  std::uint32_t answer = HB_OK;
  if (context != nullptr && HB_HAS(context, HBContextTable, deliverMessage)) {
    std::vector<const char*> texts;
    texts.reserve(parameters.size());
    for (const std::string& parameter : parameters) texts.push_back(parameter.c_str());
    answer = AskHost(err, [&] {
      return context->table->deliverMessage(context, type, code, texts.data(), texts.size(), err);
    });
  }
  if (answer == HB_OK && type == kErrorMessage) *err = code;
  return answer;
}

void QDPeer::ClearMsgs() noexcept { messages.clear(); }

std::uint32_t QDPeer::ScanParameters(std::int32_t* err) {
  requirements.clear();
  problem.clear();
  HBXML* handle = nullptr;
  if (context == nullptr || !HB_HAS(context, HBContextTable, getParameters) ||
      AskHost(err, [&] { return context->table->getParameters(context, &handle, err); }) != HB_OK ||
      handle == nullptr) {
    *err = kNoParameters;
    return HB_FAILED;
  }
  return BuildModelSettings(HbHelperV1::XMLDocument(handle), err);
}

std::uint32_t QDPeer::ParseDataModel(std::int32_t* err, bool withCounts, std::uint32_t number) {
  HBXML* handle = nullptr;
  if (context == nullptr || !HB_HAS(context, HBContextTable, getDataModel) ||
      AskHost(err,
              [&] { return context->table->getDataModel(context, number - 1, &handle, err); }) !=
          HB_OK ||
      handle == nullptr) {
    *err = kNoDataModel;
    return HB_FAILED;
  }
  if (parser.Parse(HbHelperV1::XMLDocument(handle), withCounts, problem)) return HB_OK;
  *err = kBadDataModel;
  return HB_FAILED;
}

void QDPeer::SetExeRequirements(const HbHelperV1::XMLDocument& document) {
  document.doc2string(requirements);
}

void QDPeer::SetDataHelper(HbHelperV1::DataHelper* helper) { dataHelper.reset(helper); }

std::uint32_t QDPeer::GetHostInformation(QDPeerHostInfo& info, std::int32_t* err) {
  if (host == nullptr || !HB_HAS(host, HBHostTable, getInformation)) return NotOffered(err);
  HBHostInformation answer{};
  const std::uint32_t result =
      AskHost(err, [&] { return host->table->getInformation(host, &answer, err); });
  if (result != HB_OK) return result;
  const auto text = [](const char* given) { return std::string(given == nullptr ? "" : given); };
  info = {text(answer.name), text(answer.version), text(answer.copyright), text(answer.vendor),
          text(answer.serialNumber)};
  return HB_OK;
}

}  // namespace QDHB_700
