// The sizes a script may build: the interpreter's own operators and the built-in functions
// share them with the library's members (frame/size_limits.hpp), so a runaway script ends in the
// runtime's error instead of exhausting memory.
#pragma once

#include <cstdint>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/size_limits.hpp>

namespace ravelin::script {

// The longest text a script may build; longer raises kOutOfStringSpace.
using ravelin::kMaxTextLength;

// The most elements an array may have; more raises 7 (out of memory).
using ravelin::kMaxArrayElements;

// The most dimensions an array may have; more raise 9 (subscript out of range).
inline constexpr std::size_t kMaxArrayDimensions = 60;

// The runtime's "Out of string space" error number.
inline constexpr int32_t kOutOfStringSpace = vb_error::kOutOfStringSpace;

}  // namespace ravelin::script
