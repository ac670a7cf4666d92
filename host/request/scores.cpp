#include "host/request/scores.h"

#include "host/data/input_error.h"
#include "host/request/field_list.h"
#include "host/request/test_request.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

void AddScore(Scoring& scoring, const std::string& category, double score) {
  for (const auto& [known, ignored] : scoring.scores) {
    if (known == category) {
      throw UsageError("--scores " + scoring.field + " names " + Quoted(category) + " twice");
    }
  }
  scoring.scores.emplace_back(category, score);
}

}  // namespace

std::vector<Scoring> ParseScores(std::string_view text, const std::vector<std::string>& columns) {
  Scoring scoring;
  std::string list;
  if (!CutAt(EscapeQuoted(text), '=', scoring.field, list)) {
    throw UsageError(
        "--scores takes a field with its categories, as in 'answer=no<maybe<yes', not " +
        Quoted(text));
  }
  const std::vector<std::string> ordered = SplitWords(list, '<');
  if (ordered.size() > 1) {
    for (const std::string& category : ordered) {
      AddScore(scoring, Unescape(category), static_cast<double>(scoring.scores.size() + 1));
    }
  } else {
    for (const std::string& pair : SplitWords(list, ',')) {
      std::string category, number;
      if (!CutAt(pair, '=', category, number)) {
        throw UsageError(
            "--scores takes categories in their order, a<b<c, or with numbers, "
            "a=0,b=2.5, not " +
            Quoted(pair));
      }
      AddScore(scoring, Unescape(category), RequireNumber(number, "the score of " + category));
    }
  }
  std::vector<Scoring> scorings;
  for (const std::string& field : ExpandField(scoring.field, columns)) {
    scorings.push_back({field, scoring.scores});
  }
  return scorings;
}

}  // namespace npar_host
