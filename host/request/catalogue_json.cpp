#include "host/request/catalogue_json.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "catalogue/catalogue.h"

namespace npar_host {
namespace {

using Json = nlohmann::ordered_json;

Json TextOrNull(catalogue::Text text) { return text.empty() ? Json() : Json(std::string(text)); }

Json RangeOf(const catalogue::Range& range) {
  Json bounds = Json::object();
  if (std::isfinite(range.low)) bounds[range.holdsEnds ? "from" : "above"] = range.low;
  if (std::isfinite(range.high)) bounds[range.holdsEnds ? "to" : "below"] = range.high;
  return bounds;
}

Json EntryOf(const catalogue::Entry& entry) {
  if (entry.setting == nullptr) return {};
  return {{"key", std::string(entry.setting->key)}, {"value", TextOrNull(entry.value)}};
}

const char* KindName(catalogue::OptionKind kind) {
  switch (kind) {
    case catalogue::OptionKind::Number:
      return "number";
    case catalogue::OptionKind::Count:
      return "count";
    case catalogue::OptionKind::Categories:
      return "categories";
    case catalogue::OptionKind::Expected:
      return "expected";
    case catalogue::OptionKind::Word:
      return "word";
    case catalogue::OptionKind::Words:
      return "words";
    case catalogue::OptionKind::NumberOrWord:
      break;
  }
  return "number or word";
}

Json OptionOf(const catalogue::Option& option) {
  const catalogue::Setting* const setting = option.value.setting;
  Json words = Json::array();
  for (const catalogue::OptionWord& each : option.words) {
    words.push_back({{"word", std::string(each.word)}, {"sets", EntryOf(each.entry)}});
  }
  return {{"name", std::string(option.name)},
          {"type", KindName(option.kind)},
          {"key", setting == nullptr ? Json() : Json(std::string(setting->key))},
          {"range", setting == nullptr ? Json::object() : RangeOf(setting->range)},
          {"words", words},
          {"setsWhenGiven", EntryOf(option.whenGiven)},
          {"setsWhenAbsent", EntryOf(option.whenAbsent)},
          {"syntax", std::string(option.syntax)},
          {"default", std::string(option.byDefault)},
          {"help", std::string(option.help)}};
}

Json FieldsOf(const catalogue::Fields& fields) {
  Json measures = Json::array();
  const unsigned taken = fields.measures;
  if ((taken & catalogue::kContinuous) != 0) measures.push_back("continuous");
  if ((taken & catalogue::kOrdinal) != 0) measures.push_back("ordinal");
  if ((taken & catalogue::kNominal) != 0) measures.push_back("nominal");
  const std::size_t most = fields.most;
  const catalogue::Groups groups = fields.groups;
  return {{"measures", measures},
          {"fewest", static_cast<std::size_t>(fields.fewest)},
          {"most", most == catalogue::kAnyCount ? Json() : Json(most)},
          {"groups", groups == catalogue::Groups::None  ? "none"
                     : groups == catalogue::Groups::Two ? "two"
                                                        : "several"},
          {"description", std::string(fields.description)}};
}

Json TestOf(const catalogue::Card& test) {
  Json options = Json::array();
  for (const catalogue::Option& option : test.options) options.push_back(OptionOf(option));
  Json codes = Json::array();
  for (const catalogue::Card* card : catalogue::kCards) {
    if (card->key != test.key) continue;  // with it come those that it brings along
    for (const catalogue::Code& code : card->codes) {
      codes.push_back({{"code", code.number},
                       {"kind", std::string(KindName(code.kind))},
                       {"text", std::string(code.text)},
                       {"remedy", std::string(code.remedy)}});
    }
  }
  const bool decides = test.purpose == catalogue::Purpose::HypothesisTest;
  return {{"name", std::string(test.name)},
          {"title", std::string(test.title)},
          {"family", std::string(FamilyName(test.family))},
          {"purpose", decides ? "hypothesis test" : "estimate"},
          {"key", std::string(test.key)},
          {"element", std::string(test.element)},
          {"fields", FieldsOf(test.fields)},
          {"options", options},
          {"effectSize", TextOrNull(test.effectSize.name)},
          {"codes", codes}};
}

}  // namespace

std::string CatalogueJson(const catalogue::Card* only) {
  Json tests = Json::array();
  for (const catalogue::Card* test : catalogue::kTests) {
    if (only == nullptr || only == test) tests.push_back(TestOf(*test));
  }
  return Json{{"tests", tests}}.dump(2) + "\n";
}

}  // namespace npar_host
