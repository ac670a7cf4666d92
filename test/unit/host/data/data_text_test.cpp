#include "host/data/data_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "host/data/input_error.h"
#include "support/process.h"

namespace {

using namespace npar_host;

std::string Gzip(const std::string& text) {
  const TemporaryFile file("");
  gzFile out = gzopen(file.Path().c_str(), "wb");
  gzwrite(out, text.data(), static_cast<unsigned>(text.size()));
  gzclose(out);
  return FileContent(file.Path());
}

std::string TextOf(const std::string& bytes, TextEncoding encoding = TextEncoding::Detect) {
  const TemporaryFile file(bytes);
  return std::string(DataText(file.Path(), encoding).Text());
}

TEST(DataTextTest, EncodingsBecomeUtf8) {
  using std::string_literals::operator""s;
  EXPECT_EQ(TextOf("\xEF\xBB\xBF"
                   "a\n"),
            "a\n");
  // a, e with acute accent, euro sign, a character beyond the first plane, half of another.
  EXPECT_EQ(TextOf("\xFF\xFE"
                   "a\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE\x3D\xD8"s),
            "a\u00E9\u20AC\U0001F600\uFFFD");
  EXPECT_EQ(TextOf("\xFE\xFF\0a\0\xE9"s), "a\u00E9");
  EXPECT_EQ(TextOf("a\0,\0b\0"s), "a,b");
  EXPECT_EQ(TextOf("a\xE9\x80\x9F"s, TextEncoding::Latin1), "a\u00E9\u20AC\u0178");
  EXPECT_EQ(FindEncoding("UTF_16-le"), TextEncoding::Utf16);
  EXPECT_EQ(FindEncoding("utf-7"), std::nullopt);
}

// More than a step of the decompressor, and streams one after the other.
TEST(DataTextTest, PackedTextsAreWholeOrRefused) {
  std::string text = "a,b\n";
  while (text.size() < (std::size_t{3} << 20)) text += std::to_string(text.size()) + ",1\n";
  const std::string packed = Gzip(text);
  EXPECT_EQ(TextOf(packed), text);
  EXPECT_EQ(TextOf(packed + Gzip("7,8\n")), text + "7,8\n");
  EXPECT_EQ(TextOf(Gzip("\xEF\xBB\xBFx\n")), "x\n");
  for (const std::size_t left : {packed.size() - 1, packed.size() / 2, std::size_t{5}}) {
    EXPECT_THROW(TextOf(packed.substr(0, left)), InputError) << left;
  }
  std::string damaged = packed;
  damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x55);
  EXPECT_THROW(TextOf(damaged), InputError);
}

// A frame of zstd (RFC 8878): magic number, no options, the window, one raw block that is the last.
TEST(DataTextTest, LongWindowIsNoDamage) {
  const auto frame = [](int windowLog) {
    const auto window = static_cast<char>((windowLog - 10) << 3);
    return std::string("\x28\xB5\x2F\xFD\x00", 5) + window + std::string("\x09\0\0a", 4);
  };
  EXPECT_EQ(TextOf(frame(27)), "a");
  try {
    TextOf(frame(31));
    FAIL();
  } catch (const InputError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("zstd -dc --long=31"));
  }
}

}  // namespace
