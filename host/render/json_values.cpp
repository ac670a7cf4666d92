#include "host/render/json_values.h"

#include <cmath>
#include <cstdint>

#include "host/render/wording.h"

namespace npar_host {

std::string Key(std::string_view name) {
  std::string key(name);
  if (!key.empty() && key[0] >= 'A' && key[0] <= 'Z') key[0] = static_cast<char>(key[0] + 32);
  return key;
}

Json Number(double number) {
  constexpr double kLastExactInteger = 9007199254740992.0;  // 2^53
  if (!std::isfinite(number)) return nullptr;
  if (number == std::trunc(number) && std::abs(number) <= kLastExactInteger) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

Json Cell(std::string_view text) {
  const auto number = FigureNumber(text);
  if (number && std::isfinite(*number)) return Number(*number);
  const std::string shown = FigureText(text);
  return shown.empty() ? Json(nullptr) : Json(shown);
}

void AddFigure(Json& object, const std::string& key, std::string_view text) {
  const Json cell = Cell(text);
  if (cell.is_string()) {
    object[key] = nullptr;
    object[key + "Text"] = cell;
  } else {
    object[key] = cell;
  }
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json Figures(const std::vector<ResultStatistic>& figures) {
  Json object = Json::object();
  for (const ResultStatistic& figure : figures) {
    // A cross table's own entries are codes, which its titles tell in words.
    if (figure.group == "CategoryFieldsComparison") continue;
    Json& target = figure.group.empty() ? object : object[Key(figure.group)];
    AddFigure(target, Key(figure.name), figure.text);
  }
  return object;
}

}  // namespace npar_host
