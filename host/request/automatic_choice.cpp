#include "host/request/automatic_choice.h"

#include <map>

#include "host/data/join_words.h"

namespace npar_host {
namespace {

using catalogue::Family;

constexpr std::size_t kTwo = 2;

std::string Verb(const std::vector<std::string>& fields, const char* one, const char* several) {
  return JoinWords(fields, " and ") + (fields.size() == 1 ? one : several);
}

void ExplainOneSample(const AnalysisRequest& request, const ContentOf& contentOf,
                      std::vector<Choice>& choices) {
  std::vector<std::string> continuous, ofTwo, ofMore;
  for (const std::string& field : request.oneSampleFields) {
    const std::size_t count = contentOf(field).values.size();
    if (MeasureOf(request, contentOf, field) == "continuous") {
      continuous.push_back(field);
    } else if (count >= kTwo) {
      (count == kTwo ? ofTwo : ofMore).push_back(field);
    }
  }
  if (!ofTwo.empty()) {
    choices.push_back({"binomial", Verb(ofTwo, " has", " have") + " two categories"});
  }
  if (!ofMore.empty()) {
    choices.push_back({"chi-square", Verb(ofMore, " has", " have") + " more than two categories"});
  }
  if (!continuous.empty()) {
    choices.push_back({"ks-normal", Verb(continuous, " is", " are") + " continuous"});
  }
}

void ExplainRelated(const AnalysisRequest& request, const ContentOf& contentOf,
                    std::vector<Choice>& choices) {
  std::map<std::string, std::vector<std::string>> fieldsOf;
  for (const std::string& field : request.relatedFields) {
    fieldsOf[MeasureOf(request, contentOf, field)].push_back(field);
  }
  for (const auto& [measure, fields] : fieldsOf) {
    if (fields.size() < kTwo) continue;
    const bool isContinuous = measure == "continuous";
    if (!isContinuous && !HoldTwoCategories(fields, contentOf)) continue;
    const bool isPair = fields.size() == kTwo;
    const std::string test = isContinuous ? (isPair ? "wilcoxon-pairs" : "friedman")
                                          : (isPair ? "mcnemar" : "cochran-q");
    choices.push_back({test, "--related names " + std::to_string(fields.size()) + " " + measure +
                                 " fields" + (isContinuous ? "" : " of the same two categories")});
  }
}

void ExplainIndependent(const AnalysisRequest& request, const ContentOf& contentOf,
                        std::vector<Choice>& choices) {
  const std::size_t groups = contentOf(request.groupField).values.size();
  if (groups < kTwo) return;
  choices.push_back({groups == kTwo ? "mann-whitney" : "kruskal-wallis",
                     request.groupField + " has " + std::to_string(groups) + " groups"});
}

}  // namespace

std::vector<Choice> ExplainChoice(const AnalysisRequest& request, const ContentOf& contentOf) {
  std::vector<Choice> choices;
  const auto isChosen = [&](Family family) {
    return !request.FieldsOf(family).empty() && !request.HasTests(family);
  };
  if (isChosen(Family::OneSample)) ExplainOneSample(request, contentOf, choices);
  if (isChosen(Family::Related)) ExplainRelated(request, contentOf, choices);
  if (isChosen(Family::Independent)) ExplainIndependent(request, contentOf, choices);
  return choices;
}

}  // namespace npar_host
