// The profile engine: lines, lookups and in-place edits by the Windows rules.
#include <algorithm>
#include <ravelin/platform/internal/profile_text.hpp>
#include <utility>

namespace ravelin::platform {
namespace {

// The blanks trimmed from a file's lines, names and values.
bool isFileBlank(char c) {
  return c == ' ' || c == '\t' || c == '\v';
}

char foldAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalFolded(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (foldAscii(a[i]) != foldAscii(b[i])) return false;
  }
  return true;
}

// A name given to a call loses its leading and trailing spaces only: a TAB there is kept, so
// that it matches no name in the file.
std::string_view trimSpaces(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view trimTrailingSpaces(std::string_view text) {
  const size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

// A value in one pair of the same quotes loses them; the inside stays as it is.
std::string_view unquoted(std::string_view value) {
  if (value.size() >= 2 && value.front() == value.back() &&
      (value.front() == '"' || value.front() == '\'')) {
    return value.substr(1, value.size() - 2);
  }
  return value;
}

// Copies a text into a buffer of `size` bytes, cut to leave room for its NUL.
ProfileRead copyText(std::string_view text, uint32_t size, uint32_t error) {
  ProfileRead result;
  result.lastError = error;
  if (size == 0) return result;
  const size_t count = std::min<size_t>(text.size(), size - 1);
  result.copied.assign(text.substr(0, count));
  result.copied.push_back('\0');
  result.count = static_cast<uint32_t>(count);
  if (count < text.size()) result.lastError = profile_error::kMoreData;
  return result;
}

// Copies a list of names, each already followed by its NUL, and the final NUL. A list that does
// not fit with two bytes to spare (an exact fit counts as too long) is cut at size - 2 and ended
// with two NULs.
ProfileRead copyList(const std::string& list, uint32_t size) {
  ProfileRead result;
  if (size == 0) return result;
  if (list.size() + 2 <= size) {
    result.copied = list;
    result.copied.push_back('\0');
    result.count = static_cast<uint32_t>(list.size());
    return result;
  }
  if (size >= 2) {
    result.copied.assign(list, 0, size - 2);
    result.copied.append(2, '\0');
    result.count = size - 2;
  } else {
    result.copied.assign(1, '\0');
  }
  if (!list.empty()) result.lastError = profile_error::kMoreData;
  return result;
}

void appendLineBreakIfMissing(std::string& text) {
  if (!text.empty() && text.back() != '\n' && text.back() != '\r') text += "\r\n";
}

}  // namespace

ProfileText::ProfileText(std::string bytes) : bytes_(std::move(bytes)) {
  split();
  index();
}

void ProfileText::split() {
  const std::string_view all(bytes_);
  size_t position = 0;
  while (position < all.size()) {
    Line line;
    line.begin = position;
    const size_t lineBreak = all.find_first_of("\r\n", position);
    line.end = lineBreak == std::string_view::npos ? all.size() : lineBreak;
    line.next = line.end;
    if (line.next < all.size()) {
      line.next +=
          (all[line.next] == '\r' && line.next + 1 < all.size() && all[line.next + 1] == '\n') ? 2
                                                                                               : 1;
    }
    position = line.next;

    size_t first = line.begin;
    size_t last = line.end;
    while (first < last && isFileBlank(all[first]))
      ++first;
    while (last > first && isFileBlank(all[last - 1]))
      --last;
    line.nameBegin = first;
    line.nameEnd = last;
    line.valueBegin = line.valueEnd = last;
    if (first == last) {
      line.kind = LineKind::Blank;
    } else if (all[first] == '[') {
      line.kind = LineKind::Header;
      size_t nameEnd = all.substr(0, last).find(']', first + 1);
      if (nameEnd == std::string_view::npos) nameEnd = last;
      size_t nameBegin = first + 1;
      while (nameBegin < nameEnd && isFileBlank(all[nameBegin]))
        ++nameBegin;
      while (nameEnd > nameBegin && isFileBlank(all[nameEnd - 1]))
        --nameEnd;
      line.nameBegin = nameBegin;
      line.nameEnd = nameEnd;
    } else if (all[first] == ';') {
      line.kind = LineKind::Comment;
    } else {
      const size_t separator = all.substr(0, last).find('=', first);
      if (separator == std::string_view::npos) {
        line.kind = LineKind::Bare;
      } else {
        line.kind = LineKind::Entry;
        size_t keyEnd = separator;
        while (keyEnd > first && isFileBlank(all[keyEnd - 1]))
          --keyEnd;
        line.nameEnd = keyEnd;
        size_t valueBegin = separator + 1;
        while (valueBegin < last && isFileBlank(all[valueBegin]))
          ++valueBegin;
        line.valueBegin = valueBegin;
        line.valueEnd = last;
      }
    }
    lines_.push_back(line);
  }
}

void ProfileText::index() {
  for (size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].kind != LineKind::Header) continue;
    if (!sections_.empty()) sections_.back().end = i;
    sections_.push_back({i, lines_.size()});
  }
  for (size_t s = 0; s < sections_.size(); ++s) {
    const Section& section = sections_[s];
    // Only the first section of a name is ever searched, so only its keys are indexed.
    if (!sectionIndex_.emplace(name(lines_[section.header]), s).second) continue;
    for (size_t i = section.header + 1; i < section.end; ++i) {
      if (lines_[i].kind == LineKind::Entry) keyIndex_.emplace(KeyName{s, name(lines_[i])}, i);
    }
  }
}

