#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/names.h"

/// Builds a run's variables, one call for each:
///   VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).Weight("w").Build()
class VariableListBuilder {
 public:
  VariableListBuilder& Continuous(const std::string& name) {
    return Add(name, VariableKind::Continuous, QDXML_700::VariableRole::Input);
  }
  /// Of the kind that no test takes.
  VariableListBuilder& Other(const std::string& name) {
    return Add(name, VariableKind::Other, QDXML_700::VariableRole::Input);
  }
  VariableListBuilder& Weight(const std::string& name) {
    return Add(name, VariableKind::Continuous, QDXML_700::VariableRole::FrequencyWeight);
  }
  VariableListBuilder& CaseId(const std::string& name) {
    return Add(name, VariableKind::Continuous, QDXML_700::VariableRole::CaseId);
  }
  /// Text categories.
  VariableListBuilder& Nominal(const std::string& name, const std::vector<std::string>& texts,
                               bool isOrdinal = false) {
    std::vector<QDXML_700::QDCategory> categories;
    for (const std::string& text : texts) categories.push_back({text, 0.0, {}});
    return AddCategorical(name, VariableKind::StringCategory, StorageKind::String, isOrdinal,
                          std::move(categories));
  }
  VariableListBuilder& Ordinal(const std::string& name, const std::vector<std::string>& texts) {
    return Nominal(name, texts, true);
  }
  /// Numeric categories.
  VariableListBuilder& NominalNumbers(const std::string& name, const std::vector<double>& numbers,
                                      bool isOrdinal = false,
                                      StorageKind storage = StorageKind::Real) {
    std::vector<QDXML_700::QDCategory> categories;
    for (const double number : numbers) {
      categories.push_back({ReplaceSep(number, "%.15g"), number, {}});
    }
    return AddCategorical(name, VariableKind::NumericCategory, storage, isOrdinal,
                          std::move(categories));
  }
  VariableListBuilder& OrdinalNumbers(const std::string& name, const std::vector<double>& numbers) {
    return NominalNumbers(name, numbers, true);
  }
  [[nodiscard]] QDVarList Build() { return std::move(list); }

 private:
  VariableListBuilder& Add(const std::string& name, VariableKind kind,
                           QDXML_700::VariableRole role) {
    list.Add(std::make_unique<QDXML_700::QDContVar>(name, "", kind, StorageKind::Real, role,
                                                    list.Size()));
    return *this;
  }
  VariableListBuilder& AddCategorical(const std::string& name, VariableKind kind,
                                      StorageKind storage, bool isOrdinal,
                                      std::vector<QDXML_700::QDCategory> categories) {
    list.Add(std::make_unique<QDCatVar>(name, "", kind, storage, QDXML_700::VariableRole::Input,
                                        list.Size(), isOrdinal, std::move(categories)));
    return *this;
  }

  QDVarList list;
};

/// Records in memory, one by one.
class MemoryRecords : public MultiPassRecordIter {
 public:
  explicit MemoryRecords(std::vector<std::vector<double>> rows) : rows(std::move(rows)) {}

  bool HasNext() override { return position < rows.size(); }
  const Record* Next() override {
    if (!HasNext()) return nullptr;
    const std::vector<double>& row = rows[position++];
    current = Record::View(row.data(), static_cast<int>(row.size()));
    return &current;
  }
  int GetState() const override { return position < rows.size() ? 0 : 1; }
  int Reset() override {
    position = 0;
    ++resets;
    return 0;
  }
  /// How often the records were asked for from the start.
  [[nodiscard]] int Resets() const noexcept { return resets; }

 protected:
  std::vector<std::vector<double>> rows;
  std::size_t position = 0;

 private:
  Record current;
  int resets = 0;
};

/// Records in memory that are also handed out in blocks.
class MemoryBlocks final : public MemoryRecords, public IRecordBlocks {
 public:
  explicit MemoryBlocks(std::vector<std::vector<double>> rows, std::size_t rowsAtOnce = 1000)
      : MemoryRecords(std::move(rows)), rowsAtOnce(rowsAtOnce) {}

  bool NextBlock(RecordBlock& block) override {
    addresses.clear();
    while (position < rows.size() && addresses.size() < rowsAtOnce) {
      addresses.push_back(rows[position++].data());
    }
    block = {addresses.data(), addresses.size()};
    return block.count > 0;
  }
  int GetRecordWidth() const override {
    return rows.empty() ? 0 : static_cast<int>(rows.front().size());
  }

 private:
  std::size_t rowsAtOnce;
  std::vector<const double*> addresses;
};

/// Records that can be read only once.
class OnePassRecords final : public RecordIterator {
 public:
  explicit OnePassRecords(std::vector<std::vector<double>> rows) : records(std::move(rows)) {}
  bool HasNext() override { return records.HasNext(); }
  const Record* Next() override { return records.Next(); }
  int GetState() const override { return records.GetState(); }

 private:
  MemoryRecords records;
};
