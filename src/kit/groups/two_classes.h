#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/groups/category_selection.h"
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

  /// No frequencies were collected for the field.
  static constexpr std::int32_t kNoFrequencies = 221306;
  /// The field has more than two categories.
  static constexpr std::int32_t kTooManyCategories = 221309;
  /// No record falls into a category of the field.
  static constexpr std::int32_t kNoCategories = 221310;

  /// What is known before the test's status is looked at: "classFormation", "variableIndex",
  /// "weightVariableIndex", "measureLevel".
  void ReadFormation(const QDSettings& settings);
  /// Finds the classes; 0, or the code of what stands against it.
  [[nodiscard]] std::int32_t Prepare(const QDSettings& settings,
                                     const UnivariateResults* sharedData);
  void Count(const Record& record);

  [[nodiscard]] Formation GetFormation() const noexcept { return formation; }
  [[nodiscard]] std::int32_t GetVariable() const noexcept { return variableIndex; }
  [[nodiscard]] std::int64_t FirstCount() const noexcept { return firstCount; }
  [[nodiscard]] std::int64_t SecondCount() const noexcept { return secondCount; }
  [[nodiscard]] std::int64_t Total() const noexcept { return firstCount + secondCount; }
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
  [[nodiscard]] std::int32_t TakeCategoriesOfData(
      const std::map<std::int32_t, std::int64_t>& frequencies);

  Formation formation = Formation::FromData;
  bool isContinuous = false;
  std::int32_t variableIndex = -1;
  RecordWeight weight;
  double cutPoint = QDMV::gMissingValue;
  std::vector<double> firstCategories;
  std::vector<double> secondCategories;
  std::vector<std::string> givenTexts;
  std::vector<bool> isFirst;  // by category code, for given categories
  bool firstRecord = true;
  std::int64_t firstCount = 0;
  std::int64_t secondCount = 0;
};
