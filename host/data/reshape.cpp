#include "host/data/reshape.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <map>
#include <numeric>
#include <optional>

#include "host/data/input_error.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"

namespace npar_host {
namespace {

std::string CellText(const Column& column, double cell) {
  return column.isText ? std::string(column.texts[static_cast<std::size_t>(cell)])
                       : NumberText(cell);
}

constexpr std::size_t kNoRecord = std::numeric_limits<std::size_t>::max();

/// A column of some records of another one, missing where there is no record.
Column CopyCells(const Column& from, std::string name, const std::vector<std::size_t>& records) {
  Column column;
  column.name = std::move(name);
  column.isText = from.isText;
  column.missing.assign(std::max<std::size_t>(1, from.missing.size()), 0);
  std::vector<double> numbers;
  std::vector<std::int32_t> codes;
  bool isNew = false;
  for (const std::size_t record : records) {
    const double missing = from.IsCoded() ? kMissingCode : kMissingNumber;
    double cell = record == kNoRecord ? missing : from.Cell(record);
    if (from.IsMissing(cell)) {
      ++column.missing.front();
    } else if (from.isText) {
      cell = column.texts.Add(from.texts[static_cast<std::size_t>(cell)], isNew);
    }
    if (from.IsCoded()) {
      codes.push_back(static_cast<std::int32_t>(cell));
    } else {
      numbers.push_back(cell);
    }
  }
  column.numbers = std::move(numbers);
  column.codes.Append(codes);
  return column;
}

/// Finds the score of a category by its text, or by its number.
std::optional<double> ScoreOf(const Scoring& scoring, const std::string& category) {
  double number = 0.0;
  const bool isNumber = ParseNumber(category, number);
  for (const auto& [text, score] : scoring.scores) {
    double other = 0.0;
    if (text == category || (isNumber && ParseNumber(text, other) && other == number)) return score;
  }
  return std::nullopt;
}

[[noreturn]] void FailScore(const Scoring& scoring, const std::string& category) {
  std::vector<std::string> known;
  for (const auto& [text, score] : scoring.scores) known.push_back(text);
  throw InputError("field " + Quoted(scoring.field) + " holds " + Quoted(category) +
                   ", which has no score" + NearMiss(category, known) +
                   "; give --scores all categories of the field");
}

/// The different values of a column in their order, and which of them each record holds.
struct Places {
  std::vector<std::string> texts;
  std::vector<std::size_t> ofRecord;  // kNoRecord: missing
};

Places PlacesOf(const Column& column) {
  Places places;
  std::map<double, std::size_t> placeOfCell;
  std::vector<double> cells;
  column.ForEachCell([&](double cell) {
    if (column.IsMissing(cell)) {
      places.ofRecord.push_back(kNoRecord);
      return;
    }
    const auto [found, isNew] = placeOfCell.emplace(cell, cells.size());
    if (isNew) cells.push_back(cell);
    places.ofRecord.push_back(found->second);
  });
  std::vector<std::size_t> order(cells.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (!column.isText) {
    std::ranges::sort(order, {}, [&](std::size_t place) { return cells[place]; });
  }
  std::vector<std::size_t> rank(cells.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    rank[order[i]] = i;
    places.texts.push_back(CellText(column, cells[order[i]]));
  }
  for (std::size_t& place : places.ofRecord) {
    if (place != kNoRecord) place = rank[place];
  }
  return places;
}

class Widening {
 public:
  Widening(const Dataset& data, const LongColumns& columns,
           const std::function<std::string(std::size_t)>& placeOf)
      : data(data),
        columns(columns),
        placeOf(placeOf),
        subjects(PlacesOf(data.columns[columns.subject])),
        times(PlacesOf(data.columns[columns.time])) {}

  WideData Run() {
    PlaceRecords();
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      if (i == columns.subject || IsConstant(i)) kept.push_back(i);
    }
    MakeColumns();
    return std::move(wide);
  }

 private:
  std::size_t& RecordAt(std::size_t subject, std::size_t time) {
    return recordOf[subject * times.texts.size() + time];
  }

  void PlaceRecords() {
    recordOf.assign(subjects.texts.size() * times.texts.size(), kNoRecord);
    firstOf.assign(subjects.texts.size(), kNoRecord);
    for (std::size_t record = 0; record < data.records; ++record) {
      const std::size_t subject = subjects.ofRecord[record];
      const std::size_t time = times.ofRecord[record];
      if (subject == kNoRecord || time == kNoRecord) {
        ++wide.withoutPlace;
        continue;
      }
      if (firstOf[subject] == kNoRecord) firstOf[subject] = record;
      std::size_t& place = RecordAt(subject, time);
      if (place != kNoRecord) {
        throw InputError(placeOf(record) + ": " + Pair(subject, time) +
                         " has a record already, at " + placeOf(place) +
                         "; keep one of them, or name a column that tells them apart");
      }
      place = record;
    }
  }

  std::string Pair(std::size_t subject, std::size_t time) const {
    return data.columns[columns.subject].name + " " + subjects.texts[subject] + " at " +
           times.texts[time];
  }

  /// Does the column hold one value for each subject?
  bool IsConstant(std::size_t column) const {
    if (column == columns.time || column == columns.value) return false;
    std::vector<double> cells;
    data.columns[column].ForEachCell([&](double cell) { cells.push_back(cell); });
    for (std::size_t record = 0; record < data.records; ++record) {
      const std::size_t subject = subjects.ofRecord[record];
      if (subject == kNoRecord || firstOf[subject] == kNoRecord) continue;
      if (cells[record] != cells[firstOf[subject]]) return false;
    }
    return true;
  }

  void MakeColumns() {
    std::vector<Column>& made = wide.data.columns;
    std::vector<std::size_t> present;  // subjects
    std::vector<std::size_t> records;
    for (std::size_t subject = 0; subject < subjects.texts.size(); ++subject) {
      if (firstOf[subject] == kNoRecord) continue;
      present.push_back(subject);
      records.push_back(firstOf[subject]);
    }
    wide.data.records = present.size();
    for (const std::size_t i : kept) {
      made.push_back(CopyCells(data.columns[i], data.columns[i].name, records));
    }
    const Column& value = data.columns[columns.value];
    for (std::size_t time = 0; time < times.texts.size(); ++time) {
      const std::string& text = times.texts[time];
      const bool isTaken = std::ranges::find(made, text, &Column::name) != made.end();
      wide.times.push_back(isTaken ? value.name + "_" + text : text);
      std::ranges::transform(present, records.begin(),
                             [&](std::size_t subject) { return RecordAt(subject, time); });
      made.push_back(CopyCells(value, wide.times.back(), records));
    }
    for (const std::size_t subject : present) {
      for (std::size_t time = 0; time < times.texts.size(); ++time) {
        if (RecordAt(subject, time) == kNoRecord) wide.absent.push_back(Pair(subject, time));
      }
    }
  }

  const Dataset& data;
  const LongColumns& columns;
  const std::function<std::string(std::size_t)>& placeOf;
  Places subjects;
  Places times;
  std::vector<std::size_t> recordOf;  // by subject and time
  std::vector<std::size_t> firstOf;   // by subject
  std::vector<std::size_t> kept;
  WideData wide;
};

void AppendQuoted(std::string& text, std::string_view cell) {
  text += '"';
  for (const char c : cell) text.append(c == '"' ? 2 : 1, c);
  text += '"';
}

}  // namespace

std::vector<std::string> ScoreCategories(Dataset& data, const Scoring& scoring) {
  const auto found = std::ranges::find(data.columns, scoring.field, &Column::name);
  Column& column = *found;
  std::map<double, double> scoreOfCell;
  std::vector<std::string> held;
  std::vector<double> scores;
  scores.reserve(data.records);
  column.ForEachCell([&](double cell) {
    if (column.IsMissing(cell)) {
      scores.push_back(kMissingNumber);
      return;
    }
    const auto [known, isNew] = scoreOfCell.emplace(cell, 0.0);
    if (isNew) {
      held.push_back(CellText(column, cell));
      const std::optional<double> score = ScoreOf(scoring, held.back());
      if (!score) FailScore(scoring, held.back());
      known->second = *score;
    }
    scores.push_back(known->second);
  });
  column.numbers = std::move(scores);
  column.codes = {};
  column.isText = false;
  column.texts = TextPool();
  column.firstText.reset();
  std::vector<std::string> unheld;
  for (const auto& [text, score] : scoring.scores) {
    const Scoring one{scoring.field, {{text, score}}};
    const bool isHeld = std::ranges::any_of(
        held, [&](const std::string& category) { return ScoreOf(one, category).has_value(); });
    if (!isHeld) unheld.push_back(text);
  }
  return unheld;
}

WideData MakeWide(const Dataset& data, const LongColumns& columns,
                  const std::function<std::string(std::size_t)>& placeOf) {
  return Widening(data, columns, placeOf).Run();
}

std::string WriteCsv(const Dataset& data) {
  std::string text;
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    if (i > 0) text += ',';
    AppendQuoted(text, data.columns[i].name);
  }
  text += '\n';
  std::array<char, 32> buffer;
  for (std::size_t record = 0; record < data.records; ++record) {
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      if (i > 0) text += ',';
      const Column& column = data.columns[i];
      const double cell = column.Cell(record);
      if (column.IsMissing(cell)) continue;
      if (column.isText) {
        AppendQuoted(text, column.texts[static_cast<std::size_t>(cell)]);
      } else {
        const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), cell);
        text.append(buffer.data(), written.ptr);
      }
    }
    text += '\n';
  }
  return text;
}

}  // namespace npar_host
