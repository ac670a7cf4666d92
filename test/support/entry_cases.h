#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/run_all_passes.h"
#include "support/schema.h"
#include "support/test_settings.h"
#include "support/variables.h"

/// An entry over "x" and "y" (continuous), "g" (categorical), and the messages it leads to.
struct EntryCase {
  const char* catches;
  std::optional<std::vector<std::string>> names;  // "variableName"
  std::vector<AlgorithmElement::Message> messages;
};

/// Runs each entry from construction to document; `put` adds what all the test's entries need.
template <typename Put>
void ExpectMessages(const std::string& entryName, const std::vector<EntryCase>& cases, Put put) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Continuous("y").Nominal("g", {"a"}).Build();
  const Rows rows = {{1, 2, 0}, {3, 1, 0}, {4, 4.5, 0}};
  for (const EntryCase& row : cases) {
    SCOPED_TRACE(row.catches);
    TestSettings entry;
    if (row.names) entry.Put("variableName", *row.names);
    put(entry);
    const std::string document = RunEntryDocument(variables, rows, entryName, entry.Get());
    EXPECT_TRUE(IsValid(document, "statxml-7.0.xsd"));
    const std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(document);
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0].Messages(), row.messages);
  }
}
