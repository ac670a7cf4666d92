#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/process.h"

/// Is the document valid against a schema of schema/, such as "statxml-7.0.xsd"? Asks xmllint.
[[nodiscard]] inline testing::AssertionResult IsValid(const std::string& document,
                                                      const std::string& schema) {
  const ProcessResult run =
      RunProcess({"/usr/bin/xmllint", "--noout", "--schema", "schema/" + schema, "-"}, document);
  if (run.exitCode == 0) return testing::AssertionSuccess();
  return testing::AssertionFailure() << run.err << document;
}
