#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "planning/test_construction.h"

/// The codes of a test that splits one field into two classes.
struct TwoClassCodes {
  std::int32_t noVariableName;
  std::int32_t unknownVariable;  ///< parameter: the name
  std::int32_t unknownMeasure;
  std::int32_t noCategoryList;    ///< a list was announced and is missing or empty
  std::int32_t noCutPoint;        ///< a cut point was announced and is missing
  std::int32_t cutPointWanted;    ///< a continuous field with another formation
  std::int32_t categoriesWanted;  ///< a categorical field with a cut point
};

/// The field of a test and how its classes are formed.
struct TwoClassEntry {
  std::int32_t variable = -1;
  std::string formation = "getFromData";
  std::vector<std::string> givenTexts;
};

/// Reads field and classes of an entry and puts "variableIndex", "classFormation" and what the
/// formation needs; asks for the field's summaries.
TwoClassEntry ReadTwoClasses(TestConstruction& construction, const TwoClassCodes& codes);

/// Holds the formation against the field's measurement level and puts "measureLevel" and the codes
/// of given categories. What a test reads for itself is put before it: a test that fails here has
/// that still.
void CheckTwoClasses(TestConstruction& construction, const TwoClassCodes& codes,
                     const TwoClassEntry& entry);
