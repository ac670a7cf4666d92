#include "host/render/significance.h"

#include <cmath>

#include "catalogue/catalogue.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

struct Candidate {
  std::string_view name;
  bool isExact;
  int sides;
};

constexpr Candidate kCandidates[] = {
    {"ExactSig2Tailed", true, 2},
    {"ExactSig1Tailed", true, 1},
    {"AsymptoticSig2Tailed", false, 2},
    {"AsymptoticSig1Tailed", false, 1},
};

const ResultStatistic* FindDeciding(const ResultTest& test, const catalogue::Card& card,
                                    const Candidate& candidate) {
  for (const ResultStatistic& figure : test.statistics) {
    if (card.decision.table == figure.group && figure.name == candidate.name) return &figure;
  }
  return nullptr;
}

}  // namespace

std::optional<Significance> DecidingSignificance(const ResultTest& test) {
  const catalogue::Card* const card = catalogue::FindElement(test.name);
  if (card == nullptr) return std::nullopt;
  for (const Candidate& candidate : kCandidates) {
    if (candidate.isExact && card->decision.by == catalogue::Decides::Asymptotic) continue;
    if (const ResultStatistic* const figure = FindDeciding(test, *card, candidate)) {
      return Significance{figure->text, candidate.isExact, candidate.sides};
    }
  }
  return std::nullopt;
}

std::string AsymptoticSignificance(const ResultTest& test, const Significance& deciding) {
  const catalogue::Card* const card = catalogue::FindElement(test.name);
  for (const Candidate& candidate : kCandidates) {
    if (card == nullptr || candidate.isExact || candidate.sides != deciding.sides) continue;
    if (const ResultStatistic* const figure = FindDeciding(test, *card, candidate)) {
      return figure->text;
    }
  }
  return {};
}

std::string SignificanceText(std::string_view figure) {
  const auto p = FigureNumber(figure);
  if (!p || !std::isfinite(*p)) return "p unknown";
  if (*p < 0.001) return "p < .001";
  if (*p >= 1.0) return "p = 1";
  if (*p > 0.999) return "p > .999";
  return "p = " + FixedText(*p, 3).substr(1);
}

std::string SignificanceCell(std::string_view figure) {
  const auto p = FigureNumber(figure);
  if (!p || !std::isfinite(*p)) return FigureText(figure);
  const std::string words = SignificanceText(figure).substr(2);
  return words.starts_with("= ") ? words.substr(2) : words;
}

bool IsSignificanceName(std::string_view name) {
  return name.find("Sig") != std::string_view::npos;
}

std::string SignificanceKind(const Significance& significance) {
  return std::string(significance.isExact ? "exact" : "asymptotic") +
         (significance.sides == 1 ? ", 1-sided" : ", 2-sided");
}

}  // namespace npar_host
