#pragma once

#include <functional>
#include <string_view>

#include "host/data/byte_buffer.h"

namespace npar_host {

/// Are the bytes compressed by gzip or zstd?
[[nodiscard]] bool IsCompressed(std::string_view bytes);

/// Appends what the bytes hold to `text`; null, or what is wrong with them and what to do.
/// `isRead` is told now and then up to where they are read.
[[nodiscard]] const char* Decompress(std::string_view bytes, ByteBuffer& text,
                                     const std::function<void(const char*)>& isRead);

}  // namespace npar_host
