#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "foundation/names.h"

class NPARTest;
class TestConstruction;

/// Makes the test of one entry. A problem of the entry makes a test that is born failed.
using ConstructTest = std::unique_ptr<NPARTest> (*)(TestConstruction& construction);

struct TestTableRow {
  std::string_view entryName;
  ConstructTest construct;
};

/// Every test of the component by the name of its entries. Defined beside the tests.
[[nodiscard]] std::span<const TestTableRow> TestTable();
