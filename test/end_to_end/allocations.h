#pragma once

#include <cstddef>
#include <functional>

// Every allocation of this program, and of the libraries that it loads, comes through here.

/// So many allocations of this thread succeed before one fails; negative: none shall fail.
extern thread_local long allocationsLeft;

#ifdef __SANITIZE_ADDRESS__
// The sanitizer needs malloc for itself: only what is made with new fails, and nothing is counted.
inline constexpr bool kAreBlocksCounted = false;
#else
inline constexpr bool kAreBlocksCounted = true;
#endif

/// The most bytes that blocks of 64 KiB and more held at a time during the work, beyond what they
/// held before. A block that realloc makes larger counts once: the system moves its pages.
[[nodiscard]] std::size_t PeakOfLargeBlocks(const std::function<void()>& work);
