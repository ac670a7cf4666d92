#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/program.h"
#include "support/temporary_file.h"

/// Is the document valid against a schema of schema/, such as "statxml-7.0.xsd"? Asks xmllint.
[[nodiscard]] inline testing::AssertionResult IsValid(const std::string& document,
                                                      const std::string& schema) {
  const TemporaryFile file(document);
  const ProgramOutcome outcome =
      RunProgram("xmllint --noout --schema schema/" + schema + " " + file.Path());
  if (outcome.exitCode == 0) return testing::AssertionSuccess();
  return testing::AssertionFailure() << outcome.output << document;
}
