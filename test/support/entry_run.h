#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/matchers.h"
#include "support/row_matcher.h"
#include "support/run_all_passes.h"
#include "support/schema.h"
#include "support/test_settings.h"
#include "support/variables.h"

// What the test files of the single hypothesis tests share: entries run to documents.

using Texts = std::vector<std::string>;
using Codes = std::vector<std::int32_t>;
using Message = AlgorithmElement::Message;
using Messages = std::vector<Message>;

/// The one error of a failed test.
[[nodiscard]] inline Messages Error(std::int32_t code, Texts params = {}) {
  return {{code, "error", std::move(params)}};
}

/// A figure of the document and what it should be; empty: it should be absent.
struct Figure {
  const char* path;
  std::optional<double> value;
  double tolerance = kDocumentTolerance;
};

inline void ExpectFigures(const AlgorithmElement& result, const std::vector<Figure>& figures) {
  for (const Figure& figure : figures) {
    EXPECT_THAT(result.Number(figure.path), IsCloseTo(figure.value, figure.tolerance))
        << figure.path;
  }
}

/// The rows that equal entries of attributes should hold.
inline void ExpectTexts(const AlgorithmElement& result,
                        const std::vector<std::pair<const char*, std::string>>& texts) {
  for (const auto& [path, text] : texts) EXPECT_EQ(result.Text(path), text) << path;
}

/// An entry and the messages that it leads to.
struct EntryCase {
  const char* catches;
  TestSettings entry;
  Messages messages;
};

/// Runs each entry from construction to document. A failed test leaves its decision open and has no
/// figures.
inline void ExpectMessages(const std::string& entryName, const QDVarList& variables,
                           const Rows& rows, const std::vector<EntryCase>& cases) {
  for (const EntryCase& row : cases) {
    SCOPED_TRACE(row.catches);
    const std::string document = RunEntryDocument(variables, rows, entryName, row.entry);
    EXPECT_TRUE(IsValid(document, "statxml-7.0.xsd"));
    const std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(document);
    ASSERT_EQ(elements.size(), 1u);
    const AlgorithmElement& result = elements[0];
    EXPECT_EQ(result.Messages(), row.messages);
    if (row.messages.empty() || row.messages.back().type != "error") continue;
    EXPECT_EQ(result.Decision(), result.Type() == "hypothesis_test" ? "unknown" : "(absent)");
    EXPECT_EQ(result.ChildNames().back(), "StructuredTable WarningMessages");
  }
}
