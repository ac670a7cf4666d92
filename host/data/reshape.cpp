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

constexpr std::size_t kNoRecord = std::numeric_limits<std::size_t>::max();

bool IsMissingCell(const Column& column, double cell) {
  return cell == (column.isText ? kMissingCode : kMissingNumber);
}

std::string CellText(const Column& column, double cell) {
  return column.isText ? std::string(column.texts[static_cast<std::size_t>(cell)])
                       : NumberText(cell);
}

/// The cell as another column of the same kind holds it.
double CopyCell(const Column& from, double cell, Column& to) {
  if (IsMissingCell(from, cell)) {
    ++to.missing.front();
    return cell;
  }
  bool isNew = false;
  return from.isText ? to.texts.Add(from.texts[static_cast<std::size_t>(cell)], isNew) : cell;
}

Column EmptyColumn(std::string name, const Column& like) {
  Column column;
  column.name = std::move(name);
  column.isText = like.isText;
  column.missing.assign(std::max<std::size_t>(1, like.missing.size()), 0);
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

Places PlacesOf(const Dataset& data, std::size_t index) {
  const Column& column = data.columns[index];
  Places places;
  std::map<double, std::size_t> placeOfCell;
  std::vector<double> cells;
  for (std::size_t record = 0; record < data.rows.Size(); ++record) {
    const double cell = data.rows.Row(record)[index];
    if (IsMissingCell(column, cell)) {
      places.ofRecord.push_back(kNoRecord);
      continue;
    }
    const auto [found, isNew] = placeOfCell.emplace(cell, cells.size());
    if (isNew) cells.push_back(cell);
    places.ofRecord.push_back(found->second);
  }
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
        subjects(PlacesOf(data, columns.subject)),
        times(PlacesOf(data, columns.time)) {}

  WideData Run() {
    PlaceRecords();
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      if (i == columns.subject || IsConstant(i)) kept.push_back(i);
    }
    MakeColumns();
    FillRows();
    return std::move(wide);
  }

 private:
  std::size_t& RecordAt(std::size_t subject, std::size_t time) {
    return recordOf[subject * times.texts.size() + time];
  }

  void PlaceRecords() {
    recordOf.assign(subjects.texts.size() * times.texts.size(), kNoRecord);
    firstOf.assign(subjects.texts.size(), kNoRecord);
    for (std::size_t record = 0; record < data.rows.Size(); ++record) {
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
    for (std::size_t record = 0; record < data.rows.Size(); ++record) {
      const std::size_t subject = subjects.ofRecord[record];
      if (subject == kNoRecord || firstOf[subject] == kNoRecord) continue;
      if (data.rows.Row(record)[column] != data.rows.Row(firstOf[subject])[column]) return false;
    }
    return true;
  }

  void MakeColumns() {
    std::vector<Column>& made = wide.data.columns;
    for (const std::size_t i : kept)
      made.push_back(EmptyColumn(data.columns[i].name, data.columns[i]));
    for (const std::string& time : times.texts) {
      const bool isTaken = std::ranges::find(made, time, &Column::name) != made.end();
      const Column& value = data.columns[columns.value];
      wide.times.push_back(isTaken ? value.name + "_" + time : time);
      made.push_back(EmptyColumn(wide.times.back(), value));
    }
    wide.data.rows = RowStore(made.size());
  }

  void FillRows() {
    const Column& value = data.columns[columns.value];
    for (std::size_t subject = 0; subject < subjects.texts.size(); ++subject) {
      if (firstOf[subject] == kNoRecord) continue;
      double* row = wide.data.rows.Append();
      const double* first = data.rows.Row(firstOf[subject]);
      std::size_t column = 0;
      for (const std::size_t i : kept) {
        row[column] = CopyCell(data.columns[i], first[i], wide.data.columns[column]);
        ++column;
      }
      for (std::size_t time = 0; time < times.texts.size(); ++time, ++column) {
        const std::size_t record = RecordAt(subject, time);
        const double missing = value.isText ? kMissingCode : kMissingNumber;
        const double cell = record == kNoRecord ? missing : data.rows.Row(record)[columns.value];
        if (record == kNoRecord) wide.absent.push_back(Pair(subject, time));
        row[column] = CopyCell(value, cell, wide.data.columns[column]);
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
  const auto index = static_cast<std::size_t>(found - data.columns.begin());
  Column& column = *found;
  std::map<double, double> scoreOfCell;
  std::vector<std::string> held;
  for (std::size_t record = 0; record < data.rows.Size(); ++record) {
    double& cell = data.rows.Row(record)[index];
    if (IsMissingCell(column, cell)) {
      cell = kMissingNumber;
      continue;
    }
    const auto [known, isNew] = scoreOfCell.emplace(cell, 0.0);
    if (isNew) {
      held.push_back(CellText(column, cell));
      const std::optional<double> score = ScoreOf(scoring, held.back());
      if (!score) FailScore(scoring, held.back());
      known->second = *score;
    }
    cell = known->second;
  }
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
  for (std::size_t record = 0; record < data.rows.Size(); ++record) {
    const double* const row = data.rows.Row(record);
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      if (i > 0) text += ',';
      const Column& column = data.columns[i];
      if (IsMissingCell(column, row[i])) continue;
      if (column.isText) {
        AppendQuoted(text, column.texts[static_cast<std::size_t>(row[i])]);
      } else {
        const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), row[i]);
        text.append(buffer.data(), written.ptr);
      }
    }
    text += '\n';
  }
  return text;
}

}  // namespace npar_host
