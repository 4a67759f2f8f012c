// clsArrayVariObject: a growable, 0-based list of (Variant, object) pairs with 16-bit indexes.
// Each row remembers the variant type of its value; rows cross late-bound calls as udtVariObject
// records.
//
// Created with 2 slots and a growth step of 2, like the other pair arrays with Integer indexes.
// A bad index on the item members raises CCEC_InvalidIndex in the common style: source
// "Tarn.Quillmark.Common", description "clsArrayVariObject" and the operation text
// (".getItemObject()", ".getItemVariant()", ".setItem()", ".setItemVariant()",
// ".setItemObject()", and ".getItem()" for getItem). The removals answer false instead, and the
// removed row's object is released at once. Its copy interface refuses every operation with
// CCEC_FeatureNotImplemented, source "clsArrayVariObject".
#pragma once

#include <cstdint>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/records.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

class clsArrayVariObject : public PublicClass<clsArrayVariObject, UnsupportedCopyObject> {
 public:
  static constexpr StringView kClassName = u"clsArrayVariObject";

  // An empty array with 2 slots that grows two slots at a time.
  clsArrayVariObject() : PublicClass(kClassName), rows_(2, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // Appends the pair, recording the variant type of vvntValue; false when the array cannot
  // grow (it is then unchanged).
  bool add(Variant vvntValue, ObjectRef voValue);

  // Makes count = viCount with every row empty; old rows are discarded. A negative count grows
  // the storage by one step, keeps the count and empties the rows.
  void setArraySizeWithEmptyValues(int16_t viCount) { rows_.setArraySizeWithEmptyValues(viCount); }

  // The row, its object or its value at viIndex (0 to count - 1).
  udtVariObject getItem(int16_t viIndex) const;
  ObjectRef getItemObject(int16_t viIndex) const;
  Variant getItemVariant(int16_t viIndex) const;

  // Replace the row (as given, type code included), the value (its type code follows it) or
  // the object at viIndex (0 to count - 1); the value comes first.
  void setItem(udtVariObject vudtValue, int16_t viIndex);
  void setItemVariant(Variant vvntValue, int16_t viIndex);
  void setItemObject(ObjectRef voValue, int16_t viIndex);

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
  udtVariObject& usedRow(int16_t index, StringView operation);
  const udtVariObject& usedRow(int16_t index, StringView operation) const;

  detail::SlotArray<udtVariObject, int16_t, detail::FreedSlots::Cleared> rows_;
};

}  // namespace ravelin
