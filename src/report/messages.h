#pragma once

#include <vector>

#include "foundation/names.h"
#include "kit/contract/message.h"

/// Appends the table "WarningMessages", a "Message" each, to a test's element; nothing without
/// messages.
void WriteMessages(XMLElement& algorithm, const std::vector<NPARMessage>& messages);
