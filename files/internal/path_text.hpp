// The text rules of the file-system object's path members: they look at the text only, never at
// the file system. "\" and "/" both separate names. A Windows-form path follows the rules of the
// Windows object; a native path (platform/paths.hpp) the same rules, its root "/" taking the
// place of a drive's root "C:\".
#pragma once

#include <ravelin/base/text.hpp>

namespace ravelin::path_text {

bool isSeparator(char16_t unit);

// Whether the text starts with a drive letter and ":".
bool startsWithDrive(StringView path);

// Everything up to the last name, trailing separators dropped: "C:\a\b\" gives "C:\a"; a drive's
// root keeps its separator ("C:\a" gives "C:\"), and so does "/" for a native path; "" when there
// is no name before the last ("a", "C:\", "\a").
String parentFolderName(StringView path, bool windowsForm);

// The last name, trailing separators ignored ("a\" gives "a"); "" for "C:" and for separators
// alone.
String fileName(StringView path);

// The last name without its extension (".a" gives ""); extensionName: what follows the last "."
// of the last name, "" when it has none.
String baseName(StringView path);
String extensionName(StringView path);

// `name` joined to `path` with one separator: none added after a separator, after "C:" or before
// a name that starts with one; one dropped when both have one.
String buildPath(StringView path, StringView name, char16_t separator);

// The drive part of a Windows-form path: "C:" (as written), or "\\server\share" (the separators
// as written) when both names are there; "" otherwise.
String driveName(StringView path);

// The absolute path, by text: "." and ".." applied (never above the root), empty names dropped,
// no trailing separator but after a drive's root. `currentFolder` is absolute in the same form.
// In the Windows form a path without a drive starts at the current folder or, with a leading
// separator, at its root; "C:x" starts at the current folder when that is on drive C, else at
// "C:\"; the result is written with "\". Native paths are written with "/".
String absoluteWindowsPath(StringView path, StringView currentFolder);
String absoluteNativePath(StringView path, StringView currentFolder);

// Whether a name has "*" or "?", and whether a name matches such a pattern ("*" any run of
// characters, "?" exactly one, "*.*" every name), without regard to case.
bool hasWildcards(StringView name);
bool matchesWildcards(StringView name, StringView pattern);

}  // namespace ravelin::path_text
