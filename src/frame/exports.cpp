#include <npar/component.h>

#include <string>

#include "catalogue/platform.h"
#include "foundation/export.h"
#include "foundation/host_helpers.h"
#include "frame/component_builder.h"
#include "frame/component_factory.h"
#include "frame/linked.h"
#include "kit/contract/allocation.h"

namespace {

HBHost* host = nullptr;  // from hb_initialise; never cleared

/// Calls into a component. Null gives `nullCode`; what is thrown, which is a lack of memory,
/// becomes a message. A host that wants no code may leave `err` null.
template <typename Call>
std::uint32_t CallComponent(void* component, std::int32_t* err, Call call,
                            std::uint32_t nullCode = NPAR_NULL_ARGUMENT) noexcept {
  if (component == nullptr) return nullCode;
  auto& builder = *static_cast<NPARComponentBuilder*>(component);
  std::int32_t unread = 0;
  if (err == nullptr) err = &unread;
  try {
    return call(builder, err);
  } catch (...) {
    return builder.ReportNoMemory(err);
  }
}

/// A call into a component in which there may be no other such call: not from a callback of the
/// host's, which would pull the ground from under the call in hand, and not from another thread.
template <typename Call>
std::uint32_t CallAlone(void* component, std::int32_t* err, Call call) noexcept {
  if (component == nullptr) return NPAR_NULL_ARGUMENT;
  auto& builder = *static_cast<NPARComponentBuilder*>(component);
  if (!builder.Enter()) return NPAR_BUSY;
  const std::uint32_t result = CallComponent(component, err, call);
  builder.Leave();
  return result;
}

std::string ModuleInformation(const HbHelperV1::HostHelper& helper) {
  HbHelperV1::XMLDocument document = helper.createNew("ModuleInformation");
  HbHelperV1::XMLElement module = document.addElement("Module");
  module.addAttribute("name", std::string("NPAR"));
  module.addAttribute("provider", std::string("LYRA"));
  module.addAttribute("version", std::string("1.0.0.0"));
  module.addAttribute("copyright", std::string("Copyright (c) Lyra"));
  std::string text;
  document.doc2string(text);
  return text;
}

/// Asks the host, through the component's context, to carry out the execution requirements before a
/// run.
std::uint32_t AnnounceRequirements(const NPARComponentBuilder& component, std::int32_t* err) {
  constexpr std::int32_t kWantsRequirements = 21;
  HBContext* context = component.GetHBContextHandle();
  if (!HB_HAS(context, HBContextTable, setCodes)) return HB_OK;
  return HbHelperV1::AskHost(
      err, [&] { return context->table->setCodes(context, &kWantsRequirements, 1, err); });
}

}  // namespace

QD_EXPORT uint32_t hb_getModuleInformation(char* buffer, size_t capacity, size_t* needed,
                                           int32_t* err) {
  try {
    const auto helper = HbHelperV1::HostHelper::create(host);
    if (helper == nullptr) return NPAR_NO_HOST_HELPER;
    const bool isFilled =
        HbHelperV1::FillBuffer(ModuleInformation(*helper), buffer, capacity, needed);
    return isFilled ? HB_OK : NPAR_BUFFER_TOO_SMALL;
  } catch (...) {
    if (err != nullptr) *err = kMemoryExhausted;
    return NPAR_FAILED;
  }
}

std::uint32_t EndLinkedComponent(void* component) {
  if (component == nullptr) return NPAR_NULL_ARGUMENT;
  auto* const builder = static_cast<NPARComponentBuilder*>(component);
  if (!builder->Enter()) return NPAR_BUSY;
  delete builder;
  return HB_OK;
}

extern "C" {

QD_EXPORT uint32_t hb_initialise(HBHost* newHost) {
  if (newHost == nullptr) return NPAR_NULL_ARGUMENT;
  host = newHost;
  return HB_OK;
}

QD_EXPORT uint32_t hb_cleanup(void) { return HB_OK; }

QD_EXPORT uint32_t hb_create_component(HBContext* context, void*, void** component, int32_t* err) {
  if (component == nullptr) return NPAR_NULL_ARGUMENT;
  NPARComponentFactory factory;
  NPARComponentBuilder* made = factory.CreateComponent(context, host);
  if (made == nullptr) {
    if (err != nullptr) *err = catalogue::platform::kNotMade;
    return NPAR_FAILED;
  }
  *component = made;
  return HB_OK;
}

QD_EXPORT uint32_t hb_destroy_component(void* component) {
  if (component == nullptr) return NPAR_NULL_ARGUMENT;
  if (!static_cast<NPARComponentBuilder*>(component)->Enter()) return NPAR_BUSY;
  ::operator delete(component);  // the storage alone: hosts end a run first
  return HB_OK;
}

QD_EXPORT uint32_t hb_component_configure(void* component, int32_t* err) {
  return CallAlone(component, err, [](NPARComponentBuilder& builder, std::int32_t* code) {
    const std::uint32_t result = builder.Configure(code);
    return result != HB_OK ? result : AnnounceRequirements(builder, code);
  });
}

QD_EXPORT uint32_t hb_component_getDataModel(void* component, int32_t index, char* buffer,
                                             size_t capacity, size_t* needed, int32_t* err) {
  return CallComponent(component, err, [=](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.GetDataModel(index, buffer, capacity, needed, code);
  });
}

QD_EXPORT uint32_t hb_component_getExecutionRequirements(void* component, char* buffer,
                                                         size_t capacity, size_t* needed,
                                                         int32_t* err) {
  return CallComponent(component, err, [=](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.GetExecutionRequirements(buffer, capacity, needed, code);
  });
}

QD_EXPORT uint32_t hb_component_getIteratorRequirements(void* component, int32_t* inputs,
                                                        int32_t* passes, int32_t* order,
                                                        int32_t* err) {
  return CallComponent(component, err, [=](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.GetIteratorRequirements(inputs, passes, order, code);
  });
}

QD_EXPORT uint32_t hb_component_beginExecution(void* component, HBProgress* progress,
                                               int32_t* err) {
  return CallAlone(component, err, [=](NPARComponentBuilder& builder, std::int32_t* code) {
    HBIterator* records = nullptr;
    if (builder.GetInputIterator(0, &records, code) != HB_OK) return NPAR_NULL_ARGUMENT;
    return builder.BeginExecution(records, progress, code);
  });
}

QD_EXPORT uint32_t hb_component_cancelExecution(void* component, int32_t* err) {
  return CallComponent(component, err, [](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.CancelExecution(code);
  });
}

QD_EXPORT uint32_t hb_component_endExecution(void* component, int32_t* err) {
  return CallAlone(component, err, [](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.EndExecution(code);
  });
}

QD_EXPORT uint32_t hb_component_nextRecord(void* component, int32_t* err) {
  return CallComponent(component, err, [](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.NextRecord(code);
  });
}

QD_EXPORT uint32_t hb_component_getRecordValue(void* component, size_t index, const void** value,
                                               size_t* size, int32_t* err) {
  return CallComponent(component, err, [=](NPARComponentBuilder& builder, std::int32_t* code) {
    return builder.GetRecordValue(index, value, size, code);
  });
}

QD_EXPORT uint32_t hb_component_getMessages(void* component, char* buffer, size_t capacity,
                                            size_t* needed, int32_t* err) {
  return CallComponent(
      component, err,
      [=](NPARComponentBuilder& builder, std::int32_t* code) {
        return builder.GetErrorDetail(buffer, capacity, needed, code);
      },
      NPAR_NULL_MESSAGE_ARGUMENT);
}

}  // extern "C"
