// Arbitrary bytes as an INI file, read and edited through the in-memory profile system (the
// engine the Linux implementation uses): lookups with arbitrary names and buffer sizes must
// hand back what fits the buffer, and one write must do what it says and nothing else. A value
// written reads back as the read rules make of it, a deleted key or section is gone, and every
// other section reads as before. Names and values that would make lines of their own (a line
// break, a "]" in a section name, a "=" in a key, ...) rewrite the file's structure as Windows
// does, so for those only the absence of a crash is checked.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <ravelin/platform/fake/profile_fake.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using ravelin::platform::FakeProfileSystem;
using ravelin::platform::ProfileRead;
using Text = std::optional<std::string>;

const std::string kFile = "/fuzz/case.ini";
const std::string kSentinel = "\x01missing";
constexpr uint32_t kLarge = 1u << 22;

void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\v';
}

std::string cut(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

std::string trimSpaces(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string folded(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

// What the read rules make of a value written as given: trimmed of blanks, one pair of quotes
// removed.
std::string readingOf(const std::string& value) {
  size_t first = 0;
  size_t last = value.size();
  while (first < last && isBlank(value[first]))
    ++first;
  while (last > first && isBlank(value[last - 1]))
    --last;
  std::string text = value.substr(first, last - first);
  if (text.size() >= 2 && text.front() == text.back() && (text[0] == '"' || text[0] == '\''))
    return text.substr(1, text.size() - 2);
  return text;
}

// A name that, written, reads back as itself and starts no line of another kind.
bool plainName(const std::string& name, std::string_view forbidden) {
  if (!name.empty() && (isBlank(name.front()) || isBlank(name.back()))) return false;
  return name.find_first_of(forbidden) == std::string::npos;
}

std::vector<std::string> namesOf(const ProfileRead& list) {
  std::vector<std::string> names;
  const std::string_view text = list.text();
  size_t start = 0;
  while (start < text.size()) {
    const size_t end = text.find('\0', start);
    if (end == std::string_view::npos) break;
    names.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  return names;
}

// The buffer holds what the call said it copied: the text and one NUL, or for a list one or two.
void checkShape(const ProfileRead& read, uint32_t size, bool list) {
  if (read.copied.size() > size) fail("more bytes than the buffer holds");
  if (size == 0) {
    if (!read.copied.empty() || read.count != 0) fail("a buffer of no bytes was written");
    return;
  }
  if (read.copied.empty() || read.copied.back() != '\0') fail("no NUL at the end");
  const size_t extra = read.copied.size() - read.count;
  if (read.count > read.copied.size() || extra < 1 || extra > (list ? 2u : 1u))
    fail("count and copied bytes disagree");
}

std::string value(FakeProfileSystem& system, const std::string& section, const std::string& key) {
  return std::string(system.getString(section, key, kSentinel, kLarge, kFile).text());
}

// Every key of every section but `except` with its value, as the file reads now.
std::vector<std::string> otherSections(FakeProfileSystem& system, const std::string& except) {
  std::vector<std::string> seen;
  const std::vector<std::string> sections =
      namesOf(system.getString(std::nullopt, std::nullopt, "", kLarge, kFile));
  size_t included = 0;
  for (size_t s = 0; s < sections.size() && included < 32; ++s) {
    // (A name the lookup trims to the target's is the target: a name with a NUL lists as two.)
    if (folded(trimSpaces(sections[s])) == except) continue;
    ++included;
    const std::vector<std::string> keys =
        namesOf(system.getString(sections[s], std::nullopt, "", kLarge, kFile));
    seen.push_back("[" + sections[s] + "]");
    for (size_t k = 0; k < keys.size() && k < 32; ++k)
      seen.push_back(keys[k] + "=" + value(system, sections[s], keys[k]));
  }
  return seen;
}

size_t countFolded(const std::vector<std::string>& names, const std::string& name) {
  size_t count = 0;
  for (const std::string& each : names)
    count += folded(each) == name ? 1 : 0;
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const uint8_t absent = input.ConsumeIntegral<uint8_t>();
  const uint32_t bufferSize = input.ConsumeIntegralInRange<uint32_t>(0, 700);
  const Text section = absent & 1 ? std::nullopt : Text(input.ConsumeRandomLengthString(24));
  const Text key = absent & 2 ? std::nullopt : Text(input.ConsumeRandomLengthString(24));
  const Text defaultValue = absent & 4 ? std::nullopt : Text(input.ConsumeRandomLengthString(24));
  const Text written = absent & 8 ? std::nullopt : Text(input.ConsumeRandomLengthString(64));
  const std::string file = input.ConsumeRemainingBytesAsString();

  FakeProfileSystem system;
  system.setFile(kFile, file);

  // Lookups with the names as they came.
  checkShape(system.getString(section, key, defaultValue, bufferSize, kFile), bufferSize,
             !section || !key);
  checkShape(system.getString(std::nullopt, std::nullopt, defaultValue, bufferSize, kFile),
             bufferSize, true);

  // One write into a named section.
  const std::string target = section ? trimSpaces(cut(*section)) : std::string("s");
  const std::string keyName = key ? trimSpaces(cut(*key)) : std::string();
  const std::string targetFolded = folded(target);
  const bool plain = plainName(target, "\r\n]") && plainName(keyName, "\r\n=") &&
                     (keyName.empty() || (keyName[0] != ';' && keyName[0] != '[')) &&
                     (!written || cut(*written).find_first_of("\r\n") == std::string::npos);
  const bool utf16 = file.size() >= 2 && file[0] == '\xFF' && file[1] == '\xFE';
  const std::vector<std::string> sectionsBefore =
      namesOf(system.getString(std::nullopt, std::nullopt, "", kLarge, kFile));
  const std::vector<std::string> keysBefore =
      namesOf(system.getString(target, std::nullopt, "", kLarge, kFile));
  const std::vector<std::string> othersBefore = otherSections(system, targetFolded);

  const auto result = system.writeString(target, key, written, kFile);
  const std::optional<std::string> after = system.file(kFile);
  if (!after) fail("the file is gone");
  if (utf16) {
    if (result.succeeded || *after != file) fail("a UTF-16 file was changed");
    return 0;
  }
  if (!result.succeeded) fail("a write failed");
  if (!plain) return 0;

  if (key && written) {
    if (value(system, target, keyName) != readingOf(cut(*written)))
      fail("the value written does not read back");
  } else if (key && !keyName.empty()) {
    // (Keys with an empty name are left out of the key list, so they cannot be counted.)
    if (countFolded(keysBefore, folded(keyName)) == 0 && *after != file)
      fail("deleting a missing key changed the file");
    if (countFolded(keysBefore, folded(keyName)) <= 1 &&
        value(system, target, keyName) != kSentinel)
      fail("a deleted key is still there");
  } else if (!key) {
    const bool once = countFolded(sectionsBefore, targetFolded) == 1;
    if (once && std::string(system.getString(target, "", kSentinel, 64, kFile).text()) != kSentinel)
      fail("a deleted section is still there");
    for (const std::string& each : keysBefore) {
      if (once && value(system, target, each) != kSentinel) fail("a deleted key is still there");
    }
  }
  if (otherSections(system, targetFolded) != othersBefore) fail("another section changed");
  return 0;
}
