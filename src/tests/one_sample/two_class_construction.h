#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/shared_codes.h"
#include "planning/test_construction.h"

/// The field of a test and how its classes are formed.
struct TwoClassEntry {
  std::int32_t variable = -1;
  std::string formation = "getFromData";
  std::vector<std::string> givenTexts;
};

/// Reads field and classes of an entry and puts "variableIndex", "classFormation" and what the
/// formation needs; asks for the field's summaries.
TwoClassEntry ReadTwoClasses(TestConstruction& construction, const catalogue::TwoClassCodes& codes);

/// Holds the formation against the field's measurement level and puts "measureLevel" and the codes
/// of given categories. What a test reads for itself is put before it: a test that fails here has
/// that still.
void CheckTwoClasses(TestConstruction& construction, const catalogue::TwoClassCodes& codes,
                     const TwoClassEntry& entry);
