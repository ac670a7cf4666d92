#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/peer.h"

namespace QDHB_700 {

/// A data model as it was read.
struct DataModelParser::Model {
  struct Field {
    std::string name;
    std::string label;
    QDXML_700::VariableKind kind = QDXML_700::VariableKind::Continuous;
    QDXML_700::StorageKind storage = QDXML_700::StorageKind::Real;
    std::optional<QDXML_700::VariableRole> role;  // empty for role none
    bool isOrdinal = false;
    std::vector<QDXML_700::QDCategory> categories;
  };

  std::vector<Field> fields;
  QDXML_700::QDRecordCounts counts;
};

}  // namespace QDHB_700
