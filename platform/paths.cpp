// The path rules of systems without drive letters: the drive map, the mount table and the
// translation of Windows-form texts. Shared by the POSIX implementation and the tests of every
// system.
#include <algorithm>
#include <cstddef>
#include <ravelin/platform/paths.hpp>
#include <utility>

namespace ravelin::platform {
namespace {

bool isAsciiLetter(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

char upperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool equalsAsciiIgnoreCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return upperAscii(x) == upperAscii(y);
         });
}

// The names of a path separated by "/", without empty names.
std::vector<std::string> namesOf(std::string_view path) {
  std::vector<std::string> names;
  std::size_t start = 0;
  while (start <= path.size()) {
    std::size_t end = path.find('/', start);
    if (end == std::string_view::npos) end = path.size();
    if (end > start) names.emplace_back(path.substr(start, end - start));
    start = end + 1;
  }
  return names;
}

// Applies "." and ".." to names that stand below a root they cannot climb above.
std::vector<std::string> resolvedBelowRoot(const std::vector<std::string>& names) {
  std::vector<std::string> kept;
  for (const std::string& name : names) {
    if (name == ".") continue;
    if (name == "..") {
      if (!kept.empty()) kept.pop_back();
      continue;
    }
    kept.push_back(name);
  }
  return kept;
}

// A folder with names appended, each after one "/".
std::string joined(std::string folder, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    if (!folder.empty() && folder.back() != '/') folder += '/';
    folder += name;
  }
  return folder;
}

// Whether `folder` is `path` or a folder above it (both absolute and lexically normal).
bool holds(std::string_view folder, std::string_view path) {
  if (folder == "/") return !path.empty() && path.front() == '/';
  return path == folder || (path.size() > folder.size() &&
                            path.substr(0, folder.size()) == folder && path[folder.size()] == '/');
}

std::string folderWithoutTrailingSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/')
    folder.pop_back();
  return folder;
}

// A text with every separator written "/", in UTF-8.
std::string withSlashes(StringView path) {
  String slashed(path);
  std::replace(slashed.begin(), slashed.end(), u'\\', u'/');
  return toUtf8(slashed);
}

// The server and the names of a mount source that is a network share, or nullopt:
// "//server/share/folder" (SMB) or "[user@]server:/export/folder" (NFS and its kind).
struct ShareSource {
  std::string server;
  std::vector<std::string> names;
  bool namesIgnoreCase = false;
};

std::optional<ShareSource> shareSourceOf(std::string_view source) {
  if (source.size() > 2 && source.substr(0, 2) == "//" && source[2] != '/') {
    const std::vector<std::string> names = namesOf(source.substr(2));
    if (names.size() < 2) return std::nullopt;
    return ShareSource{names.front(), std::vector<std::string>(names.begin() + 1, names.end()),
                       true};
  }
  const std::size_t colon = source.find(':');
  if (colon == std::string_view::npos || colon == 0 || source.find('/') < colon)
    return std::nullopt;
  std::string_view server = source.substr(0, colon);
  if (const std::size_t at = server.rfind('@'); at != std::string_view::npos)
    server = server.substr(at + 1);
  const std::vector<std::string> names = namesOf(source.substr(colon + 1));
  if (server.empty() || names.empty()) return std::nullopt;
  return ShareSource{std::string(server), names, false};
}

// The POSIX path of a UNC name given as the server and the names after it (share first), under
// the mount that serves the longest part of them.
std::optional<std::string> sharePath(const std::string& server,
                                     const std::vector<std::string>& names,
                                     const std::vector<Mount>& mounts) {
  const Mount* best = nullptr;
  std::size_t bestLength = 0;
  for (const Mount& mount : mounts) {
    const std::optional<ShareSource> share = shareSourceOf(mount.source);
    if (!share || !equalsAsciiIgnoreCase(share->server, server)) continue;
    if (share->names.size() > names.size() || share->names.size() <= bestLength) continue;
    bool matches = true;
    for (std::size_t i = 0; i < share->names.size() && matches; ++i) {
      matches = share->namesIgnoreCase
                    ? equalsIgnoreCase(fromUtf8(share->names[i]), fromUtf8(names[i]))
                    : share->names[i] == names[i];
    }
    if (!matches) continue;
    best = &mount;
    bestLength = share->names.size();
  }
  if (best == nullptr) return std::nullopt;
  return joined(best->mountPoint,
                std::vector<std::string>(names.begin() + static_cast<std::ptrdiff_t>(bestLength),
                                         names.end()));
}

