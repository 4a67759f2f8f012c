#include <filesystem>
#include <fstream>
#include <iterator>
#include <ravelin/host/script_source.hpp>

namespace ravelin::host {

String decodeScriptSource(std::string_view bytes) {
  if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE') {
    String text;
    text.reserve((bytes.size() - 2) / 2);
    // An odd trailing byte cannot make a code unit; it is dropped.
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
      auto low = static_cast<unsigned char>(bytes[i]);
      auto high = static_cast<unsigned char>(bytes[i + 1]);
      text.push_back(static_cast<char16_t>(low | (high << 8)));
    }
    return text;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return fromUtf8(bytes);
}

std::optional<std::string> readFileBytes(const std::string& path) {
  // The path is UTF-8; the path type converts it for the system (UTF-16 on Windows).
  std::filesystem::path filePath(std::u8string(path.begin(), path.end()));
  std::error_code failed;
  if (std::filesystem::is_directory(filePath, failed)) return std::nullopt;
  try {
    std::ifstream file(filePath, std::ios::binary);
    if (!file) return std::nullopt;
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) return std::nullopt;
    return bytes;
  } catch (const std::ios_base::failure&) {
    return std::nullopt;
  }
}

}  // namespace ravelin::host
