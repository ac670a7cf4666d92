#include "host/render/sample_order.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Takes a run of digits, without zeros in front, off the text.
std::string_view TakeNumber(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
  std::string_view number = text.substr(0, end);
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  text.remove_prefix(end);
  return number;
}

/// The place of each code among the categories of a field.
using Places = std::vector<std::size_t>;

Places NaturalPlaces(const ResultField& field) {
  std::vector<std::size_t> codes(field.categories.size());
  std::iota(codes.begin(), codes.end(), std::size_t{0});
  std::ranges::stable_sort(codes, [&field](std::size_t a, std::size_t b) {
    return IsNaturallyLess(field.categories[a].value, field.categories[b].value);
  });
  Places places(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) places[codes[i]] = i;
  return places;
}

std::size_t PlaceOf(const Places& places, std::optional<double> code) {
  const bool isCode = code && *code >= 0.0 && *code < static_cast<double>(places.size());
  return isCode ? places[static_cast<std::size_t>(*code)] : places.size();
}

// Sorts the rows of a table that are named by codes; tables with other rows stay.
void SortRows(ResultTable& table, const Places& places) {
  std::vector<std::size_t> wanted;
  for (const std::string& name : table.rowNames) {
    wanted.push_back(PlaceOf(places, FigureNumber(name)));
    if (wanted.back() == places.size()) return;
  }
  if (wanted.size() != table.rows.size()) return;
  std::vector<std::size_t> order(wanted.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&wanted](std::size_t row) { return wanted[row]; });
  ResultTable sorted = table;
  sorted.rows.clear();
  for (std::size_t i = 0; i < order.size(); ++i) {
    sorted.rowNames[i] = table.rowNames[order[i]];
    const TextRows::Row row = table.rows[order[i]];
    sorted.rows.AddRow({row.begin(), row.end()});
  }
  table = std::move(sorted);
}

void SortSamples(ResultTest& test, const Places& places) {
  std::ranges::stable_sort(test.boxPlots, {}, [&places](const ResultBoxPlot& box) {
    return PlaceOf(places, static_cast<double>(box.code));
  });
  for (ResultTable& table : test.tables) SortRows(table, places);
  if (!test.extended) return;
  for (ResultTable& table : test.extended->tables) SortRows(table, places);
}

}  // namespace

bool IsNaturallyLess(std::string_view a, std::string_view b) {
  const std::string_view wholeA = a, wholeB = b;
  while (!a.empty() && !b.empty()) {
    if (!IsDigit(a.front()) || !IsDigit(b.front())) {
      if (a.front() != b.front()) {
        return static_cast<unsigned char>(a.front()) < static_cast<unsigned char>(b.front());
      }
      a.remove_prefix(1);
      b.remove_prefix(1);
      continue;
    }
    const std::string_view first = TakeNumber(a);
    const std::string_view second = TakeNumber(b);
    if (first.size() != second.size()) return first.size() < second.size();
    if (first != second) return first < second;
  }
  return a.empty() == b.empty() ? wholeA < wholeB : a.empty();
}

void OrderSamples(ResultDocument& document) {
  for (ResultField& field : document.fields) {
    if (!field.isNominal || !field.distribution) continue;
    const Places places = NaturalPlaces(field);
    std::ranges::stable_sort(field.distribution->bins, {}, [&places](const ResultBin& bin) {
      return PlaceOf(places, bin.value);
    });
  }
  for (ResultTest& test : document.tests) {
    const bool isTrend = test.name == catalogue::jonckheere_terpstra::kCard.element;
    const bool isOneSample = test.classification == "One_Sample";
    const auto indices = test.ConditionFields(isOneSample ? 0 : 1, document.fields.size());
    if (indices.empty() || test.classification == "Related_Samples") continue;
    const ResultField& field = document.fields[indices.front()];
    if (isTrend && test.groupsDescend) {
      Places places(field.categories.size());
      std::iota(places.rbegin(), places.rend(), std::size_t{0});
      SortSamples(test, places);
    } else if (!isTrend && field.isNominal) {
      SortSamples(test, NaturalPlaces(field));
    }
  }
}

}  // namespace npar_host
