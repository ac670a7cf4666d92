#include "host/analysis/choices.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

using Setter = void (*)(Choices& choices, const std::string& value);

/// The index of the value among the words. Throws UsageError for another.
std::size_t OneOf(const char* option, const std::string& value,
                  const std::vector<std::string>& words) {
  const auto found = std::ranges::find(words, value);
  if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
  throw UsageError("--" + std::string(option) + " can't be " + Quoted(value) + "; it is " +
                   JoinWords(words));
}

bool Flag(const char* option, const std::string& value) {
  return OneOf(option, value, {"false", "true"}) == 1;
}

Adjustment AdjustmentOf(const char* option, const std::string& value) {
  static_cast<void>(OneOf(option, value, {"none", "bonferroni", "holm", "bh"}));
  return FindAdjustment(value);
}

unsigned Threads(const std::string& value) {
  constexpr unsigned kMost = 4096;
  unsigned count = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), count);
  if (error == std::errc() && end == value.data() + value.size() && count <= kMost) return count;
  throw UsageError("--threads is a whole number from 0 to " + std::to_string(kMost) + ", not " +
                   Quoted(value));
}

template <auto list>
void AddField(Choices& choices, const std::string& field) {
  (choices.request.*list).push_back(field);
}

template <auto member>
void SetField(Choices& choices, const std::string& field) {
  choices.request.*member = field;
}

void AddMeasure(Choices& choices, const std::string& field, const char* measure) {
  choices.request.measures.push_back({field, measure, {}});
}

struct Option {
  const char* name;
  Setter set;
};

constexpr Option kOptions[] = {
    {"one-sample", AddField<&AnalysisRequest::oneSampleFields>},
    {"related", AddField<&AnalysisRequest::relatedFields>},
    {"independent", AddField<&AnalysisRequest::independentFields>},
    {"by", SetField<&AnalysisRequest::groupField>},
    {"weight", SetField<&AnalysisRequest::weightField>},
    {"case-id", SetField<&AnalysisRequest::caseIdField>},
    {"test",
     [](Choices& choices, const std::string& value) {
       choices.request.tests.push_back(TestRequest::Parse(value));
     }},
    {"continuous",
     [](Choices& choices, const std::string& value) { AddMeasure(choices, value, "continuous"); }},
    {"nominal",
     [](Choices& choices, const std::string& value) { AddMeasure(choices, value, "nominal"); }},
    {"ordinal",
     [](Choices& choices, const std::string& value) { AddMeasure(choices, value, "ordinal"); }},
    {"missing",
     [](Choices& choices, const std::string& value) {
       choices.request.listwise = OneOf("missing", value, {"analysis", "listwise"}) == 1;
     }},
    {"significance",
     [](Choices& choices, const std::string& value) {
       choices.request.significance = RequireNumber(value, "--significance");
     }},
    {"confidence",
     [](Choices& choices, const std::string& value) {
       choices.request.confidencePercent = ConfidencePercent(RequireNumber(value, "--confidence"));
     }},
    {"extended",
     [](Choices& choices, const std::string& value) {
       choices.request.extendedFigures = Flag("extended", value);
     }},
    {"adjust",
     [](Choices& choices, const std::string& value) {
       choices.adjustment = AdjustmentOf("adjust", value);
     }},
    {"adjust-pairs",
     [](Choices& choices, const std::string& value) {
       choices.pairAdjustment = AdjustmentOf("adjust-pairs", value);
     }},
    {"threads",
     [](Choices& choices, const std::string& value) { choices.threads = Threads(value); }},
    {"ascii", [](Choices& choices,
                 const std::string& value) { choices.style.ascii = Flag("ascii", value); }},
    {"sentences",
     [](Choices& choices, const std::string& value) {
       choices.style.sentences = Flag("sentences", value);
     }},
};

}  // namespace

void Choices::Set(std::string_view option, const std::string& value) {
  for (const Option& known : kOptions) {
    if (option == known.name) return known.set(*this, value);
  }
  std::vector<std::string> names;
  for (const Option& known : kOptions) names.emplace_back(known.name);
  throw UsageError("there is no option " + Quoted(option) + NearMiss(std::string(option), names));
}

void Choices::SetOrder(const std::string& field, std::vector<std::string> categories) {
  request.measures.push_back({field, "ordinal", std::move(categories)});
}

}  // namespace npar_host
