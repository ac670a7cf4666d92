#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/data/dataset.h"

namespace npar_host {

/// The numbers that stand for the categories of a column.
struct Scoring {
  std::string field;
  std::vector<std::pair<std::string, double>> scores;
};

/// Turns the cells of a column into the scores of their categories. Answers with the categories
/// that no record holds. InputError for a category without a score.
std::vector<std::string> ScoreCategories(Dataset& data, const Scoring& scoring);

/// The columns of long data, a record of which is one value of a subject at a time.
struct LongColumns {
  std::size_t subject;
  std::size_t time;
  std::size_t value;
};

/// What became of long data.
struct WideData {
  Dataset data;                     ///< a record for each subject
  std::vector<std::string> times;   ///< the columns made of them
  std::vector<std::string> absent;  ///< "subject 5 at t3": pairs without a record
  std::size_t withoutPlace = 0;     ///< records without subject or time, which are left out
};

/// Makes a record of each subject, with a column for each time: numbers ascending, texts in the
/// order in which they come. Other columns are kept where they don't differ within a subject.
/// InputError for a subject that has two records of one time; `placeOf` says where a record stands.
[[nodiscard]] WideData MakeWide(const Dataset& data, const LongColumns& columns,
                                const std::function<std::string(std::size_t record)>& placeOf);

/// The data as CSV that reads back as they are: texts in quotes, missing cells empty.
[[nodiscard]] std::string WriteCsv(const Dataset& data);

}  // namespace npar_host
