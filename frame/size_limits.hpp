// The largest texts and arrays that the library's members and the script host build. The
// original ran in a 32-bit address space, where a larger text or array failed with the runtime's
// error; failing the same way here keeps a runaway size from taking the machine's memory. Code
// that builds a text or an array from its arguments checks the size it will build first; the
// member tables check every result again (checkMemberValue).
#pragma once

#include <cstddef>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// The longest text, in UTF-16 units; longer raises 14 (out of string space).
inline constexpr std::size_t kMaxTextLength = std::size_t{1} << 24;

// The most elements an array may have; more raises 7 (out of memory).
inline constexpr std::size_t kMaxArrayElements = std::size_t{1} << 22;

// Raises 14 when a text of `length` units would pass kMaxTextLength.
void checkTextLength(std::size_t length);

// Raises 7 when an array of `count` elements would pass kMaxArrayElements.
void checkArrayElements(std::size_t count);

// The check of a value a member hands back (its result or a by-reference argument): a Double or
// Single that is not finite raises 6 (overflow), a text past kMaxTextLength 14 and an array of
// more than kMaxArrayElements elements 7. Other values pass.
void checkMemberValue(const Variant& value);

}  // namespace ravelin
