#include "host/request/test_request.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <set>
#include <system_error>

#include "catalogue/catalogue.h"
#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/data/xml_writer.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

std::string Where(const catalogue::Card& test, const catalogue::Option& option) {
  return "option " + option.name + " of test " + test.name;
}

const catalogue::OptionWord* FindWord(const catalogue::Option& option, std::string_view word) {
  for (const catalogue::OptionWord& candidate : option.words) {
    if (candidate.word == word) return &candidate;
  }
  return nullptr;
}

const catalogue::OptionWord& RequireWord(const catalogue::Card& test,
                                         const catalogue::Option& option, const std::string& word) {
  if (const catalogue::OptionWord* found = FindWord(option, word)) return *found;
  std::vector<std::string> words;
  for (const catalogue::OptionWord& candidate : option.words) words.emplace_back(candidate.word);
  throw UsageError(Where(test, option) + " can't be " + Quoted(word) + "; it is " +
                   JoinWords(words));
}

void CheckNumber(const catalogue::Card& test, const catalogue::Option& option,
                 const std::string& text) {
  static_cast<void>(RequireNumber(text, Where(test, option)));
}

void CheckCount(const catalogue::Card& test, const catalogue::Option& option,
                const std::string& text) {
  int count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < 0) {
    throw UsageError(Where(test, option) + " must be a whole number from 0, not " + Quoted(text));
  }
}

void CheckExpected(const catalogue::Card& test, const catalogue::Option& option,
                   const std::string& text) {
  for (const std::string& pair : SplitWords(text, '|')) {
    std::string category, number;
    if (!CutAt(pair, '=', category, number)) {
      throw UsageError(Where(test, option) + " takes category=number pairs, as in expected=" +
                       option.syntax + ", not " + Quoted(pair));
    }
    if (!(RequireNumber(number, Where(test, option)) > 0.0)) {
      throw UsageError(Where(test, option) + ": the proportion of " + Quoted(Unescape(category)) +
                       " must be above 0");
    }
  }
}

void CheckValue(const catalogue::Card& test, const catalogue::Option& option,
                const std::string& value) {
  if (value.empty()) throw UsageError(Where(test, option) + " has no value");
  switch (option.kind) {
    case catalogue::OptionKind::Number:
      return CheckNumber(test, option, value);
    case catalogue::OptionKind::Count:
      return CheckCount(test, option, value);
    case catalogue::OptionKind::Categories:
      return;
    case catalogue::OptionKind::Expected:
      return CheckExpected(test, option, value);
    case catalogue::OptionKind::Word:
      static_cast<void>(RequireWord(test, option, value));
      return;
    case catalogue::OptionKind::Words:
      for (const auto& word : SplitWords(value, '|')) {
        static_cast<void>(RequireWord(test, option, word));
      }
      return;
    case catalogue::OptionKind::NumberOrWord:
      if (FindWord(option, value) == nullptr) CheckNumber(test, option, value);
      return;
  }
}

// Attributes of one test. A key that two options imply is written once.
class AttributeWriter {
 public:
  explicit AttributeWriter(pugi::xml_node structure) : structure(structure) {}

  void Add(const catalogue::Entry& entry) {
    if (entry.setting == nullptr) return;
    const catalogue::Text key = entry.setting->key;
    if (written.insert(key).second) AddText(key.c_str(), entry.value.c_str());
  }
  void AddText(const char* key, const char* value) {
    AddAttribute(NewAttribute(key), "value", value);
  }
  void AddCategories(const char* key, const std::string& values) {
    pugi::xml_node list = AddElement(NewAttribute(key), "ListValue");
    for (const std::string& value : SplitWords(values, '|')) {
      AddAttribute(AddElement(list, "Value"), "value", Unescape(value).c_str());
    }
  }
  void AddExpected(const char* key, const std::string& pairs) {
    pugi::xml_node list = AddElement(NewAttribute(key), "ListValue");
    for (const std::string& pair : SplitWords(pairs, '|')) {
      std::string category, number;
      CutAt(pair, '=', category, number);
      AttributeWriter item(AddElement(list, "StructuredValue"));
      item.AddText(catalogue::chi_square::kCategoryValue.key.c_str(), Unescape(category).c_str());
      item.AddText(catalogue::chi_square::kExpectedValue.key.c_str(), number.c_str());
    }
  }

 private:
  pugi::xml_node NewAttribute(const char* key) {
    pugi::xml_node attribute = AddElement(structure, "Attribute");
    AddAttribute(attribute, "name", key);
    return attribute;
  }

  pugi::xml_node structure;
  std::set<std::string_view> written;
};

