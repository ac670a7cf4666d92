// What the catalogue says, as pages and parts of pages; scripts/generate compiles and runs it.
// generate [--check]: in the root of the tree.

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.h"

namespace {

using namespace catalogue;

std::string Number(double number) {
  char digits[32];
  return {digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr};
}

std::string Code(std::string_view text) { return '`' + std::string(text) + '`'; }

std::vector<std::string> Split(std::string_view words) {
  std::istringstream stream{std::string(words)};
  std::vector<std::string> parts;
  for (std::string part; std::getline(stream, part, '|');) parts.push_back(part);
  return parts;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

// Messages.

std::string Messages() {
  std::ostringstream page;
  page << "# Messages\n\n"
          "What each code says and what to do about it; `npar explain CODE` prints the same. `%0`, "
          "`%1`\nstand for the parameters of a message, `%*` for all of them, `%group` for the one "
          "of that name;\na part in brackets is left out where its parameters are not given.\n\n"
          "An error of a run leaves no result; an error of a test leaves the other tests "
          "standing.\n";
  std::string_view source;
  for (const ToldCode& told : kCodes) {
    if (std::string_view(told.source) != source) {
      source = told.source;
      page << "\n## " << source
           << "\n\n| code | kind | what is wrong | what to do |\n|---|---|---|---|\n";
    }
    page << "| " << told.code.number << " | " << std::string_view(KindName(told.code.kind)) << " | "
         << std::string_view(told.code.text) << " | " << std::string_view(told.code.remedy)
         << " |\n";
  }
  return page.str();
}

// Parameters.

std::string TypeText(Type type) {
  switch (type) {
    case Type::Flag:
      return "flag";
    case Type::Number:
      return "number";
    case Type::Count:
      return "whole number";
    case Type::Word:
      return "word";
    case Type::Field:
      return "field";
    case Type::Fields:
      return "list of fields";
    case Type::Categories:
      return "list of categories";
    case Type::Expected:
      return "list of structures";
    case Type::Value:
      break;
  }
  return "category";
}

std::string RangeText(const Setting& setting) {
  if (setting.type == Type::Flag) return "`true`, `false`";
  if (setting.type == Type::Word) {
    std::vector<std::string> words;
    for (const std::string& word : Split(setting.values)) words.push_back(Code(word));
    return Joined(words);
  }
  const Range range = setting.range;
  std::string text;
  if (std::isfinite(range.low)) text = (range.holdsEnds ? "from " : "above ") + Number(range.low);
  if (std::isfinite(range.high)) {
    text += (text.empty() ? "" : ", ") + std::string(range.holdsEnds ? "up to " : "below ") +
            Number(range.high);
  }
  if (text.empty() && setting.type == Type::Number) text = "any";
  return text;
}

std::string DefaultText(const Setting& setting) {
  const Default& byDefault = setting.byDefault;
  if (byDefault.text.empty()) return Code(Number(byDefault.number));
  const bool isWord = setting.type == Type::Flag || setting.type == Type::Word;
  const std::string text(std::string_view(byDefault.text));
  return isWord && text.find(' ') == std::string::npos ? Code(text) : text;
}

std::string Example(const Setting& setting, const std::string& element) {
  const std::string begin = "<" + element + " name=\"" + setting.key + "\"";
  const auto value = [](const std::string& text) { return " value=\"" + text + "\"/>"; };
  switch (setting.type) {
    case Type::Fields:
    case Type::Categories: {
      std::string text = begin + "><ListValue>";
      for (const std::string& item : Split(setting.example)) text += "<Value" + value(item);
      return text + "</ListValue></" + element + ">";
    }
    case Type::Expected: {
      std::string text = begin + "><ListValue>";
      for (const std::string& item : Split(setting.example)) {
        const std::size_t equals = item.find('=');
        text += "<StructuredValue><Attribute name=\"categoryValue\"" +
                value(item.substr(0, equals)) + "<Attribute name=\"expectedValue\"" +
                value(item.substr(equals + 1)) + "</StructuredValue>";
      }
      return text + "</ListValue></" + element + ">";
    }
    default:
      return begin + value(std::string(std::string_view(setting.example)));
  }
}

std::string SettingCells(const Setting& setting) {
  return Code(setting.key) + " | " + TypeText(setting.type) + " | " + RangeText(setting) + " | " +
         DefaultText(setting) + " | " + setting.meaning;
}

/// The name under which a person asks for what reads the setting.
std::string ReaderName(const Card& card) {
  for (const Card* test : kTests) {
    if (test->key == card.key) return Code(test->name);
  }
  return {};
}

using Readers = std::vector<std::pair<const Setting*, std::vector<std::string>>>;

Readers AllReaders() {
  Readers readers;
  const auto add = [&](const Card& card, Settings settings) {
    for (const Setting* setting : settings) {
      auto found = std::ranges::find(readers, setting, &Readers::value_type::first);
      if (found == readers.end()) found = readers.insert(found, {setting, {}});
      const std::string name = ReaderName(card);
      if (std::ranges::find(found->second, name) == found->second.end()) {
        found->second.push_back(name);
      }
    }
  };
  for (const Card* card : kCards) {
    add(*card, card->settings);
    add(*card, card->categoricalSettings);
    add(*card, card->continuousSettings);
  }
  add(chi_square::kCard, chi_square::kItemSettings);
  readers.push_back({&settings::kIsSelected, {"each test"}});
  std::ranges::stable_sort(readers, {}, [](const auto& reader) {
    std::string key(std::string_view(reader.first->key));
    std::ranges::transform(key, key.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return key;
  });
  return readers;
}

std::string Parameters() {
  std::ostringstream page;
  page << R"(# Parameters

Every key of the parameter document, which a host hands to the component and `npar run` takes;
[schema/parameters.xsd](../schema/parameters.xsd) is its form. `npar analyse --keep-documents DIR` writes the document
that its options ask for, and `npar tests --json` tells the same keys to programs.

```xml
<Parameters>
  <Parameter name="sigLevel" value="0.05"/>
  <Parameter name="confidenceLevel" value="95"/>
  <Parameter name="independentVariables"><ListValue><Value value="score"/></ListValue></Parameter>
  <Parameter name="groupVariable"><ListValue><Value value="region"/></ListValue></Parameter>
  <Parameter name="isAutomaticallyIndependent" value="false"/>
  <Parameter name="IKruskalWallis"><StructuredValue>
    <Attribute name="isSelected" value="true"/>
    <Attribute name="typeOfMultipleComparison" value="pairWise"/>
  </StructuredValue></Parameter>
</Parameters>
```

A parameter holds a value, a list or a structure. A value is text, read as the type that its key has: a number in the C
locale, `true` or `false`. A key that holds another type is taken for absent. The order matters in one
place: the test keys of a family stand directly behind its flag (`isAutomaticallyOneSample` and its
like); the first other key ends them.

## Keys of a run

| key | type | range | default | meaning | example |
|---|---|---|---|---|---|
)";
  for (const Setting* setting : run::kSettings) {
    page << "| " << SettingCells(*setting) << " | " << Code(Example(*setting, "Parameter"))
         << " |\n";
  }
  page << R"(
`npar` refuses a `sigLevel` that is no number between 0 and 1, and a `confidenceLevel` that is no percentage from 1 to
below 100; the component itself takes any number as it stands.

## Keys of tests

Each holds a structure of the keys below.

| key | test | name for `npar` | fields | keys that it reads |
|---|---|---|---|---|
)";
  for (const Card* test : kTests) {
    std::vector<std::string> keys;
    for (const Card* card : kCards) {
      if (!(card->key == test->key)) continue;
      for (const Settings& list :
           {card->settings, card->categoricalSettings, card->continuousSettings}) {
        for (const Setting* setting : list) {
          const std::string key = Code(setting->key);
          if (std::ranges::find(keys, key) == keys.end()) keys.push_back(key);
        }
      }
    }
    page << "| " << Code(test->key) << " | [" << std::string_view(test->title) << "](statistics/"
         << std::string_view(test->page) << ") | " << Code(test->name) << " | "
         << std::string_view(FamilyName(test->family)) << ": "
         << std::string_view(test->fields.description) << " | " << Joined(keys) << " |\n";
  }
  page << R"(
## Keys inside a test's structure

| key | type | range | default | meaning | read by | example |
|---|---|---|---|---|---|---|
)";
  for (const auto& [setting, names] : AllReaders()) {
    page << "| " << SettingCells(*setting) << " | " << Joined(names) << " | "
         << Code(Example(*setting, "Attribute")) << " |\n";
  }
  return page.str();
}

