#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "foundation/names.h"

/// Kinds of a test's message.
enum class MessageKind : std::uint32_t { Error = 0, Warning = 1, Help = 2 };

/// A message of a test, to be told by its host in words.
struct NPARMessage {
  QDStatus status;
  MessageKind kind = MessageKind::Error;
  /// "%0", "%1", ... of the host's text.
  std::vector<std::string> params;
  /// Further parameters: name, value.
  std::vector<std::pair<std::string, std::string>> namedParams;

  friend bool operator==(const NPARMessage&, const NPARMessage&) = default;
};
