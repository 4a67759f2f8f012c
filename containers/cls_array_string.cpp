#include <ravelin/containers/cls_array_string.hpp>

namespace ravelin {

bool clsArrayString::find(StringView vsKey) const {
  for (int16_t i = 0; i < getCount(); ++i) {
    if (slot(i) == vsKey) return true;
  }
  return false;
}

bool clsArrayString::RemoveItemWithKey(StringView vsKey) {
  for (auto i = static_cast<int16_t>(getCount() - 1); i >= 0; --i) {
    if (slot(i) == vsKey) return removeItem(i);
  }
  return false;
}

String clsArrayString::getItemsAsList(StringView vsDelimiterChar) const {
  if (getCount() == 0) return String();
  // The average text length, rounded up, sizes the result so that the join never reallocates.
  const auto count = static_cast<std::size_t>(getCount());
  std::size_t units = 0;
  for (int16_t i = 0; i < getCount(); ++i)
    units += slot(i).size();
  const std::size_t averageUnits = (units + count - 1) / count;
  return joinItems(averageUnits + 2 * vsDelimiterChar.size(),
                   [vsDelimiterChar](String& out, const String& text) {
                     out += vsDelimiterChar;
                     out += text;
                     out += vsDelimiterChar;
                   });
}

}  // namespace ravelin
