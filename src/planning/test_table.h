#pragma once

#include <span>
#include <string_view>

#include "foundation/names.h"

class NPARPlanner;

/// Makes the test of one entry and hands it to the planner. A problem of the entry makes a test
/// that is born failed; `status` tells it and is returned.
using ConstructTest = QDStatus (*)(NPARPlanner& planner, QDStatus& status, const QDSettings& entry);

struct TestTableRow {
  std::string_view entryName;
  ConstructTest construct;
};

/// Every test of the component by the name of its entries. Defined beside the tests.
[[nodiscard]] std::span<const TestTableRow> TestTable();
