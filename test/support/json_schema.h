#pragma once

#include <nlohmann/json.hpp>
#include <string>

/// What breaks a JSON Schema, as "/place: what", empty for a valid document. It knows the words
/// that schema/report.schema.json uses ($ref, type, const, enum, anyOf, properties, required,
/// patternProperties for an ending, additionalProperties, items) and refuses any other.
[[nodiscard]] std::string SchemaBreach(const nlohmann::json& value, const nlohmann::json& schema);
