#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

namespace npar_host {

/// Hands a text over, piece by piece.
using PieceWriter = std::function<void(const std::function<void(std::string_view piece)>& sink)>;

// Each answers 0 or an errno.

/// Writes to what this process has open, behind what it has written there.
[[nodiscard]] int WriteDescriptor(int descriptor, const PieceWriter& writer);
/// Writes to what is no plain file (a device, a pipe), or open in another process.
[[nodiscard]] int WriteInPlace(const std::filesystem::path& path, const PieceWriter& writer);
/// Writes a file that holds either what it held before or the whole text: it is written to a
/// temporary file in the same folder and renamed. A signal that ends the process leaves no
/// temporary file. One at a time in a process.
[[nodiscard]] int ReplaceFile(const std::filesystem::path& target, const PieceWriter& writer);
/// For who ends the process next, on any thread, in a signal's handler too: removes the temporary
/// file, and no other is made. Where the system lets nobody remove an open file, it waits until the
/// file has its name.
void AbandonTemporaryFile() noexcept;

}  // namespace npar_host
