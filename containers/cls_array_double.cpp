#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/locale.hpp>

namespace ravelin {

String clsArrayDouble::getItemsAsList() const {
  const Locale& locale = currentLocale();
  return joinItems(16, [&locale](String& out, double value) {
    for (const char16_t unit : textOfDouble(value, locale))
      out += unit == u',' ? u'.' : unit;
  });
}

}  // namespace ravelin