// Parts of other files.

std::string ElementNames() {
  std::string lines;
  for (const Card* card : kCards) {
    if (FindElement(card->element) != card) continue;
    lines += "      <xs:enumeration value=\"" + card->element + "\"/>\n";
  }
  return lines;
}

/// Names a test in the row of what is the same of several.
void AddTo(std::vector<std::pair<std::string, std::string>>& rows, const std::string& what,
           std::string_view test) {
  const auto found = std::ranges::find(rows, what, &std::pair<std::string, std::string>::first);
  if (found == rows.end()) {
    rows.emplace_back(what, Code(test));
  } else {
    found->second += ", " + Code(test);
  }
}

std::string OptionTable() {
  std::vector<std::pair<std::string, std::string>> rows;  // options, tests that have them
  for (const Card* test : kTests) {
    std::vector<std::string> names;
    for (const Option& option : test->options) names.push_back(Code(option.name));
    AddTo(rows, names.empty() ? "none" : Joined(names), test->name);
  }
  std::string table = "| test | options |\n|---|---|\n";
  for (const auto& [options, tests] : rows) table += "| " + tests + " | " + options + " |\n";
  return table;
}

/// How an effect size is formed, and between what it lies.
std::string FormulaCells(EffectFormula formula) {
  const std::string byRoot = "z / √N [7]";
  switch (formula) {
    case EffectFormula::None:
      break;
    case EffectFormula::MeanRanks:
      return "2 (M2 - M1) / N, M1 and M2 the groups' mean ranks; the same as 2 U / (n1 n2) - 1 [1] "
             "| -1 to 1; above 0: the second group tends to larger values";
    case EffectFormula::SignedRanks:
    case EffectFormula::PairedSignedRanks:
      return "(T+ - T-) / (T+ + T-), T+ and T- the rank sums of the positive and negative "
             "differences, T+ + T- = n (n + 1) / 2 with n differences not zero [2] | -1 to 1; "
             "above "
             "0: differences tend to be positive";
    case EffectFormula::EpsilonSquared:
      return "H / (N - 1), which is H (N + 1) / (N² - 1) [3] | 0 to 1";
    case EffectFormula::Concordance:
      return "Q / (N (k - 1)) [4] | 0 to 1";
    case EffectFormula::GivenConcordance:
      return "what the test gives [4] | 0 to 1";
    case EffectFormula::ChangedProportion:
      return "max(b, c) / (b + c) - 1/2, b and c the records that changed class [5] | 0 to 0.5";
    case EffectFormula::ProportionAngles:
      return "2 asin √p - 2 asin √p0, p the observed and p0 the hypothesised proportion of the "
             "first class [5] | -π to π; above 0: more of the first class than hypothesised";
    case EffectFormula::RootOfChiSquare:
      return "√(χ² / N) [5, 6] | from 0; to 1 where the table has two columns";
    case EffectFormula::StandardisedByN:
      return byRoot + " | its sign is that of z";
    case EffectFormula::UntiedStandardised:
      return byRoot + ", without ties between the groups | its sign is that of z";
  }
  return {};
}

