#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "host/data/chunks.h"
#include "host/data/codes.h"
#include "host/data/dataset.h"

namespace npar_host {

/// A field as the component gets it: a column of the data, and what becomes of its cells on the
/// way.
struct FieldView {
  Chunks<double> numbers;
  Codes codes;                       ///< in place of numbers
  double missing = kMissingNumber;   ///< what is missing to the component
  std::vector<double> valueOfCode;   ///< what codes are delivered as, from kMissingCode on
  std::vector<double> missingCells;  ///< numbers that are missing, user-missing values
  bool isRounded = false;            ///< a weight: half away from zero
  bool isNumbered = false;           ///< the record number, from 1, where the cell is not missing

  /// Are the numbers delivered as they stand?
  [[nodiscard]] bool IsPlain() const noexcept {
    return codes.Size() == 0 && missingCells.empty() && !isRounded && !isNumbered;
  }
  /// The values of `count` records from `first` on, which there are; one every `stride` doubles.
  void Deliver(std::size_t first, std::size_t count, double* target, std::size_t stride) const;
};

/// The records that a component gets: fields side by side, perhaps not all records of the data.
class RecordView {
 public:
  RecordView() = default;
  /// All records. Each field holds that many cells.
  RecordView(std::vector<FieldView> fields, std::size_t records)
      : fields(std::move(fields)), records(records) {}

  [[nodiscard]] std::size_t Width() const noexcept { return fields.size(); }
  [[nodiscard]] const FieldView& Field(std::size_t field) const { return fields[field]; }
  /// Leaves records of the data out; a byte for each, 0 for those that stay.
  void LeaveOut(const std::vector<std::uint8_t>& isLeftOut);
  [[nodiscard]] bool IsWhole() const noexcept { return kept.empty(); }

  /// The first record, in the numbering of the data, that is kept, from `record` on; the number of
  /// records of the data without one.
  [[nodiscard]] std::size_t NextKept(std::size_t record) const noexcept;
  /// Copies up to `count` kept records, values side by side, from the record `next` of the data on,
  /// which moves behind them; how many there were.
  std::size_t Read(std::size_t& next, std::size_t count, double* target) const;
  /// The same of one field.
  std::size_t ReadField(std::size_t field, std::size_t& next, std::size_t count,
                        double* target) const;
  /// The number in the data of the kept record with that number.
  [[nodiscard]] std::size_t SourceOf(std::size_t record) const noexcept;

 private:
  template <class Deliver>
  std::size_t ForEachRun(std::size_t& next, std::size_t count, const Deliver& deliver) const;
  /// Behind the last of the kept records that follow one another from `record` on.
  [[nodiscard]] std::size_t EndOfRun(std::size_t record) const noexcept;

  std::vector<FieldView> fields;
  std::size_t records = 0;
  std::vector<std::uint64_t> kept;  // a bit for each record; empty: all are kept
};

}  // namespace npar_host
