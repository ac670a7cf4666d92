#pragma once

namespace arithmetic {

/// 128 bits, which the compiler's pedantry does not know.
__extension__ using Wide = unsigned __int128;

}  // namespace arithmetic
