// Reading a script's text: the file or input bytes decoded to automation text.
#pragma once

#include <cstddef>
#include <cstdio>
#include <ravelin/base/text.hpp>
#include <string>
#include <string_view>

namespace ravelin::host {

// Decodes script bytes: UTF-16 LE after its byte-order mark, else UTF-8 with or without one
// (malformed sequences read as U+FFFD). The byte-order mark is dropped.
String decodeScriptSource(std::string_view bytes);

// The most bytes a script file or the script on standard input may have (16 MiB): enough for
// any real script, and it decodes to no more than the longest text a script may build.
inline constexpr std::size_t kMaxScriptBytes = std::size_t{16} << 20;

// The bytes of a script, or why there are none.
struct ScriptBytes {
  enum class Status { Read, Unreadable, TooLarge };
  Status status = Status::Read;
  std::string bytes;  // when Read
};

// Reads a file (or a pipe or device) or an open stream, never more than `limit` + 1 bytes, so
// an endless source (/dev/zero, a pipe that never closes its end) ends as TooLarge. A missing
// path, a folder or a read error is Unreadable.
ScriptBytes readScriptBytes(const std::string& path, std::size_t limit = kMaxScriptBytes);
ScriptBytes readScriptBytes(std::FILE* stream, std::size_t limit = kMaxScriptBytes);

}  // namespace ravelin::host
