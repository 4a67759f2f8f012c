// The storage shared by every array of the library: the value arrays (value_array.hpp), the
// object arrays, the Long-indexed number arrays and the pair arrays.
//
// An array keeps a used count, a slot count (the capacity it believes it has) and a slot
// increment. Slots 0 to slot count are addressable, one spare beyond the capacity, as the
// original's arrays had. When an add finds the slots full, the slot count grows by one increment
// with the values kept. The vector underneath grows to powers of two and may hold more than the
// slot count; every element past the spare slot is the zero value, so a growth step within the
// vector only moves the slot count, and a long run of one-slot steps costs amortised constant
// time.
//
// Two families share this code and differ in the index type and in what a removal does to the
// freed slot: the "L" arrays and clsArrayStringObject (Long indexes) leave it holding its value, so
// that a removed object stays alive until its slot is overwritten or the storage is rebuilt; the
// Integer-indexed object and pair arrays clear it at once, as the value arrays do.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <ravelin/frame/error.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ravelin::detail {

// What a removal does to the slot it frees.
enum class FreedSlots : uint8_t {
  // The slot keeps its value until it is overwritten or the storage is rebuilt.
  Kept,
  // The slot goes back to the zero value (empty reference, 0) at once.
  Cleared,
};

// The largest storage an array may take. The original ran in a 32-bit address space, where a
// larger request failed with "Out of memory"; failing the same way here keeps a runaway size from
// taking the machine's memory.
inline constexpr std::size_t kMaxStorageBytes = std::size_t{1} << 31;

// A growable 0-based list of T with counts and indexes of type Index (int16_t or int32_t).
template <typename T, typename Index, FreedSlots kFreed>
class SlotArray {
  static_assert(std::is_same_v<Index, int16_t> || std::is_same_v<Index, int32_t>);

 public:
  SlotArray(Index initialSlots, Index slotIncrement)
      : slots_(static_cast<std::size_t>(initialSlots) + 1),
        storageSlots_(int64_t{initialSlots} + 1),
        slotCount_(initialSlots),
        slotIncrement_(slotIncrement) {}

  // Number of used elements; valid indexes are 0 to count - 1.
  Index getCount() const { return static_cast<Index>(count_); }
  // The capacity: how many elements fit before the next growth step.
  Index slotCount() const { return static_cast<Index>(slotCount_); }
  // How many slots a growth step adds.
  Index slotIncrement() const { return static_cast<Index>(slotIncrement_); }

  // Sets the growth step; a step below 1 could never make room and raises invalid procedure
  // call (5), leaving the step as it was.
  void setSlotIncrement(Index value) {
    if (value < 1) raiseRuntimeError(vb_error::kInvalidProcedureCall);
    slotIncrement_ = value;
  }

  // Whether index names a used element.
  bool isUsed(int64_t index) const { return index >= 0 && index < count_; }

  // A slot, used or spare; the caller checks the index.
  // (References as the vector gives them: a proxy for bool.)
  typename std::vector<T>::reference at(int64_t index) {
    return slots_[static_cast<std::size_t>(index)];
  }
  typename std::vector<T>::const_reference at(int64_t index) const {
    return slots_[static_cast<std::size_t>(index)];
  }

  // Appends a value, growing by one step when full. A slot count past the index type raises
  // overflow (6), a storage past kMaxStorageBytes out of memory (7); the array is then unchanged.
  void add(T value) {
    growIfFull();
    slots_[static_cast<std::size_t>(count_)] = std::move(value);
    ++count_;
  }

  // add, with any failure trapped: the new element's index, or -1 and the array unchanged.
  int32_t tryAppend(T&& value) {
    const int32_t index = count_;
    if (index == slotCount_ && !tryGrow()) return -1;
    slots_[static_cast<std::size_t>(index)] = std::move(value);
    count_ = index + 1;
    return index;
  }
  bool tryAdd(T value) { return tryAppend(std::move(value)) >= 0; }

  // Inserts a value at index (0 to count), moving the elements from there one place up; grows
  // like add.
  void insert(Index index, T value) {
    growIfFull();
    const auto first = slots_.begin() + index;
    std::move_backward(first, slots_.begin() + count_, slots_.begin() + count_ + 1);
    *first = std::move(value);
    ++count_;
  }

  // Rebuilds the storage for slots 0 to size, keeping the values when preserve is true and
  // emptying every slot otherwise; slot count = size. Then count = 0 when resetCount is true,
  // and otherwise count is lowered to size if it was above (never raised). A negative size
  // raises subscript out of range (9); the array is then unchanged.
  void allocateSpacePublic(Index size, bool preserve = true, bool resetCount = false) {
    rebuildStorage(size, preserve);
    if (resetCount) {
      count_ = 0;
    } else {
      count_ = std::min(count_, slotCount_);
    }
  }

  // Rebuilds the storage for slots 0 to size with the values kept and sets count = size; slots
  // between the old count and size are the zero value. Fails as allocateSpacePublic does.
  void resize(Index size) {
    rebuildStorage(size, true);
    count_ = size;
  }