void WriteOption(AttributeWriter& writer, const catalogue::Option& option,
                 const std::string& value) {
  if (const catalogue::OptionWord* word = FindWord(option, value)) {
    writer.Add(word->entry);
    return;
  }
  writer.Add(option.whenGiven);
  const char* const key =
      option.value.setting == nullptr ? nullptr : option.value.setting->key.c_str();
  switch (option.kind) {
    case catalogue::OptionKind::Categories:
      return writer.AddCategories(key, value);
    case catalogue::OptionKind::Expected:
      return writer.AddExpected(key, value);
    case catalogue::OptionKind::Word:
    case catalogue::OptionKind::Words:
      for (const auto& word : SplitWords(value, '|')) writer.Add(FindWord(option, word)->entry);
      return;
    case catalogue::OptionKind::Number:
    case catalogue::OptionKind::Count:
    case catalogue::OptionKind::NumberOrWord:
      return writer.AddText(key, value.c_str());
  }
}

}  // namespace

std::vector<std::string> TestNames() {
  std::vector<std::string> names;
  names.reserve(std::size(catalogue::kTests));
  for (const catalogue::Card* test : catalogue::kTests) names.emplace_back(test->name);
  return names;
}

TestRequest TestRequest::Parse(std::string_view text) {
  std::string name, assignments;
  CutAt(text, ':', name, assignments);
  const catalogue::Card* test = catalogue::FindTest(name);
  if (test == nullptr) {
    throw UsageError("there is no test " + Quoted(name) + NearMiss(name, TestNames()) +
                     " (npar tests lists them)");
  }
  TestRequest request(*test);
  for (const std::string& assignment : SplitWords(assignments, ',')) {
    request.AddOption(assignment);
  }
  if (catalogue::FindOption(*test, "group2") != nullptr &&
      request.HasOption("group1") != request.HasOption("group2")) {
    throw UsageError("test " + name + " needs both group1 and group2, or neither");
  }
  return request;
}

void TestRequest::AddOption(std::string_view assignment) {
  std::string name, value;
  CutAt(assignment, '=', name, value);
  const catalogue::Option* option = catalogue::FindOption(*test, name);
  if (option == nullptr) {
    std::vector<std::string> names;
    for (const catalogue::Option& known : test->options) names.emplace_back(known.name);
    throw UsageError(
        "test " + test->name + " has no option " + Quoted(name) + NearMiss(name, names) +
        (names.empty() ? "; it takes none" : "; it takes " + JoinWords(names, " and ")));
  }
  for (const auto& [earlier, ignored] : options) {
    if (earlier == option) throw UsageError(Where(*test, *option) + " is given twice");
  }
  CheckValue(*test, *option, value);
  options.emplace_back(option, value);
}

const std::string* TestRequest::FindGiven(std::string_view name) const {
  const auto given =
      std::ranges::find_if(options, [&](const auto& option) { return option.first->name == name; });
  return given == options.end() ? nullptr : &given->second;
}

std::string TestRequest::ValueOf(std::string_view name) const {
  const std::string* const given = FindGiven(name);
  return given == nullptr ? std::string() : *given;
}

std::vector<NamedCategory> TestRequest::NamedCategories() const {
  std::vector<NamedCategory> named;
  for (const auto& [option, value] : options) {
    const catalogue::OptionKind kind = option->kind;
    const bool isExpected = kind == catalogue::OptionKind::Expected;
    if (!isExpected && kind != catalogue::OptionKind::Categories) continue;
    for (const std::string& part : SplitWords(value, '|')) {
      std::string category = part, number;
      if (isExpected) CutAt(part, '=', category, number);
      named.push_back({std::string(option->name), Unescape(category)});
    }
  }
  return named;
}

void TestRequest::WriteTo(pugi::xml_node parameters) const {
  pugi::xml_node parameter = AddElement(parameters, "Parameter");
  AddAttribute(parameter, "name", test->key.c_str());
  AttributeWriter writer(AddElement(parameter, "StructuredValue"));
  writer.Add({catalogue::settings::kIsSelected, "true"});
  for (const catalogue::Option& option : test->options) {
    const auto given =
        std::ranges::find_if(options, [&](const auto& o) { return o.first == &option; });
    if (given == options.end()) {
      writer.Add(option.whenAbsent);
    } else {
      WriteOption(writer, option, given->second);
    }
  }
}

void AddParameter(pugi::xml_node parameters, std::string_view name, std::string_view value) {
  pugi::xml_node parameter = AddElement(parameters, "Parameter");
  AddAttribute(parameter, "name", std::string(name).c_str());
  AddAttribute(parameter, "value", std::string(value).c_str());
}

void AddListParameter(pugi::xml_node parameters, std::string_view name,
                      const std::vector<std::string>& values) {
  pugi::xml_node parameter = AddElement(parameters, "Parameter");
  AddAttribute(parameter, "name", std::string(name).c_str());
  pugi::xml_node list = AddElement(parameter, "ListValue");
  for (const std::string& value : values) {
    AddAttribute(AddElement(list, "Value"), "value", value.c_str());
  }
}

double RequireNumber(std::string_view text, const std::string& what) {
  double number = 0.0;
  if (!ParseNumber(text, number) || !std::isfinite(number)) {
    throw UsageError(what + " must be a number such as 0.5, not " + Quoted(text));
  }
  return number;
}

}  // namespace npar_host
