#include "host/data/near_miss.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr std::size_t kMostEdits = 2;
constexpr std::size_t kLongestName = 64;  // bounds the quadratic comparison

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lower;
}

/// Edits from one text to the other, a swap of neighbours being one.
std::size_t Edits(std::string_view a, std::string_view b) {
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> current(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool isSame = a[i - 1] == b[j - 1];
      current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + (isSame ? 0U : 1U)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        current[j] = std::min(current[j], beforeLast[j - 2] + 1);
      }
    }
    beforeLast.swap(last);
    last.swap(current);
  }
  return last[b.size()];
}

}  // namespace

std::string NearMiss(std::string_view unknown, const std::vector<std::string>& names) {
  if (unknown.size() > kLongestName) return {};
  const std::string lower = LowerCase(unknown);
  std::size_t fewest = kMostEdits + 1;
  const std::string* closest = nullptr;
  for (const std::string& name : names) {
    const std::size_t longer = std::max(name.size(), lower.size());
    if (longer - std::min(name.size(), lower.size()) > kMostEdits) continue;
    const std::size_t edits = Edits(lower, LowerCase(name));
    // A name with as many edits as letters has nothing in common with the other.
    if (edits < fewest && edits < longer) {
      fewest = edits;
      closest = &name;
    }
  }
  return closest == nullptr ? std::string() : "; did you mean " + Quoted(*closest) + "?";
}

}  // namespace npar_host
