// The demo's import of a dBASE table into an SQLite database (demo_import.cpp).
#pragma once

#include <cstddef>

namespace ravelin::demo {

// Writes a sales table of `records` records into a temporary folder and imports it.
void importSales(std::size_t records);

}  // namespace ravelin::demo