std::string_view ProfileText::name(const Line& line) const {
  return std::string_view(bytes_).substr(line.nameBegin, line.nameEnd - line.nameBegin);
}

std::string_view ProfileText::value(const Line& line) const {
  return std::string_view(bytes_).substr(line.valueBegin, line.valueEnd - line.valueBegin);
}

std::optional<size_t> ProfileText::findSection(std::string_view name) const {
  const auto it = sectionIndex_.find(name);
  if (it == sectionIndex_.end()) return std::nullopt;
  return it->second;
}

std::optional<size_t> ProfileText::findKey(size_t section, std::string_view key) const {
  const auto it = keyIndex_.find(KeyName{section, key});
  if (it == keyIndex_.end()) return std::nullopt;
  return it->second;
}

size_t ProfileText::FoldedHash::operator()(std::string_view text) const {
  // FNV-1a over the folded bytes.
  uint64_t hash = 14695981039346656037ull;
  for (char c : text) {
    hash ^= static_cast<unsigned char>(foldAscii(c));
    hash *= 1099511628211ull;
  }
  return static_cast<size_t>(hash);
}

bool ProfileText::FoldedEqual::operator()(std::string_view a, std::string_view b) const {
  return equalFolded(a, b);
}

size_t ProfileText::KeyHash::operator()(const KeyName& name) const {
  return FoldedHash()(name.key) ^ (name.section * 0x9E3779B97F4A7C15ull);
}

bool ProfileText::KeyEqual::operator()(const KeyName& a, const KeyName& b) const {
  return a.section == b.section && equalFolded(a.key, b.key);
}

