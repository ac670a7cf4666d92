#pragma once

#include <cstdint>

/// Which records are not sorted though tests take them ascending, as the same result is to be had
/// without it.
enum class Shortcut : std::uint8_t {
  WhereItPays,  ///< the records are many for it
  Always,       ///< it can be taken at all
  Never
};
