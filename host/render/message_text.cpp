#include "host/render/message_text.h"

namespace npar_host {

std::string MessageText(std::int32_t code, const std::vector<std::string>& parameters) {
  std::string text = "message " + std::to_string(code);
  for (const std::string& parameter : parameters) text += " \"" + parameter + "\"";
  return text;
}

}  // namespace npar_host
