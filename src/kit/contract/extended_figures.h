#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// A count, a number, or none. A number that is not finite is none.
class FigureValue {
 public:
  FigureValue() = default;
  template <std::integral Integer>
  FigureValue(Integer count) : value(static_cast<std::int64_t>(count)) {}
  FigureValue(double number) {
    if (std::isfinite(number)) value = number;
  }
  FigureValue(const std::optional<double>& number) {
    if (number) *this = FigureValue(*number);
  }

  [[nodiscard]] bool IsNone() const noexcept {
    return std::holds_alternative<std::monostate>(value);
  }
  /// Null for one that is none.
  [[nodiscard]] const std::int64_t* Count() const noexcept {
    return std::get_if<std::int64_t>(&value);
  }
  [[nodiscard]] const double* Number() const noexcept { return std::get_if<double>(&value); }

 private:
  std::variant<std::monostate, std::int64_t, double> value;
};

/// A table of figures: a row for each group, field or category. Names outlive it.
struct FigureTable {
  struct Row {
    std::string label;  // a code, an index or "Group0"; empty where the table names no rows
    std::vector<FigureValue> cells;
  };

  void AddRow(std::string label, std::vector<FigureValue> cells) {
    rows.push_back({std::move(label), std::move(cells)});
  }
  template <std::integral Integer>
  void AddRow(Integer code, std::vector<FigureValue> cells) {
    AddRow(std::to_string(code), std::move(cells));
  }

  std::string_view name;
  std::vector<std::string_view> columns;
  std::vector<Row> rows;
};

/// What a test tells beside its document's own figures where a run asks for it: single figures by
/// name, then tables, in the order in which they are added. A figure that is none and a table
/// without rows are left out. What allocates may throw std::bad_alloc.
class ExtendedFigures {
 public:
  struct Figure {
    std::string_view name;  // outlives this
    FigureValue value;
  };

  void Add(std::string_view name, FigureValue value) {
    if (!value.IsNone()) figures.push_back({name, value});
  }
  void Add(FigureTable table) {
    if (!table.rows.empty()) tables.push_back(std::move(table));
  }

  [[nodiscard]] const std::vector<Figure>& Figures() const noexcept { return figures; }
  [[nodiscard]] const std::vector<FigureTable>& Tables() const noexcept { return tables; }
  [[nodiscard]] bool IsEmpty() const noexcept { return figures.empty() && tables.empty(); }

 private:
  std::vector<Figure> figures;
  std::vector<FigureTable> tables;
};
