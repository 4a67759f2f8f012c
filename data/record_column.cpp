#include <algorithm>
#include <cstring>
#include <ravelin/data/record_column.hpp>

namespace ravelin {
namespace {

std::size_t widthOf(CellKind kind) {
  switch (kind) {
    case CellKind::Double:
    case CellKind::Date:
    case CellKind::Currency:
      return 8;
    case CellKind::Single:
    case CellKind::Long:
      return 4;
    case CellKind::Integer:
      return 2;
    case CellKind::Byte:
    case CellKind::Boolean:
      return 1;
    case CellKind::Text:
    case CellKind::Variant:
      return 0;
  }
  return 0;
}

}  // namespace

RecordColumn::RecordColumn(CellKind kind) : kind_(kind), width_(widthOf(kind)) {}

void RecordColumn::reserve(std::size_t rows) {
  set_.reserve((rows + 63) / 64);
  if (width_ != 0) fixed_.reserve(rows * width_);
  if (kind_ == CellKind::Text) {
    textStart_.reserve(rows);
    textLength_.reserve(rows);
  }
  if (kind_ == CellKind::Variant) variants_.reserve(rows);
}

void RecordColumn::reserveTextUnits(std::size_t units) {
  if (wide_) {
    wideUnits_.reserve(wideUnits_.size() + units);
  } else {
    narrow_.reserve(narrow_.size() + units);
  }
}

void RecordColumn::appendRow() {
  if (rows_ % 64 == 0) set_.push_back(0);
  ++rows_;
  if (width_ != 0) {
    fixed_.resize(fixed_.size() + width_);
  } else if (kind_ == CellKind::Text) {
    textStart_.push_back(0);
    textLength_.push_back(0);
  } else {
    variants_.emplace_back();
  }
}

void RecordColumn::removeLastRow() {
  if (rows_ == 0) return;
  unset(rows_ - 1);
  --rows_;
  if (rows_ % 64 == 0) set_.pop_back();
  if (width_ != 0) {
    fixed_.resize(fixed_.size() - width_);
  } else if (kind_ == CellKind::Text) {
    textStart_.pop_back();
    textLength_.pop_back();
  } else {
    variants_.pop_back();
  }
}

void RecordColumn::clearRows() {
  rows_ = 0;
  set_.clear();
  fixed_.clear();
  textStart_.clear();
  textLength_.clear();
  narrow_.clear();
  wideUnits_.clear();
  wide_ = false;
  liveUnits_ = 0;
  variants_.clear();
}

void RecordColumn::unset(std::size_t row) {
  set_[row / 64] &= ~(uint64_t{1} << (row % 64));
  if (kind_ == CellKind::Text) {
    liveUnits_ -= textLength_[row];
    textLength_[row] = 0;
  } else if (kind_ == CellKind::Variant) {
    variants_[row] = Variant();
  }
}

template <typename T>
void RecordColumn::putFixed(std::size_t row, T value) {
  std::memcpy(fixed_.data() + row * sizeof(T), &value, sizeof(T));
  markSet(row);
}

template <typename T>
T RecordColumn::getFixed(std::size_t row) const {
  T value;
  std::memcpy(&value, fixed_.data() + row * sizeof(T), sizeof(T));
  return value;
}

Variant RecordColumn::value(std::size_t row) const {
  if (!isSet(row)) return Variant::null();
  switch (kind_) {
    case CellKind::Double:
      return Variant(getFixed<double>(row));
    case CellKind::Date:
      return Variant(Date{getFixed<double>(row)});
    case CellKind::Currency:
      return Variant(Currency::fromScaled(getFixed<int64_t>(row)));
    case CellKind::Single:
      return Variant(getFixed<float>(row));
    case CellKind::Long:
      return Variant(getFixed<int32_t>(row));
    case CellKind::Integer:
      return Variant(getFixed<int16_t>(row));
    case CellKind::Byte:
      return Variant(getFixed<uint8_t>(row));
    case CellKind::Boolean:
      return Variant(getFixed<uint8_t>(row) != 0);
    case CellKind::Text: {
      const std::size_t start = textStart_[row];
      const std::size_t length = textLength_[row];
      if (wide_) return Variant(String(wideUnits_.data() + start, length));
      const uint8_t* bytes = narrow_.data() + start;
      return Variant(String(bytes, bytes + length));
    }
    case CellKind::Variant:
      return variants_[row];
  }
  return Variant::null();
}

void RecordColumn::setDouble(std::size_t row, double value) {
  putFixed(row, value);
}
void RecordColumn::setSingle(std::size_t row, float value) {
  putFixed(row, value);
}
void RecordColumn::setLong(std::size_t row, int32_t value) {
  putFixed(row, value);
}
void RecordColumn::setInteger(std::size_t row, int16_t value) {
  putFixed(row, value);
}
void RecordColumn::setByte(std::size_t row, uint8_t value) {
  putFixed(row, value);
}
void RecordColumn::setBoolean(std::size_t row, bool value) {
  putFixed(row, static_cast<uint8_t>(value ? 1 : 0));
}
void RecordColumn::setCurrency(std::size_t row, Currency value) {
  putFixed(row, value.scaled());
}

std::size_t RecordColumn::reserveText(std::size_t row, std::size_t units) {
  liveUnits_ -= textLength_[row];
  textLength_[row] = 0;
  const std::size_t used = wide_ ? wideUnits_.size() : narrow_.size();
  // Rewritten cells leave room behind; reclaim it once it outweighs the live text.
  if (used - liveUnits_ > liveUnits_ + 4096) compactText();
  const std::size_t start = wide_ ? wideUnits_.size() : narrow_.size();
  if (wide_) {
    wideUnits_.resize(start + units);
  } else {
    narrow_.resize(start + units);
  }
  textStart_[row] = start;
  textLength_[row] = static_cast<uint32_t>(units);
  liveUnits_ += units;
  return start;
}

void RecordColumn::copyText(std::size_t row, char16_t* out) const {
  const std::size_t start = textStart_[row];
  const std::size_t length = textLength_[row];
  if (wide_) {
    std::copy_n(wideUnits_.begin() + static_cast<std::ptrdiff_t>(start), length, out);
  } else {
    std::copy_n(narrow_.begin() + static_cast<std::ptrdiff_t>(start), length, out);
  }
}

void RecordColumn::setText(std::size_t row, StringView value) {
  if (!wide_ && std::any_of(value.begin(), value.end(), [](char16_t u) { return u > 0xFF; }))
    widen();
  const std::size_t start = reserveText(row, value.size());
  if (wide_) {
    std::copy(value.begin(), value.end(), wideUnits_.begin() + static_cast<std::ptrdiff_t>(start));
  } else {
    uint8_t* out = narrow_.data() + start;
    for (std::size_t i = 0; i < value.size(); ++i)
      out[i] = static_cast<uint8_t>(value[i]);
  }
  markSet(row);
}

void RecordColumn::setLatin1(std::size_t row, std::string_view bytes) {
  const std::size_t start = reserveText(row, bytes.size());
  if (wide_) {
    for (std::size_t i = 0; i < bytes.size(); ++i)
      wideUnits_[start + i] = static_cast<unsigned char>(bytes[i]);
  } else if (!bytes.empty()) {
    std::memcpy(narrow_.data() + start, bytes.data(), bytes.size());
  }
  markSet(row);
}

void RecordColumn::setVariant(std::size_t row, Variant value) {
  variants_[row] = std::move(value);
  markSet(row);
}

void RecordColumn::set(std::size_t row, const Variant& value) {
  if (value.isNull()) {
    unset(row);
    return;
  }
  switch (kind_) {
    case CellKind::Double:
      return setDouble(row, value.asDouble());
    case CellKind::Date:
      return setDouble(row, value.asDate().serial);
    case CellKind::Currency:
      return setCurrency(row, value.asCurrency());
    case CellKind::Single:
      return setSingle(row, value.asSingle());
    case CellKind::Long:
      return setLong(row, value.asLong());
    case CellKind::Integer:
      return setInteger(row, value.asInteger());
    case CellKind::Byte:
      return setByte(row, value.asByte());
    case CellKind::Boolean:
      return setBoolean(row, value.asBoolean());
    case CellKind::Text:
      return setText(row, value.asString());
    case CellKind::Variant:
      return setVariant(row, value);
  }
}

void RecordColumn::widen() {
  wideUnits_.assign(narrow_.begin(), narrow_.end());
  narrow_.clear();
  narrow_.shrink_to_fit();
  wide_ = true;
}

void RecordColumn::compactText() {
  std::size_t next = 0;
  if (wide_) {
    std::vector<char16_t> packed(liveUnits_);
    for (std::size_t row = 0; row < rows_; ++row) {
      std::copy_n(wideUnits_.begin() + static_cast<std::ptrdiff_t>(textStart_[row]),
                  textLength_[row], packed.begin() + static_cast<std::ptrdiff_t>(next));
      textStart_[row] = next;
      next += textLength_[row];
    }
    wideUnits_ = std::move(packed);
  } else {
    std::vector<uint8_t> packed(liveUnits_);
    for (std::size_t row = 0; row < rows_; ++row) {
      std::copy_n(narrow_.begin() + static_cast<std::ptrdiff_t>(textStart_[row]), textLength_[row],
                  packed.begin() + static_cast<std::ptrdiff_t>(next));
      textStart_[row] = next;
      next += textLength_[row];
    }
    narrow_ = std::move(packed);
  }
}

std::size_t RecordColumn::storageBytes() const {
  return set_.capacity() * sizeof(uint64_t) + fixed_.capacity() +
         textStart_.capacity() * sizeof(uint64_t) + textLength_.capacity() * sizeof(uint32_t) +
         narrow_.capacity() + wideUnits_.capacity() * sizeof(char16_t) +
         variants_.capacity() * sizeof(Variant);
}

}  // namespace ravelin
