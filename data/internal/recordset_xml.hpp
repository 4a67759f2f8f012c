// A record set in the data-access objects' XML persistence format: the writer behind
// Recordset::Save and the reader behind Recordset::Open of a saved file.
//
// Choices where the format leaves one:
// - Every field of a fabricated set (no base table) is written rs:write='true', and
//   rs:fixedlength follows the type as well as adFldFixed, as the objects themselves write them;
//   so a field appended with 0x60 reads back as 0x74 for a fixed-width type.
// - A name that is not a plain XML name (letters, digits, '_', '-', '.', starting with a letter
//   or '_', ASCII only, not starting with "xml") or that another field already uses gets the
//   alias cN (N = position from 0; '_' is appended while that is taken) with rs:name.
// - A column changed to Null in a pending update is listed, by its XML name, in the
//   rs:forcenull attribute of the update's changed row (names apart by blanks).
// - Values: True/False; yyyy-mm-ddThh:mm:ss (dt:type date and time write their half only);
//   numbers with '.', the shortest text that reads back as the same Double or Single; bin.hex in
//   lowercase; texts with & < > ' " and CR, LF, TAB as references. A text holding a character
//   XML cannot carry (controls other than CR, LF and TAB, a lone surrogate, U+FFFE, U+FFFF) is
//   refused with 3004, since it would not read back.
// - Binary cells are written from a byte array (a text writes its UTF-16LE bytes) and read back
//   as a byte array.
// - The reader takes both schema layouts, orders fields by rs:number, reads dt:type synonyms
//   (i4, r8, ...), fractional seconds and a final Z, and ignores attributes and elements it does
//   not know. Anything else wrong raises 3003 ("File could not be read.") with what and where.
#pragma once

#include <cstdint>
#include <ravelin/data/record_store.hpp>
#include <string>
#include <string_view>

namespace ravelin::recordset_xml {

// The whole document for the rows of `store` in storage order: committed rows plain, new rows in
// rs:insert, modified rows in rs:update, deleted rows in rs:delete. Raises 3004 for a value the
// format cannot carry.
std::string write(const RecordStore& store);

// Reads `document` into `store`, a closed store without fields: appends the fields, opens it
// (static client cursor; lock type `lockType`) and appends the rows in their saved states.
// Raises 3003 with a detail for a document that is no saved record set.
void read(std::string_view document, RecordStore& store, int32_t lockType);

// The largest file Open reads (bytes); a larger one raises 3003.
inline constexpr std::size_t kMaxDocumentBytes = std::size_t{1} << 30;

}  // namespace ravelin::recordset_xml
