// Finding locales by name, and the current locale of each thread.
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/locale.hpp>

namespace ravelin {
namespace {

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
