#include <algorithm>
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

namespace {

constexpr std::size_t kReadChunk = 65536;

// Reads chunks until the end or until more than `limit` bytes have come.
template <typename ReadChunk>
ScriptBytes readBounded(std::size_t limit, ReadChunk readChunk) {
  ScriptBytes result;
  char buffer[kReadChunk];
  for (;;) {
    const std::size_t wanted = std::min(kReadChunk, limit + 1 - result.bytes.size());
    const std::size_t got = readChunk(buffer, wanted);
    if (got == 0) break;
    result.bytes.append(buffer, got);
    if (result.bytes.size() > limit) {
      result.status = ScriptBytes::Status::TooLarge;
      result.bytes.clear();
      break;
    }
  }
  return result;
}

ScriptBytes unreadable() {
  return {ScriptBytes::Status::Unreadable, {}};
}

}  // namespace

ScriptBytes readScriptBytes(const std::string& path, std::size_t limit) {
  // The path is UTF-8; the path type converts it for the system (UTF-16 on Windows).
  std::filesystem::path filePath(std::u8string(path.begin(), path.end()));
  std::error_code failed;
  if (std::filesystem::is_directory(filePath, failed)) return unreadable();
  try {
    std::ifstream file(filePath, std::ios::binary);
    if (!file) return unreadable();
    ScriptBytes result = readBounded(limit, [&](char* buffer, std::size_t size) {
      file.read(buffer, static_cast<std::streamsize>(size));
      return static_cast<std::size_t>(file.gcount());
    });
    return file.bad() ? unreadable() : result;
  } catch (const std::ios_base::failure&) {
    return unreadable();
  }
}

ScriptBytes readScriptBytes(std::FILE* stream, std::size_t limit) {
  ScriptBytes result = readBounded(
      limit, [&](char* buffer, std::size_t size) { return std::fread(buffer, 1, size, stream); });
  return std::ferror(stream) != 0 ? unreadable() : result;
}

}  // namespace ravelin::host
