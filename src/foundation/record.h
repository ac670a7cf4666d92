#pragma once

#include <algorithm>
#include <memory>

namespace QDCommon_700 {

/// Marks of missing values.
struct QDMV {
  /// The missing value of a continuous variable: the negative finite double next to the lowest,
  /// which no measurement takes and which the searches for a minimum or maximum never start from.
  static constexpr double gMissingValue = -0x1.ffffffffffffep+1023;
  /// The missing code of a categorical variable.
  static constexpr double gMissingCategory = -1.0;
};

/// One record: doubles side by side, one for each variable of the run.
///
/// A record either owns its values (made from a size, or copied) or looks at values that lie in
/// somebody's block (View); a look costs two words and no allocation, and is good as long as the
/// block stands. Assignment copies values and gives the target storage of its own.
class Record {
 public:
  Record() noexcept = default;
  /// `size` zeros.
  explicit Record(int size)
      : owned(std::make_unique<double[]>(static_cast<std::size_t>(size))),
        values(owned.get()),
        size(size) {}
  Record(const Record& other) : Record(other.size) { CopyFrom(other); }
  Record(Record&&) noexcept = default;
  Record& operator=(const Record& other) {
    if (this == &other) return *this;
    if (!owned || size != other.size) *this = Record(other.size);
    CopyFrom(other);
    return *this;
  }
  Record& operator=(Record&&) noexcept = default;
  ~Record() = default;

  /// A record that looks at `size` doubles which it does not own.
  [[nodiscard]] static Record View(const double* values, int size) noexcept {
    Record record;
    record.size = size;
    record.LookAt(values);
    return record;
  }
  /// Moves a view on to another place of the same size.
  void LookAt(const double* place) noexcept { values = const_cast<double*>(place); }

  [[nodiscard]] int Size() const noexcept { return size; }
  [[nodiscard]] double operator[](int index) const noexcept { return values[index]; }
  /// Only for a record that owns its values.
  [[nodiscard]] double& operator[](int index) noexcept { return values[index]; }
  [[nodiscard]] const double* Values() const noexcept { return values; }

 private:
  void CopyFrom(const Record& other) noexcept {
    std::copy_n(other.values, static_cast<std::size_t>(size), values);
  }

  std::unique_ptr<double[]> owned;
  double* values = nullptr;
  int size = 0;
};

}  // namespace QDCommon_700
