// The upper halves of the table-driven single-byte code pages generated from published mappings
// (tools/gen_code_page_tables.py writes frame/code_page_tables.cpp).
#pragma once

#include <array>
#include <span>

namespace ravelin::code_page_tables {

// The text unit of each byte from 0x80 to 0xFF; bytes below 0x80 are ASCII in every table.
using HighHalf = std::array<char16_t, 128>;

// The table of a generated page, or null when the page is not among them.
const HighHalf* generatedHighHalf(int codePage);

// The numbers of the generated pages, ascending.
std::span<const int> generatedCodePages();

}  // namespace ravelin::code_page_tables
