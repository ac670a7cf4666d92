#pragma once

#include <string>
#include <vector>

#include "foundation/names.h"

/// Settings on one line, to be compared whole: "name=text", "name=2.5", "name=[a|b]", "name={...}",
/// with a blank behind each entry.
[[nodiscard]] inline std::string SettingsText(const QDSettings& settings) {
  std::string all;
  for (std::size_t i = 0; i < settings.Size(); ++i) {
    const QDSetting& setting = *settings.GetSettingAt(i);
    const IQDSettingValue& value = *setting.GetValue();
    std::string text;
    double number = 0.0;
    std::vector<std::string> texts;
    std::vector<QDSettings> trees;
    if (const QDSettings* const nested = value.GetListValue()) {
      text = "{" + SettingsText(*nested) + "}";
    } else if (value.Get(texts)) {
      for (const std::string& item : texts) text += (text.empty() ? "" : "|") + item;
      text = "[" + text + "]";
    } else if (value.Get(trees)) {
      for (const QDSettings& tree : trees) text += "{" + SettingsText(tree) + "}";
      text = "[" + text + "]";
    } else if (!value.Get(text) && value.Get(number)) {
      text = ReplaceSep(number, "%.15g");
    }
    all += setting.GetName() + "=" + text + " ";
  }
  return all;
}