// The drive letter ("C:") whose folder holds an absolute POSIX path: the longest such folder.
std::optional<std::pair<std::string, std::string>> driveHolding(std::string_view path,
                                                                const DriveMap& drives) {
  std::optional<std::pair<std::string, std::string>> best;
  for (const auto& [letter, folder] : drives) {
    const std::string normal = lexicallyNormalPosix(folder);
    if (!holds(normal, path)) continue;
    if (!best || normal.size() > best->second.size()) best = {letter, normal};
  }
  return best;
}

}  // namespace

bool hasWindowsFormMarks(StringView path) {
  if (path.find(u'\\') != StringView::npos) return true;
  return path.size() >= 2 && isAsciiLetter(path[0]) && path[1] == u':';
}

DriveMap parseDriveMap(std::string_view text) {
  DriveMap drives;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find(';', start);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view entry = text.substr(start, end - start);
    start = end + 1;
    // LETTER:=FOLDER, the folder absolute.
    if (entry.size() < 4 || entry[1] != ':' || entry[2] != '=' || entry[3] != '/') continue;
    if (!isAsciiLetter(static_cast<char16_t>(entry[0]))) continue;
    const std::string letter{upperAscii(entry[0]), ':'};
    drives[letter] = folderWithoutTrailingSlash(std::string(entry.substr(3)));
  }
  drives.emplace("C:", "/");
  return drives;
}

std::vector<Mount> parseMountInfo(std::string_view text) {
  // Decodes the octal escapes the kernel writes for blanks, tabs, new lines and "\".
  auto unescaped = [](std::string_view field) {
    auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string out;
    for (std::size_t i = 0; i < field.size(); ++i) {
      if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) &&
          isOctal(field[i + 2]) && isOctal(field[i + 3])) {
        out += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                 (field[i + 3] - '0'));
        i += 3;
        continue;
      }
      out += field[i];
    }
    return out;
  };
  std::vector<Mount> mounts;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view line = text.substr(start, end - start);
    start = end + 1;
    std::vector<std::string_view> fields;
    std::size_t fieldStart = 0;
    while (fieldStart <= line.size()) {
      std::size_t fieldEnd = line.find(' ', fieldStart);
      if (fieldEnd == std::string_view::npos) fieldEnd = line.size();
      if (fieldEnd > fieldStart) fields.push_back(line.substr(fieldStart, fieldEnd - fieldStart));
      fieldStart = fieldEnd + 1;
    }
    // id, parent, device, root, mount point, options, optional fields..., "-", type, source.
    if (fields.size() < 9) continue;
    std::size_t dash = 6;
    while (dash < fields.size() && fields[dash] != "-")
      ++dash;
    if (dash + 2 >= fields.size()) continue;
    Mount mount{unescaped(fields[4]), unescaped(fields[dash + 2]), unescaped(fields[dash + 1])};
    if (mount.mountPoint.empty() || mount.mountPoint.front() != '/') continue;
    mounts.push_back(std::move(mount));
  }
  return mounts;
}

const Mount* mountHolding(const std::vector<Mount>& mounts, std::string_view path) {
  const Mount* best = nullptr;
  std::size_t bestLength = 0;
  for (const Mount& mount : mounts) {
    const std::string point = folderWithoutTrailingSlash(mount.mountPoint);
    if (!holds(point, path)) continue;
    if (best == nullptr || point.size() >= bestLength) {
      best = &mount;
      bestLength = point.size();
    }
  }
  return best;
}

