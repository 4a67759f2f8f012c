// The row storage and growth discipline shared by the pair arrays with 16-bit indexes
// (clsArrayString2, clsArrayStringLong, clsArrayVariObject).
//
// Like the value arrays, a pair array keeps a used count, a slot count (the capacity it believes
// it has) and a slot increment; an add that finds the slots full grows the slot count by one
// increment, and removals never shrink the storage. The storage holds rows 0 to slot count: one
// spare row beyond the slot count, as every growth rebuilds it. Counts are Integers, so a step
// past 32767 overflows (6). Unlike the value arrays the increment is chosen at run time
// (setSlotIncrement), so the rows live in a plain std::vector whose own capacity grows
// geometrically underneath the one-step slot count.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <ravelin/frame/error.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ravelin::detail {

template <typename Row>
class PairRows {
 public:
  PairRows(int16_t initialSlots, int16_t slotIncrement)
      : rows_(static_cast<std::size_t>(initialSlots) + 1),
        slotCount_(initialSlots),
        slotIncrement_(slotIncrement) {}

  int16_t count() const { return static_cast<int16_t>(count_); }
  int16_t slotCount() const { return static_cast<int16_t>(slotCount_); }
  int16_t slotIncrement() const { return static_cast<int16_t>(slotIncrement_); }

  // Sets the growth step. A step below 1 could never make room for the next add, so it is an
  // invalid procedure call (5) and the step is kept.
  void setSlotIncrement(int16_t viValue) {
    if (viValue < 1) raiseRuntimeError(vb_error::kInvalidProcedureCall);
    slotIncrement_ = viValue;
  }

  // True for an index of a used row (0 to count - 1).
  bool isUsed(int32_t index) const { return index >= 0 && index < count_; }
  // True for an index inside the storage (0 to slot count, the spare row included).
  bool isStored(int32_t index) const { return index >= 0 && index <= slotCount_; }

  // Direct access to a row, used and spare alike; the caller checks the index.
  Row& row(int32_t index) { return rows_[static_cast<std::size_t>(index)]; }
  const Row& row(int32_t index) const { return rows_[static_cast<std::size_t>(index)]; }

  // Makes room for one more row at index count, growing by one step when the slots are full.
  // False (and nothing changed) when the slot count would overflow or memory ran out.
  bool reserveOne() {
    if (count_ < slotCount_) return true;
    try {
      allocateSpace(-1, true);
      return true;
    } catch (const AutomationError&) {
      return false;
    }
  }

  // Counts the row at index count in, after reserveOne made room and the caller filled it.
  void takeReserved() { ++count_; }

  // Appends a row; false (and nothing changed) when the array cannot grow.
  bool append(Row value) {
    if (!reserveOne()) return false;
    row(count_) = std::move(value);
    takeReserved();
    return true;
  }

  // The growth every operation goes through. A negative size grows the slot count by one step
  // and keeps the count; otherwise slot count and count both become size. Rows are kept when
  // preserve is true and all emptied otherwise. Raises overflow (6) when the slot count would
  // pass 32767 and out of memory (7); the rows are then unchanged.
  void allocateSpace(int16_t size, bool preserve) {
    const int32_t newSize = size < 0 ? slotCount_ + slotIncrement_ : size;
    if (newSize > INT16_MAX) raiseRuntimeError(vb_error::kOverflow);
    try {
      if (preserve) {
        rows_.resize(static_cast<std::size_t>(newSize) + 1);
      } else {
        std::vector<Row> fresh(static_cast<std::size_t>(newSize) + 1);
        rows_.swap(fresh);
      }
    } catch (const std::bad_alloc&) {
      raiseRuntimeError(vb_error::kOutOfMemory);
    } catch (const std::length_error&) {
      raiseRuntimeError(vb_error::kOutOfMemory);
    }
    slotCount_ = newSize;
    if (size >= 0) count_ = size;
  }

  // Removes row index keeping the order of the others; false for an index outside the used
  // rows. The freed last row goes back to the empty row.
  bool removeItem(int32_t index) {
    if (!isUsed(index)) return false;
    const auto first = rows_.begin() + index;
    std::move(first + 1, rows_.begin() + count_, first);
    return removeLastItem();
  }

  // Empties the last used row and drops it from the count; false when there is none.
  bool removeLastItem() {
    if (count_ < 1) return false;
    --count_;
    row(count_) = Row{};
    return true;
  }

 private:
  std::vector<Row> rows_;  // slot count + 1 rows
  // Kept in 32 bits so that a growth step can be checked for overflow before it is taken.
  int32_t count_ = 0;
  int32_t slotCount_ = 0;
  int32_t slotIncrement_ = 1;
};

}  // namespace ravelin::detail
