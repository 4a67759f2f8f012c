// Locale names, the pattern facts derived from a locale, and the current locale of each thread.
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/locale.hpp>

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

// "C", "POSIX" and their encoded forms ("C.UTF-8") name the C library's neutral locale, which
// the library reads as US English.
bool isNeutralCName(StringView name) {
  const String base = localeBaseName(name);
  return base == u"C" || base == u"POSIX";
}

const Locale& usEnglish() {
  return *findKnownLocale(uint32_t{1033});
}

// The locale the environment names, or US English when it names nothing usable.
Locale environmentLocale() {
  const auto system = platform::localeSystem();
  const String name = system->environmentLocaleName();
  if (name.empty() || isNeutralCName(name)) return usEnglish();
  if (const Locale* known = findKnownLocale(name)) return *known;
  if (std::optional<Locale> found = system->findLocale(name)) return *std::move(found);
  return usEnglish();
}

// The thread's current locale; empty until set or first read.
thread_local std::optional<Locale> tCurrentLocale;

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

std::optional<Locale> findLocale(StringView name) {
  if (isNeutralCName(name)) return usEnglish();
  if (const Locale* known = findKnownLocale(name)) return *known;
  if (localeBaseName(name).empty()) return std::nullopt;
  return platform::localeSystem()->findLocale(name);
}

std::optional<Locale> findLocale(uint32_t lcid) {
  if (const Locale* known = findKnownLocale(lcid)) return *known;
  return platform::localeSystem()->findLocale(lcid);
}

const Locale& currentLocale() {
  if (!tCurrentLocale) tCurrentLocale = environmentLocale();
  return *tCurrentLocale;
}

void setCurrentLocale(const Locale& locale) {
  tCurrentLocale = locale;
}

void resetCurrentLocale() {
  tCurrentLocale.reset();
}

ScopedLocale::ScopedLocale(const Locale& locale) : previous_(tCurrentLocale) {
  setCurrentLocale(locale);
}

ScopedLocale::ScopedLocale(StringView knownName) : previous_(tCurrentLocale) {
  const Locale* locale = findKnownLocale(knownName);
  if (locale == nullptr) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  setCurrentLocale(*locale);
}

ScopedLocale::~ScopedLocale() {
  tCurrentLocale = std::move(previous_);
}

}  // namespace ravelin
