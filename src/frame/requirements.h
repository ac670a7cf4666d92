#pragma once

#include <string>
#include <vector>

#include "foundation/host_helpers.h"
#include "foundation/names.h"

/// What the execution requirements are about.
struct RequestedFields {
  const std::vector<std::string>& fields;  // those that the selected tests read
  const std::string& caseIdField;          // empty for none
};

/// The records' treatment before a run: user-missing values of the fields made missing (where
/// "userMissing" is "exclude"), weights rounded, records with a missing value left out: in all
/// fields with "missingTreatment" "listwise", in weight and case identifier else.
void AddMissingOperation(HbHelperV1::XMLDocument& document, const QDSettings& settings,
                         const QDVarList& variables, const RequestedFields& requested);

/// How each field is wanted: categories as codes, anything else as it is. Error 220011: a field
/// that does not exist.
QDStatus AddEncodingOperation(HbHelperV1::XMLDocument& document, const QDVarList& variables,
                              const RequestedFields& requested);
