#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/records/batch_source.h"
#include "planning/kept_records.h"

/// Reads every record of a source once and keeps it. All records of a source have the width of the
/// first.
class InitialDataReader {
 public:
  /// Takes nothing over. `skipMissing`: records with a missing value in one of the listed variables
  /// are not kept.
  InitialDataReader(BatchSource* source, bool skipMissing, std::vector<std::int32_t> variableList,
                    const QDVarList* variables);

  /// 220002 no memory, 220003 no record kept, 220005 no source, 220026 a weight above 2147483647.
  QDStatus Read();

  [[nodiscard]] const KeptRecords& Records() const noexcept { return records; }
  [[nodiscard]] std::int64_t Count() const noexcept {
    return static_cast<std::int64_t>(records.Count());
  }

 private:
  void Prepare();
  QDStatus Keep(RecordBatch& batch);

  KeptRecords records;
  BatchSource* source;
  bool skipMissing;
  std::vector<std::int32_t> variableList;
  const QDVarList* variables;
  std::int32_t weightIndex = -1;
  std::vector<MissingMark> marks;
  CompleteRecords complete;
};

/// Walks the kept records in their order.
class NParMemoIterator final : public KeptWalk {
 public:
  using KeptWalk::KeptWalk;
  [[nodiscard]] std::unique_ptr<BatchSource> Another() const override {
    return std::make_unique<NParMemoIterator>(Records());
  }

 private:
  const double* FindColumn(std::int32_t variable) override;
  void GatherColumn(std::int32_t variable, double* values) override;
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override;
};
