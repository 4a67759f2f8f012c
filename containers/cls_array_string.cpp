#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/size_limits.hpp>

namespace ravelin {

bool clsArrayString::find(StringView vsKey) const {
  for (int16_t i = 0; i < getCount(); ++i) {
    if (storage().at(i) == vsKey) return true;
  }
  return false;
}

bool clsArrayString::RemoveItemWithKey(StringView vsKey) {
  for (auto i = static_cast<int16_t>(getCount() - 1); i >= 0; --i) {
    if (storage().at(i) == vsKey) return removeItem(i);
  }
  return false;
}

String clsArrayString::getItemsAsList(StringView vsDelimiterChar) const {
  if (getCount() == 0) return String();
  // The average text length, rounded up, sizes the result so that the join never reallocates.
  const auto count = static_cast<std::size_t>(getCount());
  std::size_t units = 0;
  for (int16_t i = 0; i < getCount(); ++i)
    units += storage().at(i).size();
  // Each text between two delimiters, and a "," between texts.
  checkTextLength(units + count * 2 * vsDelimiterChar.size() + count - 1);
  const std::size_t averageUnits = (units + count - 1) / count;
  return joinItems(averageUnits + 2 * vsDelimiterChar.size(),
                   [vsDelimiterChar](String& out, const String& text) {
                     out += vsDelimiterChar;
                     out += text;
                     out += vsDelimiterChar;
                   });
}

ClassInfo clsArrayString::describe() {
  ClassBuilder<clsArrayString, Base> builder(kClassName,
                                             [](clsArrayString& self) -> Base& { return self; });
  return publishCopyInterface(builder)
      .method(u"add", &clsArrayString::add, {u"vsValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayString::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArrayString::item, {u"viIndex"})
      .let(u"item", &clsArrayString::letItem, {u"viIndex", u"vsValue"})
      .method(u"getCount", &clsArrayString::getCount)
      .get(u"Count", &clsArrayString::Count)
      .method(u"clear", &clsArrayString::clear)
      .method(
          u"getItemsAsList",
          [](clsArrayString& self, String& delimiter) { return self.getItemsAsList(delimiter); },
          {optional(u"vsDelimiterChar", String())})
      .method(u"removeItem", &clsArrayString::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayString::removeLastItem)
      .method(u"find", [](clsArrayString& self, const String& key) { return self.find(key); },
              {u"vsKey"})
      .method(u"RemoveItemWithKey",
              [](clsArrayString& self, const String& key) { return self.RemoveItemWithKey(key); },
              {u"vsKey"})
      .build();
}

}  // namespace ravelin
