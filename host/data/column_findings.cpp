#include "host/data/column_findings.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "host/data/input_error.h"
#include "host/data/number.h"

namespace npar_host {
namespace {

constexpr std::size_t kFewValues = 11;  // as a scale from 0 to 10 has
constexpr std::size_t kFewestOfScale = 3;
constexpr double kLargestOfScale = 10.0;
constexpr std::size_t kMostCompared = 1000;  // texts

/// Stops at the first value too many, as a rule after a few records.
std::vector<double> FewValues(const Column& column) {
  std::vector<double> values;
  const bool areMany = column.numbers.Any([&](double value) {
    if (value == kMissingNumber) return false;
    const auto place = std::ranges::lower_bound(values, value);
    if (place != values.end() && *place == value) return false;
    values.insert(place, value);
    return values.size() > kFewValues;
  });
  return areMany ? std::vector<double>() : values;
}

void CountStrays(const Column& column, const NumberNotation& notation, ColumnFindings& findings) {
  const TextPool& texts = column.texts;
  std::vector<bool> isNumber(texts.Size());
  std::vector<std::string_view> all(texts.Size());
  double number = 0.0;
  bool hasNumbers = false;
  for (std::size_t code = 0; code < texts.Size(); ++code) {
    all[code] = texts[code];
    isNumber[code] = ParseNumberIn(notation, texts[code], number);
    hasNumbers = hasNumbers || isNumber[code];
  }
  findings.numberNotation = RecogniseNumbers(all);
  if (!hasNumbers && findings.numberNotation.empty()) return;
  column.codes.ForEach([&](std::int32_t code) {
    if (code == kMissingCode) return;
    ++(isNumber[static_cast<std::size_t>(code)] ? findings.numbers : findings.strays);
  });
  const auto first = std::ranges::find(isNumber, false) - isNumber.begin();
  findings.firstStrayText = texts[static_cast<std::size_t>(first)];
}

/// Lower case, without blanks at the ends and with single ones inside.
std::string Plain(std::string_view text) {
  std::string plain;
  for (const char c : text) {
    if (c == ' ' || c == '\t') {
      if (!plain.empty() && plain.back() != ' ') plain += ' ';
    } else {
      plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
  }
  if (plain.ends_with(' ')) plain.pop_back();
  return plain;
}

}  // namespace

bool ColumnFindings::IsLikeScale() const {
  return fewValues.size() >= kFewestOfScale && std::ranges::all_of(fewValues, [](double value) {
           return value >= 0.0 && value <= kLargestOfScale && value == std::floor(value);
         });
}

ColumnFindings FindInColumn(const Dataset& data, std::size_t column, const CellSource& source) {
  const MissingTokens& tokens = source.Tokens();
  const Column& cells = data.columns[column];
  ColumnFindings findings;
  findings.records = data.records;
  findings.infinite = cells.infinite;
  for (std::size_t token = 0; token < cells.missing.size(); ++token) {
    if (cells.missing[token] == 0) continue;
    findings.missing += cells.missing[token];
    findings.tokens.emplace_back(tokens.Text(token), cells.missing[token]);
  }
  if (!cells.isText) {
    findings.fewValues = FewValues(cells);
  } else if (cells.firstText) {
    findings.firstStray = *cells.firstText;
    CountStrays(cells, source.Notation(), findings);
  }
  return findings;
}

std::string LineOf(const CellSource& source, std::size_t offset) {
  std::string location = source.LocationOf(offset);  // "name:line:column"
  location.resize(location.rfind(':'));
  return location.substr(location.rfind(':') + 1);
}

std::vector<std::string> NearlyEqualTexts(const Column& column) {
  std::vector<std::string> groups;
  if (column.texts.Size() > kMostCompared) return groups;
  std::map<std::string, std::vector<std::string_view>> textsOfPlain;
  for (std::size_t code = 0; code < column.texts.Size(); ++code) {
    textsOfPlain[Plain(column.texts[code])].push_back(column.texts[code]);
  }
  for (const auto& [plain, texts] : textsOfPlain) {
    if (texts.size() < 2) continue;
    std::string group = Quoted(texts.front());
    for (std::size_t i = 1; i < texts.size(); ++i) {
      group += (i + 1 == texts.size() ? " and " : ", ") + Quoted(texts[i]);
    }
    groups.push_back(std::move(group));
  }
  return groups;
}

}  // namespace npar_host
