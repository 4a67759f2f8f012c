// A small dBASE III writer for tests, benchmarks, fuzz seeds and the example table: it writes
// well-formed tables, and each header value can be overridden to make a broken one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravelin::test_dbf {

struct Field {
  std::string name;  // up to 10 bytes
  char type = 'C';
  uint8_t length = 10;
  uint8_t decimalByte = 0;
};

struct Table {
  uint8_t version = 0x03;
  uint8_t languageDriver = 0x03;  // Windows-1252
  std::vector<Field> fields;
  // Overrides of the header, for broken files; unset values are the right ones.
  std::optional<uint32_t> recordCount;
  std::optional<uint16_t> headerLength;
  std::optional<uint16_t> recordLength;
  char terminator = 0x0D;
};

inline uint16_t recordLengthOf(const Table& table) {
  if (table.recordLength) return *table.recordLength;
  unsigned length = 1;
  for (const Field& field : table.fields)
    length += field.length;
  return static_cast<uint16_t>(length);
}

inline void putLittleEndian(std::string& out, uint64_t value, int bytes) {
  for (int i = 0; i < bytes; ++i)
    out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

// The header and descriptors, with the terminator: the right header length is 32 x (fields + 1)
// + 1. The update date is 24 November 2026.
inline std::string headerBytes(const Table& table, uint32_t records) {
  std::string out;
  const auto headerLength = static_cast<uint16_t>(32 * (table.fields.size() + 1) + 1);
  out.push_back(static_cast<char>(table.version));
  out += {static_cast<char>(126), 11, 24};
  putLittleEndian(out, table.recordCount.value_or(records), 4);
  putLittleEndian(out, table.headerLength.value_or(headerLength), 2);
  putLittleEndian(out, recordLengthOf(table), 2);
  out.append(17, '\0');
  out.push_back(static_cast<char>(table.languageDriver));
  out.append(2, '\0');
  for (const Field& field : table.fields) {
    std::string name = field.name.substr(0, 11);
    name.resize(11, '\0');
    out += name;
    out.push_back(field.type);
    out.append(4, '\0');
    out.push_back(static_cast<char>(field.length));
    out.push_back(static_cast<char>(field.decimalByte));
    out.append(14, '\0');
  }
  out.push_back(table.terminator);
  return out;
}

// One record: the deletion flag, then each value fitted to its field (numbers to the right,
// everything else to the left, blanks filling, longer values cut).
inline std::string recordBytes(const Table& table, const std::vector<std::string>& values,
                               bool deleted = false) {
  std::string out(1, deleted ? '*' : ' ');
  for (std::size_t i = 0; i < table.fields.size(); ++i) {
    const Field& field = table.fields[i];
    std::string value = i < values.size() ? values[i] : std::string();
    value = value.substr(0, field.length);
    const std::string fill(field.length - value.size(), ' ');
    out += field.type == 'N' ? fill + value : value + fill;
  }
  out.resize(std::max<std::size_t>(out.size(), recordLengthOf(table)), ' ');
  return out;
}

struct Record {
  std::vector<std::string> values;
  bool deleted = false;
};

// A whole table file, with the end-of-file mark (0x1A) after the last record.
inline std::string tableBytes(const Table& table, const std::vector<Record>& records) {
  std::string out = headerBytes(table, static_cast<uint32_t>(records.size()));
  for (const Record& record : records)
    out += recordBytes(table, record.values, record.deleted);
  out.push_back('\x1A');
  return out;
}

}  // namespace ravelin::test_dbf
