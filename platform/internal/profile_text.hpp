// The profile engine the implementations share outside Windows: a file's bytes split into lines
// and classified by the rules of the Windows profile functions, lookups by those rules, and the
// edits a write makes, done on the text in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <ravelin/platform/profile.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ravelin::platform {

// A profile file's text, split into lines, with an index of the sections and keys a lookup can
// reach (the first section of each name, the first key of each name in it). Lines end with CRLF,
// LF or a lone CR; each is trimmed of blanks (space, TAB, VT) and then is a header ("[name]", the
// name ending at the first "]" or the line's end), a comment (";..."), an entry ("key=value",
// split at the first "="), a line without "=" or a blank line. Lines before the first header
// belong to no section.
class ProfileText {
 public:
  enum class LineKind : uint8_t { Blank, Comment, Header, Entry, Bare };

  // Offsets into bytes(). `end` is where the line's text stops and its break starts, `next`
  // where the next line starts. The name is a header's name or an entry's key (or the whole
  // text of a line without "="), trimmed; the value is an entry's, trimmed.
  struct Line {
    size_t begin = 0, end = 0, next = 0;
    size_t nameBegin = 0, nameEnd = 0;
    size_t valueBegin = 0, valueEnd = 0;
    LineKind kind = LineKind::Blank;
  };

  // A header and the lines after it, up to the next header.
  struct Section {
    size_t header = 0;  // index of the header line
    size_t end = 0;     // index of the first line after the section
  };

  explicit ProfileText(std::string bytes);
  // The index refers into the text, so a text stays where it was made.
  ProfileText(const ProfileText&) = delete;
  ProfileText& operator=(const ProfileText&) = delete;

  const std::string& bytes() const { return bytes_; }
  const std::vector<Line>& lines() const { return lines_; }
  const std::vector<Section>& sections() const { return sections_; }

  std::string_view name(const Line& line) const;
  std::string_view value(const Line& line) const;

  // The first section called `name`, ASCII case ignored.
  std::optional<size_t> findSection(std::string_view name) const;
  // The line of the first entry `key` of that section, if the section is the first of its name.
  std::optional<size_t> findKey(size_t section, std::string_view key) const;

 private:
  struct FoldedHash {
    size_t operator()(std::string_view text) const;
  };
  struct FoldedEqual {
    bool operator()(std::string_view a, std::string_view b) const;
  };
  struct KeyName {
    size_t section;
    std::string_view key;
  };
  struct KeyHash {
    size_t operator()(const KeyName& name) const;
  };
  struct KeyEqual {
    bool operator()(const KeyName& a, const KeyName& b) const;
  };

  void split();
  void index();

  std::string bytes_;
  std::vector<Line> lines_;
  std::vector<Section> sections_;
  std::unordered_map<std::string_view, size_t, FoldedHash, FoldedEqual> sectionIndex_;
  std::unordered_map<KeyName, size_t, KeyHash, KeyEqual> keyIndex_;
};

// A text as the C string of a Windows call sees it: up to its first NUL.
std::string_view cString(std::string_view text);
// A file name as the Windows calls see it: up to its first NUL.
std::filesystem::path cPath(const std::filesystem::path& file);
// True for a name without a folder part ("app.ini"), which names a file in the profile folder.
bool isBareName(const std::filesystem::path& file);

// GetPrivateProfileStringA over a file's text, or over no file (null) with the error that
// opening it gave.
ProfileRead readProfileString(const ProfileText* text, uint32_t fileError,
                              std::optional<std::string_view> section,
                              std::optional<std::string_view> key,
                              std::optional<std::string_view> defaultValue, uint32_t size);

// What a WritePrivateProfileStringA call asks for, from which arguments it has.
enum class ProfileWriteKind : uint8_t { SetValue, DeleteKey, DeleteSection, Flush, NoSection };
ProfileWriteKind profileWriteKind(std::optional<std::string_view> section,
                                  std::optional<std::string_view> key,
                                  std::optional<std::string_view> value);

// The file's text after a write (SetValue, DeleteKey or DeleteSection) on `text`, or on no file
// (null), which the write creates even when it deletes. `error` is set when the write is refused.
struct ProfileEdit {
  enum class Outcome : uint8_t { Unchanged, Changed, Refused };
  Outcome outcome = Outcome::Unchanged;
  std::string bytes;  // the new text, when Changed
  uint32_t error = profile_error::kNone;
};
ProfileEdit editProfileText(const ProfileText* text, std::optional<std::string_view> section,
                            std::optional<std::string_view> key,
                            std::optional<std::string_view> value);

}  // namespace ravelin::platform
