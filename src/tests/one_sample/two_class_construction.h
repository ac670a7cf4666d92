#pragma once

#include <cstdint>

#include "planning/test_construction.h"

/// The codes of a test that splits one field into two classes.
struct TwoClassCodes {
  std::int32_t noVariableName;
  std::int32_t unknownVariable;  ///< parameter: the name
  std::int32_t unknownLevel;
  std::int32_t noCategoryList;    ///< a list was announced and is missing or empty
  std::int32_t noCutPoint;        ///< a cut point was announced and is missing
  std::int32_t cutPointWanted;    ///< a continuous field with another formation
  std::int32_t categoriesWanted;  ///< a categorical field with a cut point
};

/// Reads field and classes of an entry and adds "variableIndex", "measureLevel", "classFormation"
/// and what the formation needs to the test's settings; asks for the field's summaries.
void ReadTwoClasses(TestConstruction& construction, const TwoClassCodes& codes);
