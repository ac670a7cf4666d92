#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/groups/two_classes.h"
#include "report/elements.h"

/// Condition keys of a test on two classes, by how the classes were formed.
struct TwoClassKeys {
  std::string_view givenList;
  std::string_view cutPoint;
  std::string_view fromData;
};

/// Adds "Condition": key and field, classes or cut point, then the further parameters; after it the
/// given texts that are no category.
void AddTwoClassCondition(XMLElement& algorithm, const TwoClasses& classes,
                          const TwoClassKeys& keys, const std::vector<std::string>& further);
