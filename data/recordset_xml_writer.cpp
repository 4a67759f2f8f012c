// Writes a record set in the XML persistence format (internal/recordset_xml.hpp). The text is
// built directly, UTF-8, in the layout the data-access objects write.
#include <array>
#include <charconv>
#include <cstdio>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/internal/recordset_xml.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <unordered_set>

namespace ravelin::recordset_xml {
namespace {

constexpr std::string_view kHeader =
    "<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'\n"
    "\txmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'\n"
    "\txmlns:rs='urn:schemas-microsoft-com:rowset'\n"
    "\txmlns:z='#RowsetSchema'>\n"
    "<s:Schema id='RowsetSchema'>\n"
    "\t<s:ElementType name='row' content='eltOnly' rs:updatable='true'>\n";

// How a type is described in the schema.
struct TypeDescription {
  const char* dtType;
  const char* dbType;  // null when not written
  int32_t maxLength;   // 0: the field's DefinedSize
  bool fixed;
  bool hasScale;
};

TypeDescription describeType(int32_t type) {
  switch (type) {
    case adBoolean:
      return {"boolean", nullptr, 2, true, false};
    case adDate:
      return {"dateTime", "variantdate", 16, true, false};
    case adDBTimeStamp:
      return {"dateTime", "timestamp", 16, true, true};
    case adFileTime:
      return {"dateTime", "filetime", 8, true, false};
    case adDBDate:
      return {"date", nullptr, 6, true, false};
    case adDBTime:
      return {"time", nullptr, 6, true, false};
    case adDouble:
      return {"float", nullptr, 8, true, false};
    case adSingle:
      return {"r4", nullptr, 4, true, false};
    case adInteger:
      return {"int", nullptr, 4, true, false};
    case adError:
      return {"int", "error", 4, true, false};
    case adSmallInt:
      return {"i2", nullptr, 2, true, false};
    case adTinyInt:
      return {"i1", nullptr, 1, true, false};
    case adUnsignedTinyInt:
      return {"ui1", nullptr, 1, true, false};
    case adUnsignedSmallInt:
      return {"ui2", nullptr, 2, true, false};
    case adUnsignedInt:
      return {"ui4", nullptr, 4, true, false};
    case adBigInt:
      return {"i8", nullptr, 8, true, false};
    case adUnsignedBigInt:
      return {"ui8", nullptr, 8, true, false};
    case adCurrency:
      return {"number", "currency", 8, true, false};
    case adNumeric:
      return {"number", "numeric", 19, true, true};
    case adDecimal:
      return {"number", "decimal", 16, true, true};
    case adVarNumeric:
      return {"number", "varnumeric", 0, false, true};
    case adGUID:
      return {"uuid", nullptr, 16, true, false};
    case adBinary:
      return {"bin.hex", nullptr, 0, true, false};
    case adVarBinary:
    case adLongVarBinary:
      return {"bin.hex", nullptr, 0, false, false};
    case adChar:
      return {"string", "str", 0, true, false};
    case adVarChar:
    case adLongVarChar:
      return {"string", "str", 0, false, false};
    case adBSTR:
      return {"string", "bstr", 0, false, false};
    case adWChar:
      return {"string", nullptr, 0, true, false};
    default:
      return {"string", nullptr, 0, false, false};  // adVarWChar, adLongVarWChar
  }
}

bool isLongType(int32_t type) {
  return type == adLongVarChar || type == adLongVarWChar || type == adLongVarBinary;
}

bool isNameStart(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit == u'_';
}

bool isNameUnit(char16_t unit) {
  return isNameStart(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.';
}

bool isPlainXmlName(StringView name) {
  if (name.empty() || !isNameStart(name[0])) return false;
  for (char16_t unit : name) {
    if (!isNameUnit(unit)) return false;
  }
  // Names starting with "xml" (any case) are reserved; "xmlns" would declare a namespace.
  return !(name.size() >= 3 && equalsIgnoreCase(name.substr(0, 3), u"xml"));
}

// The attribute name of each field in z:row: its own name, or an alias cN.
std::vector<std::string> xmlNamesOf(const RecordStore& store) {
  const std::size_t count = store.fieldCount();
  std::vector<std::string> names(count);
  std::unordered_set<std::string> used;
  std::vector<bool> plain(count);
  for (std::size_t i = 0; i < count; ++i) {
    plain[i] = isPlainXmlName(store.field(i).name);
    if (plain[i]) plain[i] = used.insert(toUtf8(store.field(i).name)).second;
    if (plain[i]) names[i] = toUtf8(store.field(i).name);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (plain[i]) continue;
    std::string alias = "c" + std::to_string(i);
    while (!used.insert(alias).second)
      alias += '_';
    names[i] = alias;
  }
  return names;
}

[[noreturn]] void refuseCharacter(const RecordStore& store, std::size_t field, std::size_t row,
                                  uint32_t character) {
  char code[16];
  std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(character));
  raiseAdoError(ado_error::kWriteFile, kRecordsetSource,
                u"The value of field '" + store.field(field).name + u"' in row " +
                    fromAscii(std::to_string(row + 1)) + u" holds the character " +
                    fromAscii(code) + u", which an XML file cannot hold.");
}

class Writer {
 public:
  explicit Writer(const RecordStore& store) : store_(store), names_(xmlNamesOf(store)) {}

