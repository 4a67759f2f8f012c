// The runtime's file errors for what the system reports, and the native paths of the file-system
// object's texts; shared by the object and its text streams.
#pragma once

#include <cstdint>
#include <filesystem>
#include <ravelin/base/text.hpp>
#include <system_error>

namespace ravelin::file_errors {

// The runtime error for a failed system operation: 70 for a refusal (permissions, a read-only
// file system, a file in use, a folder where a file was meant), 58 when the name is taken, 61
// for a full disk, 52 for a name too long or malformed, 76 for a folder on the way that is not
// there, `missing` (53 for a file, 76 for a folder) when the thing itself is not there, 57 for
// anything else.
int32_t numberFor(const std::error_code& error, int32_t missing);

[[noreturn]] void raise(int32_t number);
[[noreturn]] void raiseFor(const std::error_code& error, int32_t missing);

// The error code the C library left after a stream operation failed (57's when it left none).
std::error_code lastStreamError();

// The native path a member's text names (platform/paths.hpp); raises 52 for a text that cannot
// be a name and 76 for one that names nothing (an empty text, an unknown drive, a share that is
// not mounted).
std::filesystem::path nativeOrRaise(StringView path);

// Whether a file is read-only as Windows' attribute has it: its owner may not write it. A link
// is not (deleting it leaves what it leads to alone).
bool isReadOnly(const std::filesystem::path& file);

}  // namespace ravelin::file_errors
