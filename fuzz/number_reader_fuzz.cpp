// Reads arbitrary text as a number with every reader: Val, the locale reader under a decimal
// point and a decimal comma, and the coercions of text. The bytes are tried as UTF-8 and as raw
// 16-bit units. Only errors 5, 6, 13 and 94 may escape; any other exception aborts. Every double
// read must be finite, and its CStr text must read back.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <string_view>

namespace {

using namespace ravelin;

Locale numberLocale(StringView decimal, StringView thousands, StringView currency) {
  Locale locale;
  locale.decimalSeparator = String(decimal);
  locale.thousandsSeparator = String(thousands);
  locale.currencySymbol = String(currency);
  return locale;
}

const Locale& pointLocale() {
  static const Locale locale = numberLocale(u".", u",", u"$");
  return locale;
}

const Locale& commaLocale() {
  static const Locale locale = numberLocale(u",", u"\u00A0", u"\u20AC");
  return locale;
}

// Runs one conversion; an automation error other than the conversions' own aborts.
template <typename Call>
void expectOnlyConversionErrors(Call call) {
  try {
    call();
  } catch (const AutomationError& error) {
    switch (error.number()) {
      case 5:
      case 6:
      case 13:
      case 94:
        return;
      default:
        std::abort();
    }
  }
}

void checkDouble(double value, const Locale& locale) {
  if (!std::isfinite(value)) std::abort();
  // The text of any double must read back (15 digits may round up to the largest double's
  // neighbour only if the reader were wrong; it must not overflow).
  const double back = parseDouble(textOfDouble(value, locale), locale);
  if (!std::isfinite(back)) std::abort();
  const double strBack = Val(Str(value));
  if (!std::isfinite(strBack)) std::abort();
}

void readAll(StringView text) {
  expectOnlyConversionErrors([&] { checkDouble(Val(text), pointLocale()); });
  for (const Locale* locale : {&pointLocale(), &commaLocale()}) {
    expectOnlyConversionErrors([&] { checkDouble(parseDouble(text, *locale), *locale); });
    expectOnlyConversionErrors([&] { parseCurrency(text, *locale); });
  }
  ScopedLocale scope(pointLocale());
  const Variant value(text);
  expectOnlyConversionErrors([&] { CInt(value); });
  expectOnlyConversionErrors([&] { CLng(value); });
  expectOnlyConversionErrors([&] { CByte(value); });
  expectOnlyConversionErrors([&] { CBool(value); });
  expectOnlyConversionErrors([&] { CCur(value); });
  expectOnlyConversionErrors([&] { CSng(value); });
  expectOnlyConversionErrors([&] { Str(value); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  readAll(fromUtf8(std::string_view(reinterpret_cast<const char*>(data), size)));
  String units(size / 2, u'\0');
  std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
  readAll(units);
  return 0;
}
