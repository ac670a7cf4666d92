#pragma once

#include <memory>
#include <string>
#include <vector>

#include "catalogue/card.h"
#include "foundation/names.h"
#include "kit/contract/test.h"
#include "report/extended_tables.h"
#include "report/messages.h"

/// Key and parameters of a "Condition".
struct Condition {
  std::string key;
  std::vector<std::string> parameters;
};

/// What an "Algorithm" element begins with.
struct AlgorithmHead {
  const catalogue::Card& card;
  /// The significance that decides; not read for an estimate.
  double decidingSig = 0.0;
  Condition condition;
  /// Given texts that are no category of the field.
  std::vector<std::string> unknownTexts = {};
  /// The messages of a test that did not fail stand behind its figures.
  bool messagesLast = false;
};

/// The element of a test up to its figures. Its decision is "unknown" for a test that failed, else
/// "reject" where the test's level is above the deciding significance, else "retain".
[[nodiscard]] std::unique_ptr<XMLElement> StartAlgorithm(const NPARTest& test,
                                                         const AlgorithmHead& head);

/// The element of a test, which the caller owns: what StartAlgorithm gives and, unless the test has
/// failed, what `writeFigures(element)` adds and the test's extended figures.
template <typename WriteFigures>
[[nodiscard]] XMLElement* WriteAlgorithm(const NPARTest& test, const AlgorithmHead& head,
                                         WriteFigures writeFigures) {
  std::unique_ptr<XMLElement> algorithm = StartAlgorithm(test, head);
  if (!test.HasFailed()) {
    writeFigures(*algorithm);
    if (head.messagesLast) WriteMessages(*algorithm, test.GetMessages());
    WriteExtendedFigures(*algorithm, test.GetExtended());
  }
  return algorithm.release();
}
