#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "catalogue/card.h"
#include "catalogue/cards/binomial.h"
#include "catalogue/cards/chi_square.h"
#include "catalogue/cards/cochran_q.h"
#include "catalogue/cards/confidence_interval.h"
#include "catalogue/cards/friedman.h"
#include "catalogue/cards/hodges_lehmann_groups.h"
#include "catalogue/cards/hodges_lehmann_pairs.h"
#include "catalogue/cards/jonckheere_terpstra.h"
#include "catalogue/cards/kendall_w.h"
#include "catalogue/cards/kruskal_wallis.h"
#include "catalogue/cards/ks_one_sample.h"
#include "catalogue/cards/ks_two_sample.h"
#include "catalogue/cards/mann_whitney.h"
#include "catalogue/cards/marginal_homogeneity.h"
#include "catalogue/cards/mcnemar.h"
#include "catalogue/cards/median.h"
#include "catalogue/cards/moses.h"
#include "catalogue/cards/runs.h"
#include "catalogue/cards/sign.h"
#include "catalogue/cards/wald_wolfowitz.h"
#include "catalogue/cards/wilcoxon.h"
#include "catalogue/cards/wilcoxon_pairs.h"
#include "catalogue/platform.h"
#include "catalogue/run.h"

namespace catalogue {

/// Every test, family by family, in the order in which people see them.
inline constexpr const Card* kCards[] = {
    &binomial::kCard,
    &confidence_interval::kCard,
    &chi_square::kCard,
    &ks_one_sample::kNormal,
    &ks_one_sample::kUniform,
    &ks_one_sample::kPoisson,
    &ks_one_sample::kExponential,
    &runs::kCard,
    &wilcoxon::kCard,

    &sign::kCard,
    &wilcoxon_pairs::kCard,
    &mcnemar::kCard,
    &marginal_homogeneity::kCard,
    &cochran_q::kCard,
    &friedman::kCard,
    &kendall_w::kCard,
    &hodges_lehmann_pairs::kCard,

    &mann_whitney::kCard,
    &ks_two_sample::kCard,
    &wald_wolfowitz::kCard,
    &moses::kCard,
    &median::kCard,
    &kruskal_wallis::kCard,
    &jonckheere_terpstra::kCard,
    &hodges_lehmann_groups::kCard,
};

/// A code, and whose it is.
struct ToldCode {
  Code code;
  Text source;  // "Mann-Whitney U test", "Run"
};

/// What stands over the figures of an element of that name.
[[nodiscard]] constexpr Text ElementTitle(const Card& card) {
  return card.elementTitle.empty() ? card.title : card.elementTitle;
}

namespace detail {

[[nodiscard]] constexpr bool ShareCodes(const Card& a, const Card& b) {
  // Numbers, since g++ 12 compares no addresses of objects while it compiles for its sanitizers.
  if (!(a.element == b.element) || a.codes.size() != b.codes.size()) return false;
  for (std::size_t i = 0; i < a.codes.size(); ++i) {
    if (a.codes[i].number != b.codes[i].number) return false;
  }
  return true;
}

/// Tests of one element share their codes; the first of them tells them.
[[nodiscard]] constexpr bool TellsItsCodes(std::size_t card) {
  for (std::size_t earlier = 0; earlier < card; ++earlier) {
    if (ShareCodes(*kCards[earlier], *kCards[card])) return false;
  }
  return true;
}

[[nodiscard]] constexpr std::size_t CountCodes() {
  std::size_t count = std::size(run::kCodes) + std::size(platform::kCodes);
  for (std::size_t i = 0; i < std::size(kCards); ++i) {
    if (TellsItsCodes(i)) count += kCards[i]->codes.size();
  }
  return count;
}

[[nodiscard]] constexpr auto CollectCodes() {
  const auto fill = []<std::size_t... i>(std::index_sequence<i...>) {
    return std::array<ToldCode, sizeof...(i)>{
        (static_cast<void>(i), ToldCode{run::kCodes[0], run::kTitle})...};
  };
  auto all = fill(std::make_index_sequence<CountCodes()>());
  std::size_t next = 0;
  const auto add = [&](List<Code> codes, Text source) {
    for (const Code& code : codes) all[next++] = {code, source};
  };
  add(run::kCodes, run::kTitle);
  add(platform::kCodes, platform::kTitle);
  for (std::size_t i = 0; i < std::size(kCards); ++i) {
    if (TellsItsCodes(i)) add(kCards[i]->codes, ElementTitle(*kCards[i]));
  }
  std::sort(all.begin(), all.end(),
            [](const ToldCode& a, const ToldCode& b) { return a.code.number < b.code.number; });
  return all;
}

[[nodiscard]] constexpr bool CodesDiffer(const auto& codes) {
  for (std::size_t i = 1; i < codes.size(); ++i) {
    if (codes[i - 1].code.number == codes[i].code.number) return false;
  }
  return true;
}

[[nodiscard]] constexpr bool AnyPair(auto isBad) {
  for (std::size_t i = 0; i < std::size(kCards); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (isBad(*kCards[j], *kCards[i])) return true;
    }
  }
  return false;
}

[[nodiscard]] constexpr bool AnyCard(auto isBad) {
  for (const Card* card : kCards) {
    if (isBad(*card)) return true;
  }
  return false;
}

}  // namespace detail

