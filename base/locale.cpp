// The pattern facts derived from a locale and the rule for system locale names.
#include <ravelin/base/locale.hpp>

namespace ravelin {
namespace {

// Calls visit(unit) for each unit of a Windows picture pattern outside quoted literals.
template <typename Visit>
void forEachPictureUnit(StringView pattern, Visit visit) {
  bool quoted = false;
  for (char16_t unit : pattern) {
    if (unit == u'\'') {
      quoted = !quoted;
    } else if (!quoted && visit(unit)) {
      return;
    }
  }
}

}  // namespace

DateOrder Locale::dateOrder() const {
  DateOrder order = DateOrder::MonthDayYear;
  forEachPictureUnit(shortDatePattern, [&order](char16_t unit) {
    switch (unit) {
      case u'M':
        order = DateOrder::MonthDayYear;
        return true;
      case u'd':
        order = DateOrder::DayMonthYear;
        return true;
      case u'y':
        order = DateOrder::YearMonthDay;
        return true;
      default:
        return false;
    }
  });
  return order;
}

bool Locale::uses12HourClock() const {
  bool twelveHour = false;
  forEachPictureUnit(timePattern, [&twelveHour](char16_t unit) {
    if (unit == u'h') twelveHour = true;
    return unit == u'h' || unit == u'H';
  });
  return twelveHour;
}

String localeBaseName(StringView name) {
  const auto end = name.find_first_of(u".@");
  String base(name.substr(0, end));
  for (char16_t& unit : base) {
    if (unit == u'_') unit = u'-';
  }
  return base;
}

}  // namespace ravelin
