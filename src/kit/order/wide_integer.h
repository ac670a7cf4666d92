#pragma once

/// For products of 64-bit sums of weights, which pass 64 bits.
__extension__ using WideInteger = __int128;
