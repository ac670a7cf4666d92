#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/settings_reader.h"
#include "kit/groups/category_selection.h"
#include "kit/records/record_batch.h"
#include "kit/records/record_weight.h"
#include "kit/summaries/univariate.h"

/// The split of one field's records into two classes, and the sums of weights in them.
///
/// A continuous field is split at a cut point (given, or the middle of its range): values up to it
/// are the first class. A categorical field is split by its own two categories, of which the first
/// record's is the first class, or by a list of categories that make up the first class.
class TwoClasses {
 public:
  enum class Formation { FromData, GivenCategories, CutPoint };

  /// What stands against a split.
  enum class Obstacle {
    None,
    NoFrequencies,      ///< none were collected for the field
    TooManyCategories,  ///< the field has more than two
    NoCategories        ///< no record falls into a category of the field
  };

  /// What a test's condition names in any case: the field and how it is split.
  void ReadFormation(const SettingsReader& settings);
  /// Finds the classes.
  [[nodiscard]] Obstacle Prepare(const SettingsReader& settings,
                                 const UnivariateResults* sharedData);
  void Count(RecordBatch& batch, const RecordWeight& weight);

  [[nodiscard]] Formation GetFormation() const noexcept { return formation; }
  /// Else the first record tells which class comes first.
  [[nodiscard]] bool IsOrderFree() const noexcept {
    return isContinuous || formation == Formation::GivenCategories;
  }
  [[nodiscard]] std::int32_t GetVariable() const noexcept { return variableIndex; }
  [[nodiscard]] std::int64_t FirstCount() const noexcept { return WeightOrNone(firstCount); }
  [[nodiscard]] std::int64_t SecondCount() const noexcept { return WeightOrNone(secondCount); }
  [[nodiscard]] std::int64_t Total() const noexcept { return FirstCount() + SecondCount(); }
  /// Of the first class; not a number without records.
  [[nodiscard]] double FirstShare() const noexcept {
    return static_cast<double>(FirstCount()) / static_cast<double>(Total());
  }
  /// The missing value before Prepare.
  [[nodiscard]] double CutPoint() const noexcept { return cutPoint; }
  /// Category codes of the classes, -1 for a given text that is no category.
  [[nodiscard]] const std::vector<double>& FirstCategories() const noexcept {
    return firstCategories;
  }
  [[nodiscard]] const std::vector<double>& SecondCategories() const noexcept {
    return secondCategories;
  }
  /// The given texts that are no category of the field.
  [[nodiscard]] std::vector<std::string> UnknownTexts() const {
    return TextsOfNoCategory(firstCategories, givenTexts);
  }

 private:
  [[nodiscard]] Obstacle TakeCategoriesOfData(
      const std::map<std::int32_t, std::int64_t>& frequencies);
  /// Counts the records i with isFirst(i) in the first class, the others in the second.
  template <typename IsFirst>
  void CountBy(RecordBatch& batch, const RecordWeight& weight, IsFirst isFirst);

  Formation formation = Formation::FromData;
  bool isContinuous = false;
  std::int32_t variableIndex = -1;
  double cutPoint = QDMV::gMissingValue;
  std::vector<double> firstCategories;
  std::vector<double> secondCategories;
  std::vector<std::string> givenTexts;
  std::vector<std::uint8_t> isGiven;  // by category code, for given categories
  bool isFirstRecord = true;
  std::int64_t firstCount = 0;
  std::int64_t secondCount = 0;
};
