// Appends the decimal text of an integer to automation text, without a temporary string.
#pragma once

#include <charconv>
#include <concepts>
#include <iterator>
#include <ravelin/base/text.hpp>

namespace ravelin::detail {

template <std::integral Int>
void appendDecimal(String& out, Int value) {
  char digits[24];
  char* const end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
  out.append(std::begin(digits), end);
}

}  // namespace ravelin::detail
