// Reads a record set saved in the XML persistence format (internal/recordset_xml.hpp): the
// schema into field definitions, then every row in its saved state. Namespaces are matched by
// URI, whatever prefixes the file uses.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/internal/recordset_xml.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/xml_reader.hpp>
#include <unordered_map>

namespace ravelin::recordset_xml {
namespace {

using platform::XmlAttribute;
using platform::XmlEvent;

constexpr StringView kSchemaUri = u"uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882";
constexpr StringView kTypesUri = u"uuid:C2F41010-65B3-11d1-A29F-00AA00C14882";
constexpr StringView kRowsetUri = u"urn:schemas-microsoft-com:rowset";
constexpr StringView kRowUri = u"#RowsetSchema";

[[noreturn]] void bad(StringView detail) {
  raiseAdoError(ado_error::kReadFile, kRecordsetSource, detail);
}

String number(uint64_t value) {
  return fromAscii(std::to_string(value));
}

// The uuid: namespaces are compared without regard to case; the others exactly.
bool is(const XmlEvent& event, StringView uri, StringView local) {
  return event.localName == local &&
         (event.namespaceUri == uri ||
          (uri.starts_with(u"uuid:") && equalsIgnoreCase(event.namespaceUri, uri)));
}

const String* find(const std::vector<XmlAttribute>& attributes, StringView uri, StringView local) {
  for (const XmlAttribute& attribute : attributes) {
    if (attribute.localName == local &&
        (attribute.namespaceUri == uri ||
         (uri.starts_with(u"uuid:") && equalsIgnoreCase(attribute.namespaceUri, uri)))) {
      return &attribute.value;
    }
  }
  return nullptr;
}

bool isTrue(const std::vector<XmlAttribute>& attributes, StringView local) {
  const String* value = find(attributes, kRowsetUri, local);
  return value != nullptr && (equalsIgnoreCase(*value, u"true") || *value == u"1");
}

// The ASCII text of a value, or nothing when it holds another character.
std::optional<std::string> ascii(StringView text) {
  std::string out;
  out.reserve(text.size());
  for (char16_t unit : text) {
    if (unit >= 0x80) return std::nullopt;
    out += static_cast<char>(unit);
  }
  return out;
}

std::optional<int64_t> wholeNumber(StringView text) {
  const auto digits = ascii(text);
  if (!digits || digits->empty()) return std::nullopt;
  const char* begin = digits->data() + (digits->front() == '+' ? 1 : 0);
  const char* end = digits->data() + digits->size();
  int64_t value = 0;
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return value;
}

template <typename T>
std::optional<T> realNumber(StringView text) {
  const auto digits = ascii(text);
  if (!digits || digits->empty()) return std::nullopt;
  const char* begin = digits->data() + (digits->front() == '+' ? 1 : 0);
  const char* end = digits->data() + digits->size();
  T value{};
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

// A decimal text as Currency, exactly; digits past the fourth decimal round half to even.
std::optional<Currency> currencyOf(StringView text) {
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == u'-';
  if (!text.empty() && (text[0] == u'-' || text[0] == u'+')) ++at;
  constexpr uint64_t kLimit = uint64_t{1} << 63;  // the magnitude of the most negative value
  uint64_t scaled = 0;
  int decimals = 0;
  bool digits = false, point = false, roundUp = false, tie = false, beyond = false;
  for (; at < text.size(); ++at) {
    const char16_t unit = text[at];
    if (unit == u'.' && !point) {
      point = true;
      continue;
    }
    if (unit < u'0' || unit > u'9') return std::nullopt;
    digits = true;
    const int digit = unit - u'0';
    if (point && decimals == 4) {
      if (!beyond) {
        roundUp = digit > 5;
        tie = digit == 5;
        beyond = true;
      } else if (digit != 0 && tie) {
        roundUp = true;
        tie = false;
      }
      continue;
    }
    if (scaled > (kLimit - static_cast<uint64_t>(digit)) / 10) return std::nullopt;
    scaled = scaled * 10 + static_cast<uint64_t>(digit);
    if (point) ++decimals;
  }
  if (!digits) return std::nullopt;
  for (; decimals < 4; ++decimals) {
    if (scaled > kLimit / 10) return std::nullopt;
    scaled *= 10;
  }
  if (roundUp || (tie && (scaled & 1) != 0)) ++scaled;
  if (scaled > (negative ? kLimit : kLimit - 1)) return std::nullopt;
  const int64_t value = negative ? static_cast<int64_t>(0 - static_cast<uint64_t>(scaled))
                                 : static_cast<int64_t>(scaled);
  return Currency::fromScaled(value);
}

// Reads `count` digits at `at` into `value`.
bool digitsAt(StringView text, std::size_t& at, int count, int& value) {
  value = 0;
  for (int i = 0; i < count; ++i, ++at) {
    if (at >= text.size() || text[at] < u'0' || text[at] > u'9') return false;
    value = value * 10 + (text[at] - u'0');
  }
  return true;
}

// yyyy-mm-dd, yyyy-mm-ddThh:mm:ss or hh:mm:ss, the seconds with an optional fraction, the whole
// with an optional final Z.
std::optional<Date> dateOf(StringView text) {
  if (!text.empty() && text.back() == u'Z') text.remove_suffix(1);
  int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
  double fraction = 0;
  std::size_t at = 0;
  const bool timeOnly = text.size() >= 3 && text[2] == u':';
  if (!timeOnly) {
    if (!digitsAt(text, at, 4, year) || at >= text.size() || text[at++] != u'-' ||
        !digitsAt(text, at, 2, month) || at >= text.size() || text[at++] != u'-' ||
        !digitsAt(text, at, 2, day)) {
      return std::nullopt;
    }
    if (at < text.size() && text[at++] != u'T') return std::nullopt;
    if (at == text.size() && text.back() == u'T') return std::nullopt;
  }
  if (at < text.size()) {
    if (!digitsAt(text, at, 2, hour) || at >= text.size() || text[at++] != u':' ||
        !digitsAt(text, at, 2, minute) || at >= text.size() || text[at++] != u':' ||
        !digitsAt(text, at, 2, second)) {
      return std::nullopt;
    }
    if (at < text.size()) {
      if (text[at++] != u'.' || at >= text.size()) return std::nullopt;
      double scale = 0.1;
      for (; at < text.size(); ++at, scale /= 10) {
        if (text[at] < u'0' || text[at] > u'9') return std::nullopt;
        fraction += (text[at] - u'0') * scale;
      }
    }
  } else if (timeOnly) {
    return std::nullopt;
  }
  try {
    Date date = makeDate(year, month, day, hour, minute, second);
    // The time runs forward from the day's midnight, also before 30 December 1899.
    date.serial += (date.serial < 0 ? -fraction : fraction) / 86400.0;
    return date;
  } catch (const AutomationError&) {
    return std::nullopt;
  }
}

std::optional<Variant> bytesOf(StringView text) {
  if (text.size() % 2 != 0) return std::nullopt;
  const auto nibble = [](char16_t unit) -> int {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    return -1;
  };
  SafeArray bytes = SafeArray::vector(VarType::Byte, 0, static_cast<int32_t>(text.size() / 2) - 1);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = nibble(text[i]), low = nibble(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.elements[i / 2] = Variant(static_cast<uint8_t>(high * 16 + low));
  }
  return Variant(std::move(bytes));
}

std::optional<Variant> integerIn(StringView text, int64_t low, int64_t high) {
  const auto value = wholeNumber(text);
  if (!value || *value < low || *value > high) return std::nullopt;
  return Variant(static_cast<double>(*value));
}

// The value of a cell as its field's automation type, or nothing when the text is no such value.
std::optional<Variant> cellValue(const FieldDefinition& field, StringView text) {
  switch (field.type) {
    case adSmallInt:
    case adTinyInt: {
      const auto value = wholeNumber(text);
      const int64_t low = field.type == adTinyInt ? -128 : -32768;
      const int64_t high = field.type == adTinyInt ? 127 : 32767;
      if (!value || *value < low || *value > high) return std::nullopt;
      return Variant(static_cast<int16_t>(*value));
    }
    case adInteger:
    case adError:
    case adUnsignedSmallInt: {
      const auto value = wholeNumber(text);
      const int64_t low = field.type == adUnsignedSmallInt ? 0 : INT32_MIN;
      const int64_t high = field.type == adUnsignedSmallInt ? 65535 : INT32_MAX;
      if (!value || *value < low || *value > high) return std::nullopt;
      return Variant(static_cast<int32_t>(*value));
    }
    case adUnsignedTinyInt: {
      const auto value = wholeNumber(text);
      if (!value || *value < 0 || *value > 255) return std::nullopt;
      return Variant(static_cast<uint8_t>(*value));
    }
    case adUnsignedInt:
      return integerIn(text, 0, 4294967295LL);
    case adBigInt:
    case adUnsignedBigInt: {
      // Held as Double; a whole number in any notation within the type's range.
      const auto value = realNumber<double>(text);
      const double low = field.type == adBigInt ? -9223372036854775808.0 : 0.0;
      if (!value || *value != std::trunc(*value) || *value < low ||
          *value > 18446744073709551615.0) {
        return std::nullopt;
      }
      return Variant(*value);
    }
    case adSingle: {
      const auto value = realNumber<float>(text);
      if (!value) return std::nullopt;
      return Variant(*value);
    }
    case adCurrency: {
      const auto value = currencyOf(text);
      if (!value) return std::nullopt;
      return Variant(*value);
    }
    case adBoolean:
      if (equalsIgnoreCase(text, u"true") || text == u"1" || text == u"-1") return Variant(true);
      if (equalsIgnoreCase(text, u"false") || text == u"0") return Variant(false);
      return std::nullopt;
    case adDate:
    case adDBDate:
    case adDBTime:
    case adDBTimeStamp:
    case adFileTime: {
      const auto value = dateOf(text);
      if (!value) return std::nullopt;
      return Variant(*value);
    }
    case adBinary:
    case adVarBinary:
    case adLongVarBinary:
      return bytesOf(text);
    default:
      break;
  }
  if (field.kind == CellKind::Double) {
    const auto value = realNumber<double>(text);
    if (!value) return std::nullopt;
    return Variant(*value);
  }
  return Variant(String(text));
}

// The field type of a schema entry; nothing for a type the reader does not know.
std::optional<int32_t> typeOf(StringView dtType, StringView dbType, bool fixed, bool isLong) {
  const String type = toLower(dtType);
  const String db = toLower(dbType);
  if (type.empty() || type == u"string" || type == u"char") {
    if (db == u"str") return isLong ? adLongVarChar : fixed ? adChar : adVarChar;
    if (db == u"bstr") return adBSTR;
    return isLong ? adLongVarWChar : (fixed || type == u"char") ? adWChar : adVarWChar;
  }
  if (type == u"boolean") return adBoolean;
  if (type == u"datetime" || type == u"datetime.tz") {
    if (db == u"variantdate") return adDate;
    if (db == u"filetime") return adFileTime;
    return adDBTimeStamp;
  }
  if (type == u"date") return adDBDate;
  if (type == u"time" || type == u"time.tz") return adDBTime;
  if (type == u"float" || type == u"r8") return adDouble;
  if (type == u"r4") return adSingle;
  if (type == u"int" || type == u"i4") return db == u"error" ? adError : adInteger;
  if (type == u"i2") return adSmallInt;
  if (type == u"i1") return adTinyInt;
  if (type == u"ui1") return adUnsignedTinyInt;
  if (type == u"ui2") return adUnsignedSmallInt;
  if (type == u"ui4") return adUnsignedInt;
  if (type == u"i8") return adBigInt;
  if (type == u"ui8") return adUnsignedBigInt;
  if (type == u"fixed.14.4") return adCurrency;
  if (type == u"number") {
    if (db == u"currency") return adCurrency;
    if (db == u"decimal") return adDecimal;
    if (db == u"varnumeric") return adVarNumeric;
    return adNumeric;
  }
  if (type == u"uuid") return adGUID;
  if (type == u"bin.hex") return isLong ? adLongVarBinary : fixed ? adBinary : adVarBinary;
  return std::nullopt;
}

// One s:AttributeType: its own attributes and those of its s:datatype, together.
struct FieldEntry {
  std::vector<XmlAttribute> attributes;
  std::size_t order = 0;  // in the document
};

class Reader {
 public:
  Reader(std::string_view document, RecordStore& store, int32_t lockType)
      : xml_(platform::XmlReader::makeNative(document)), store_(store), lockType_(lockType) {}

  void read() {
    const XmlEvent& root = next();
    if (root.kind != XmlEvent::Kind::StartElement) bad(u"The file holds no XML element.");
    if (!root.namespaceUri.empty() || root.localName != u"xml")
      bad(u"The root element is <" + root.localName + u">, not <xml>.");
    bool schema = false, data = false;
    for (;;) {
      const XmlEvent& event = next();
      if (event.kind != XmlEvent::Kind::StartElement) break;
      if (is(event, kSchemaUri, u"Schema") && !schema) {
        readSchema();
        schema = true;
      } else if (is(event, kRowsetUri, u"data") && !data) {
        if (!schema) bad(u"rs:data comes before the schema (s:Schema).");
        readData();
        data = true;
      } else {
        skip();
      }
    }
    if (next().kind != XmlEvent::Kind::EndOfDocument) bad(u"Content follows the root element.");
    if (!schema) bad(u"The file has no schema (s:Schema).");
    if (!data) bad(u"The file has no rs:data element.");
  }

 private:
  const XmlEvent& next() {
    const XmlEvent& event = xml_->next();
    if (event.kind == XmlEvent::Kind::Error)
      bad(u"The file is not well-formed XML: " + event.message);
    if (event.kind == XmlEvent::Kind::EndOfDocument && depth_ > 0)
      bad(u"The file ends inside an element.");
    if (event.kind == XmlEvent::Kind::StartElement) ++depth_;
    if (event.kind == XmlEvent::Kind::EndElement) --depth_;
    return event;
  }

  // Skips the rest of the element just started.
  void skip() {
    const int until = depth_ - 1;
    while (depth_ > until)
      next();
  }

  void readSchema() {
    std::vector<FieldEntry> entries;
    std::vector<String> references;
    for (;;) {
      const XmlEvent& event = next();
      if (event.kind != XmlEvent::Kind::StartElement) break;
      if (is(event, kSchemaUri, u"ElementType")) {
        for (;;) {
          const XmlEvent& inner = next();
          if (inner.kind != XmlEvent::Kind::StartElement) break;
          if (is(inner, kSchemaUri, u"AttributeType")) {
            entries.push_back(readAttributeType(inner, entries.size()));
          } else if (is(inner, kSchemaUri, u"attribute")) {
            const String* type = find(inner.attributes, u"", u"type");
            if (type == nullptr) bad(u"An s:attribute has no type.");
            references.push_back(*type);
            skip();
          } else {
            skip();
          }
        }
      } else if (is(event, kSchemaUri, u"AttributeType")) {
        entries.push_back(readAttributeType(event, entries.size()));
      } else {
        skip();
      }
    }
    defineFields(std::move(entries), references);
  }

  FieldEntry readAttributeType(const XmlEvent& start, std::size_t order) {
    FieldEntry entry;
    entry.attributes = start.attributes;
    entry.order = order;
    for (;;) {
      const XmlEvent& event = next();
      if (event.kind != XmlEvent::Kind::StartElement) break;
      if (is(event, kSchemaUri, u"datatype")) {
        entry.attributes.insert(entry.attributes.end(), event.attributes.begin(),
                                event.attributes.end());
      }
      skip();
    }
    return entry;
  }

  void defineFields(std::vector<FieldEntry> entries, const std::vector<String>& references) {
    if (!references.empty()) {
      std::vector<FieldEntry> chosen;
      for (const String& reference : references) {
        auto found = std::find_if(entries.begin(), entries.end(), [&](const FieldEntry& entry) {
          const String* name = find(entry.attributes, u"", u"name");
          return name != nullptr && *name == reference;
        });
        if (found == entries.end())
          bad(u"s:attribute refers to '" + reference + u"', which no s:AttributeType defines.");
        chosen.push_back(*found);
      }
      entries = std::move(chosen);
    }
    // A set without fields is a set too: the writer writes one when asked, so it reads back.
    std::vector<int64_t> numbers;
    bool numbered = true;
    for (const FieldEntry& entry : entries) {
      const String* text = find(entry.attributes, kRowsetUri, u"number");
      const auto value = text != nullptr ? wholeNumber(*text) : std::nullopt;
      if (text != nullptr && (!value || *value < 1))
        bad(u"rs:number '" + *text + u"' is not a field position.");
      numbered = numbered && value.has_value();
      numbers.push_back(value.value_or(0));
    }
    std::vector<std::size_t> order(entries.size());
    for (std::size_t i = 0; i < order.size(); ++i)
      order[i] = i;
    if (numbered) {
      std::stable_sort(order.begin(), order.end(),
                       [&](std::size_t a, std::size_t b) { return numbers[a] < numbers[b]; });
      for (std::size_t i = 1; i < order.size(); ++i) {
        if (numbers[order[i]] == numbers[order[i - 1]])
          bad(u"Two fields have rs:number " + number(static_cast<uint64_t>(numbers[order[i]])) +
              u".");
      }
    }
    for (std::size_t index : order)
      defineField(entries[index]);
    store_.setCursorLocation(adUseClient);
    store_.open(adOpenStatic, lockType_);
  }

  void defineField(const FieldEntry& entry) {
    const auto& attributes = entry.attributes;
    const String* xmlName = find(attributes, u"", u"name");
    if (xmlName == nullptr || xmlName->empty()) bad(u"An s:AttributeType has no name.");
    const String* realName = find(attributes, kRowsetUri, u"name");
    const String name = realName != nullptr ? *realName : *xmlName;
    const String* dtType = find(attributes, kTypesUri, u"type");
    const String* dbType = find(attributes, kRowsetUri, u"dbtype");
    const bool fixed = isTrue(attributes, u"fixedlength");
    const bool isLong = isTrue(attributes, u"long");
    const auto type =
        typeOf(dtType ? *dtType : String(), dbType ? *dbType : String(), fixed, isLong);
    if (!type) {
      bad(u"Field '" + name + u"' has the unknown type '" + (dtType ? *dtType : String()) +
          (dbType ? u"' (" + *dbType + u")" : String(u"'")) + u".");
    }
    int32_t size = 0;
    if (const String* maxLength = find(attributes, kTypesUri, u"maxLength")) {
      const auto value = wholeNumber(*maxLength);
      if (!value || *value < 0 || *value > 4294967295LL)
        bad(u"Field '" + name + u"' has the length '" + *maxLength + u"'.");
      if (*value <= INT32_MAX) size = static_cast<int32_t>(*value);
    }
    int32_t flags = 0;
    if (isTrue(attributes, u"maydefer")) flags |= adFldMayDefer;
    if (isTrue(attributes, u"write")) flags |= adFldUpdatable;
    if (isTrue(attributes, u"writeunknown")) flags |= adFldUnknownUpdatable;
    if (fixed) flags |= adFldFixed;
    if (isTrue(attributes, u"nullable")) flags |= adFldIsNullable;
    const String* mayBeNull = find(attributes, kRowsetUri, u"maybenull");
    if (mayBeNull == nullptr || !(equalsIgnoreCase(*mayBeNull, u"false") || *mayBeNull == u"0"))
      flags |= adFldMayBeNull;
    if (isLong) flags |= adFldLong;
    if (isTrue(attributes, u"rowid")) flags |= adFldRowID;
    if (isTrue(attributes, u"keycolumn")) flags |= adFldKeyColumn;
    const bool sized =
        isTextType(*type) || *type == adBinary || *type == adVarBinary || *type == adLongVarBinary;
    FieldDefinition definition = ravelin::defineField(name, *type, sized ? size : 0, flags);
    if (const String* table = find(attributes, kRowsetUri, u"basetable"))
      definition.baseTable = *table;
    if (const String* column = find(attributes, kRowsetUri, u"basecolumn"))
      definition.baseColumn = *column;
    if (store_.findField(name)) bad(u"Two fields are named '" + name + u"'.");
    if (!xmlNames_.emplace(*xmlName, store_.fieldCount()).second)
      bad(u"Two fields have the XML name '" + *xmlName + u"'.");
    store_.appendField(std::move(definition));
  }

  void readData() {
    for (;;) {
      const XmlEvent& event = next();
      if (event.kind != XmlEvent::Kind::StartElement) break;
      if (is(event, kRowUri, u"row")) {
        store(RowState::Unmodified, values(event.attributes, nullptr), nullptr);
        skip();
      } else if (is(event, kRowsetUri, u"insert") || is(event, kRowsetUri, u"delete")) {
        const RowState state = event.localName == u"insert" ? RowState::New : RowState::Deleted;
        for (;;) {
          const XmlEvent& row = next();
          if (row.kind != XmlEvent::Kind::StartElement) break;
          if (is(row, kRowUri, u"row")) {
            std::vector<Variant> cells = values(row.attributes, nullptr);
            if (state == RowState::Deleted) {
              std::vector<Variant> originals = cells;
              store(state, std::move(cells), &originals);
            } else {
              store(state, std::move(cells), nullptr);
            }
          }
          skip();
        }
      } else if (is(event, kRowsetUri, u"update")) {
        readUpdate();
      } else {
        skip();
      }
    }
  }

  void readUpdate() {
    std::optional<std::vector<Variant>> originals;
    for (;;) {
      const XmlEvent& event = next();
      if (event.kind != XmlEvent::Kind::StartElement) break;
      if (is(event, kRowsetUri, u"original")) {
        for (;;) {
          const XmlEvent& row = next();
          if (row.kind != XmlEvent::Kind::StartElement) break;
          if (is(row, kRowUri, u"row")) {
            if (originals)
              bad(u"An rs:original holds more than one row (row " + number(rows_ + 1) + u").");
            originals = values(row.attributes, nullptr);
          }
          skip();
        }
      } else if (is(event, kRowUri, u"row")) {
        if (!originals)
          bad(u"A changed row in rs:update has no rs:original before it (row " + number(rows_ + 1) +
              u").");
        std::vector<Variant> cells = values(event.attributes, &*originals);
        store(RowState::Modified, std::move(cells), &*originals);
        originals.reset();
        skip();
      } else {
        skip();
      }
    }
    if (originals)
      bad(u"An rs:original has no changed row after it (row " + number(rows_ + 1) + u").");
  }

  // The values of a z:row: Null where its attribute is absent, or the `base` values overlaid
  // with the attributes present (and Null for the columns rs:forcenull lists).
  std::vector<Variant> values(const std::vector<XmlAttribute>& attributes,
                              const std::vector<Variant>* base) {
    std::vector<Variant> cells =
        base != nullptr ? *base : std::vector<Variant>(store_.fieldCount(), Variant::null());
    for (const XmlAttribute& attribute : attributes) {
      if (!attribute.namespaceUri.empty()) {
        if (base != nullptr && attribute.namespaceUri == kRowsetUri &&
            attribute.localName == u"forcenull") {
          forceNull(attribute.value, cells);
        }
        continue;
      }
      auto found = xmlNames_.find(attribute.localName);
      if (found == xmlNames_.end()) continue;  // not in the schema
      const FieldDefinition& field = store_.field(found->second);
      std::optional<Variant> value = cellValue(field, attribute.value);
      if (!value) {
        bad(u"Row " + number(rows_ + 1) + u", field '" + field.name + u"': '" + attribute.value +
            u"' is not a value of its type.");
      }
      cells[found->second] = std::move(*value);
    }
    return cells;
  }

  void forceNull(StringView list, std::vector<Variant>& cells) {
    std::size_t at = 0;
    while (at < list.size()) {
      const std::size_t end = std::min(list.find(u' ', at), list.size());
      if (end > at) {
        auto found = xmlNames_.find(String(list.substr(at, end - at)));
        if (found != xmlNames_.end()) cells[found->second] = Variant::null();
      }
      at = end + 1;
    }
  }

  void store(RowState state, std::vector<Variant> cells, const std::vector<Variant>* originals) {
    const std::size_t row = store_.appendLoadedRow(state);
    for (std::size_t field = 0; field < cells.size(); ++field) {
      if (!cells[field].isNull())
        store_.cellColumn(row, field, store_.field(field).kind).set(row, cells[field]);
    }
    if (originals != nullptr) store_.setOriginals(row, *originals);
    ++rows_;
  }

  std::unique_ptr<platform::XmlReader> xml_;
  RecordStore& store_;
  int32_t lockType_;
  int depth_ = 0;
  std::size_t rows_ = 0;
  std::unordered_map<String, std::size_t> xmlNames_;
};

}  // namespace

void read(std::string_view document, RecordStore& store, int32_t lockType) {
  if (document.empty()) bad(u"The file is empty.");
  Reader(document, store, lockType).read();
}

}  // namespace ravelin::recordset_xml
