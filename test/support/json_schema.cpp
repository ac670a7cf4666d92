#include "support/json_schema.h"

#include <algorithm>
#include <regex>
#include <set>

namespace {

using Json = nlohmann::json;

bool HasType(const Json& value, const std::string& type) {
  if (type == "number") return value.is_number();
  if (type == "integer") return value.is_number_integer();
  return type == value.type_name();
}

class Validator {
 public:
  explicit Validator(const Json& root) : root(root) {}

  std::string Breach(const Json& value, const Json& schema, const std::string& place) const {
    if (schema.is_boolean()) return schema.get<bool>() ? "" : place + ": not allowed";
    static const std::string kWords =
        " $schema $ref $defs title description type const enum anyOf required properties items "
        "patternProperties additionalProperties ";
    for (const auto& [word, ignored] : schema.items()) {
      if (kWords.find(" " + word + " ") == std::string::npos)
        return place + ": the schema uses " + word;
    }
    if (schema.contains("$ref")) {
      const Json::json_pointer target(schema["$ref"].get<std::string>().substr(1));
      const std::string breach = Breach(value, root.at(target), place);
      if (!breach.empty()) return breach;
    }
    if (schema.contains("type")) {
      const Json types = schema["type"].is_array() ? schema["type"] : Json{schema["type"]};
      const bool fits =
          std::ranges::any_of(types, [&](const Json& type) { return HasType(value, type); });
      if (!fits) return place + ": " + value.dump() + " is no " + types.dump();
    }
    if (schema.contains("const") && value != schema["const"]) return place + ": " + value.dump();
    if (schema.contains("enum") && std::ranges::find(schema["enum"], value) == schema["enum"].end())
      return place + ": " + value.dump() + " is none of " + schema["enum"].dump();
    if (schema.contains("anyOf")) {
      const bool fits = std::ranges::any_of(
          schema["anyOf"], [&](const Json& each) { return Breach(value, each, place).empty(); });
      if (!fits) return place + ": " + value.dump() + " fits none of the choices";
    }
    if (value.is_object()) return ObjectBreach(value, schema, place);
    if (value.is_array() && schema.contains("items")) {
      for (std::size_t i = 0; i < value.size(); ++i) {
        const auto breach = Breach(value[i], schema["items"], place + '/' + std::to_string(i));
        if (!breach.empty()) return breach;
      }
    }
    return {};
  }

 private:
  std::string ObjectBreach(const Json& value, const Json& schema, const std::string& place) const {
    for (const Json& key : schema.value("required", Json::array())) {
      if (!value.contains(key)) return place + ": lacks " + key.get<std::string>();
    }
    const Json properties = schema.value("properties", Json::object());
    const Json patterns = schema.value("patternProperties", Json::object());
    for (const auto& [key, member] : value.items()) {
      const std::string memberPlace = place + '/' + key;
      const Json* rule = properties.contains(key) ? &properties[key] : nullptr;
      for (const auto& [pattern, patternRule] : patterns.items()) {
        if (rule == nullptr && std::regex_search(key, std::regex(pattern))) rule = &patternRule;
      }
      if (rule == nullptr && schema.contains("additionalProperties")) {
        rule = &schema["additionalProperties"];
      }
      const std::string breach = rule == nullptr ? "" : Breach(member, *rule, memberPlace);
      if (!breach.empty()) return breach;
    }
    return {};
  }

  const Json& root;
};

}  // namespace

std::string SchemaBreach(const nlohmann::json& value, const nlohmann::json& schema) {
  return Validator(schema).Breach(value, schema, "");
}