/// All codes, ascending.
inline constexpr auto kCodes = detail::CollectCodes();

static_assert(detail::CodesDiffer(kCodes), "a code is told twice");
static_assert(std::none_of(kCodes.begin(), kCodes.end(),
                           [](const ToldCode& told) {
                             return told.code.text.empty() || told.code.remedy.empty();
                           }),
              "a code lacks its text or remedy");
static_assert(!detail::AnyPair([](const Card& a, const Card& b) { return a.name == b.name; }),
              "two cards have one name");
static_assert(!detail::AnyPair([](const Card& a, const Card& b) { return a.entry == b.entry; }),
              "the entries of two cards have one name");
static_assert(!detail::AnyPair([](const Card& a, const Card& b) {
  return a.key == b.key && a.askedBy.empty() && b.askedBy.empty();
}),
              "two cards have one key");
static_assert(!detail::AnyPair([](const Card& a, const Card& b) {
  return a.element == b.element && (a.elementTitle.empty() || !(a.elementTitle == b.elementTitle));
}),
              "cards of one element need one title for it");
static_assert(!detail::AnyPair([](const Card& a, const Card& b) {
  return a.title == b.title || ElementTitle(a) == b.title || a.title == ElementTitle(b);
}),
              "two cards have one title");
static_assert(!detail::AnyCard([](const Card& card) {
  const char letter = KeyLetter(card.family);
  return std::string_view(card.key).front() != letter ||
         std::string_view(card.element).front() != letter;
}),
              "a key or an element does not begin with its family's letter");
static_assert(!detail::AnyCard([](const Card& card) {
  return card.title.empty() || card.hypotheses.empty() || card.page.empty() || card.codes.empty();
}),
              "a card lacks its title, hypothesis, page or codes");
static_assert(!detail::AnyCard([](const Card& card) {
  return card.warningName.empty() && card.askedBy.empty() && card.family != Family::Independent;
}),
              "a card lacks its name in warnings");
static_assert(!detail::AnyCard([](const Card& card) {
  return (card.purpose == Purpose::Estimate) != (card.decision.by == Decides::Nothing);
}),
              "a test decides, an estimate does not");

/// Those that a person asks for by name, in that order; the others come along with one of them.
inline constexpr auto kTests = [] {
  constexpr auto isAskedFor = [](const Card* card) { return card->askedBy.empty(); };
  std::array<const Card*, std::count_if(std::begin(kCards), std::end(kCards), isAskedFor)> tests{};
  std::copy_if(std::begin(kCards), std::end(kCards), tests.begin(), isAskedFor);
  return tests;
}();

/// The test that a person asks for by that name, or null.
[[nodiscard]] constexpr const Card* FindTest(std::string_view name) {
  for (const Card* card : kTests) {
    if (card->name == name) return card;
  }
  return nullptr;
}

/// The test's option of that name, or null.
[[nodiscard]] constexpr const Option* FindOption(const Card& test, std::string_view name) {
  for (const Option& option : test.options) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

/// The first card of the elements of that name; null for a name that is none.
[[nodiscard]] constexpr const Card* FindElement(std::string_view element) {
  for (const Card* card : kCards) {
    if (card->element == element) return card;
  }
  return nullptr;
}

/// A hypothesis and the card that it stands on.
struct TestedHypothesis {
  const Card* card = nullptr;
  std::string_view sentence;
};

/// What an element with that condition tests; null and empty for one of no card.
[[nodiscard]] constexpr TestedHypothesis FindHypothesis(std::string_view element,
                                                        std::string_view condition) {
  for (const Card* card : kCards) {
    if (!(card->element == element)) continue;
    for (const Hypothesis& each : card->hypotheses) {
      if (condition.starts_with(each.condition)) return {card, each.sentence};
    }
  }
  return {};
}

/// Null for a code that nobody reports.
[[nodiscard]] constexpr const ToldCode* FindCode(std::int32_t number) {
  const auto found = std::lower_bound(
      kCodes.begin(), kCodes.end(), number,
      [](const ToldCode& told, std::int32_t wanted) { return told.code.number < wanted; });
  return found != kCodes.end() && found->code.number == number ? &*found : nullptr;
}

}  // namespace catalogue
