// clsArrayStringLong: a growable, 0-based list of (text, Long) pairs with 16-bit indexes, where
// the Long is the key. The pairs cross late-bound calls as udtStringLong records. Keys need not
// be unique; addSortAscByKey keeps the list sorted by key (stably) when only it is used.
//
// A bad index on the item members raises CCEC_InvalidIndex in the common style: source
// "Tarn.Quillmark.Common", description "clsArrayStringLong" and the operation text
// (".getItemLong()", ".getItemString()", ".setItemLong()", ".setItemString()"; getItem and
// setItem both report ".item()"). The removals answer false instead. Its copy interface accepts
// every request and ignores it.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/records.hpp>

namespace ravelin {

class clsArrayStringLong : public PublicClass<clsArrayStringLong, IgnoringCopyObject> {
 public:
  static constexpr StringView kClassName = u"clsArrayStringLong";

  // An empty array with 2 slots that grows two slots at a time.
  clsArrayStringLong() : PublicClass(kClassName), rows_(2, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // Appends the pair; false when the array cannot grow (it is then unchanged).
  bool add(String vsValue, int32_t vlValue);

  // Inserts the pair after every row whose key is less than or equal to vlValue, moving the
  // greater ones up; returns the index it landed at, or -1 when the array cannot grow.
  int16_t addSortAscByKey(String vsValue, int32_t vlValue);

  // The index of the first row with key vlKey, scanning from the last row down when
  // vbStartAtEnd and from row 0 up otherwise; -1 when there is none.
  int16_t findKey(int32_t vlKey, bool vbStartAtEnd) const;

  // Makes count = viCount with every row empty; old rows are discarded. A negative count grows
  // the storage by one step, keeps the count and empties the rows.
  void setArraySizeWithEmptyValues(int16_t viCount) { rows_.setArraySizeWithEmptyValues(viCount); }

  // The pair, its key or its text at viIndex (0 to count - 1).
  udtStringLong getItem(int16_t viIndex) const;
  int32_t getItemLong(int16_t viIndex) const;
  String getItemString(int16_t viIndex) const;

  // Replace the pair, the key or the text at viIndex (0 to count - 1); the value comes first.
  void setItem(udtStringLong vudtValue, int16_t viIndex);
  void setItemLong(int32_t vlValue, int16_t viIndex);
  void setItemString(String vsValue, int16_t viIndex);

  // Removes a row keeping the order of the others; false for an index outside 0 to count - 1.
  bool removeItem(int16_t viIndex) { return rows_.remove(viIndex); }
  // Removes the last row; false when the array is empty.
  bool removeLastItem() { return rows_.removeLast(); }

  int16_t getCount() const { return rows_.getCount(); }
  int16_t getSlotCount() const { return rows_.slotCount(); }
  // Sets the growth step; below 1 raises invalid procedure call (5).
  void setSlotIncrement(int16_t viValue) { rows_.setSlotIncrement(viValue); }

 private:
  // The used row at index; CCEC_InvalidIndex with the operation's text otherwise.
  udtStringLong& usedRow(int16_t index, StringView operation);
  const udtStringLong& usedRow(int16_t index, StringView operation) const;

  detail::SlotArray<udtStringLong, int16_t, detail::FreedSlots::Cleared> rows_;
};

}  // namespace ravelin
