// One column of a record set's rows: the values of one field in storage order, typed and packed,
// with a bitmap of the cells that hold a value (an unset cell reads as Null).
//
// Fixed-width types keep their plain values side by side. Text cells live in one buffer per
// column, addressed by start and length; the buffer holds one byte per unit while every unit of
// the column is below 256 (ISO-8859-1) and is widened once to two bytes when a wider unit
// arrives. A cell written again gets new room at the end of the buffer; the buffer is compacted
// when the abandoned room outgrows the live text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ravelin/frame/variant.hpp>
#include <string_view>
#include <vector>

namespace ravelin {

// How a column stores its cells, and the automation type a cell reads as.
enum class CellKind : uint8_t {
  Double,
  Single,
  Long,
  Integer,
  Byte,
  Boolean,
  Date,
  Currency,
  Text,
  Variant,  // the rare types (binary) that have no packed form
};

class RecordColumn {
 public:
  explicit RecordColumn(CellKind kind);

  CellKind kind() const { return kind_; }
  std::size_t size() const { return rows_; }

  void reserve(std::size_t rows);
  // Room for that many units of text beyond what the buffer holds.
  void reserveTextUnits(std::size_t units);
  // Adds an unset cell at the end.
  void appendRow();
  // Drops the last cell.
  void removeLastRow();
  // Drops every cell.
  void clearRows();

  bool isSet(std::size_t row) const { return (set_[row / 64] >> (row % 64)) & 1u; }
  void unset(std::size_t row);

  // The cell as a value of the column's automation type, or Null when unset.
  Variant value(std::size_t row) const;

  // The units of a text cell and a copy of them, without making a String (the fast path of
  // writers that send a column's text elsewhere).
  std::size_t textLength(std::size_t row) const { return textLength_[row]; }
  void copyText(std::size_t row, char16_t* out) const;

  // Writers; each takes a value of the column's own kind (checked by the caller).
  void setDouble(std::size_t row, double value);  // Double and Date
  void setSingle(std::size_t row, float value);
  void setLong(std::size_t row, int32_t value);
  void setInteger(std::size_t row, int16_t value);
  void setByte(std::size_t row, uint8_t value);
  void setBoolean(std::size_t row, bool value);
  void setCurrency(std::size_t row, Currency value);
  void setText(std::size_t row, StringView value);
  // Text given as ISO-8859-1 bytes, each byte the unit of the same number.
  void setLatin1(std::size_t row, std::string_view bytes);
  void setVariant(std::size_t row, Variant value);
  // Any value already converted to the column's automation type (Null unsets the cell).
  void set(std::size_t row, const Variant& value);

  // Whether the text buffer has been widened to two bytes a unit.
  bool wideText() const { return wide_; }
  // Bytes held by the column's storage, for measurements.
  std::size_t storageBytes() const;

 private:
  void markSet(std::size_t row) { set_[row / 64] |= uint64_t{1} << (row % 64); }
  template <typename T>
  void putFixed(std::size_t row, T value);
  template <typename T>
  T getFixed(std::size_t row) const;
  void widen();
  void compactText();
  // Where new text of `units` units goes; the buffer grows to take it.
  std::size_t reserveText(std::size_t row, std::size_t units);

  CellKind kind_;
  std::size_t rows_ = 0;
  std::size_t width_ = 0;         // bytes of a fixed-width cell
  std::vector<uint64_t> set_;     // bit per row: the cell holds a value
  std::vector<std::byte> fixed_;  // fixed-width cells
  // Text cells: start (in units) and length of each row's text in the buffer.
  std::vector<uint64_t> textStart_;
  std::vector<uint32_t> textLength_;
  std::vector<uint8_t> narrow_;      // the buffer while every unit fits in a byte
  std::vector<char16_t> wideUnits_;  // the buffer after widening
  bool wide_ = false;
  std::size_t liveUnits_ = 0;      // units of the buffer that cells point at
  std::vector<Variant> variants_;  // Variant cells
};

}  // namespace ravelin