std::string lexicallyNormalPosix(std::string_view path) {
  const bool absolute = !path.empty() && path.front() == '/';
  std::vector<std::string> kept;
  for (const std::string& name : namesOf(path)) {
    if (name == ".") continue;
    if (name == ".." && !kept.empty() && kept.back() != "..") {
      kept.pop_back();
      continue;
    }
    if (name == ".." && absolute) continue;
    kept.push_back(name);
  }
  std::string normal = absolute ? "/" : "";
  normal = joined(std::move(normal), kept);
  if (normal.empty()) normal = ".";
  return normal;
}

std::optional<std::string> posixPathFor(StringView path, const PathSystem& system) {
  const bool windowsForm = hasWindowsFormMarks(path);
  std::string text = windowsForm ? withSlashes(path) : toUtf8(path);
  // The prefixes that ask Windows to take a path as written.
  if (windowsForm && (text.rfind("//?/", 0) == 0 || text.rfind("//./", 0) == 0)) {
    text.erase(0, 4);
    if (text.size() >= 4 && equalsAsciiIgnoreCase(std::string_view(text).substr(0, 4), "UNC/"))
      text = "//" + text.substr(4);
  }
  const bool trailingSlash = !text.empty() && text.back() == '/';
  auto finished = [trailingSlash](std::string result) {
    if (trailingSlash && result.back() != '/') result += '/';
    return result;
  };

  // A UNC name, in either form.
  if (text.size() > 2 && text[0] == '/' && text[1] == '/' && text[2] != '/') {
    const std::vector<std::string> names = namesOf(text);
    if (names.size() < 2) return std::nullopt;
    std::vector<std::string> below =
        resolvedBelowRoot(std::vector<std::string>(names.begin() + 2, names.end()));
    below.insert(below.begin(), names[1]);
    std::optional<std::string> result = sharePath(names[0], below, system.mounts());
    if (!result) return std::nullopt;
    return finished(std::move(*result));
  }
  if (!windowsForm) return text;

  // A drive letter, or a path from the root of the current drive.
  const DriveMap drives = system.driveMap();
  const std::u8string currentText = system.currentFolder().generic_u8string();
  const std::string current =
      lexicallyNormalPosix(std::string(currentText.begin(), currentText.end()));
  std::string letter;
  std::string rest;
  if (text.size() >= 2 && text[1] == ':') {
    letter = {upperAscii(text[0]), ':'};
    rest = text.substr(2);
  } else if (!text.empty() && text[0] == '/') {
    const auto drive = driveHolding(current, drives);
    if (!drive) return std::nullopt;
    letter = drive->first;
    rest = text;
  } else {
    // Relative to the current folder, as on Windows.
    return text;
  }
  const auto found = drives.find(letter);
  if (found == drives.end()) return std::nullopt;
  const std::string folder = lexicallyNormalPosix(found->second);
  std::vector<std::string> names;
  if (rest.empty() || rest[0] != '/') {
    // "C:x": from the current folder when it lies in the drive's folder.
    if (holds(folder, current)) names = namesOf(current.substr(folder == "/" ? 0 : folder.size()));
  }
  for (std::string& name : namesOf(rest))
    names.push_back(std::move(name));
  return finished(joined(folder, resolvedBelowRoot(names)));
}

std::optional<String> windowsFormUnder(std::string_view posixPath, const DriveMap& drives) {
  const std::string normal = lexicallyNormalPosix(posixPath);
  if (normal.empty() || normal[0] != '/') return std::nullopt;
  const auto drive = driveHolding(normal, drives);
  if (!drive) return std::nullopt;
  String result = fromUtf8(drive->first) + u"\\";
  const std::string below = normal.substr(drive->second == "/" ? 1 : drive->second.size());
  String names = fromUtf8(below.empty() || below[0] != '/' ? below : below.substr(1));
  std::replace(names.begin(), names.end(), u'/', u'\\');
  return result + names;
}

}  // namespace ravelin::platform
