// The profile functions: one table of reads and one of writes, run against the fake and against
// the system's implementation (Windows' own functions in the Windows build; under Wine the rows
// where Wine is known to differ from Windows are skipped), then real-file cases on POSIX systems:
// bare names, permissions and links, a writer killed while writing, writers in parallel, and the
// read cache against changes made by other processes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <ravelin/platform/fake/profile_fake.hpp>
#include <ravelin/platform/profile.hpp>
#include <ravelin/tests/support/wine.hpp>
#include <string>
#include <thread>
#include <vector>

#if !defined(_WIN32)
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace ravelin::platform {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using Text = std::optional<std::string>;

// A folder of its own under the temporary folder, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    path_ = fs::temp_directory_path() /
            ("ravelin_profile_" + std::to_string(random()) + "_" + std::to_string(random()));
    fs::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

Text readFile(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeFile(const fs::path& file, const std::string& bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The files of a case: in a real folder for the system's implementation, in the fake's memory
// for the fake.
class Files {
 public:
  virtual ~Files() = default;
  virtual fs::path folder() const = 0;
  virtual void put(const fs::path& file, const std::string& bytes) = 0;
  virtual Text get(const fs::path& file) const = 0;
  virtual void remove(const fs::path& file) = 0;
};

class DiskFiles : public Files {
 public:
  fs::path folder() const override { return folder_.path(); }
  void put(const fs::path& file, const std::string& bytes) override { writeFile(file, bytes); }
  Text get(const fs::path& file) const override { return readFile(file); }
  void remove(const fs::path& file) override {
    std::error_code ignored;
    fs::remove(file, ignored);
  }

 private:
  TemporaryFolder folder_;
};

class FakeFiles : public Files {
 public:
  explicit FakeFiles(std::shared_ptr<FakeProfileSystem> fake) : fake_(std::move(fake)) {
    fake_->addFolder(folder());
  }
  fs::path folder() const override { return fs::temp_directory_path() / "ravelin_profile_fake"; }
  void put(const fs::path& file, const std::string& bytes) override { fake_->setFile(file, bytes); }
  Text get(const fs::path& file) const override { return fake_->file(file); }
  void remove(const fs::path& file) override { fake_->removeFile(file); }

 private:
  std::shared_ptr<FakeProfileSystem> fake_;
};

struct Subject {
  std::shared_ptr<ProfileSystem> system;
  std::unique_ptr<Files> files;
};

struct Implementation {
  const char* name;
  std::function<Subject()> make;
};

void PrintTo(const Implementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

Subject makeFake() {
  auto fake = std::make_shared<FakeProfileSystem>();
  return {fake, std::make_unique<FakeFiles>(fake)};
}

Subject makeNative() {
  return {std::shared_ptr<ProfileSystem>(ProfileSystem::makeNative()),
          std::make_unique<DiskFiles>()};
}

// Which file a case names: one in the case's folder, the folder itself, one in a folder that
// does not exist, or the empty name.
enum class Target : uint8_t { File, Folder, MissingFolder, Empty };

class ProfileContractTest : public testing::TestWithParam<Implementation> {
 protected:
  void SetUp() override { subject_ = GetParam().make(); }

  fs::path path(Target target) const {
    switch (target) {
      case Target::File:
        return subject_.files->folder() / "case.ini";
      case Target::Folder:
        return subject_.files->folder();
      case Target::MissingFolder:
        return subject_.files->folder() / "missing" / "case.ini";
      case Target::Empty:
        break;
    }
    return {};
  }

  Subject subject_;
};

// Wine's profile functions differ from Windows' in the rows marked Wine::Differs, which are
// skipped under Wine.
enum class Wine : uint8_t { Same, Differs };

// Wine sets the last error as Windows does when a call fails, but not after one that succeeds:
// it leaves ERROR_MORE_DATA unset after a cut text, does not report a write that created its
// file (ERROR_FILE_NOT_FOUND), and leaves a code of its own (ERROR_INVALID_PARAMETER) after a
// write into an existing file. Under Wine only the codes of failures are compared.
bool lastErrorComparable(uint32_t expected, bool failed) {
  return !runningUnderWine() || (failed && expected != profile_error::kMoreData);
}

struct ReadRow {
  const char* name;
  Wine wine;
  Text file;  // nullopt: no file
  Text section;
  Text key;
  Text defaultValue;
  uint32_t size;
  std::string copied;  // every byte the call writes into the buffer
  uint32_t count;
  std::optional<uint32_t> lastError = std::nullopt;  // checked when given
  Target target = Target::File;
};

constexpr Wine kSame = Wine::Same;
constexpr Wine kDiffers = Wine::Differs;
const std::string kKeys = "[s1]\r\nname1=val1\r\nname2=\r\nname3\r\nname4=a\r\n";
const std::string kThreeSections = "[ section1 ]\r\n[section2]\r\n[section3]\r\n";

// clang-format off
const ReadRow kReadRows[] = {
    {"NamesIgnoreCaseAndBlanks", kSame, "[S]\r\n Key = Val \r\n", "s", "KEY", "d", 256, "Val\0"s,
     3},
    {"QuotesAroundValueKeepInnerBlanks", kSame, "[s]\r\nk= \"  x  \" \r\n", "s", "k", "d", 256,
     "  x  \0"s, 5},
    {"CommentIsNeverAKey", kDiffers, "[s]\r\n;k=v\r\n", "s", ";k", "d", 256, "d\0"s, 1},
    {"SemicolonInsideValueIsText", kSame, "[s]\r\nk=v ;c\r\n", "s", "k", "d", 256, "v ;c\0"s, 4},
    {"OnlyFirstOfDuplicateSectionsSearched", kSame, "[s]\r\n[s]\r\nk=2\r\n", "s", "k", "d", 256,
     "d\0"s, 1},
    {"EmptySectionNameReachesEmptyHeaderOnly", kDiffers, "k=top\r\n[]\r\nk=e\r\n", "", "k", "d",
     256, "e\0"s, 1},
    {"HeaderNameEndsAtFirstBracket", kDiffers, "[a]b]\r\nk=v\r\n", "a", "k", "d", 256, "v\0"s, 1},
    {"LoneCarriageReturnsEndLines", kSame, "[s]\rk=v\r", "s", "k", "d", 256, "v\0"s, 1},
    {"Utf8ByteOrderMarkHidesFirstHeader", kDiffers, "\xEF\xBB\xBF[s]\r\nk=v\r\n", "s", "k", "d",
     256, "d\0"s, 1},
    {"ValueCutToBuffer", kSame, "[s]\r\nk=val1\r\n", "s", "k", "d", 4, "val\0"s, 3, 234},
    {"SectionListCutWithTwoNuls", kDiffers, "[section1]\r\n[section2]\r\n", {}, {}, "d", 16,
     "section1\0secti\0\0"s, 14},
    {"MissingFileGivesDefaultWithoutTrailingSpaces", kSame, {}, "s", "x", "def  ", 256, "def\0"s, 3,
     2},

    {"KeyListSkipsLinesWithoutEquals", kSame, kKeys, "s1", {}, "d", 256, "name1\0name2\0name4\0\0"s,
     18},
    {"KeyListCutWithTwoNuls", kDiffers, kKeys, "s1", {}, "d", 16, "name1\0name2\0na\0\0"s, 14},
    {"SectionListWithRoomToSpare", kSame, kThreeSections, {}, {}, "d", 29,
     "section1\0section2\0section3\0\0"s, 27},
    {"SectionListExactFitCountsAsCut", kDiffers, kThreeSections, {}, {}, "d", 28,
     "section1\0section2\0section3\0\0"s, 26},
    {"SectionListOneShort", kDiffers, kThreeSections, {}, {}, "d", 27,
     "section1\0section2\0section\0\0"s, 25},
    {"SectionListKeepsDuplicates", kSame, "[a]\r\n[bb]\r\n[a]\r\n", {}, {}, "d", 256,
     "a\0bb\0a\0\0"s, 7},
    {"FirstOfDuplicateKeysWins", kSame, "[s]\r\nk=1\r\nK=2\r\n", "s", "k", "d", 256, "1\0"s, 1},
    {"SingleQuotesAroundDoubleQuotes", kSame, "[s]\r\nk='\"x\"'\r\n", "s", "k", "d", 256,
     "\"x\"\0"s, 3},
    {"MismatchedQuotesStay", kSame, "[s]\r\nk=\"x'\r\n", "s", "k", "d", 256, "\"x'\0"s, 3},
    {"InterleavedQuotesStay", kSame, "[s]\r\nk='\"x'\"\r\n", "s", "k", "d", 256, "'\"x'\"\0"s, 5},
    {"EmptyValueIsNotTheDefault", kSame, "[s]\r\nk=\r\n", "s", "k", "d", 256, "\0"s, 0},
    {"BufferOfOneHoldsOnlyTheNul", kSame, "[s]\r\nk=a\r\n", "s", "k", "d", 1, "\0"s, 0},
    {"BufferOfNoneIsLeftAlone", kSame, "[s]\r\nk=a\r\n", "s", "k", "d", 0, ""s, 0},
    {"NoDefaultIsEmpty", kSame, "[s]\r\nk=a\r\n", "s", "x", {}, 256, "\0"s, 0},
    {"DefaultKeepsLeadingBlanksAndTab", kSame, "[s]\r\n", "s", "x", " def\t", 256, " def\t\0"s, 5},
    {"ArgumentsLoseSpaces", kSame, "[s]\r\nk=v\r\n", "  s  ", "  k  ", "d", 256, "v\0"s, 1},
    {"ArgumentsKeepTabs", kDiffers, "[s]\r\nk=v\r\n", "s", "\tk", "d", 256, "d\0"s, 1},
    {"ArgumentsEndAtNul", kSame, "[s]\r\nk=v\r\n", "s\0x"s, "k\0y"s, "d", 256, "v\0"s, 1},
    {"ValueCutAt511ForBufferOf512", kSame, "[s]\r\nk=" + std::string(600, 'x') + "\r\n", "s", "k",
     "d", 512,
     std::string(511, 'x') + "\0"s, 511, 234},
    {"EmptyFileNameIsAccessDenied", kSame, {}, "s", "k", "d", 256, "d\0"s, 1, 5, Target::Empty},
    {"FolderIsAccessDenied", kSame, {}, "s", "k", "d", 256, "d\0"s, 1, 5, Target::Folder},
};
// clang-format on

TEST_P(ProfileContractTest, Reads) {
  for (const ReadRow& row : kReadRows) {
    SCOPED_TRACE(row.name);
    if (row.wine == Wine::Differs && runningUnderWine()) continue;
    const fs::path file = path(row.target);
    if (row.file) subject_.files->put(file, *row.file);
    const ProfileRead result =
        subject_.system->getString(row.section, row.key, row.defaultValue, row.size, file);
    EXPECT_EQ(result.copied, row.copied);
    EXPECT_EQ(result.count, row.count);
    if (row.lastError && lastErrorComparable(*row.lastError, true)) {
      EXPECT_EQ(result.lastError, *row.lastError);
    }
    if (row.target == Target::File) subject_.files->remove(file);
  }
}

struct Call {
  Text section;
  Text key;
  Text value;
};

struct WriteRow {
  const char* name;
  Wine wine;
  Text before;  // nullopt: no file
  std::vector<Call> calls;
  Text after;  // nullopt: still no file
  bool succeeded = true;
  std::optional<uint32_t> lastError = std::nullopt;  // of the last call, checked when given
  Target target = Target::File;
};

// clang-format off
const WriteRow kWriteRows[] = {
    {"NewFile", kSame, {}, {{"App", "key", "string"}}, "[App]\r\nkey=string\r\n", true, 2},
    {"NewKeyAfterLastEntryBeforeComments", kDiffers, "[S]\r\nz=\r\n;y=\r\n", {{"S", "a", ""}},
     "[S]\r\nz=\r\na=\r\n;y=\r\n", true, 0},
    {"ExistingKeyKeepsItsSpelling", kSame, "[S]\r\nKey=old", {{"s", "KEY", "new"}},
     "[S]\r\nKey=new\r\n", true, 0},
    {"ValueWrittenAsGiven", kDiffers, {}, {{"s", "k", "  v  "}}, "[s]\r\nk=  v  \r\n"},
    {"DeletedSectionsLeaveTheirComments", kDiffers, ";c0\r\n[A]\r\n;c1\r\n[B]\r\n;c2\r\n",
     {{"A", {}, {}}, {"B", {}, "x"}}, ";c0\r\n;c1\r\n;c2\r\n", true, 0},
    {"DeletedKey", kSame, "[s]\r\nk=v\r\n", {{"s", "k", {}}}, "[s]\r\n", true, 0},
    // (Not among Wine's known differences, but Wine's own conformance test expects it to fail.)
    {"NewSectionAfterBytesWithNuls", kDiffers, "Data \0 before \0 first \0 section"s,
     {{"section1", "key1", "string1"}},
     "Data \0 before \0 first \0 section\r\n[section1]\r\nkey1=string1\r\n"s},
    {"NoSectionFailsWithoutFile", kSame, {}, {{{}, "k", "v"}}, {}, false, 2},

    {"NewKeysInTheOrderWritten", kDiffers, "[s]\r\na=1\r\n;end\r\n",
     {{"s", "b", "2"}, {"s", "c", "3"}},
     "[s]\r\na=1\r\nb=2\r\nc=3\r\n;end\r\n", true, 0},
    {"KeyArgumentLosesTrailingSpaces", kDiffers, {}, {{"s", "k  ", "v"}}, "[s]\r\nk=v\r\n"},
    {"BlankLinesAndSpacingStay", kDiffers, "[s]\r\n\r\na = b\r\n\r\n[t]\r\n", {{"s", "c", "d"}},
     "[s]\r\n\r\na = b\r\nc=d\r\n\r\n[t]\r\n", true, 0},
    {"DeletingMissingKeyChangesNothing", kSame, "[s]\r\nk=v\r\n", {{"s", "x", {}}},
     "[s]\r\nk=v\r\n", true, 0},
    {"DeletingInMissingFileCreatesEmptyFile", kDiffers, {}, {{"s", "k", {}}}, ""},
    {"NewSectionAfterLastLineWithoutBreak", kSame, "[a]\r\nx=1", {{"b", "k", "v"}},
     "[a]\r\nx=1\r\n[b]\r\nk=v\r\n", true, 0},
    {"NamesMatchIgnoringCase", kSame, "[Sec]\r\nKey=1\r\n", {{"SEC", "KEY", "2"}},
     "[Sec]\r\nKey=2\r\n", true, 0},
    {"QuotesWrittenAsGiven", kSame, "[s]\r\n", {{"s", "k", "\"v\""}}, "[s]\r\nk=\"v\"\r\n", true,
     0},
    {"TextsEndAtNul", kSame, "[s]\r\n", {{"s\0x"s, "k\0y"s, "v\0z"s}}, "[s]\r\nk=v\r\n", true, 0},
    {"EmptyFileNameIsAccessDenied", kSame, {}, {{"s", "k", "v"}}, {}, false, 5, Target::Empty},
    {"MissingFolderIsPathNotFound", kSame, {}, {{"s", "k", "v"}}, {}, false, 3,
     Target::MissingFolder},
};
// clang-format on

TEST_P(ProfileContractTest, Writes) {
  for (const WriteRow& row : kWriteRows) {
    SCOPED_TRACE(row.name);
    if (row.wine == Wine::Differs && runningUnderWine()) continue;
    const fs::path file = path(row.target);
    if (row.before) subject_.files->put(file, *row.before);
    ProfileWrite result;
    for (const Call& call : row.calls)
      result = subject_.system->writeString(call.section, call.key, call.value, file);
    EXPECT_EQ(result.succeeded, row.succeeded);
    if (row.lastError && lastErrorComparable(*row.lastError, !row.succeeded)) {
      EXPECT_EQ(result.lastError, *row.lastError);
    }
    if (row.target == Target::File || row.target == Target::MissingFolder) {
      EXPECT_EQ(subject_.files->get(file), row.after);
    }
    if (row.target == Target::File) subject_.files->remove(file);
  }
}

// A value written reads back as the read rules say, through the same implementation.
TEST_P(ProfileContractTest, WrittenValuesReadBack) {
  struct Row {
    std::string written;
    std::string read;
  };
  const Row rows[] = {{"plain", "plain"}, {"  v  ", "v"}, {"\"q\"", "q"}, {"\" q \"", " q "},
                      {"", ""},           {"a=b", "a=b"}, {";x", ";x"}};
  const fs::path file = path(Target::File);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.written);
    ASSERT_TRUE(subject_.system->writeString("Till", "Value", row.written, file).succeeded);
    const ProfileRead read = subject_.system->getString("till", "value", "d", 512, file);
    EXPECT_EQ(read.text(), row.read);
  }
}

// Where Windows' behaviour is not known, the engine the fake and the Linux implementation share
// makes these choices: edits stay as close to the text as they can, a deletion takes what a
// lookup sees, and lists never hold an empty name (which would end them early).
TEST(ProfileEngineChoiceTest, EditsAndListsWhereWindowsIsUnknown) {
  struct Row {
    const char* name;
    std::string before;
    Call call;
    std::string after;
  };
  // clang-format off
  const Row writes[] = {
      {"UpdateKeepsBlanksAroundEquals", "[s]\r\n a = b \r\n", {"s", "a", "c"}, "[s]\r\n a = c\r\n"},
      {"DeleteTakesFirstOfDuplicateKeys", "[s]\r\nk=1\r\nk=2\r\n", {"s", "k", {}},
       "[s]\r\nk=2\r\n"},
      {"DeleteTakesFirstOfDuplicateSections", "[s]\r\na=1\r\n[s]\r\nb=2\r\n", {"s", {}, {}},
       "[s]\r\nb=2\r\n"},
      {"DeletedSectionLosesLinesWithoutEquals", "[s]\r\nbare\r\n\r\nk=v\r\n[t]\r\n", {"s", {}, {}},
       "\r\n[t]\r\n"},
      {"NewKeyRightAfterHeaderWithoutEntries", "[s]\r\n;c\r\n[t]\r\n", {"s", "k", "v"},
       "[s]\r\nk=v\r\n;c\r\n[t]\r\n"},
      {"NewKeyAfterLineWithoutEquals", "[s]\r\nbare\r\n;c\r\n", {"s", "k", "v"},
       "[s]\r\nbare\r\nk=v\r\n;c\r\n"},
      {"NewLinesEndInCrLfInLfFile", "[s]\nk=v\n", {"s", "n", "w"}, "[s]\nk=v\nn=w\r\n"},
  };
  struct Lookup {
    const char* name;
    Text file;
    Text section;
    Text key;
    std::string copied;
    uint32_t lastError;
  };
  const Lookup reads[] = {
      {"SectionListOfMissingFileIsDefault", {}, {}, {}, "d\0"s, 2},
      {"KeyListOfMissingSectionIsDefault", "[s]\r\n", "t", {}, "d\0"s, 0},
      {"EmptyListIsOneNul", "[s]\r\n", "s", {}, "\0"s, 0},
      {"EmptyNamesLeftOutOfSectionList", "[]\r\n[a]\r\n", {}, {}, "a\0\0"s, 0},
      {"EmptyNamesLeftOutOfKeyList", "[s]\r\n=v\r\nk=w\r\n", "s", {}, "k\0\0"s, 0},
      {"LineWithoutEqualsIsNoKey", "[s]\r\nk\r\n", "s", "k", "d\0"s, 0},
  };
  // clang-format on
  std::vector<Implementation> implementations = {{"fake", makeFake}};
#if !defined(_WIN32)
  implementations.push_back({"native", makeNative});
#endif
  for (const Implementation& implementation : implementations) {
    const Subject subject = implementation.make();
    const fs::path file = subject.files->folder() / "choice.ini";
    for (const Row& row : writes) {
      SCOPED_TRACE(std::string(implementation.name) + " " + row.name);
      subject.files->put(file, row.before);
      EXPECT_TRUE(subject.system->writeString(row.call.section, row.call.key, row.call.value, file)
                      .succeeded);
      EXPECT_EQ(subject.files->get(file), row.after);
    }
    for (const Lookup& row : reads) {
      SCOPED_TRACE(std::string(implementation.name) + " " + row.name);
      subject.files->remove(file);
      if (row.file) subject.files->put(file, *row.file);
      const ProfileRead read = subject.system->getString(row.section, row.key, "d", 64, file);
      EXPECT_EQ(read.copied, row.copied);
      EXPECT_EQ(read.lastError, row.lastError);
    }
    // A file in UTF-16 is not the caller's code page: it is left as it is.
    const std::string utf16 = "\xFF\xFE[\0s\0]\0"s;
    subject.files->put(file, utf16);
    const ProfileWrite refused = subject.system->writeString("s", "k", "v", file);
    EXPECT_FALSE(refused.succeeded);
    EXPECT_EQ(refused.lastError, profile_error::kNotSupported);
    EXPECT_EQ(subject.files->get(file), utf16);
  }
}

INSTANTIATE_TEST_SUITE_P(Implementations, ProfileContractTest,
                         testing::Values(Implementation{"fake", makeFake},
                                         Implementation{"native", makeNative}),
                         [](const testing::TestParamInfo<Implementation>& info) {
                           return std::string(info.param.name);
                         });

#if !defined(_WIN32)

// Sets or removes an environment variable for the life of a scope.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* old = ::getenv(name)) old_ = old;
    if (value != nullptr) {
      ::setenv(name, value, 1);
    } else {
      ::unsetenv(name);
    }
  }
  ~ScopedVariable() {
    if (old_) {
      ::setenv(name_, old_->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(ProfileFolderTest, ChosenFromSetterThenVariablesThenHome) {
  struct Row {
    const char* set;
    const char* windowsDir;
    const char* configHome;
    const char* home;
    fs::path expected;
  };
  const Row rows[] = {
      {"/srv/till", "/etc/ravelin", "/cfg", "/home/u", "/srv/till"},
      {nullptr, "/etc/ravelin", "/cfg", "/home/u", "/etc/ravelin"},
      {nullptr, "rel", "/cfg", "/home/u", fs::current_path() / "rel"},
      {nullptr, "", "/cfg", "/home/u", "/cfg/ravelin"},
      {nullptr, nullptr, "/cfg", "/home/u", "/cfg/ravelin"},
      {nullptr, nullptr, "relative", "/home/u", "/home/u/.config/ravelin"},
      {nullptr, nullptr, "", "/home/u", "/home/u/.config/ravelin"},
      {nullptr, nullptr, nullptr, nullptr, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected.string());
    const ScopedVariable windowsDir("RAVELIN_WINDOWS_DIR", row.windowsDir);
    const ScopedVariable configHome("XDG_CONFIG_HOME", row.configHome);
    const ScopedVariable home("HOME", row.home);
    setProfileFolder(row.set != nullptr ? fs::path(row.set) : fs::path());
    EXPECT_EQ(profileFolder(), row.expected);
    setProfileFolder({});
  }
}

TEST(ProfileFolderTest, BareNamesLiveInTheProfileFolderCreatedOnFirstWrite) {
  const TemporaryFolder temporary;
  const fs::path folder = temporary.path() / "windows";
  const auto system = ProfileSystem::makeNative();
  const ScopedVariable windowsDir("RAVELIN_WINDOWS_DIR", folder.c_str());

  EXPECT_EQ(system->getString("s", "k", "d", 16, "app.ini").lastError, 2u);
  const ProfileWrite write = system->writeString("s", "k", "v", "app.ini");
  EXPECT_TRUE(write.succeeded);
  EXPECT_EQ(write.lastError, 2u);
  EXPECT_EQ(readFile(folder / "app.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(system->getString("s", "k", "d", 16, "app.ini").text(), "v");

  // A name with a folder part, even the current one, is not in the profile folder.
  EXPECT_EQ(system->getString("s", "k", "d", 16, "./app.ini").text(), "d");

  // No folder known: a bare name is a missing file, which cannot be written.
  const ScopedVariable noWindowsDir("RAVELIN_WINDOWS_DIR", nullptr);
  const ScopedVariable noConfig("XDG_CONFIG_HOME", nullptr);
  const ScopedVariable noHome("HOME", nullptr);
  EXPECT_EQ(system->getString("s", "k", "d", 16, "app.ini").lastError, 2u);
  EXPECT_EQ(system->writeString("s", "k", "v", "app.ini").lastError, 2u);
}

TEST(ProfileFileTest, WritesKeepModeAndLinksAndRespectReadOnly) {
  const TemporaryFolder temporary;
  const auto system = ProfileSystem::makeNative();
  const fs::path file = temporary.path() / "mode.ini";
  writeFile(file, "[s]\r\nk=1\r\n");
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  EXPECT_TRUE(system->writeString("s", "k", "2", file).succeeded);
  struct stat written {};
  ASSERT_EQ(::stat(file.c_str(), &written), 0);
  EXPECT_EQ(written.st_mode & 07777, 0640u);

  // A link stays a link; the file it names changes.
  const fs::path link = temporary.path() / "link.ini";
  fs::create_symlink(file, link);
  EXPECT_TRUE(system->writeString("s", "k", "3", link).succeeded);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(readFile(file), "[s]\r\nk=3\r\n");

  // Permissions as an ordinary user has them (the superuser's test drops to "nobody").
  ASSERT_EQ(::chmod(temporary.path().c_str(), 0777), 0);
  ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
  const fs::path locked = temporary.path() / "locked";
  fs::create_directory(locked);
  ASSERT_EQ(::chmod(locked.c_str(), 0555), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) _exit(2);
    const auto unprivileged = ProfileSystem::makeNative();
    // A read-only file is not replaced, though its folder would allow it.
    const ProfileWrite readOnly = unprivileged->writeString("s", "k", "4", file);
    if (readOnly.succeeded || readOnly.lastError != 5 || readFile(file) != "[s]\r\nk=3\r\n")
      _exit(3);
    // Nothing can be created in a read-only folder.
    if (unprivileged->writeString("s", "k", "v", locked / "new.ini").succeeded ||
        fs::exists(locked / "new.ini"))
      _exit(4);
    _exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

// The names in a folder other than the files a test made.
std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// Version n of the killed writer's file: a large value, one letter repeated, and its number.
std::string killedWriterValue(int version) {
  return std::string(300000, static_cast<char>('a' + version % 26)) + std::to_string(version);
}

TEST(ProfileFileTest, WriterKilledWhileWritingLeavesOneWholeVersion) {
  const TemporaryFolder temporary;
  const fs::path file = temporary.path() / "till.ini";
  const std::string temporaryName = ".till.ini.ravelin-tmp";
  ASSERT_TRUE(
      ProfileSystem::makeNative()->writeString("s", "v", killedWriterValue(0), file).succeeded);
  int next = 1;
  for (int round = 0; round < 24; ++round) {
    SCOPED_TRACE(round);
    int reports[2];
    ASSERT_EQ(::pipe(reports), 0);
    const int first = next;
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::close(reports[0]);
      const auto system = ProfileSystem::makeNative();
      for (int version = first;; ++version) {
        if (!system->writeString("s", "v", killedWriterValue(version), file).succeeded) _exit(1);
        const char done = 1;
        if (::write(reports[1], &done, 1) != 1) _exit(1);
      }
    }
    ::close(reports[1]);
    // Let some writes finish, then kill the writer at a moment that differs from round to round.
    for (int finished = 0; finished < 1 + round % 3; ++finished) {
      char done = 0;
      ASSERT_EQ(::read(reports[0], &done, 1), 1);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(round * 173 % 2500));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ::close(reports[0]);
    next += 1000;

    const Text bytes = readFile(file);
    ASSERT_TRUE(bytes);
    const std::string prefix = "[s]\r\nv=";
    ASSERT_EQ(bytes->substr(0, prefix.size()), prefix);
    ASSERT_GE(bytes->size(), prefix.size() + 300000 + 3);
    const size_t digits = prefix.size() + 300000;
    const int version = std::atoi(bytes->c_str() + digits);
    EXPECT_EQ(*bytes, prefix + killedWriterValue(version) + "\r\n");
    EXPECT_EQ(ProfileSystem::makeNative()->getString("s", "v", "", 400000, file).text(),
              killedWriterValue(version));
    const std::vector<std::string> names = namesIn(temporary.path());
    EXPECT_TRUE(names == std::vector<std::string>{"till.ini"} ||
                names == (std::vector<std::string>{temporaryName, "till.ini"}));
  }
  // The next write replaces whatever temporary file a killed writer left.
  ASSERT_TRUE(ProfileSystem::makeNative()->writeString("s", "v", "done", file).succeeded);
  EXPECT_EQ(namesIn(temporary.path()), std::vector<std::string>{"till.ini"});
}

TEST(ProfileFileTest, ParallelWritersLoseNoUpdate) {
  // Each process writes this many keys; each of four threads a third as many.
  constexpr int kWrites = 300;
  const auto writeKeys = [](const fs::path& file, const std::string& prefix, int writes) {
    const auto system = ProfileSystem::makeNative();
    for (int i = 0; i < writes; ++i) {
      if (!system->writeString("s", prefix + std::to_string(i), std::to_string(i), file).succeeded)
        return false;
    }
    return true;
  };
  const auto expectAll = [](const fs::path& file, const std::vector<std::string>& prefixes,
                            int writes) {
    const auto system = ProfileSystem::makeNative();
    for (const std::string& prefix : prefixes) {
      for (int i = 0; i < writes; ++i) {
        const ProfileRead read =
            system->getString("s", prefix + std::to_string(i), "lost", 16, file);
        ASSERT_EQ(read.text(), std::to_string(i)) << prefix << i;
      }
    }
  };
  const TemporaryFolder temporary;

  // Two processes, started together.
  const fs::path shared = temporary.path() / "processes.ini";
  int start[2];
  ASSERT_EQ(::pipe(start), 0);
  std::vector<pid_t> children;
  for (const char* prefix : {"p", "q"}) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::close(start[1]);
      char go = 0;
      if (::read(start[0], &go, 1) != 0) _exit(2);  // the parent closes its end to start
      _exit(writeKeys(shared, prefix, kWrites) ? 0 : 1);
    }
    children.push_back(child);
  }
  ::close(start[0]);
  ::close(start[1]);
  for (const pid_t child : children) {
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  expectAll(shared, {"p", "q"}, kWrites);

  // Two threads, each with a system of its own, and two sharing one.
  const fs::path threaded = temporary.path() / "threads.ini";
  const auto system = ProfileSystem::makeNative();
  const auto writeShared = [&](const std::string& prefix) {
    for (int i = 0; i < kWrites / 3; ++i)
      system->writeString("s", prefix + std::to_string(i), std::to_string(i), threaded);
  };
  std::thread a([&] { writeKeys(threaded, "a", kWrites / 3); });
  std::thread b([&] { writeKeys(threaded, "b", kWrites / 3); });
  std::thread c([&] { writeShared("c"); });
  std::thread d([&] { writeShared("d"); });
  a.join();
  b.join();
  c.join();
  d.join();
  expectAll(threaded, {"a", "b", "c", "d"}, kWrites / 3);
}

// Runs `change` in another process and waits for it.
void inOtherProcess(const std::function<void()>& change) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    change();
    _exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

// An hour ago, a modification time for a file written long ago, whose text the cache trusts
// without reading it again.
timespec anHourAgo() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  now.tv_sec -= 3600;
  return now;
}

void setModified(const fs::path& file, timespec modified) {
  const timespec times[2] = {modified, modified};
  if (::utimensat(AT_FDCWD, file.c_str(), times, 0) != 0) _exit(5);
}

TEST(ProfileFileTest, CacheSeesChangesByOtherProcesses) {
  const TemporaryFolder temporary;
  const fs::path file = temporary.path() / "cached.ini";
  const timespec modified = anHourAgo();
  writeFile(file, "[s]\r\nk=aaaa\r\n");
  setModified(file, modified);
  const auto system = ProfileSystem::makeNative();
  EXPECT_EQ(system->getString("s", "k", "d", 16, file).text(), "aaaa");
  EXPECT_EQ(system->getString("s", "k", "d", 16, file).text(), "aaaa");

  // The same size and modification time, renamed into place.
  inOtherProcess([&] {
    writeFile(temporary.path() / "next", "[s]\r\nk=bbbb\r\n");
    setModified(temporary.path() / "next", modified);
    fs::rename(temporary.path() / "next", file);
  });
  EXPECT_EQ(system->getString("s", "k", "d", 16, file).text(), "bbbb");

  // The same size, rewritten in place, a second later than the cached version.
  inOtherProcess([&] {
    const int fd = ::open(file.c_str(), O_WRONLY);
    const std::string text = "[s]\r\nk=cccc\r\n";
    if (fd < 0 || ::write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
      _exit(1);
    ::close(fd);
    setModified(file, {modified.tv_sec + 1, modified.tv_nsec});
  });
  EXPECT_EQ(system->getString("s", "k", "d", 16, file).text(), "cccc");

  // Removed: the default, and the file missing.
  inOtherProcess([&] { fs::remove(file); });
  const ProfileRead gone = system->getString("s", "k", "d", 16, file);
  EXPECT_EQ(gone.text(), "d");
  EXPECT_EQ(gone.lastError, 2u);
}

#endif

}  // namespace
}  // namespace ravelin::platform
