// The storage and the growth discipline shared by the typed value arrays (clsArrayDouble,
// clsArrayLong, clsArrayString and their siblings).
//
// An array keeps a used count and a slot count (the capacity it believes it has). The slot count
// grows by a small per-class increment whenever an add finds the slots full, and, like every
// index and count here, is a 16-bit Integer: a step past 32767 overflows. The storage underneath
// (a std::vector) holds one spare slot beyond the slot count and grows to powers of two, so that
// a long run of adds costs linear time although the slot count moves one step at a time.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/base/text.hpp>
#include <utility>
#include <vector>

namespace ravelin::detail {

// Operation texts of the errors the value arrays raise.
inline constexpr StringView kOpGetItem = u".getItem()";
inline constexpr StringView kOpLetItem = u".letItem()";
inline constexpr StringView kOpSetItem = u".setItem()";
inline constexpr StringView kOpCopyObject = u".IObject_copyObject()";
inline constexpr StringView kOpCopyToObject = u".IObject_copyToObject()";
inline constexpr StringView kOpGenerateCopy = u".IObject_generateCopy()";

// The shared part of a value array of element type T, created with kInitialSlots slots and
// growing kSlotIncrement slots at a time.
template <typename T, int16_t kInitialSlots, int16_t kSlotIncrement>
class ValueArray {
  static_assert(kInitialSlots >= 0 && kSlotIncrement >= 1);

 public:
  // Number of used elements.
  int16_t getCount() const { return static_cast<int16_t>(count_); }
  // The read-only Count property: the same number.
  int16_t Count() const { return static_cast<int16_t>(count_); }

  // The capacity the array reports through its growth rule (not published to callers).
  int16_t slotCount() const { return static_cast<int16_t>(count_ + freeSlots_); }

  // Appends a value; returns its index, or -1 when the array cannot grow (the 16-bit slot
  // count would overflow, or memory ran out). A failed add leaves the array as it was.
  int16_t add(T value) {
    const int32_t index = count_;
    if (freeSlots_ > 0) {
      --freeSlots_;
    } else if (index + kSlotIncrement < storageSlots_) {
      // The usual growth step: the slots are full but the vector is not. The vector never holds
      // more than 32768 elements, so the step cannot overflow; it adds kSlotIncrement slots and
      // this add takes one of them (with an increment of 1, none is left over).
      if constexpr (kSlotIncrement > 1) freeSlots_ = kSlotIncrement - 1;
    } else if (tryGrowOneStep()) {
      --freeSlots_;
    } else {
      return -1;
    }
    values_[static_cast<std::size_t>(index)] = std::move(value);
    count_ = index + 1;
    return static_cast<int16_t>(index);
  }

  // Makes count = viCount with every element the zero value; old contents are discarded.
  // A negative count is a request to grow by one step: the count is kept, the values are not.
  void setArraySizeWithEmptyValues(int16_t viCount) { allocateSpace(viCount, false); }

  // Sets each used element to the zero value, then count = 0; the storage is kept.
  void clear() { clearWith(T{}); }

  // The element at viIndex (0 to count - 1); any other index raises CCEC_InvalidIndex.
  T item(int16_t viIndex) const {
    if (viIndex < 0 || viIndex >= count_) raiseStyleA(CCEC_InvalidIndex, className_, kOpGetItem);
    return values_[static_cast<std::size_t>(viIndex)];
  }

  // Replaces the element at viIndex (0 to count - 1); any other index raises CCEC_InvalidIndex.
  void letItem(int16_t viIndex, T value) {
    if (viIndex < 0 || viIndex >= count_) raiseStyleA(CCEC_InvalidIndex, className_, kOpLetItem);
    values_[static_cast<std::size_t>(viIndex)] = std::move(value);
  }

  // Removes one element, keeping the order of the others; false on an index outside
  // 0 to count - 1 (no error reaches the caller).
  bool removeItem(int16_t viIndex) {
    if (viIndex < 0 || viIndex >= count_) return false;
    const auto first = values_.begin() + viIndex;
    std::move(first + 1, values_.begin() + count_, first);
    return removeLastItem();
  }

  // Removes the last element (its slot goes back to the zero value); false when empty.
  bool removeLastItem() {
    if (count_ < 1) return false;
    --count_;
    ++freeSlots_;
    values_[static_cast<std::size_t>(count_)] = T{};
    return true;
  }

