#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/csv.h"
#include "host/data/dataset.h"

namespace npar_host {

/// What a data model document says of a field; Infer where it says nothing.
enum class Measure { Infer, Continuous, Ordinal, Nominal, Other };
enum class Storage { Infer, Real, Integer, String, Date, Time, Timestamp };
/// "real", "integer", ... as a data model says it; empty for Infer.
[[nodiscard]] const char* WordOf(Storage storage);
enum class Role { Input, FrequencyWeight, CaseId, None };

/// A value that a data model lists. `location` says where, for messages.
struct ValueSpec {
  std::string value;
  std::string label;
  bool isUserMissing = false;
  std::string location;
};

/// A field as a data model, or the command line, describes it.
struct FieldSpec {
  std::string name;
  std::string label;
  Measure measure = Measure::Infer;
  Storage storage = Storage::Infer;
  Role role = Role::Input;
  std::vector<ValueSpec> values;
  std::string location;  ///< where it is described, for messages
};

/// A category of a field. Numeric fields have both figures, texts only the text.
struct Category {
  std::string text;
  double number = 0.0;
  std::string label;
  bool isUserMissing = false;
};

/// A field with all that was left out found in the data.
struct Field {
  std::string name;
  std::string label;
  Measure measure = Measure::Continuous;  ///< never Infer
  Storage storage = Storage::Real;        ///< never Infer
  Role role = Role::Input;                ///< never None: such fields are not kept
  std::vector<Category> categories;       ///< by code; of ordinal and nominal fields only
  /// The code of what a cell of the data set holds.
  std::vector<std::int32_t> codeOfCell;
  /// User-missing values of a field without categories, as they stand in cells.
  std::vector<double> userMissingCells;
  /// A case identifier whose cells are texts: the component gets record numbers instead.
  bool isNumbered = false;

  [[nodiscard]] bool IsCategorical() const noexcept {
    return measure == Measure::Ordinal || measure == Measure::Nominal;
  }
};

/// The fields of a data set, in the order of its columns.
struct DataModel {
  std::vector<Field> fields;
};

/// What became of the records on their way to the component. Weighted counts are sums of weights,
/// each truncated toward zero.
struct RecordCounts {
  std::int64_t kept = 0;
  std::int64_t weighted = 0;
  std::int64_t dropped = 0;  ///< for a missing value
  std::int64_t badWeight = 0;
  std::int64_t weightedDropped = 0;
};

/// The fields that a data model document (schema/datamodel.xsd) describes. InputError, with file,
/// line and column, for what does not follow the schema, for fields and roles that stand twice and
/// for contradictions. `name` is the document's for messages.
[[nodiscard]] std::vector<FieldSpec> ParseModel(std::string_view text, const std::string& name);
/// As ParseModel, from a file.
[[nodiscard]] std::vector<FieldSpec> ReadModel(const std::string& path);

/// The data model document; with counts, that of the prepared records.
[[nodiscard]] std::string WriteModel(const DataModel& model, const RecordCounts* counts = nullptr);

/// Data with its model.
struct ModelledData {
  Dataset data;
  DataModel model;
};

/// What the specs say of each of the fields; the answer points into them.
[[nodiscard]] std::vector<const FieldSpec*> MatchSpecs(const std::vector<std::string>& names,
                                                       const std::vector<FieldSpec>& specs);

/// Reads the cells of a file by what `specs` say of its fields; the others are read as numbers, or
/// as texts where one is no number. InputError for a field that the data does not have, and for all
/// that CsvReader refuses.
[[nodiscard]] Dataset ReadCells(CsvReader& reader, const std::vector<FieldSpec>& specs);

/// The model of cells that were read by `specs`, or by specs without the measures that these have.
/// What they leave out is inferred: a column whose cells all are numbers or missing is continuous,
/// any other nominal text. A field of measure ordinal or nominal has numeric storage if its cells
/// and the values listed for it all are numbers. Categories are the values listed, in their order,
/// then others found in the data, numbers ascending, texts by bytes; infinities are no categories
/// and count as missing there.
[[nodiscard]] ModelledData FindModel(Dataset data, const std::vector<FieldSpec>& specs);

/// Both in one.
[[nodiscard]] ModelledData LoadData(CsvReader& reader, const std::vector<FieldSpec>& specs);

}  // namespace npar_host
