#pragma once

#include <cstddef>
#include <string>

#include "host/data/missing_tokens.h"
#include "host/data/number_notation.h"

namespace npar_host {

/// Where the cells of a data set come from, for messages about them.
class CellSource {
 public:
  virtual ~CellSource() = default;

  /// What its missing cells may have held; Column::missing counts them.
  [[nodiscard]] virtual const MissingTokens& Tokens() const = 0;
  [[nodiscard]] virtual const NumberNotation& Notation() const = 0;
  /// "name:line:column" of a place in the text.
  [[nodiscard]] virtual std::string LocationOf(std::size_t offset) const = 0;

 protected:
  CellSource() = default;
  CellSource(const CellSource&) = default;
  CellSource& operator=(const CellSource&) = default;
};

}  // namespace npar_host
