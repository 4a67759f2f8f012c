#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ravelin/host/script_source.hpp>
#include <string>

namespace ravelin::host {
namespace {

TEST(ScriptSource, DecodesUtf8AndUtf16WithOrWithoutByteOrderMark) {
  using namespace std::string_literals;
  struct Row {
    std::string bytes;
    String expected;
  };
  const Row rows[] = {
      {"x = 1\r\n", u"x = 1\r\n"},
      {"\xFF\xFE"
       "=\0\x3D\xD8\x00\xDE"s,
       u"=\U0001F600"},
      // An odd last byte is not a code unit.
      {"\xFF\xFE"
       "a\0b"s,
       u"a"},
      {"\xFF\xFE", u""},
      {"caf\xE9", u"caf\uFFFD"},
      {"", u""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.bytes);
    EXPECT_EQ(decodeScriptSource(row.bytes), row.expected);
  }
}

TEST(ScriptSource, ReadsFilesButNotFoldersOrMissingPaths) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path();
  const fs::path file = folder / "ravelin_script_source_test.vbs";
  {
    std::ofstream out(file, std::ios::binary);
    out << std::string("a\0\xFF\r\n", 5);
  }
  EXPECT_EQ(readFileBytes(file.string()), std::string("a\0\xFF\r\n", 5));
  fs::remove(file);
  EXPECT_EQ(readFileBytes(file.string()), std::nullopt);
  EXPECT_EQ(readFileBytes(folder.string()), std::nullopt);
}

}  // namespace
}  // namespace ravelin::host