  std::string document() {
    out_.reserve(4096 + store_.storedRows() * 16 * (store_.fieldCount() + 1));
    out_ += kHeader;
    for (std::size_t i = 0; i < store_.fieldCount(); ++i)
      schemaOf(i);
    out_ += "\t\t<s:extends type='rs:rowbase'/>\n\t</s:ElementType>\n</s:Schema>\n";
    rows();
    out_ += "</xml>\n";
    return std::move(out_);
  }

 private:
  void flag(const char* name, bool on) {
    if (!on) return;
    out_ += ' ';
    out_ += name;
    out_ += "='true'";
  }

  void attribute(const char* name, std::string_view value) {
    out_ += ' ';
    out_ += name;
    out_ += "='";
    out_ += value;
    out_ += '\'';
  }

  void schemaOf(std::size_t index) {
    const FieldDefinition& field = store_.field(index);
    const int32_t attributes = field.attributes;
    out_ += "\t\t<s:AttributeType";
    attribute("name", names_[index]);
    if (names_[index] != toUtf8(field.name)) {
      out_ += " rs:name='";
      text(field.name, index, 0);
      out_ += '\'';
    }
    attribute("rs:number", std::to_string(index + 1));
    flag("rs:nullable", attributes & adFldIsNullable);
    flag("rs:maydefer", attributes & adFldMayDefer);
    // A fabricated field is always updatable; one from a database says whether it is.
    flag("rs:write", field.baseTable.empty() || (attributes & adFldUpdatable));
    flag("rs:writeunknown", attributes & adFldUnknownUpdatable);
    flag("rs:rowid", attributes & adFldRowID);
    flag("rs:keycolumn", attributes & adFldKeyColumn);
    if (!field.baseTable.empty()) {
      out_ += " rs:basetable='";
      text(field.baseTable, index, 0);
      out_ += '\'';
    }
    if (!field.baseColumn.empty()) {
      out_ += " rs:basecolumn='";
      text(field.baseColumn, index, 0);
      out_ += '\'';
    }
    out_ += ">\n\t\t\t<s:datatype";
    const TypeDescription type = describeType(field.type);
    attribute("dt:type", type.dtType);
    if (type.dbType != nullptr) attribute("rs:dbtype", type.dbType);
    const int32_t maxLength = type.maxLength != 0 ? type.maxLength : field.definedSize;
    attribute("dt:maxLength", std::to_string(static_cast<uint32_t>(maxLength)));
    if (type.hasScale) attribute("rs:scale", "0");
    attribute("rs:precision", "0");
    flag("rs:fixedlength", type.fixed || (attributes & adFldFixed));
    flag("rs:long", isLongType(field.type) || (attributes & adFldLong));
    if (!(attributes & adFldMayBeNull)) attribute("rs:maybenull", "false");
    out_ += "/>\n\t\t</s:AttributeType>\n";
  }

