// clsArrayStringObject: a growable, 0-based list of (text key, object) pairs with 32-bit (Long)
// indexes, built like the Long-indexed object arrays: created with 500 slots growing two at a
// time, sized directly through allocateSpacePublic, and holding on to the objects of removed
// rows until their slots are reused or the storage is rebuilt. Keys need not be unique.
//
// Choices where the object-array pattern decides:
// - A bad index on item (get and set) and on ItemKey (get) raises CCEC_InvalidIndex with an
//   empty source and the description "clsLArrayStringObject.item()"; ItemKey let reports
//   "clsLArrayStringObject.itemKey()". (The texts name "clsLArrayStringObject", as the class
//   always has.) remove with a bad index answers false.
// - ItemIndex, find and removeWithKey all take the last row whose key equals the key exactly,
//   as every keyed lookup of the pair arrays does (RemoveItemWithKey, setItemForKey, the first
//   answer of the key search). So removeWithKey(k) removes the very object find(k) returns, at
//   the index ItemIndex(k) gives.
// - removeWithKey with no such row raises CCEC_ItemNotFound (source "Tarn.Quillmark.Common",
//   description "clsLArrayStringObject.remove()") when vbRaiseNotFoundError is true and
//   vbIgnoreNotFoundError is false; otherwise it answers false.
//
// This class has no copy interface.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <utility>

namespace ravelin {

class clsArrayStringObject : public PublicClass<clsArrayStringObject> {
 public:
  static constexpr StringView kClassName = u"clsArrayStringObject";
  // The class text of its error messages.
  static constexpr StringView kErrorClassText = u"clsLArrayStringObject";

  // An empty array with 500 slots that grows two slots at a time.
  clsArrayStringObject() : rows_(500, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // Appends the pair, growing by one step when the slots are full; true.
  bool add(String vsKey, ObjectRef voValue) {
    rows_.add(Row{std::move(vsKey), std::move(voValue)});
    return true;
  }

  // Rebuilds the storage for vlSize slots, keeping the rows when vbPreserveValues. The count
  // becomes 0 when vbResetCountVariable, and is otherwise only lowered to vlSize, never raised.
  // A negative size raises subscript out of range (9).
  void allocateSpacePublic(int32_t vlSize, bool vbPreserveValues = true,
                           bool vbResetCountVariable = false) {
    rows_.allocateSpacePublic(vlSize, vbPreserveValues, vbResetCountVariable);
  }

  // The object and the key at vlIndex (0 to count - 1), and their replacement.
  ObjectRef item(int32_t vlIndex) const;
  void setItem(int32_t vlIndex, ObjectRef voValue);
  const String& ItemKey(int32_t vlIndex) const;
  void letItemKey(int32_t vlIndex, String vsKey);

  // The index of the last row with key vsKey (exact comparison), or -1.
  int32_t ItemIndex(StringView vsKey) const;
  // The object of the last row with key vsKey, or Nothing.
  ObjectRef find(StringView vsKey) const;

  // Removes the last row with key vsKey; see the header comment for a missing key.
  bool removeWithKey(StringView vsKey, bool vbIgnoreNotFoundError = false,
                     bool vbRaiseNotFoundError = false);
  // Removes a row keeping the order of the others; false for an index outside 0 to count - 1.
  bool remove(int32_t vlIndex) { return rows_.remove(vlIndex); }
  // Drops the last row from the count (its slot keeps its object); false when empty.
  bool removeLast() { return rows_.removeLast(); }
  // Sets the count to 0; the slots keep their objects.
  void removeAll() { rows_.removeAll(); }

  int32_t getCount() const { return rows_.getCount(); }
  // The capacity reached through the growth rule (not published to callers).
  int32_t slotCount() const { return rows_.slotCount(); }

 private:
  struct Row {
    String key;
    ObjectRef value;
  };

  // The used row at index; CCEC_InvalidIndex with "clsLArrayStringObject" and the operation
  // text in the description otherwise.
  const Row& usedRow(int32_t index, StringView operation) const;
  Row& usedRow(int32_t index, StringView operation);

  detail::SlotArray<Row, int32_t, detail::FreedSlots::Kept> rows_;
};

}  // namespace ravelin
