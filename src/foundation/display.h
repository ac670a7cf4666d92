#pragma once

#include <cstdint>
#include <string>

#include "foundation/export.h"

/// Diagnostic print-outs on standard error, without effect on results. They are silent unless the
/// platform was built with QD_DIAGNOSTICS.
namespace QDDisplay_700 {

QD_EXPORT void DisplayText(std::int32_t code, const std::string& text);
QD_EXPORT void DisplayS(const std::string& name, const std::string& value);
QD_EXPORT void DisplayI(const std::string& name, std::int64_t value);

}  // namespace QDDisplay_700