  void rows() {
    const std::size_t count = store_.storedRows();
    if (count == 0) {
      out_ += "<rs:data/>\n";
      return;
    }
    out_ += "<rs:data>\n";
    std::size_t row = 0;
    while (row < count) {
      switch (store_.rowState(row)) {
        case RowState::Unmodified:
          zrow(row, 1, nullptr);
          ++row;
          break;
        case RowState::New:
          out_ += "\t<rs:insert>\n";
          for (; row < count && store_.rowState(row) == RowState::New; ++row)
            zrow(row, 2, nullptr);
          out_ += "\t</rs:insert>\n";
          break;
        case RowState::Modified:
          update(row);
          ++row;
          break;
        case RowState::Deleted:
          out_ += "\t<rs:delete>\n";
          for (; row < count && store_.rowState(row) == RowState::Deleted; ++row)
            zrow(row, 2, store_.originalsOf(row));
          out_ += "\t</rs:delete>\n";
          break;
        case RowState::Gone:
          ++row;
          break;
      }
    }
    out_ += "</rs:data>\n";
  }

  void update(std::size_t row) {
    const std::vector<Variant>* originals = store_.originalsOf(row);
    out_ += "\t<rs:update>\n\t\t<rs:original>\n";
    zrow(row, 3, originals);
    out_ += "\t\t</rs:original>\n\t\t<z:row";
    std::string forceNull;
    for (std::size_t field = 0; field < store_.fieldCount(); ++field) {
      const Variant now = store_.column(field).value(row);
      if (originals != nullptr && (*originals)[field] == now &&
          (*originals)[field].isNull() == now.isNull()) {
        continue;
      }
      if (now.isNull()) {
        if (!forceNull.empty()) forceNull += ' ';
        forceNull += names_[field];
        continue;
      }
      cell(field, row, now);
    }
    if (!forceNull.empty()) attribute("rs:forcenull", forceNull);
    out_ += "/>\n\t</rs:update>\n";
  }

  // One z:row at `depth` tabs, from the stored cells or from the given values.
  void zrow(std::size_t row, int depth, const std::vector<Variant>* values) {
    out_.append(static_cast<std::size_t>(depth), '\t');
    out_ += "<z:row";
    for (std::size_t field = 0; field < store_.fieldCount(); ++field) {
      const Variant value = values != nullptr ? (*values)[field] : store_.column(field).value(row);
      if (!value.isNull()) cell(field, row, value);
    }
    out_ += "/>\n";
  }

  void cell(std::size_t field, std::size_t row, const Variant& value) {
    out_ += ' ';
    out_ += names_[field];
    out_ += "='";
    valueText(field, row, value);
    out_ += '\'';
  }

  template <typename T>
  void number(T value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out_.append(buffer, result.ptr);
  }

  void twoDigits(int value) {
    out_ += static_cast<char>('0' + value / 10);
    out_ += static_cast<char>('0' + value % 10);
  }

  void date(Date value, int32_t type) {
    const DateParts parts = splitDate(value);
    if (type != adDBTime) {
      char buffer[16];
      std::snprintf(buffer, sizeof buffer, "%04d-", parts.year);
      out_ += buffer;
      twoDigits(parts.month);
      out_ += '-';
      twoDigits(parts.day);
      if (type == adDBDate) return;
      out_ += 'T';
    }
    twoDigits(parts.hour);
    out_ += ':';
    twoDigits(parts.minute);
    out_ += ':';
    twoDigits(parts.second);
  }

