// DBFFileReader: a dBASE III table into a record set, in one streaming pass.
#include <array>
#include <new>
#include <optional>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/data/internal/dbf_code_pages.hpp>
#include <ravelin/data/internal/dbf_table.hpp>
#include <ravelin/data/internal/dbf_values.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/text/text_helpers.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

constexpr uint8_t kDBaseIII = 0x03;
constexpr uint8_t kDBaseIIIWithMemo = 0x83;
constexpr StringView kRecordCountSource = u"clsDBFFileReader.RecordCount";

enum class Kind { Text, Memo, Number, Logical, Date, Unsupported };

// One descriptor as the record loop uses it.
struct Column {
  Kind kind = Kind::Unsupported;
  String name;
  std::size_t offset = 0;
  std::size_t length = 0;
  std::size_t field = 0;  // the record set's field, for the kinds that have one
  double divisor = 1.0;
  char type = 0;
};

// The code page of the table's text: the one its mark names, else the locale's ANSI page.
int tableCodePage(uint8_t languageDriver) {
  if (int page = dbf::codePageOfLanguageDriver(languageDriver)) return page;
  const int ansi = currentLocale().ansiCodePage;
  return singleByteTable(ansi) ? ansi : 1252;
}

// Decodes the bytes of one code page, and says when bytes can be stored as ISO-8859-1 as they
// are (each byte reads as the unit of the same number).
class TextDecoder {
 public:
  explicit TextDecoder(int codePage) : units_(*singleByteTable(codePage)) {
    for (std::size_t b = 0; b < 256; ++b)
      sameUnit_[b] = units_[b] == b;
  }
  bool isLatin1(std::string_view bytes) const {
    for (char c : bytes) {
      if (!sameUnit_[static_cast<uint8_t>(c)]) return false;
    }
    return true;
  }
  String decode(std::string_view bytes) const {
    String text(bytes.size(), u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
      text[i] = units_[static_cast<uint8_t>(bytes[i])];
    return text;
  }

 private:
  std::array<char16_t, 256> units_;
  std::array<bool, 256> sameUnit_{};
};

String quoted(StringView text) {
  return u"\"" + String(text) + u"\"";
}

[[noreturn]] void raiseAt(uint32_t record, const Column& column, StringView what) {
  dbf::raiseReaderError(u"Record " + dbf::decimalText(record) + u": field " + quoted(column.name) +
                        u" " + String(what));
}

[[noreturn]] void raiseUnsupported(uint32_t record, const Column& column) {
  raiseAt(
      record, column,
      u"has the unsupported type " + quoted(String(1, static_cast<unsigned char>(column.type))));
}

[[noreturn]] void raiseBadDate(uint32_t record, const Column& column, const TextDecoder& decoder,
                               std::string_view text) {
  raiseAt(record, column, u"holds " + quoted(decoder.decode(text)) + u", which is not a date");
}

// The columns of the descriptors, appended to the record set in descriptor order.
std::vector<Column> appendColumns(Recordset& rs, const std::vector<dbf::FieldDescriptor>& fields,
                                  const TextDecoder& decoder) {
  std::vector<Column> columns;
  columns.reserve(fields.size());
  ravelin::Fields& target = *rs.Fields();
  for (const dbf::FieldDescriptor& descriptor : fields) {
    Column column;
    String name = decoder.decode(descriptor.rawName);
    column.name = CutAtNull(name);
    column.offset = descriptor.offset;
    column.length = descriptor.length;
    column.type = descriptor.type;
    int32_t type = 0;
    int32_t size = 0;
    switch (descriptor.type) {
      case 'C':
        column.kind = Kind::Text, type = adVarWChar, size = descriptor.length;
        break;
      case 'M':
        column.kind = Kind::Memo, type = adVarWChar, size = descriptor.length;
        break;
      case 'N':
        column.kind = Kind::Number, type = adDouble;
        column.divisor = dbf::decimalDivisor(descriptor.decimalByte);
        break;
      case 'L':
        column.kind = Kind::Logical, type = adBoolean;
        break;
      case 'D':
        column.kind = Kind::Date, type = adDate;
        break;
      default:
        column.kind = Kind::Unsupported;
        break;
    }
    if (column.kind != Kind::Unsupported) {
      column.field = static_cast<std::size_t>(target.Count());
      try {
        target.Append(column.name, type, size, adFldUnspecified);
      } catch (const AutomationError& error) {
        dbf::raiseReaderError(u"Field " + quoted(column.name) + u" cannot be added: " +
                              error.description());
      }
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

// Stores one committed record through the bulk interface.
void storeRecord(Recordset& rs, const std::vector<Column>& columns, const TextDecoder& decoder,
                 std::string_view record, uint32_t recordNumber) {
  const std::size_t row = rs.appendRow();
  if (record[0] == '*') return;  // a deleted record: every field stays unset
  for (const Column& column : columns) {
    const std::string_view text = record.substr(column.offset, column.length);
    switch (column.kind) {
      case Kind::Text:
        if (decoder.isLatin1(text)) {
          rs.setCellLatin1(row, column.field, text);
        } else {
          rs.setCellText(row, column.field, decoder.decode(text));
        }
        break;
      case Kind::Number:
        rs.setCellDouble(row, column.field, dbf::numericText(text) / column.divisor);
        break;
      case Kind::Logical:
        rs.setCellBoolean(row, column.field, dbf::logicalText(text));
        break;
      case Kind::Date: {
        double serial = 0;
        switch (dbf::readDateText(text, serial)) {
          case dbf::DateText::Blank:
            break;
          case dbf::DateText::Date:
            rs.setCellDate(row, column.field, serial);
            break;
          case dbf::DateText::Unreadable:
            raiseBadDate(recordNumber, column, decoder, text);
        }
        break;
      }
      case Kind::Memo:
        break;
      case Kind::Unsupported:
        raiseUnsupported(recordNumber, column);
    }
  }
}

// Stores the last record as the table's algorithm does: AddNew, then each value assigned through
// the field of its name, and the row left under AddNew.
void storeLastRecord(Recordset& rs, const std::vector<Column>& columns, const TextDecoder& decoder,
                     std::string_view record, uint32_t recordNumber) {
  rs.AddNew();
  if (record[0] == '*') {
    rs.Cancel();  // changes nothing: the row begun stays, with every field unset
    return;
  }
  ravelin::Fields& fields = *rs.Fields();
  for (const Column& column : columns) {
    const std::string_view text = record.substr(column.offset, column.length);
    std::optional<Variant> value;
    switch (column.kind) {
      case Kind::Text:
        value = Variant(decoder.decode(text));
        break;
      case Kind::Number:
        value = Variant(dbf::numericText(text) / column.divisor);
        break;
      case Kind::Logical:
        value = Variant(dbf::logicalText(text));
        break;
      case Kind::Date: {
        double serial = 0;
        const dbf::DateText read = dbf::readDateText(text, serial);
        if (read == dbf::DateText::Unreadable) raiseBadDate(recordNumber, column, decoder, text);
        if (read == dbf::DateText::Date) value = Variant(Date{serial});
        break;
      }
      case Kind::Memo:
        break;
      case Kind::Unsupported:
        raiseUnsupported(recordNumber, column);
    }
    if (value) fields.Item(Variant(column.name))->setValue(*value);
  }
}

std::shared_ptr<Recordset> readTable(dbf::ByteSource& source) {
  const dbf::Header header = dbf::readHeader(source);
  if (header.version != kDBaseIII && header.version != kDBaseIIIWithMemo)
    dbf::raiseReaderError(u"Invalid file format");
  const std::vector<dbf::FieldDescriptor> descriptors = dbf::readDescriptors(source, header);
  const TextDecoder decoder(tableCodePage(header.languageDriver));

  auto rs = makeObject<Recordset>();
  const std::vector<Column> columns = appendColumns(*rs, descriptors, decoder);
  rs->Open();
  if (header.recordCount > 1) rs->reserveRows(header.recordCount - 1);

  dbf::RecordStream records(source, header);
  std::string_view record;
  while (records.next(record)) {
    const uint32_t n = records.recordNumber();
    try {
      if (n < header.recordCount) {
        storeRecord(*rs, columns, decoder, record, n);
      } else {
        storeLastRecord(*rs, columns, decoder, record, n);
      }
    } catch (const AutomationError& error) {
      if (error.number() == kReservedInvalidFileFormat) throw;
      dbf::raiseReaderError(u"Record " + dbf::decimalText(n) + u": " + error.description());
    }
  }
  return rs;
}

// Runs a read, turning running out of memory into error 7.
template <typename Read>
auto guarded(Read read) {
  try {
    return read();
  } catch (const std::bad_alloc&) {
    raiseRuntimeError(vb_error::kOutOfMemory);
  }
}

// The table's name, as a database reading the file would give it: the file name without its
// folder and extension.
StringView tableName(StringView path) {
  const std::size_t folder = path.find_last_of(u"\\/");
  if (folder != StringView::npos) path.remove_prefix(folder + 1);
  const std::size_t extension = path.rfind(u'.');
  return extension == StringView::npos ? path : path.substr(0, extension);
}

}  // namespace

std::shared_ptr<Recordset> DBFFileReader::readDBF(const String& dBaseName) const {
  if (dBaseName.empty()) return nullptr;
  auto rs = guarded([&] {
    const std::unique_ptr<dbf::ByteSource> source = dbf::openFileSource(dBaseName);
    return readTable(*source);
  });
  // The columns belong to the table of the file, so that the rows, marked as insertions, can be
  // sent through a connection to a table of that name.
  const auto& fields = *rs->Fields();
  for (int32_t i = 0; i < fields.Count(); ++i)
    rs->setFieldOrigin(static_cast<std::size_t>(i), tableName(dBaseName),
                       fields.Item(Variant(i))->Name());
  return rs;
}

std::shared_ptr<Recordset> DBFFileReader::readBytes(std::string_view bytes) {
  return guarded([&] {
    const std::unique_ptr<dbf::ByteSource> source = dbf::memorySource(bytes);
    return readTable(*source);
  });
}

double DBFFileReader::RecordCount(const String& dBaseName) const {
  if (dBaseName.empty()) return 0;
  try {
    const std::unique_ptr<dbf::ByteSource> source = dbf::openFileSource(dBaseName);
    return static_cast<double>(static_cast<int32_t>(dbf::readHeader(*source).recordCount));
  } catch (const AutomationError& error) {
    raiseError(error.number(), String(kRecordCountSource), error.description());
  }
}

ClassInfo DBFFileReader::describe() {
  return ClassBuilder<DBFFileReader>(kClassName)
      .method(u"readDBF", &DBFFileReader::readDBF, {u"dBaseName"})
      .method(u"RecordCount", &DBFFileReader::RecordCount, {u"dBaseName"})
      .build();
}

}  // namespace ravelin
