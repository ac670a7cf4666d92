#include "host/data/join_words.h"

namespace npar_host {

std::string JoinWords(const std::vector<std::string>& words, std::string_view lastJoint,
                      std::string_view joint) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 == words.size() ? lastJoint : joint;
    text += words[i];
  }
  return text;
}

}  // namespace npar_host