std::string EffectSizeTable() {
  std::vector<std::pair<std::string, std::string>> rows;  // what the size is, tests that have it
  for (const Card* test : kTests) {
    const EffectSize& effect = test->effectSize;
    if (effect.formula == EffectFormula::None) continue;
    std::string name(std::string_view(effect.name));
    const std::string symbol(std::string_view(effect.symbol));
    if (!name.ends_with(' ' + symbol)) name += ", " + symbol;
    const std::string cells = name + " | " + FormulaCells(effect.formula);
    AddTo(rows, cells, test->name);
  }
  std::string table = "| tests | effect size | formula | range |\n|---|---|---|---|\n";
  for (const auto& [cells, tests] : rows) table += "| " + tests + " | " + cells + " |\n";
  return table;
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The file with what stands between two comments that name scripts/generate replaced.
std::string WithPart(const std::string& path, const std::string& part) {
  std::string text = Content(path);
  const std::size_t mark = text.find("<!-- scripts/generate");
  const std::size_t begin = text.find('\n', mark) + 1;
  const std::size_t lineOfEnd = text.rfind('\n', text.find("<!-- end -->", begin)) + 1;
  return text.replace(begin, lineOfEnd - begin, part);
}

/// The page with the test's title for its heading.
std::string WithHeading(const std::string& path, std::string_view title) {
  const std::string text = Content(path);
  return "# " + std::string(title) + text.substr(std::min(text.find('\n'), text.size()));
}

}  // namespace

int main(int count, char** arguments) {
  const bool checks = count > 1 && std::string_view(arguments[1]) == "--check";
  std::vector<std::pair<std::string, std::string>> files = {
      {"docs/messages.md", Messages()},
      {"docs/parameters.md", Parameters()},
      {"docs/command_line.md", WithPart("docs/command_line.md", OptionTable())},
      {"docs/effect_sizes.md", WithPart("docs/effect_sizes.md", EffectSizeTable())},
      {"schema/statxml-7.0.xsd", WithPart("schema/statxml-7.0.xsd", ElementNames())},
  };
  for (const Card* card : kCards) {
    if (FindElement(card->element) != card) continue;
    const std::string path = "docs/statistics/" + std::string(std::string_view(card->page));
    files.emplace_back(path, WithHeading(path, ElementTitle(*card)));
  }
  int stale = 0;
  for (const auto& [path, text] : files) {
    if (!checks) {
      std::ofstream(path, std::ios::binary) << text;
    } else if (Content(path) != text) {
      std::cerr << path << " is not what the catalogue says: run scripts/generate\n";
      stale = 1;
    }
  }
  return stale;
}
