// The published rules of the typed value arrays (clsArrayDouble, clsArrayLong, clsArrayString and
// their siblings) over the library's array storage (slot_array.hpp).
//
// An array keeps a used count and a slot count (the capacity it believes it has). The slot count
// grows by a small per-class increment whenever an add finds the slots full, and, like every
// index and count here, is a 16-bit Integer: a step past 32767 overflows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object.hpp>
#include <utility>

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
  int16_t getCount() const { return storage_.getCount(); }
  // The read-only Count property: the same number.
  int16_t Count() const { return storage_.getCount(); }

  // The capacity the array reports through its growth rule (not published to callers).
  int16_t slotCount() const { return storage_.slotCount(); }

  // Appends a value; returns its index, or -1 when the array cannot grow (the 16-bit slot
  // count would overflow, or memory ran out). A failed add leaves the array as it was.
  int16_t add(T value) { return static_cast<int16_t>(storage_.tryAppend(std::move(value))); }

  // Makes count = viCount with every element the zero value; old contents are discarded.
  // A negative count is a request to grow by one step: the count is kept, the values are not.
  void setArraySizeWithEmptyValues(int16_t viCount) {
    storage_.setArraySizeWithEmptyValues(viCount);
  }

  // Sets each used element to the zero value, then count = 0; the storage is kept.
  void clear() { storage_.clearWith(T{}); }

  // The element at viIndex (0 to count - 1); any other index raises CCEC_InvalidIndex.
  T item(int16_t viIndex) const {
    if (!storage_.isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, className_, kOpGetItem);
    return storage_.at(viIndex);
  }

  // Replaces the element at viIndex (0 to count - 1); any other index raises CCEC_InvalidIndex.
  void letItem(int16_t viIndex, T value) {
    if (!storage_.isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, className_, kOpLetItem);
    storage_.at(viIndex) = std::move(value);
  }

  // Removes one element, keeping the order of the others; false on an index outside
  // 0 to count - 1 (no error reaches the caller).
  bool removeItem(int16_t viIndex) { return storage_.remove(viIndex); }

  // Removes the last element (its slot goes back to the zero value); false when empty.
  bool removeLastItem() { return storage_.removeLast(); }

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
      : className_(className), storage_(kInitialSlots, kSlotIncrement) {}

  // The storage, for the members a class adds (sizing, filling, sorting, the spare slot).
  using Storage = SlotArray<T, int16_t, FreedSlots::Cleared>;
  Storage& storage() { return storage_; }
  const Storage& storage() const { return storage_; }

  // Joins the used elements with "," into one text: appendText(out, value) writes one element.
  // unitsPerItem, the expected length of one element's text, sizes the result up front.
  template <typename AppendText>
  String joinItems(std::size_t unitsPerItem, AppendText appendText) const {
    String out;
    const int32_t count = storage_.getCount();
    if (count == 0) return out;
    out.reserve(static_cast<std::size_t>(count) * (unitsPerItem + 1));
    for (int32_t i = 0; i < count; ++i) {
      appendText(out, storage_.at(i));
      out += u',';
    }
    out.pop_back();
    return out;
  }

 private:
  StringView className_;
  Storage storage_;
};

}  // namespace ravelin::detail
