// clsArrayString2: a growable, 0-based list of text pairs (key, value) with 16-bit indexes.
// Keys need not be unique. Lookups by key take the last matching row, and the key/value search
// walks the matches from the last row to the first, one per call.
//
// The indexed members (item, ItemKey, setItem, setItemKey) check the index against the table's
// rows only (0 to slot count - 1): an index at or above the count but below the slot count reads
// or writes an unused row; anything outside raises subscript out of range (9).
//
// Its copy interface copies: copyObject takes the pairs of another clsArrayString2 and
// generateCopy returns a new array with the same pairs; copyToObject and getParameterValue do
// nothing. Copying an array onto itself leaves it unchanged.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsArrayString2 : public PublicClass<clsArrayString2, IgnoringCopyObject> {
 public:
  static constexpr StringView kClassName = u"clsArrayString2";

  // An empty array with 2 slots that grows two slots at a time.
  clsArrayString2() : PublicClass(kClassName), rows_(2, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // Appends the pair; false when the array cannot grow (it is then unchanged).
  bool add(String vsKey, String vsValue);

  // Makes count = viCount with every key and value empty; old rows are discarded. A negative
  // count grows the storage by one step, keeps the count and empties the rows.
  void setArraySizeWithEmptyValues(int16_t viCount) { rows_.setArraySizeWithEmptyValues(viCount); }

  // The value and the key at viIndex (storage-only check, see above).
  const String& item(int16_t viIndex) const { return storedRow(viIndex).value; }
  const String& ItemKey(int16_t viIndex) const { return storedRow(viIndex).key; }

  // Replace the value or the key at viIndex (storage-only check); the value comes first.
  void setItem(String vsValue, int16_t viIndex) { storedRow(viIndex).value = std::move(vsValue); }
  void setItemKey(String vsValue, int16_t viIndex) { storedRow(viIndex).key = std::move(vsValue); }

  // Replaces the value of the last row whose key equals vsKey exactly; no row is added when
  // there is none.
  void setItemForKey(StringView vsKey, String vsValue);

  // Removes a row keeping the order of the others; false for an index outside 0 to count - 1.
  bool removeItem(int16_t viIndex) { return rows_.remove(viIndex); }
  // Removes the last row whose key equals vsKey exactly; false when there is none.
  bool RemoveItemWithKey(StringView vsKey);
  // Removes the last row; false when the array is empty.
  bool removeLastItem() { return rows_.removeLast(); }

  // Sorts the rows in place by value, ascending by code unit, keys moving with their values.
  // An exchange sort: the order of equal values is whatever the exchanges leave.
  void orderValues();

  // Restarts the key/value search: the next search walks from the last row again.
  void resetSearch();

  // The next value (walking from the last row towards the first) whose key matches vsKey,
  // trimmed of spaces, exactly or, with vbIgnoreCase, without regard to case. vbFound tells
  // whether one was found. Calls with the same text continue the walk; a different text
  // restarts it. Once the walk has passed the first row it keeps answering not found until
  // resetSearch or another text. A text of spaces only answers not found and leaves the walk.
  String getNextValueForKey(StringView vsKey, bool& vbFound, bool vbIgnoreCase = false);
  // The same with the columns exchanged: the next key whose value matches vsExpression. Both
  // searches share one walk.
  String getNextKeyForValue(StringView vsExpression, bool& vbFound, bool vbIgnoreCase = false);

  int16_t getCount() const { return rows_.getCount(); }
  int16_t Count() const { return rows_.getCount(); }
  // The capacity reached through the growth rule (not published to callers).
  int16_t slotCount() const { return rows_.slotCount(); }

  // The values, or the keys, each wrapped in vsDelimiterChar and joined by ",".
  String getItemsAsList(StringView vsDelimiterChar = u"") const;
  String getItemKeysAsList(StringView vsDelimiterChar = u"") const;

  // Sets the growth step; below 1 raises invalid procedure call (5).
  void setSlotIncrement(int16_t viValue) { rows_.setSlotIncrement(viValue); }

  // The copy interface: copyObject replaces the pairs with those of voObjectToCopy, which must
  // be a clsArrayString2 (91 for Nothing, 13 for another class); generateCopy returns a new
  // array holding the same pairs.
  void copyObject(const IObjectRef& voObjectToCopy, int32_t vlCopyWhat = -1) override;
  IObjectRef generateCopy(int32_t vlCopyWhat = -1) override;

 private:
  struct Row {
    String key;
    String value;
  };
  enum class Column { kKey, kValue };

  // The row at an index of the table (0 to slot count - 1); subscript out of range (9) otherwise.
  Row& storedRow(int16_t index);
  const Row& storedRow(int16_t index) const;

  // Makes this array hold the used rows of source, sized for exactly their count: what
  // emptying the array, sizing it and copying row by row would leave.
  void copyRowsFrom(const clsArrayString2& source);

  // The search shared by getNextValueForKey (match on the key column, answer the value) and
  // getNextKeyForValue (the other way round).
  String nextMatch(StringView text, Column matchOn, bool& found, bool ignoreCase);

  // The highest row below `below` whose column text satisfies matches, or -1.
  template <typename Matches>
  int32_t lastMatchBelow(int32_t below, String Row::*column, Matches matches) const {
    for (int32_t i = below - 1; i >= 0; --i) {
      if (matches(rows_.at(i).*column)) return i;
    }
    return -1;
  }

  String joinColumn(Column column, StringView delimiter) const;

  detail::SlotArray<Row, int16_t, detail::FreedSlots::Cleared> rows_;
  // The search state: the walk continues below searchPosition_ while searchText_ is repeated.
  int32_t searchPosition_ = 0;
  String searchText_;
  bool searchActive_ = false;
};

}  // namespace ravelin
