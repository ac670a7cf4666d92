#include "kit/contract/test.h"

#include <algorithm>

void NPARTest::AddMessages(const std::vector<NPARMessage>& list) {
  for (const NPARMessage& message : list) AddMessage(message);
}

void NPARTest::AddMessage(const NPARMessage& message) {
  if (status.IsError()) return;
  if (std::find(messages.begin(), messages.end(), message) != messages.end()) return;
  messages.push_back(message);
  if (message.kind == MessageKind::Error) {
    status = message.status;
    passesLeft = 0;
  }
}

void NPARTest::ReportStatus(QDStatus newStatus, MessageKind kind) {
  AddMessage(NPARMessage{newStatus, kind, {}, {}});
}
