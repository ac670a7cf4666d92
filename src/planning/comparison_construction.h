#pragma once

#include <string>

#include "planning/test_construction.h"

/// Puts the word of the entry's "typeOfMultipleComparison" as two flags, "pairWise" and "stepWise";
/// an absent or unknown word sets neither.
inline void PutComparisonFlags(TestConstruction& construction) {
  const std::string word = construction.ReadText("typeOfMultipleComparison");
  construction.Put("pairWise", word == "pairWise");
  construction.Put("stepWise", word == "stepWise");
}
