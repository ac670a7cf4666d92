#include "host/data/data_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "host/data/compression.h"
#include "host/data/file_format.h"
#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf16BigEndianMark = "\xFE\xFF";
constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::size_t kStep = std::size_t{1} << 16;  // bytes of the source
constexpr std::size_t kLongestCharacter = 4;         // bytes of UTF-8

/// Windows-1252 from 0x80 to 0x9F, where Latin-1 has controls.
constexpr std::array<std::uint16_t, 32> kWindows = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// Writes a character as UTF-8; behind it.
char* PutCharacter(char* out, std::uint32_t character) {
  const auto put = [&](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
  if (character < 0x80) {
    put(character);
    return out;
  }
  if (character < 0x800) {
    put(0xC0 | character >> 6);
  } else {
    if (character < 0x10000) {
      put(0xE0 | character >> 12);
    } else {
      put(0xF0 | character >> 18);
      put(0x80 | (character >> 12 & 0x3F));
    }
    put(0x80 | (character >> 6 & 0x3F));
  }
  put(0x80 | (character & 0x3F));
  return out;
}

std::uint32_t ByteAt(std::string_view bytes, std::size_t i) {
  return static_cast<unsigned char>(bytes[i]);
}

/// Takes a character of UTF-16 off the front of the bytes, two of which there are.
std::uint32_t TakeUtf16(std::string_view& bytes, bool isBigEndian) {
  const auto unit = [&](std::size_t i) {
    return isBigEndian ? ByteAt(bytes, i) << 8 | ByteAt(bytes, i + 1)
                       : ByteAt(bytes, i + 1) << 8 | ByteAt(bytes, i);
  };
  const std::uint32_t first = unit(0);
  const bool isHigh = first >= 0xD800 && first < 0xDC00;
  const std::uint32_t second = isHigh && bytes.size() >= 4 ? unit(2) : 0;
  if (second >= 0xDC00 && second < 0xE000) {
    bytes.remove_prefix(4);
    return 0x10000 + ((first - 0xD800) << 10 | (second - 0xDC00));
  }
  bytes.remove_prefix(2);
  return first >= 0xD800 && first < 0xE000 ? kReplacement : first;
}

void DecodeUtf16(std::string_view bytes, bool isBigEndian, ByteBuffer& text) {
  while (bytes.size() >= 2) {
    char* const begin = text.Room(kStep * kLongestCharacter);
    char* out = begin;
    for (std::size_t i = 0; i < kStep && bytes.size() >= 2; ++i) {
      out = PutCharacter(out, TakeUtf16(bytes, isBigEndian));
    }
    text.Append(static_cast<std::size_t>(out - begin));
  }
}

void DecodeLatin1(std::string_view bytes, ByteBuffer& text) {
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kStep);
    char* const begin = text.Room(part.size() * kLongestCharacter);
    char* out = begin;
    for (std::size_t i = 0; i < part.size(); ++i) {
      const std::uint32_t byte = ByteAt(part, i);
      const bool isWindows = byte >= 0x80 && byte < 0xA0;
      out = PutCharacter(out, isWindows ? kWindows[byte - 0x80] : byte);
    }
    text.Append(static_cast<std::size_t>(out - begin));
    bytes.remove_prefix(part.size());
  }
}

/// By the mark, or by the zero bytes that letters of UTF-16 have beside them.
TextEncoding DetectEncoding(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) return TextEncoding::Utf16;
  if (bytes.starts_with(kUtf16BigEndianMark)) return TextEncoding::Utf16BigEndian;
  if (bytes.size() < 4) return TextEncoding::Utf8;
  const auto isZero = [&](std::size_t i) { return bytes[i] == '\0'; };
  if (!isZero(0) && isZero(1) && !isZero(2) && isZero(3)) return TextEncoding::Utf16;
  if (isZero(0) && !isZero(1) && isZero(2) && !isZero(3)) return TextEncoding::Utf16BigEndian;
  return TextEncoding::Utf8;
}

}  // namespace

std::optional<TextEncoding> FindEncoding(std::string_view name) {
  constexpr std::pair<std::string_view, TextEncoding> kNames[] = {
      {"utf8", TextEncoding::Utf8},          {"utf16", TextEncoding::Utf16},
      {"utf16le", TextEncoding::Utf16},      {"utf16be", TextEncoding::Utf16BigEndian},
      {"latin1", TextEncoding::Latin1},      {"iso88591", TextEncoding::Latin1},
      {"windows1252", TextEncoding::Latin1}, {"cp1252", TextEncoding::Latin1},
  };
  std::string plain;
  for (const char c : name) {
    if (c != '-' && c != '_') plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  for (const auto& [known, encoding] : kNames) {
    if (plain == known) return encoding;
  }
  return std::nullopt;
}

DataText::DataText(const std::string& path, TextEncoding encoding)
    : source(path), text(source.Text()) {
  if (IsCompressed(text)) {
    isDecoded = true;
    const char* const problem =
        Decompress(text, unpacked, [&](const char* position) { source.Release(position); });
    source.CheckIsWhole();
    if (problem != nullptr) throw InputError(Name() + ": " + problem);
    unpacked.Close();
    text = unpacked.Text();
  }
  Decode(encoding);
}

void DataText::Decode(TextEncoding encoding) {
  if (encoding == TextEncoding::Detect) encoding = DetectEncoding(text);
  if (encoding == TextEncoding::Utf8 || encoding == TextEncoding::Latin1) {
    const std::string foreign = ForeignFormat(text, Name());
    if (!foreign.empty()) throw InputError(Name() + ": " + foreign);
  }
  if (encoding == TextEncoding::Utf8) {
    if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
    return;
  }
  if (encoding == TextEncoding::Latin1) {
    DecodeLatin1(text, decoded);
  } else {
    bool isBigEndian = encoding == TextEncoding::Utf16BigEndian;
    for (const auto& [mark, isBig] :
         {std::pair(kUtf16Mark, false), std::pair(kUtf16BigEndianMark, true)}) {
      if (!text.starts_with(mark)) continue;
      isBigEndian = isBig;
      text.remove_prefix(mark.size());
      break;
    }
    DecodeUtf16(text, isBigEndian, decoded);
  }
  decoded.Close();
  isDecoded = true;
  text = decoded.Text();
}

std::string DataText::LocationOf(std::size_t offset) const {
  return LocationInText(source.Name(), text, offset);
}

void DataText::Fail(const char* position, const std::string& message) const {
  source.CheckIsWhole();  // what is gone reads as zero bytes, which is no fault of the text
  throw InputError(LocationOf(static_cast<std::size_t>(position - text.data())) + ": " + message);
}

}  // namespace npar_host
