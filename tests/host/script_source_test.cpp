#include <gtest/gtest.h>

#include <cstdio>
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
  const ScriptBytes read = readScriptBytes(file.string());
  EXPECT_EQ(read.status, ScriptBytes::Status::Read);
  EXPECT_EQ(read.bytes, std::string("a\0\xFF\r\n", 5));
  fs::remove(file);
  EXPECT_EQ(readScriptBytes(file.string()).status, ScriptBytes::Status::Unreadable);
  EXPECT_EQ(readScriptBytes(folder.string()).status, ScriptBytes::Status::Unreadable);
}

// A script is read up to its limit and no further, so an endless source ends.
TEST(ScriptSource, RefusesScriptsPastTheLimit) {
  namespace fs = std::filesystem;
  const fs::path file = fs::temp_directory_path() / "ravelin_script_source_limit.vbs";
  struct Row {
    std::size_t size;
    std::size_t limit;
    ScriptBytes::Status status;
  };
  const Row rows[] = {
      {0, 0, ScriptBytes::Status::Read},
      {1, 0, ScriptBytes::Status::TooLarge},
      {100000, 100000, ScriptBytes::Status::Read},
      {100001, 100000, ScriptBytes::Status::TooLarge},
      {65536, 65535, ScriptBytes::Status::TooLarge},
      {65536, 65536, ScriptBytes::Status::Read},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::to_string(row.size) + " of " + std::to_string(row.limit));
    {
      std::ofstream out(file, std::ios::binary);
      out << std::string(row.size, 'x');
    }
    const ScriptBytes fromPath = readScriptBytes(file.string(), row.limit);
    EXPECT_EQ(fromPath.status, row.status);
    if (row.status == ScriptBytes::Status::Read) {
      EXPECT_EQ(fromPath.bytes.size(), row.size);
    }
    std::FILE* stream = std::fopen(file.string().c_str(), "rb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(readScriptBytes(stream, row.limit).status, row.status);
    std::fclose(stream);
  }
  fs::remove(file);
  // A device that never ends.
  if (fs::exists("/dev/zero")) {
    EXPECT_EQ(readScriptBytes("/dev/zero").status, ScriptBytes::Status::TooLarge);
  }
}

}  // namespace
}  // namespace ravelin::host
