// The text rules of the file-system object's path members.
#include <algorithm>
#include <ravelin/files/internal/path_text.hpp>
#include <vector>

namespace ravelin::path_text {
namespace {

bool isAsciiLetter(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

// The start of the units after the last name (trailing separators skipped), and the start of
// the last name; both equal 0 when the text has no name.
struct LastName {
  std::size_t begin = 0;
  std::size_t end = 0;
};

LastName lastNameOf(StringView path) {
  std::size_t end = path.size();
  while (end > 0 && isSeparator(path[end - 1]))
    --end;
  std::size_t begin = end;
  while (begin > 0 && !isSeparator(path[begin - 1]))
    --begin;
  return {begin, end};
}

// The names of a text separated by either separator, "." and ".." applied below a root.
std::vector<StringView> resolvedNames(StringView rest) {
  std::vector<StringView> names;
  std::size_t start = 0;
  while (start <= rest.size()) {
    std::size_t end = start;
    while (end < rest.size() && !isSeparator(rest[end]))
      ++end;
    const StringView name = rest.substr(start, end - start);
    if (name == u"..") {
      if (!names.empty()) names.pop_back();
    } else if (!name.empty() && name != u".") {
      names.push_back(name);
    }
    start = end + 1;
  }
  return names;
}

String joinedUnder(String root, StringView rest, char16_t separator) {
  const std::vector<StringView> names = resolvedNames(rest);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (root.empty() || root.back() != separator) root += separator;
    root += names[i];
  }
  return root;
}

// The length of a UNC root ("\\server\share", or "\\server" when the share is missing) at the
// start of the text, or 0 when the text does not start with one.
std::size_t uncRootLength(StringView path) {
  if (path.size() < 3 || !isSeparator(path[0]) || !isSeparator(path[1]) || isSeparator(path[2]))
    return 0;
  std::size_t end = 2;
  while (end < path.size() && !isSeparator(path[end]))
    ++end;
  if (end + 1 < path.size() && !isSeparator(path[end + 1])) {
    ++end;
    while (end < path.size() && !isSeparator(path[end]))
      ++end;
  }
  return end;
}

String withSeparator(StringView text, char16_t separator) {
  String result(text);
  for (char16_t& unit : result) {
    if (isSeparator(unit)) unit = separator;
  }
  return result;
}

}  // namespace

bool isSeparator(char16_t unit) {
  return unit == u'\\' || unit == u'/';
}

bool startsWithDrive(StringView path) {
  return path.size() >= 2 && isAsciiLetter(path[0]) && path[1] == u':';
}

String parentFolderName(StringView path, bool windowsForm) {
  const LastName last = lastNameOf(path);
  if (last.end == 0 || last.begin == 0) return String();
  std::size_t end = last.begin;
  while (end > 0 && isSeparator(path[end - 1]))
    --end;
  if (end == 0) return windowsForm ? String() : String(path.substr(0, 1));
  // A drive's root keeps its separator.
  if (end == 2 && path[1] == u':') return String(path.substr(0, 3));
  return String(path.substr(0, end));
}

String fileName(StringView path) {
  const LastName last = lastNameOf(path);
  if (last.begin == 0 && last.end == 2 && path[1] == u':') return String();
  return String(path.substr(last.begin, last.end - last.begin));
}

String baseName(StringView path) {
  const String name = fileName(path);
  const std::size_t dot = name.rfind(u'.');
  return dot == String::npos ? name : name.substr(0, dot);
}

String extensionName(StringView path) {
  const String name = fileName(path);
  const std::size_t dot = name.rfind(u'.');
  return dot == String::npos ? String() : name.substr(dot + 1);
}

String buildPath(StringView path, StringView name, char16_t separator) {
  if (path.empty()) return String(name);
  if (name.empty()) return String(path);
  const bool pathEnds = isSeparator(path.back());
  const bool nameStarts = isSeparator(name.front());
  String result(path);
  if (pathEnds && nameStarts) {
    result += name.substr(1);
  } else if (pathEnds || nameStarts || (path.size() == 2 && startsWithDrive(path))) {
    result += name;
  } else {
    result += separator;
    result += name;
  }
  return result;
}

String driveName(StringView path) {
  if (startsWithDrive(path)) return String(path.substr(0, 2));
  const std::size_t root = uncRootLength(path);
  if (root == 0) return String();
  // Both the server and the share.
  std::size_t separators = 0;
  for (std::size_t i = 2; i < root; ++i)
    separators += isSeparator(path[i]) ? 1 : 0;
  return separators == 1 ? String(path.substr(0, root)) : String();
}

String absoluteWindowsPath(StringView path, StringView currentFolder) {
  const String current = withSeparator(currentFolder, u'\\');
  String text = withSeparator(path, u'\\');
  if (text.empty()) text = current;
  String root;
  StringView rest;
  if (const std::size_t unc = uncRootLength(text); unc > 0) {
    root = text.substr(0, unc);
    rest = StringView(text).substr(unc);
  } else if (startsWithDrive(text)) {
    const bool onCurrentDrive = startsWithDrive(current) &&
                                (current.size() == 2 || current[2] == u'\\') &&
                                toUpper(current[0]) == toUpper(text[0]);
    if (text.size() > 2 && text[2] == u'\\') {
      root = text.substr(0, 2) + u"\\";
      rest = StringView(text).substr(3);
    } else if (onCurrentDrive) {
      // "C:x" from the current folder of drive C.
      return absoluteWindowsPath(current + u"\\" + text.substr(2), current);
    } else {
      root = text.substr(0, 2) + u"\\";
      rest = StringView(text).substr(2);
    }
  } else {
    // From the current folder, or from its root after a leading separator.
    String currentRoot;
    if (const std::size_t unc = uncRootLength(current); unc > 0) {
      currentRoot = current.substr(0, unc);
    } else if (startsWithDrive(current)) {
      currentRoot = current.substr(0, 2) + u"\\";
    } else {
      currentRoot = u"C:\\";
    }
    if (!text.empty() && text[0] == u'\\') {
      root = currentRoot;
      rest = StringView(text).substr(1);
    } else {
      const String below = current.substr(std::min(currentRoot.size(), current.size()));
      return joinedUnder(currentRoot, below + u"\\" + text, u'\\');
    }
  }
  return joinedUnder(root, rest, u'\\');
}

String absoluteNativePath(StringView path, StringView currentFolder) {
  String text(path);
  if (text.empty() || !isSeparator(text[0])) {
    String current(currentFolder);
    if (current.empty() || !isSeparator(current[0])) current = u"/";
    text = current + u"/" + text;
  }
  if (const std::size_t unc = uncRootLength(text); unc > 0)
    return joinedUnder(withSeparator(text.substr(0, unc), u'/'), StringView(text).substr(unc),
                       u'/');
  return joinedUnder(u"/", text, u'/');
}

bool hasWildcards(StringView name) {
  return name.find_first_of(u"*?") != StringView::npos;
}

bool matchesWildcards(StringView name, StringView pattern) {
  if (pattern == u"*.*") return true;
  // The usual backtracking match: on a mismatch after a "*", let that "*" take one unit more.
  std::size_t n = 0;
  std::size_t p = 0;
  std::size_t starPattern = StringView::npos;
  std::size_t starName = 0;
  while (n < name.size()) {
    if (p < pattern.size() &&
        (pattern[p] == u'?' || (pattern[p] != u'*' && toUpper(pattern[p]) == toUpper(name[n])))) {
      ++n;
      ++p;
    } else if (p < pattern.size() && pattern[p] == u'*') {
      starPattern = p++;
      starName = n;
    } else if (starPattern != StringView::npos) {
      p = starPattern + 1;
      n = ++starName;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*')
    ++p;
  return p == pattern.size();
}

}  // namespace ravelin::path_text
