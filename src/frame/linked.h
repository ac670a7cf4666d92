#pragma once

#include <cstdint>

/// hb_destroy_component for a host that is linked into one library with the component: ends it with
/// all that it owns, as a process has to that makes many.
std::uint32_t EndLinkedComponent(void* component);
