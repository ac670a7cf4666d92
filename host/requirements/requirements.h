#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/model.h"
#include "host/requirements/record_view.h"

namespace npar_host {

/// What a component asks of its host before a run.
struct Requirements {
  enum class Encoding { None, Nominal, Ordinal };
  struct FieldEncoding {
    std::string name;
    Encoding encoding = Encoding::None;
  };

  std::vector<std::string> excludeUserMissing;  ///< fields whose user-missing values are missing
  std::string weightField;                      ///< empty without a frequency weight
  bool roundWeight = false;                     ///< round it half away from zero
  std::vector<std::string> listwiseDelete;      ///< a missing value in one of them drops the record
  std::vector<FieldEncoding> requiredFields;
};

/// Reads an execution requirements document. InputError for one that this host cannot carry out.
[[nodiscard]] Requirements ParseRequirements(std::string_view text);

/// The records that a component gets, and what it is told of them.
struct PreparedData {
  RecordView records;  ///< a value for each field of the model
  DataModel model;
  RecordCounts counts;
  std::string modelText;  ///< the data model document of these records, counts included

  /// Reports name a case by its identifier's text where the component saw its record number (from
  /// 1, in the data file); empty without such a field and for a number that is none.
  [[nodiscard]] std::string_view CaseText(double recordNumber) const;

  TextPool caseTexts;
  Codes caseOfRecord;  ///< in caseTexts; by record number less 1
};

/// Carries the requirements out, in this order: user-missing values become missing in the fields
/// named for that (elsewhere they are values like others); the weight is rounded, and a record
/// whose weight is missing, not a number or below 1 is dropped as one of bad weight; a record with
/// a missing value in a field named for listwise deletion is dropped and counted; categorical
/// values become codes, missing ones -1 there and HB_MISSING_VALUE elsewhere.
///
/// A categorical field that is required without encoding (a case identifier that the data model
/// does not call one) is delivered as the numbers it holds; texts as record numbers. The cells stay
/// where they are. InputError for a field that the data does not have.
[[nodiscard]] PreparedData Prepare(const Requirements& requirements, ModelledData loaded);

}  // namespace npar_host
