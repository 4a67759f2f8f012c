#include <algorithm>
#include <memory>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <utility>

namespace ravelin {
namespace {

// The text without leading and trailing spaces (only U+0020, as Trim removes).
StringView trimSpaces(StringView text) {
  const auto first = text.find_first_not_of(u' ');
  if (first == StringView::npos) return StringView();
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

}  // namespace

bool clsArrayString2::add(String vsKey, String vsValue) {
  return rows_.tryAdd(Row{std::move(vsKey), std::move(vsValue)});
}

clsArrayString2::Row& clsArrayString2::storedRow(int16_t index) {
  if (index < 0 || index >= rows_.slotCount()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  return rows_.at(index);
}

const clsArrayString2::Row& clsArrayString2::storedRow(int16_t index) const {
  if (index < 0 || index >= rows_.slotCount()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  return rows_.at(index);
}

void clsArrayString2::setItemForKey(StringView vsKey, String vsValue) {
  for (int32_t i = rows_.getCount() - 1; i >= 0; --i) {
    if (rows_.at(i).key == vsKey) {
      rows_.at(i).value = std::move(vsValue);
      return;
    }
  }
}

bool clsArrayString2::RemoveItemWithKey(StringView vsKey) {
  for (int32_t i = rows_.getCount() - 1; i >= 0; --i) {
    if (rows_.at(i).key == vsKey) return rows_.remove(static_cast<int16_t>(i));
  }
  return false;
}

void clsArrayString2::orderValues() {
  // Row i always holds the smallest value seen so far in the scan of the rows after it; a
  // strictly smaller value is exchanged in, whole row with its key.
  const int32_t count = rows_.getCount();
  for (int32_t i = 0; i < count; ++i) {
    for (int32_t j = i + 1; j < count; ++j) {
      if (rows_.at(i).value > rows_.at(j).value) std::swap(rows_.at(i), rows_.at(j));
    }
  }
}

void clsArrayString2::resetSearch() {
  searchPosition_ = rows_.getCount();
  searchText_.clear();
}

String clsArrayString2::getNextValueForKey(StringView vsKey, bool& vbFound, bool vbIgnoreCase) {
  return nextMatch(vsKey, Column::kKey, vbFound, vbIgnoreCase);
}

String clsArrayString2::getNextKeyForValue(StringView vsExpression, bool& vbFound,
                                           bool vbIgnoreCase) {
  return nextMatch(vsExpression, Column::kValue, vbFound, vbIgnoreCase);
}

String clsArrayString2::nextMatch(StringView text, Column matchOn, bool& found, bool ignoreCase) {
  found = false;
  const StringView trimmed = trimSpaces(text);
  if (trimmed.empty()) return String();
  if (!searchActive_ || trimmed != searchText_) {
    searchPosition_ = rows_.getCount();
    searchText_ = String(trimmed);
    searchActive_ = true;
  }
  // Rows removed since the walk started are not revisited: the walk never starts above the
  // count, so a spare row is never taken for a match.
  const int32_t start = std::min<int32_t>(searchPosition_, rows_.getCount());
  String Row::*const column = matchOn == Column::kKey ? &Row::key : &Row::value;
  const StringView wanted = searchText_;
  // One loop per comparison, so that the row loop itself carries no branch on the mode.
  const int32_t match =
      ignoreCase
          ? lastMatchBelow(start, column,
                           [wanted](StringView text) { return equalsIgnoreCase(text, wanted); })
          : lastMatchBelow(start, column, [wanted](StringView text) { return text == wanted; });
  if (match < 0) {
    searchPosition_ = 0;
    return String();
  }
  searchPosition_ = match;
  found = true;
  const Row& row = rows_.at(match);
  return matchOn == Column::kKey ? row.value : row.key;
}

String clsArrayString2::joinColumn(Column column, StringView delimiter) const {
  const int32_t count = rows_.getCount();
  String out;
  if (count == 0) return out;
  std::size_t units = 0;
  for (int32_t i = 0; i < count; ++i) {
    const Row& row = rows_.at(i);
    units += (column == Column::kKey ? row.key : row.value).size() + 2 * delimiter.size() + 1;
  }
  // The count includes a "," after the last text, which is not kept.
  checkTextLength(units - 1);
  out.reserve(units);
  for (int32_t i = 0; i < count; ++i) {
    const Row& row = rows_.at(i);
    out += delimiter;
    out += column == Column::kKey ? row.key : row.value;
    out += delimiter;
    out += u',';
  }
  out.pop_back();
  return out;
}

String clsArrayString2::getItemsAsList(StringView vsDelimiterChar) const {
  return joinColumn(Column::kValue, vsDelimiterChar);
}

String clsArrayString2::getItemKeysAsList(StringView vsDelimiterChar) const {
  return joinColumn(Column::kKey, vsDelimiterChar);
}

void clsArrayString2::copyRowsFrom(const clsArrayString2& source) {
  if (&source == this) return;
  // Built aside and swapped in, so that a failure (out of memory) leaves this array as it was.
  detail::SlotArray<Row, int16_t, detail::FreedSlots::Cleared> copy(0, rows_.slotIncrement());
  copy.setArraySizeWithEmptyValues(source.getCount());
  for (int32_t i = 0; i < source.getCount(); ++i)
    copy.at(i) = source.rows_.at(i);
  rows_ = std::move(copy);
}

void clsArrayString2::copyObject(const IObjectRef& voObjectToCopy, int32_t /*vlCopyWhat*/) {
  copyRowsFrom(*copySourceAs<clsArrayString2>(voObjectToCopy));
}

IObjectRef clsArrayString2::generateCopy(int32_t /*vlCopyWhat*/) {
  auto copy = makeObject<clsArrayString2>();
  copy->copyRowsFrom(*this);
  return copy;
}

ClassInfo clsArrayString2::describe() {
  using Self = clsArrayString2;
  ClassBuilder<Self> builder(kClassName);
  return publishCopyInterface(builder)
      .method(u"add", &Self::add, {u"vsKey", u"vsValue"})
      .method(u"setArraySizeWithEmptyValues", &Self::setArraySizeWithEmptyValues, {u"viCount"})
      .get(u"item", &Self::item, {u"viIndex"})
      .get(u"ItemKey", &Self::ItemKey, {u"viIndex"})
      .method(u"setItem", &Self::setItem, {u"vsValue", u"viIndex"})
      .method(u"setItemKey", &Self::setItemKey, {u"vsValue", u"viIndex"})
      .method(u"setItemForKey", &Self::setItemForKey, {u"vsKey", u"vsValue"})
      .method(u"removeItem", &Self::removeItem, {u"viIndex"})
      .method(u"RemoveItemWithKey", &Self::RemoveItemWithKey, {u"vsKey"})
      .method(u"removeLastItem", &Self::removeLastItem)
      .method(u"orderValues", &Self::orderValues)
      .method(u"resetSearch", &Self::resetSearch)
      .method(u"getNextValueForKey",
              [](Self& self, const String& key, bool& found, bool& ignoreCase) {
                return self.getNextValueForKey(key, found, ignoreCase);
              },
              {u"vsKey", u"vbFound", optional(u"vbIgnoreCase", false)})
      .method(u"getNextKeyForValue",
              [](Self& self, const String& expression, bool& found, bool& ignoreCase) {
                return self.getNextKeyForValue(expression, found, ignoreCase);
              },
              {u"vsExpression", u"vbFound", optional(u"vbIgnoreCase", false)})
      .method(u"getCount", &Self::getCount)
      .get(u"Count", &Self::Count)
      .method(u"getItemsAsList",
              [](Self& self, String& delimiter) { return self.getItemsAsList(delimiter); },
              {optional(u"vsDelimiterChar", String())})
      .method(u"getItemKeysAsList",
              [](Self& self, String& delimiter) { return self.getItemKeysAsList(delimiter); },
              {optional(u"vsDelimiterChar", String())})
      .method(u"setSlotIncrement", &Self::setSlotIncrement, {u"viValue"})
      .build();
}

}  // namespace ravelin