std::string_view cString(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

std::filesystem::path cPath(const std::filesystem::path& file) {
  const std::filesystem::path::string_type& native = file.native();
  const size_t nul = native.find(std::filesystem::path::value_type{});
  if (nul == std::filesystem::path::string_type::npos) return file;
  return std::filesystem::path(native.substr(0, nul));
}

bool isBareName(const std::filesystem::path& file) {
  return !file.empty() && !file.has_parent_path() && !file.has_root_path();
}

ProfileRead readProfileString(const ProfileText* text, uint32_t fileError,
                              std::optional<std::string_view> section,
                              std::optional<std::string_view> key,
                              std::optional<std::string_view> defaultValue, uint32_t size) {
  const std::string_view fallback = trimTrailingSpaces(cString(defaultValue.value_or("")));
  if (text == nullptr) return copyText(fallback, size, fileError);

  if (!section) {
    std::string list;
    for (const ProfileText::Section& each : text->sections()) {
      const std::string_view name = text->name(text->lines()[each.header]);
      if (name.empty()) continue;  // an empty name would end the list early
      list.append(name);
      list.push_back('\0');
    }
    return copyList(list, size);
  }

  const std::optional<size_t> found = text->findSection(trimSpaces(cString(*section)));
  if (!found) return copyText(fallback, size, profile_error::kNone);

  if (!key) {
    const ProfileText::Section& each = text->sections()[*found];
    std::string list;
    for (size_t i = each.header + 1; i < each.end; ++i) {
      const ProfileText::Line& line = text->lines()[i];
      if (line.kind != ProfileText::LineKind::Entry || line.nameBegin == line.nameEnd) continue;
      list.append(text->name(line));
      list.push_back('\0');
    }
    return copyList(list, size);
  }

  const std::optional<size_t> line = text->findKey(*found, trimSpaces(cString(*key)));
  if (!line) return copyText(fallback, size, profile_error::kNone);
  return copyText(unquoted(text->value(text->lines()[*line])), size, profile_error::kNone);
}

ProfileWriteKind profileWriteKind(std::optional<std::string_view> section,
                                  std::optional<std::string_view> key,
                                  std::optional<std::string_view> value) {
  if (!section) return key || value ? ProfileWriteKind::NoSection : ProfileWriteKind::Flush;
  if (!key) return ProfileWriteKind::DeleteSection;
  if (!value) return ProfileWriteKind::DeleteKey;
  return ProfileWriteKind::SetValue;
}

ProfileEdit editProfileText(const ProfileText* text, std::optional<std::string_view> section,
                            std::optional<std::string_view> key,
                            std::optional<std::string_view> value) {
  using LineKind = ProfileText::LineKind;
  ProfileEdit edit;
  const ProfileWriteKind kind = profileWriteKind(section, key, value);
  if (kind == ProfileWriteKind::NoSection || kind == ProfileWriteKind::Flush) {
    edit.outcome = ProfileEdit::Outcome::Refused;
    edit.error = profile_error::kFileNotFound;
    return edit;
  }
  const std::string_view sectionName = trimSpaces(cString(*section));
  const std::string_view keyName = key ? trimSpaces(cString(*key)) : std::string_view();
  const std::string_view newValue = value ? cString(*value) : std::string_view();

  if (text == nullptr) {
    edit.outcome = ProfileEdit::Outcome::Changed;
    if (kind == ProfileWriteKind::SetValue) {
      edit.bytes.append("[").append(sectionName).append("]\r\n");
      edit.bytes.append(keyName).append("=").append(newValue).append("\r\n");
    }
    return edit;
  }

  const std::string& bytes = text->bytes();
  // A file in UTF-16 (its byte-order mark) is the caller's code page no more; it stays as it is.
  if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE') {
    edit.outcome = ProfileEdit::Outcome::Refused;
    edit.error = profile_error::kNotSupported;
    return edit;
  }

  const auto& lines = text->lines();
  const std::optional<size_t> found = text->findSection(sectionName);
  if (!found) {
    if (kind != ProfileWriteKind::SetValue) return edit;
    edit.outcome = ProfileEdit::Outcome::Changed;
    edit.bytes = bytes;
    appendLineBreakIfMissing(edit.bytes);
    edit.bytes.append("[").append(sectionName).append("]\r\n");
    edit.bytes.append(keyName).append("=").append(newValue).append("\r\n");
    return edit;
  }
  const ProfileText::Section& where = text->sections()[*found];

  if (kind == ProfileWriteKind::DeleteSection) {
    // The header and every entry go; comments and blank lines stay where they were.
    edit.outcome = ProfileEdit::Outcome::Changed;
    edit.bytes.reserve(bytes.size());
    edit.bytes.append(bytes, 0, lines[where.header].begin);
    for (size_t i = where.header + 1; i < where.end; ++i) {
      const ProfileText::Line& line = lines[i];
      if (line.kind == LineKind::Comment || line.kind == LineKind::Blank)
        edit.bytes.append(bytes, line.begin, line.next - line.begin);
    }
    const size_t rest = where.end < lines.size() ? lines[where.end].begin : bytes.size();
    edit.bytes.append(bytes, rest);
    return edit;
  }

  const std::optional<size_t> existing = text->findKey(*found, keyName);
  if (kind == ProfileWriteKind::DeleteKey) {
    if (!existing) return edit;
    const ProfileText::Line& line = lines[*existing];
    edit.outcome = ProfileEdit::Outcome::Changed;
    edit.bytes.reserve(bytes.size());
    edit.bytes.append(bytes, 0, line.begin).append(bytes, line.next);
    return edit;
  }

  edit.outcome = ProfileEdit::Outcome::Changed;
  edit.bytes.reserve(bytes.size() + keyName.size() + newValue.size() + 3);
  if (existing) {
    // The line keeps everything before its value (spelling, indentation, blanks around "=");
    // the value is replaced.
    const ProfileText::Line& line = lines[*existing];
    edit.bytes.append(bytes, 0, line.valueBegin).append(newValue);
    if (line.next == line.end) {
      edit.bytes.append("\r\n");
    } else {
      edit.bytes.append(bytes, line.end);
    }
  } else {
    // A new key goes right after the section's last entry (so comments that end the section
    // stay below it), or right after the header.
    size_t after = where.header;
    for (size_t i = where.header + 1; i < where.end; ++i) {
      if (lines[i].kind == LineKind::Entry || lines[i].kind == LineKind::Bare) after = i;
    }
    const ProfileText::Line& line = lines[after];
    edit.bytes.append(bytes, 0, line.next);
    if (line.next == line.end) edit.bytes.append("\r\n");
    edit.bytes.append(keyName).append("=").append(newValue).append("\r\n");
    edit.bytes.append(bytes, line.next);
  }
  return edit;
}

}  // namespace ravelin::platform