  void currency(Currency value) {
    const int64_t scaled = value.scaled();
    uint64_t magnitude = scaled < 0 ? 0 - static_cast<uint64_t>(scaled) : scaled;
    if (scaled < 0) out_ += '-';
    out_ += std::to_string(magnitude / 10000);
    uint64_t fraction = magnitude % 10000;
    if (fraction == 0) return;
    char digits[5] = {};
    for (int i = 3; i >= 0; --i, fraction /= 10)
      digits[i] = static_cast<char>('0' + fraction % 10);
    int length = 4;
    while (digits[length - 1] == '0')
      --length;
    out_ += '.';
    out_.append(digits, static_cast<std::size_t>(length));
  }

  void binary(const Variant& value) {
    static constexpr char kHex[] = "0123456789abcdef";
    const auto put = [&](uint8_t byte) {
      out_ += kHex[byte >> 4];
      out_ += kHex[byte & 15];
    };
    if (value.isString()) {
      for (char16_t unit : value.asString()) {
        put(static_cast<uint8_t>(unit & 0xFF));
        put(static_cast<uint8_t>(unit >> 8));
      }
      return;
    }
    for (const Variant& element : value.asArray().elements)
      put(CByte(element));
  }

  void valueText(std::size_t field, std::size_t row, const Variant& value) {
    switch (store_.field(field).kind) {
      case CellKind::Double:
        return number(value.asDouble());
      case CellKind::Single:
        return number(value.asSingle());
      case CellKind::Long:
        return number(value.asLong());
      case CellKind::Integer:
        return number(value.asInteger());
      case CellKind::Byte:
        return number(static_cast<unsigned>(value.asByte()));
      case CellKind::Boolean:
        out_ += value.asBoolean() ? "True" : "False";
        return;
      case CellKind::Date:
        return date(value.asDate(), store_.field(field).type);
      case CellKind::Currency:
        return currency(value.asCurrency());
      case CellKind::Text:
        return text(value.asString(), field, row);
      case CellKind::Variant:
        return binary(value);
    }
  }

  // Text as UTF-8 with the references an attribute value in apostrophes needs.
  void text(StringView value, std::size_t field, std::size_t row) {
    for (std::size_t i = 0; i < value.size(); ++i) {
      uint32_t unit = value[i];
      switch (unit) {
        case u'&':
          out_ += "&amp;";
          continue;
        case u'<':
          out_ += "&lt;";
          continue;
        case u'>':
          out_ += "&gt;";
          continue;
        case u'\'':
          out_ += "&#x27;";
          continue;
        case u'"':
          out_ += "&quot;";
          continue;
        case u'\r':
          out_ += "&#xD;";
          continue;
        case u'\n':
          out_ += "&#xA;";
          continue;
        case u'\t':
          out_ += "&#x9;";
          continue;
        default:
          break;
      }
      if (unit < 0x20 || unit == 0xFFFE || unit == 0xFFFF)
        refuseCharacter(store_, field, row, unit);
      if (unit < 0x80) {
        out_ += static_cast<char>(unit);
      } else if (unit < 0x800) {
        out_ += static_cast<char>(0xC0 | (unit >> 6));
        out_ += static_cast<char>(0x80 | (unit & 0x3F));
      } else if (unit >= 0xD800 && unit <= 0xDFFF) {
        const bool pair = unit <= 0xDBFF && i + 1 < value.size() && value[i + 1] >= 0xDC00 &&
                          value[i + 1] <= 0xDFFF;
        if (!pair) refuseCharacter(store_, field, row, unit);
        const uint32_t code = 0x10000 + ((unit - 0xD800) << 10) + (value[++i] - 0xDC00);
        out_ += static_cast<char>(0xF0 | (code >> 18));
        out_ += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out_ += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out_ += static_cast<char>(0x80 | (code & 0x3F));
      } else {
        out_ += static_cast<char>(0xE0 | (unit >> 12));
        out_ += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
        out_ += static_cast<char>(0x80 | (unit & 0x3F));
      }
    }
  }

  const RecordStore& store_;
  std::vector<std::string> names_;
  std::string out_;
};

}  // namespace

std::string write(const RecordStore& store) {
  return Writer(store).document();
}

}  // namespace ravelin::recordset_xml
