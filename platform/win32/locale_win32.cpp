// The locale system of Windows: the user default locale and GetLocaleInfoEx.
#include <windows.h>

#include <ravelin/platform/locale.hpp>
#include <ravelin/platform/win32/text_win32.hpp>
#include <string>

namespace ravelin::platform {
namespace {

using win32::fromWide;
using win32::toWide;

String localeText(const std::wstring& name, LCTYPE type) {
  wchar_t buffer[LOCALE_NAME_MAX_LENGTH * 4] = {};
  if (GetLocaleInfoEx(name.c_str(), type, buffer, static_cast<int>(std::size(buffer))) == 0) {
    return String();
  }
  return fromWide(buffer);
}

int localeNumber(const std::wstring& name, LCTYPE type, int fallback) {
  DWORD value = 0;
  const int written =
      GetLocaleInfoEx(name.c_str(), type | LOCALE_RETURN_NUMBER, reinterpret_cast<LPWSTR>(&value),
                      static_cast<int>(sizeof(value) / sizeof(wchar_t)));
  return written == 0 ? fallback : static_cast<int>(value);
}

Locale localeFromSystem(const std::wstring& name) {
  Locale locale;
  locale.name = localeText(name, LOCALE_SNAME);
  locale.lcid = static_cast<uint32_t>(LocaleNameToLCID(name.c_str(), 0));
  locale.decimalSeparator = localeText(name, LOCALE_SDECIMAL);
  locale.thousandsSeparator = localeText(name, LOCALE_STHOUSAND);
  locale.currencySymbol = localeText(name, LOCALE_SCURRENCY);
  locale.dateSeparator = localeText(name, LOCALE_SDATE);
  locale.timeSeparator = localeText(name, LOCALE_STIME);
  locale.shortDatePattern = localeText(name, LOCALE_SSHORTDATE);
  locale.longDatePattern = localeText(name, LOCALE_SLONGDATE);
  locale.timePattern = localeText(name, LOCALE_STIMEFORMAT);
  locale.amDesignator = localeText(name, LOCALE_S1159);
  locale.pmDesignator = localeText(name, LOCALE_S2359);
  // Windows numbers the days from Monday (LOCALE_SDAYNAME1); the library's arrays start on Sunday.
  for (std::size_t day = 0; day < 7; ++day) {
    const auto windowsDay = static_cast<LCTYPE>((day + 6) % 7);
    locale.dayNames[day] = localeText(name, LOCALE_SDAYNAME1 + windowsDay);
    locale.abbreviatedDayNames[day] = localeText(name, LOCALE_SABBREVDAYNAME1 + windowsDay);
  }
  for (std::size_t month = 0; month < 12; ++month) {
    const auto offset = static_cast<LCTYPE>(month);
    locale.monthNames[month] = localeText(name, LOCALE_SMONTHNAME1 + offset);
    locale.abbreviatedMonthNames[month] = localeText(name, LOCALE_SABBREVMONTHNAME1 + offset);
  }
  locale.ansiCodePage = localeNumber(name, LOCALE_IDEFAULTANSICODEPAGE, 1252);
  locale.oemCodePage = localeNumber(name, LOCALE_IDEFAULTCODEPAGE, 850);
  return locale;
}

class Win32LocaleSystem final : public LocaleSystem {
 public:
  String environmentLocaleName() const override {
    wchar_t buffer[LOCALE_NAME_MAX_LENGTH] = {};
    if (GetUserDefaultLocaleName(buffer, LOCALE_NAME_MAX_LENGTH) == 0) return String();
    return fromWide(buffer);
  }

  std::optional<Locale> findLocale(StringView name) const override {
    const String base = localeBaseName(name);
    if (base.empty()) return std::nullopt;
    const std::wstring wide = toWide(base);
    if (!IsValidLocaleName(wide.c_str())) return std::nullopt;
    return localeFromSystem(wide);
  }

  std::optional<Locale> findLocale(uint32_t lcid) const override {
    wchar_t buffer[LOCALE_NAME_MAX_LENGTH] = {};
    if (lcid == 0 ||
        LCIDToLocaleName(static_cast<LCID>(lcid), buffer, LOCALE_NAME_MAX_LENGTH, 0) == 0) {
      return std::nullopt;
    }
    return localeFromSystem(buffer);
  }
};

}  // namespace

std::unique_ptr<LocaleSystem> LocaleSystem::makeNative() {
  return std::make_unique<Win32LocaleSystem>();
}

}  // namespace ravelin::platform
