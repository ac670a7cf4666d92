#include "report/messages.h"

#include "report/elements.h"

namespace {

const char* KindText(MessageKind kind) {
  switch (kind) {
    case MessageKind::Warning:
      return "warning";
    case MessageKind::Help:
      return "helpMessage";
    case MessageKind::Error:
      break;
  }
  return "error";
}

}  // namespace

void WriteMessages(XMLElement& algorithm, const std::vector<NPARMessage>& messages) {
  if (messages.empty()) return;
  XMLElement* table = AddStructuredTable(algorithm, "WarningMessages");
  for (const NPARMessage& message : messages) {
    XMLElement* entry = AddStructuredTable(*table, "Message");
    AddAttributeRow(*entry, "code", message.status.GetErrorCode());
    AddAttributeRow(*entry, "type", KindText(message.kind));
    AddAttributeRow(*entry, "paramNum", message.params.size());
    AddParameterRows(*entry, message.params);
    for (const auto& [name, value] : message.namedParams) AddAttributeRow(*entry, name, value);
  }
}
