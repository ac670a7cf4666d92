#include "host/data/file_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace npar_host {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::string Low(std::size_t number, int width) {
  std::string bytes;
  for (int i = 0; i < width; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xff);
  return bytes;
}

// An archive as APPNOTE.TXT of PKWARE lays it out, its first file too long for names to stand among
// the first bytes; an extra field and a comment stand behind each name of the directory.
std::string Archive(const std::vector<std::string>& names) {
  std::string bytes = "PK\x03\x04" + std::string(100000, 'x');
  const std::size_t directory = bytes.size();
  for (const std::string& name : names) {
    bytes += "PK\x01\x02" + std::string(24, '\0') + Low(name.size(), 2) + Low(3, 2) + Low(5, 2) +
             std::string(12, '\0') + name + "abcdefgh";
  }
  return bytes + "PK\x05\x06" + std::string(12, '\0') + Low(directory, 4) + Low(0, 2);
}

TEST(FileFormatTest, AnArchiveIsWhatItsDirectorySays) {
  const auto told = [](const std::vector<std::string>& names) {
    return ForeignFormat(Archive(names), "f");
  };
  EXPECT_THAT(told({"docProps/a.jpeg", "[Content_Types].xml", "xl/workbook.xml"}),
              HasSubstr("an Excel file"));
  EXPECT_THAT(told({"[Content_Types].xml", "word/document.xml"}), HasSubstr("an Office document"));
  EXPECT_THAT(told({"xl.csv", "old/xl/a"}), HasSubstr("a zip archive"));
  const std::string whole = Archive({"xl/workbook.xml"});
  EXPECT_THAT(ForeignFormat(whole.substr(0, 5000), "f"), HasSubstr("a zip archive"));
  EXPECT_THAT(ForeignFormat("PK\x03\x04 PK\x05\x06", "f"), HasSubstr("a zip archive"));
  EXPECT_THAT(ForeignFormat("PK,b\n1,2\n", "f"), IsEmpty());
}

}  // namespace
}  // namespace npar_host
