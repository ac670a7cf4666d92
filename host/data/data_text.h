#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/data/byte_buffer.h"
#include "host/data/text_source.h"

namespace npar_host {

/// How the characters of a file are written.
enum class TextEncoding {
  Detect,  ///< by the byte order mark; UTF-8 without one
  Utf8,
  Utf16,  ///< by the byte order mark, little-endian without one
  Utf16BigEndian,
  Latin1  ///< with the characters that Windows-1252 has in place of controls
};

/// "utf-8", "utf-16", "utf-16be", "latin1" and their usual other names; nothing for others.
[[nodiscard]] std::optional<TextEncoding> FindEncoding(std::string_view name);

/// The text of a data file in UTF-8 without a byte order mark: unpacked where it is compressed by
/// gzip or zstd, turned into UTF-8 where it is not. As with TextSource, zero bytes lie behind it.
class DataText {
 public:
  /// "-" is standard input. InputError for a file that cannot be read, or is no text.
  explicit DataText(const std::string& path, TextEncoding encoding = TextEncoding::Detect);

  [[nodiscard]] const std::string& Name() const noexcept { return source.Name(); }
  [[nodiscard]] std::string_view Text() const noexcept { return text; }
  [[nodiscard]] const char* End() const noexcept { return text.data() + text.size(); }

  /// See TextSource.
  void CheckIsWhole() const { source.CheckIsWhole(); }
  void Release(const char* position) {
    if (!isDecoded) source.Release(position);
  }

  /// "name:line:column" of a place in the text.
  [[nodiscard]] std::string LocationOf(std::size_t offset) const;
  /// Throws an InputError: "name:line:column: message".
  [[noreturn]] void Fail(const char* position, const std::string& message) const;

 private:
  void Decode(TextEncoding encoding);

  TextSource source;
  ByteBuffer unpacked;
  ByteBuffer decoded;
  bool isDecoded = false;  // the text is not the source's
  std::string_view text;
};

}  // namespace npar_host