  // count = n with every element the zero value (storage rebuilt, old contents discarded).
  // A negative n is a request to grow by one step, as in the value arrays: the count is kept,
  // the values are not.
  void setArraySizeWithEmptyValues(Index n) {
    if (n < 0) {
      rebuildStorage(int64_t{slotCount_} + slotIncrement_, false);
    } else {
      rebuildStorage(n, false);
      count_ = n;
    }
  }

  // Removes one element, keeping the order of the others; false for an index outside
  // 0 to count - 1.
  bool remove(Index index) {
    if (!isUsed(index)) return false;
    const auto first = slots_.begin() + index;
    const auto end = slots_.begin() + count_;
    // Kept: the elements are copied down, so the last one stays held in the freed slot too.
    if constexpr (kFreed == FreedSlots::Kept) {
      std::copy(first + 1, end, first);
    } else {
      std::move(first + 1, end, first);
    }
    return removeLast();
  }

  // Removes the last element; false when the array is empty.
  bool removeLast() {
    if (count_ < 1) return false;
    --count_;
    if constexpr (kFreed == FreedSlots::Cleared) slots_[static_cast<std::size_t>(count_)] = T{};
    return true;
  }

  // count = 0; Cleared also empties the used slots. The storage is kept.
  void removeAll() {
    if constexpr (kFreed == FreedSlots::Cleared) {
      clearWith(T{});
    } else {
      count_ = 0;
    }
  }

  // Sets each used slot to fill, then count = 0 (the value arrays' clear with a fill value).
  void clearWith(const T& fill) {
    std::fill(slots_.begin(), slots_.begin() + count_, fill);
    count_ = 0;
  }

 private:
  // The most elements the vector may hold: the storage limit, and one past the largest index.
  static constexpr std::size_t kMaxSlots =
      std::min(kMaxStorageBytes / sizeof(T),
               static_cast<std::size_t>(std::numeric_limits<Index>::max()) + 1);

  void growIfFull() {
    if (count_ == slotCount_ && !growWithinStorage()) {
      rebuildStorage(int64_t{slotCount_} + slotIncrement_, true, /*roundUp=*/true);
    }
  }

  // The usual growth step: when the vector already holds the new slots (zero values) and the
  // spare, only the slot count moves; false when the storage must be rebuilt.
  bool growWithinStorage() {
    const int64_t size = int64_t{slotCount_} + slotIncrement_;
    if (size >= storageSlots_) return false;
    slotCount_ = static_cast<int32_t>(size);
    return true;
  }

  // One growth step with any failure trapped: false and the array unchanged.
  bool tryGrow() { return growWithinStorage() || tryRebuildForGrowth(); }

  // Kept out of line, so that the add loop stays small.
  [[gnu::noinline]] bool tryRebuildForGrowth() {
    try {
      rebuildStorage(int64_t{slotCount_} + slotIncrement_, true, /*roundUp=*/true);
      return true;
    } catch (const AutomationError&) {
      return false;
    }
  }

  // Makes slots 0 to size addressable and sets slot count = size; the count is left alone.
  // Keeps the values when preserve is true and empties every slot otherwise. Raises overflow (6)
  // past the index type, subscript out of range (9) for a negative size and out of memory (7);
  // the array is then unchanged. A growth step (roundUp) gives the vector a power-of-two size, so
  // that the following steps fit in it; a size asked for directly is taken as it is.
  void rebuildStorage(int64_t size, bool preserve, bool roundUp = false) {
    if (size > std::numeric_limits<Index>::max()) raiseRuntimeError(vb_error::kOverflow);
    if (size < 0) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
    const auto slots = static_cast<std::size_t>(size) + 1;
    if (slots > kMaxSlots) raiseRuntimeError(vb_error::kOutOfMemory);
    try {
      if (!preserve) {
        std::vector<T> fresh(slots);
        slots_.swap(fresh);
      } else if (slots > slots_.size()) {
        slots_.resize(roundUp ? std::min(std::bit_ceil(slots), kMaxSlots) : slots);
      } else if (size < slotCount_) {
        // Shrinking drops the elements past the new spare, so they are zero if reached again.
        slots_.resize(slots);
      }
    } catch (const std::bad_alloc&) {
      raiseRuntimeError(vb_error::kOutOfMemory);
    } catch (const std::length_error&) {
      raiseRuntimeError(vb_error::kOutOfMemory);
    }
    storageSlots_ = static_cast<int64_t>(slots_.size());
    slotCount_ = static_cast<int32_t>(size);
  }

  // At least slot count + 1 elements; every element past the spare slot is the zero value.
  std::vector<T> slots_;
  int64_t storageSlots_ = 0;  // slots_.size()
  int32_t count_ = 0;
  int32_t slotCount_ = 0;
  int32_t slotIncrement_ = 1;
};

}  // namespace ravelin::detail
