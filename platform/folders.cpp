#include <ravelin/platform/folders.hpp>

namespace ravelin::platform {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trimStart(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

// The value of `line` when it assigns `entry` (`XDG_DOCUMENTS_DIR = "..."`), by the rules the
// desktop's own reader follows: the value must be quoted and be "$HOME", "$HOME/..." or an
// absolute path; nothing in it is unescaped; trailing "/" are dropped.
std::optional<std::string> valueOfLine(std::string_view line, std::string_view entry,
                                       std::string_view home) {
  line = trimStart(line);
  if (!line.starts_with(entry)) return std::nullopt;
  line = trimStart(line.substr(entry.size()));
  if (!line.starts_with('=')) return std::nullopt;
  line = trimStart(line.substr(1));
  if (!line.starts_with('"')) return std::nullopt;
  line.remove_prefix(1);
  const auto closing = line.find('"');
  if (closing == std::string_view::npos) return std::nullopt;
  std::string_view quoted = line.substr(0, closing);

  std::string value;
  if (quoted.starts_with("$HOME") && (quoted.size() == 5 || quoted[5] == '/')) {
    value.assign(home);
    value.append(quoted.substr(5));
  } else if (quoted.starts_with('/')) {
    value.assign(quoted);
  } else {
    return std::nullopt;
  }
  while (value.size() > 1 && value.back() == '/')
    value.pop_back();
  return value;
}

}  // namespace

std::optional<std::string> userDirectoryFromText(std::string_view text, std::string_view entry,
                                                 std::string_view home) {
  std::optional<std::string> found;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    // A later assignment overrides an earlier one, as when the file is sourced by a shell.
    if (auto value = valueOfLine(line, entry, home)) found = std::move(value);
  }
  return found;
}

}  // namespace ravelin::platform