  // The copy interface of the numeric and Boolean arrays refuses every operation (not published
  // to callers).
  [[noreturn]] void IObject_copyObject(const ObjectRef& /*voObjectToCopy*/,
                                       int32_t /*vlCopyWhat*/ = -1) {
    raiseStyleA(CCEC_FeatureNotImplemented, className_, kOpCopyObject);
  }
  [[noreturn]] void IObject_copyToObject(const ObjectRef& /*voCopyTo*/,
                                         int32_t /*vlCopyWhat*/ = -1) {
    raiseStyleA(CCEC_FeatureNotImplemented, className_, kOpCopyToObject);
  }
  [[noreturn]] ObjectRef IObject_generateCopy(int32_t /*vlCopyWhat*/ = -1) {
    raiseStyleA(CCEC_FeatureNotImplemented, className_, kOpGenerateCopy);
  }

 protected:
  explicit ValueArray(StringView className)
      : className_(className),
        values_(static_cast<std::size_t>(kInitialSlots) + 1),
        storageSlots_(kInitialSlots + 1),
        freeSlots_(kInitialSlots) {}

  // The growth every other operation goes through. A negative size grows the slot count by one
  // increment and keeps the count; otherwise slot count and count both become size. Existing
  // values are kept when preserve is true and all reset to zero otherwise. Raises overflow (6)
  // when the slot count would pass 32767 and out of memory (7); the array is then unchanged.
  void allocateSpace(int16_t size, bool preserve) {
    if (size < 0) {
      rebuildStorage(count_ + freeSlots_ + kSlotIncrement, preserve);
    } else {
      rebuildStorage(size, preserve);
      setCount(size);
    }
  }

  // Rebuilds the storage for slots 0 to newSize (plus the spare) and sets the slot count; the
  // count is left alone. Raises overflow (6) for a size past 32767, subscript out of range (9)
  // for a negative one and out of memory (7); the array is then unchanged.
  void rebuildStorage(int32_t newSize, bool preserve) {
    if (newSize > INT16_MAX) raiseRuntimeError(vb_error::kOverflow);
    if (newSize < 0) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
    // A growth step within the vector's size only moves the slot count: the slots beyond the
    // spare are already zero, as new slots must be.
    if (!preserve || newSize >= storageSlots_ || newSize < slotCount()) {
      resizeStorage(static_cast<std::size_t>(newSize) + 1, preserve);
    }
    freeSlots_ = newSize - count_;
  }

  // Sets each used element to fill, then count = 0.
  void clearWith(const T& fill) {
    std::fill(values_.begin(), values_.begin() + count_, fill);
    setCount(0);
  }

  // Sets the count, keeping the slot count.
  void setCount(int16_t count) {
    freeSlots_ += count_ - count;
    count_ = count;
  }

  // Joins the used elements with "," into one text: appendText(out, value) writes one element.
  // unitsPerItem, the expected length of one element's text, sizes the result up front.
  template <typename AppendText>
  String joinItems(std::size_t unitsPerItem, AppendText appendText) const {
    String out;
    if (count_ == 0) return out;
    out.reserve(static_cast<std::size_t>(count_) * (unitsPerItem + 1));
    for (int32_t i = 0; i < count_; ++i) {
      appendText(out, values_[static_cast<std::size_t>(i)]);
      out += u',';
    }
    out.pop_back();
    return out;
  }

  // Direct access to a slot, used elements and spare alike; the caller checks the index.
  T& slot(int16_t index) { return values_[static_cast<std::size_t>(index)]; }
  const T& slot(int16_t index) const { return values_[static_cast<std::size_t>(index)]; }

 private:
  // Gives the vector `slots` elements (zero ones when not preserving). Growth rounds the vector
  // up to a power of two, so that one-slot steps cost amortised constant time; shrinking drops
  // the elements past the new spare slot, so that they are zero if reached again.
  void resizeStorage(std::size_t slots, bool preserve) {
    try {
      if (!preserve) {
        std::vector<T> fresh(slots);
        values_.swap(fresh);
      } else if (slots > values_.size()) {
        values_.resize(std::bit_ceil(slots));
      } else {
        values_.resize(slots);
      }
    } catch (const std::bad_alloc&) {
      raiseRuntimeError(vb_error::kOutOfMemory);
    }
    storageSlots_ = static_cast<int32_t>(values_.size());
  }

  // One growth step with values kept; false (and nothing changed) when it cannot be done.
  bool tryGrowOneStep() {
    try {
      allocateSpace(-1, true);
      return true;
    } catch (const AutomationError&) {
      return false;
    }
  }

  StringView className_;
  // At least slot count + 1 elements, at most 32768; every element past the spare slot (index
  // slot count) is zero. Only indexes up to the slot count are ever written.
  std::vector<T> values_;
  int32_t storageSlots_ = 0;  // values_.size()
  // The count, and the slot count as the number of slots beyond it. Both always fit an Integer;
  // they are kept in 32 bits because 16-bit stores slow the add loop down by half.
  int32_t count_ = 0;
  int32_t freeSlots_ = 0;
};

}  // namespace ravelin::detail
