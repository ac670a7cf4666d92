#pragma once

#include <string>
#include <vector>

#include "foundation/names.h"

/// Fields of a list by the kind of their variables, in the order of the list. `categorical` holds
/// the ordinal and the nominal ones.
struct FieldsByKind {
  std::vector<std::string> continuous;
  std::vector<std::string> categorical;
  std::vector<std::string> ordinal;
  std::vector<std::string> nominal;
};

/// Names that are no variable and variables of kind Other are left out.
[[nodiscard]] FieldsByKind SplitByKind(const QDVarList& variables,
                                       const std::vector<std::string>& fields);
