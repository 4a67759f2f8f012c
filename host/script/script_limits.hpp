// The sizes a script may build: the interpreter's own operators and the built-in functions
// share them, so a runaway script ends in the runtime's error instead of exhausting memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ravelin::script {

// The longest text a script may build; longer raises kOutOfStringSpace.
inline constexpr std::size_t kMaxTextLength = std::size_t{1} << 24;

// The most elements an array may have; more raises 7 (out of memory).
inline constexpr std::size_t kMaxArrayElements = std::size_t{1} << 22;

// The most dimensions an array may have; more raise 9 (subscript out of range).
inline constexpr std::size_t kMaxArrayDimensions = 60;

// The runtime's "Out of string space" error number.
inline constexpr int32_t kOutOfStringSpace = 14;

}  // namespace ravelin::script
