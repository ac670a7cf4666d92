#include "host/messages/messages.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "catalogue/catalogue.h"

namespace npar_host {
namespace {

/// A parameter as a reader may see it.
std::string Clean(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
  }
  return text;
}

std::string Quote(const std::string& text) { return '"' + text + '"'; }

std::string FieldName(const std::string& index, const FieldNames& fields) {
  std::size_t position = 0;
  const char* const end = index.data() + index.size();
  const auto [stop, error] = std::from_chars(index.data(), end, position);
  if (!fields || error != std::errc() || stop != end) return index;
  return fields(position).value_or(index);
}

/// Warnings about fields and tests that don't fit list the tests in their last parameter.
bool ListsTests(std::int32_t code, std::size_t parameters) {
  namespace run = catalogue::run;
  constexpr std::int32_t kWithTests[] = {
      run::kRelatedContinuousMismatch, run::kRelatedOrdinalMismatch, run::kRelatedNominalMismatch,
      run::kRelatedWithoutFields,      run::kOneSampleWithoutFields, run::kTestsSkipCategorical};
  const std::size_t wanted = code == run::kTestsSkipCategorical ? 2 : 1;
  return parameters == wanted && std::ranges::find(kWithTests, code) != std::end(kWithTests);
}

/// Tests by the names that a person asks for them by, for those that the component lists them by.
std::string AskedNames(std::string_view list) {
  constexpr std::string_view kJoint = " ,";  // as it stands in the message
  std::string names;
  while (!list.empty()) {
    const std::string_view name = list.substr(0, list.find(kJoint));
    list.remove_prefix(std::min(list.size(), name.size() + kJoint.size()));
    const auto* const card = std::ranges::find_if(
        catalogue::kTests, [&](const auto* each) { return each->warningName == name; });
    const bool isKnown = card != catalogue::kTests.end();
    if (!names.empty()) names += ", ";
    names += isKnown ? std::string_view((*card)->name) : name;
  }
  return names;
}

/// The parameters of one message, ready to be shown.
class Parameters {
 public:
  Parameters(std::span<const std::string> given, NamedParameters named, catalogue::Meaning meaning,
             const FieldNames& fields)
      : named(named) {
    for (const std::string& each : given) {
      std::string shown =
          Clean(meaning == catalogue::Meaning::Field ? FieldName(each, fields) : each);
      if (meaning != catalogue::Meaning::Plain) shown = Quote(shown);
      positional.push_back(std::move(shown));
    }
  }

  /// The parameter of the placeholder at the front of `rest` (behind its "%"), which is taken off.
  [[nodiscard]] std::optional<std::string> Take(std::string_view& rest) const {
    const char first = rest.empty() ? '\0' : rest.front();
    if (first == '*') {
      rest.remove_prefix(1);
      return positional.empty() ? std::nullopt : std::optional(All());
    }
    if (first >= '0' && first <= '9') {
      rest.remove_prefix(1);
      const auto place = static_cast<std::size_t>(first - '0');
      // An empty list says as little as none.
      const bool isTold = place < positional.size() && !positional[place].empty();
      return isTold ? std::optional(positional[place]) : std::nullopt;
    }
    const std::string_view name =
        rest.substr(0, rest.find_first_not_of("abcdefghijklmnopqrstuvwxyz"));
    rest.remove_prefix(name.size());
    const auto found = std::ranges::find(named, name, &NamedParameters::element_type::first);
    return found == named.end() ? std::nullopt : std::optional(Clean(found->second));
  }

  [[nodiscard]] std::string All() const {
    std::string all;
    for (const std::string& each : positional) all += (all.empty() ? "" : ", ") + each;
    return all;
  }

 private:
  std::vector<std::string> positional;
  NamedParameters named;
};

/// Fills `text` up to its end or a closing bracket; `isComplete` tells whether each placeholder had
/// its parameter.
std::string Fill(std::string_view& text, const Parameters& parameters, bool& isComplete) {
  std::string filled;
  while (!text.empty() && text.front() != ']') {
    const char c = text.front();
    text.remove_prefix(1);
    if (c == '%') {
      const std::optional<std::string> parameter = parameters.Take(text);
      isComplete = isComplete && parameter.has_value();
      filled += parameter.value_or("");
    } else if (c == '[') {
      bool isPartComplete = true;
      const std::string part = Fill(text, parameters, isPartComplete);
      text.remove_prefix(text.empty() ? 0 : 1);
      if (isPartComplete) filled += part;
    } else {
      filled += c;
    }
  }
  return filled;
}

}  // namespace

std::string FillMessage(std::int32_t code, std::span<const std::string> parameters,
                        NamedParameters named, const FieldNames& fields) {
  const catalogue::ToldCode* const told = catalogue::FindCode(code);
  std::string_view text = "a message that this host has no text for[: %*]";
  if (told != nullptr) text = told->code.text;
  std::vector<std::string> plain(parameters.begin(), parameters.end());
  if (ListsTests(code, plain.size())) plain.back() = AskedNames(plain.back());
  const Parameters shown(
      plain, named, told == nullptr ? catalogue::Meaning::Plain : told->code.parameters, fields);
  bool isComplete = true;
  return Fill(text, shown, isComplete);
}

}  // namespace npar_host
