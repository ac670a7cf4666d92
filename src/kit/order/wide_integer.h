#pragma once

/// For products of 64-bit sums of weights, which pass 64 bits.
__extension__ using WideInteger = __int128;
/// Likewise; it may wrap where a sum turns out too large to be read.
__extension__ using WideUnsigned = unsigned __int128;
