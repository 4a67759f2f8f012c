// Reading a script's text: the file or input bytes decoded to automation text.
#pragma once

#include <optional>
#include <ravelin/base/text.hpp>
#include <string>
#include <string_view>

namespace ravelin::host {

// Decodes script bytes: UTF-16 LE after its byte-order mark, else UTF-8 with or without one
// (malformed sequences read as U+FFFD). The byte-order mark is dropped.
String decodeScriptSource(std::string_view bytes);

// The bytes of a file (or a pipe); nothing when it is missing, a folder or cannot be read.
std::optional<std::string> readFileBytes(const std::string& path);

}  // namespace ravelin::host
