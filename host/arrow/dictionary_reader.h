#pragma once

#include <memory>

#include "host/arrow/column_reader.h"

namespace npar_host {

/// The reader of a column whose values are indices of entries that another reader reads. Entries
/// that no record has are never looked at, but for their order where that has a meaning.
[[nodiscard]] std::unique_ptr<ColumnReader> MakeDictionaryReader(
    ColumnLabel label, const ArrowType& indices, std::unique_ptr<ColumnReader> entries, bool isText,
    bool isOrdered);

}  // namespace npar_host
