// DBFFileReader: reads a dBASE III table file into a disconnected record set, and reports how
// many records a table file holds. Each call opens, reads and closes the file.
//
// Choices where the table format leaves room:
// - Text ("C" values and field names) is decoded from the code page that the language-driver
//   byte (offset 29) names, when it names one the library converts (the marks are listed in
//   data/internal/dbf_code_pages.hpp: 437, 850, 1252, 852, 865, 866, 737, 857, 860, 861, 863,
//   874, 1250, 1251, 1253, 1254, 1255, 1256, 1257); otherwise (no mark, "current ANSI", a
//   double-byte or Macintosh page) from the ANSI code page of the current locale, or Windows-1252
//   when that page is not a single-byte page the library converts.
// - Any failure inside readDBF raises error 0x80040001 with source "clsDBFFileReader.ReadDBF"
//   and a description that says what is wrong and where; the file is closed and no record set is
//   returned. Besides a wrong version byte ("Invalid file format") and the broken layouts of
//   data/internal/dbf_table.hpp, these are: a missing or unreadable file; a field of an
//   unsupported type reached by a record that is not deleted; a non-blank date whose first eight
//   characters are not digits or that names no date; a failure of the record set itself.
// - Each column's base table is the file's name without folder and extension and its base column
//   the field's name, as a database reading the file reports them: rows marked as insertions go
//   through a connection to a table of that name. readBytes leaves them empty.
// - RecordCount raises the same number and description with source
//   "clsDBFFileReader.RecordCount" for a missing file or one shorter than its header.
#pragma once

#include <memory>
#include <ravelin/base/text.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <string_view>

namespace ravelin {

class DBFFileReader : public PublicClass<DBFFileReader> {
 public:
  static constexpr StringView kClassName = u"DBFFileReader";

  DBFFileReader() = default;
  static ClassInfo describe();

  // The table as an open record set: every record a row, the last one left under AddNew (the
  // current record); a deleted record is a row with every field unset. No object for an empty
  // name.
  std::shared_ptr<Recordset> readDBF(const String& dBaseName) const;

  // The record count of the header (as a signed 32-bit number); 0 for an empty name. The version
  // byte is not tested.
  double RecordCount(const String& dBaseName) const;

  // readDBF on bytes held in memory, for tests and fuzzing.
  static std::shared_ptr<Recordset> readBytes(std::string_view bytes);
};

}  // namespace ravelin
