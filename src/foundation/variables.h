#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/export.h"

namespace QDXML_700 {

/// Kinds of a variable.
enum class VariableKind {
  None = 0,
  Continuous = 1,
  NumericCategory = 2,
  StringCategory = 3,
  Other = 4  ///< handled like continuous, offered to no test
};

/// How a host stores a variable's values. Dates are days since 1970, times seconds of the day,
/// timestamps seconds since 1970.
enum class StorageKind { Real = 1, Integer = 2, String = 3, Date = 4, Time = 5, Timestamp = 6 };

enum class VariableRole { Input, FrequencyWeight, CaseId };

/// The categories of a variable, by their code from 0.
class QD_EXPORT QDCategoryList {
 public:
  virtual ~QDCategoryList() = default;
  [[nodiscard]] virtual std::int32_t Size() const = 0;
  /// Empty, not a number, for a code that is none.
  [[nodiscard]] virtual const std::string& GetText(std::int32_t code) const = 0;
  [[nodiscard]] virtual double GetNumber(std::int32_t code) const = 0;
  [[nodiscard]] virtual const std::string& GetLabel(std::int32_t code) const = 0;
  /// The code of a category, -1 for what is none. Constant time.
  [[nodiscard]] virtual std::int32_t FindText(std::string_view text) const = 0;
  [[nodiscard]] virtual std::int32_t FindNumber(double number) const = 0;
};

/// One variable of a run.
class QD_EXPORT IQDVariable {
 public:
  virtual ~IQDVariable() = default;
  [[nodiscard]] virtual VariableKind GetType() const = 0;
  [[nodiscard]] virtual const std::string& GetName() const = 0;
  [[nodiscard]] virtual const std::string& GetLabel() const = 0;
  [[nodiscard]] virtual VariableRole GetRole() const = 0;
  /// 0 for a variable that is not categorical.
  [[nodiscard]] virtual std::int32_t GetCategoryCount() const = 0;
  [[nodiscard]] virtual bool IsContinuous() const = 0;
  [[nodiscard]] virtual bool IsCategorical() const = 0;
  [[nodiscard]] virtual StorageKind GetStorageKind() const = 0;
  /// Position of its field in the host's data model.
  [[nodiscard]] virtual std::int32_t GetFieldIndex() const = 0;
  [[nodiscard]] virtual bool HasLabel() const = 0;
  [[nodiscard]] virtual bool IsFrequencyWeight() const = 0;
  [[nodiscard]] virtual bool IsCaseId() const = 0;
  /// The double that stands for a missing value of this variable.
  [[nodiscard]] virtual double GetMissingMark() const = 0;
  [[nodiscard]] virtual bool IsMissing(double value) const = 0;
  /// The number that a text spells in this variable's storage; false for a text that spells none.
  virtual bool TextToNumber(std::string_view text, double& number) const = 0;
  /// The text of a number in this variable's storage.
  [[nodiscard]] virtual std::string NumberToText(double number) const = 0;
  [[nodiscard]] virtual std::unique_ptr<IQDVariable> Clone() const = 0;
  /// The categories; null for a variable that is not categorical. Owned by the variable.
  [[nodiscard]] virtual const QDCategoryList* GetCategories() const = 0;
};

/// One category as a data model gives it.
struct QDCategory {
  std::string text;
  double number = 0.0;
  std::string label;
};

/// A continuous variable, or one of kind Other.
class QD_EXPORT QDContVar : public IQDVariable {
 public:
  QDContVar(std::string name, std::string label, VariableKind kind, StorageKind storage,
            VariableRole role, std::int32_t fieldIndex);

  VariableKind GetType() const override;
  const std::string& GetName() const override;
  const std::string& GetLabel() const override;
  VariableRole GetRole() const override;
  std::int32_t GetCategoryCount() const override;
  bool IsContinuous() const override;
  bool IsCategorical() const override;
  StorageKind GetStorageKind() const override;
  std::int32_t GetFieldIndex() const override;
  bool HasLabel() const override;
  bool IsFrequencyWeight() const override;
  bool IsCaseId() const override;
  double GetMissingMark() const override;
  bool IsMissing(double value) const override;
  bool TextToNumber(std::string_view text, double& number) const override;
  std::string NumberToText(double number) const override;
  std::unique_ptr<IQDVariable> Clone() const override;
  const QDCategoryList* GetCategories() const override;

 private:
  std::string name;
  std::string label;
  VariableKind kind;
  StorageKind storage;
  VariableRole role;
  std::int32_t fieldIndex;
};

/// A categorical variable with its categories.
class QD_EXPORT QDCatVar : public QDContVar {
 public:
  /// The categories' codes are their places in `categories`; of equal ones the first is found.
  QDCatVar(std::string name, std::string label, VariableKind kind, StorageKind storage,
           VariableRole role, std::int32_t fieldIndex, bool isOrdinal,
           std::vector<QDCategory> categories);

  /// True for an ordinal variable.
  [[nodiscard]] virtual bool GetOrdinalFlag() const;

  std::int32_t GetCategoryCount() const override;
  double GetMissingMark() const override;
  bool IsMissing(double value) const override;
  std::unique_ptr<IQDVariable> Clone() const override;
  const QDCategoryList* GetCategories() const override;

 private:
  bool isOrdinal;
  std::shared_ptr<const QDCategoryList> categories;
};

/// How many records a run was offered and what became of them. "Weighted" counts are sums of
/// weights.
struct QDRecordCounts {
  double unweighted = 0;       ///< records that reach the run
  double weighted = 0;         ///< their weights
  double dropped = 0;          ///< records dropped for a missing value
  double badWeight = 0;        ///< records dropped for a missing weight or one below 1
  double weightedDropped = 0;  ///< weights of the records dropped for a missing value
};

/// The run's variables in the order of the data model.
class QD_EXPORT QDVarList {
 public:
  QDVarList();
  QDVarList(QDVarList&&) noexcept;
  QDVarList& operator=(QDVarList&&) noexcept;
  virtual ~QDVarList();

  [[nodiscard]] std::int32_t Size() const;
  /// Null out of range. Owned by the list.
  [[nodiscard]] const IQDVariable* GetVarAt(std::int32_t index) const;
  /// The index of the first variable of that name, -1 if there is none. Constant time.
  [[nodiscard]] std::int32_t FindVariable(std::string_view name) const;
  /// The index of the frequency weight, -1 if there is none.
  [[nodiscard]] std::int32_t GetFreqWeightVariable() const;

  [[nodiscard]] double GetUnWeightedCount() const;
  [[nodiscard]] double GetWeightedCount() const;
  [[nodiscard]] double GetDroppedCount() const;
  [[nodiscard]] double GetBadWeightCount() const;
  [[nodiscard]] double GetWeightedDroppedCount() const;

  void Add(std::unique_ptr<IQDVariable> variable);
  void SetCounts(const QDRecordCounts& newCounts);

 private:
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>{}(text);
    }
  };

  std::vector<std::unique_ptr<IQDVariable>> variables;
  std::unordered_map<std::string, std::int32_t, NameHash, std::equal_to<>> indexOfName;
  std::int32_t weightVariable = -1;
  QDRecordCounts counts;
};

}  // namespace QDXML_700
