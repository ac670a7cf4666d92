#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "planning/record_iterators.h"
#include "support/variables.h"

using Rows = std::vector<std::vector<double>>;

/// Two variables: the running number and a value that repeats.
inline Rows Numbered(int count) {
  Rows rows;
  for (int i = 0; i < count; ++i) rows.push_back({static_cast<double>(i), (i * 7) % 5 * 1.0});
  return rows;
}

/// What is kept of some records.
struct Kept {
  Kept(QDVarList list, Rows rows, bool skipMissing = false)
      : variables(std::move(list)), source(std::move(rows)) {
    std::vector<std::int32_t> all;
    for (std::int32_t i = 0; i < variables.Size(); ++i) all.push_back(i);
    reader = std::make_unique<InitialDataReader>(&batches, skipMissing, all, &variables);
    status = reader->Read();
  }
  QDVarList variables;
  MemoryBlocks source;
  IteratorBatches batches{source};
  std::unique_ptr<InitialDataReader> reader;
  QDStatus status;
};

inline QDVarList TwoVariables() {
  return VariableListBuilder().Continuous("n").Continuous("x").Build();
}

/// A variable of all records, one by one.
inline std::vector<double> Walk(RecordIterator& records, int variable) {
  std::vector<double> values;
  while (records.HasNext()) values.push_back((*records.Next())[variable]);
  return values;
}

/// The same by batches.
inline std::vector<double> WalkBatches(BatchSource& records, int variable) {
  std::vector<double> values;
  ForEachBatch(records, [&](RecordBatch& batch) {
    values.insert(values.end(), batch.Of(variable), batch.Of(variable) + batch.Size());
  });
  return values;
}
