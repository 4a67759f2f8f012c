// The locale system of POSIX systems: the environment's variables and the C library's locale data
// (newlocale and nl_langinfo_l).
#include <iconv.h>
#include <langinfo.h>
#include <locale.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ravelin/platform/locale.hpp>
#include <string>
#include <utility>
#include <vector>

namespace ravelin::platform {
namespace {

// A locale object of the C library, freed with the scope.
class CLocale {
 public:
  explicit CLocale(const std::string& name)
      : handle_(newlocale(LC_ALL_MASK, name.c_str(), static_cast<locale_t>(nullptr))) {}
  ~CLocale() {
    if (handle_ != static_cast<locale_t>(nullptr)) freelocale(handle_);
  }
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;

  explicit operator bool() const { return handle_ != static_cast<locale_t>(nullptr); }
  std::string item(nl_item item) const {
    const char* value = nl_langinfo_l(item, handle_);
    return value == nullptr ? std::string() : std::string(value);
  }

 private:
  locale_t handle_;
};

// Converts the text of a locale's data from its code set to UTF-16.
class DataText {
 public:
  explicit DataText(std::string codeset) : codeset_(std::move(codeset)) {}

  String operator()(const std::string& bytes) const {
    if (isUtf8() || bytes.empty()) return fromUtf8(bytes);
    iconv_t converter = iconv_open("UTF-8", codeset_.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) return fromUtf8(bytes);
    std::string input = bytes;
    std::string output(bytes.size() * 4 + 4, '\0');
    char* in = input.data();
    size_t inLeft = input.size();
    char* out = output.data();
    size_t outLeft = output.size();
    while (inLeft > 0) {
      if (iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<size_t>(-1)) break;
      if (errno != EILSEQ && errno != EINVAL) break;
      // An invalid byte is skipped; the rest of the text is still worth having.
      ++in;
      --inLeft;
    }
    iconv_close(converter);
    output.resize(output.size() - outLeft);
    return fromUtf8(output);
  }

 private:
  bool isUtf8() const { return codeset_ == "UTF-8" || codeset_ == "utf8" || codeset_ == "UTF8"; }
  std::string codeset_;
};

bool isPictureLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Appends literal text to a Windows picture pattern, quoting it when it holds letters that the
// pattern would otherwise read as fields.
void appendLiteral(std::string& pattern, const std::string& literal) {
  bool needsQuotes = false;
  for (char c : literal)
    needsQuotes = needsQuotes || isPictureLetter(c) || c == '\'';
  if (!needsQuotes) {
    pattern += literal;
    return;
  }
  pattern += '\'';
  for (char c : literal)
    pattern += (c == '\'') ? std::string("''") : std::string(1, c);
  pattern += '\'';
}

// Translates a strftime format ("%d/%m/%Y") to a Windows picture pattern ("dd/MM/yyyy"), in the
// locale's own code set. Conversions without a picture equivalent (time zone, week numbers) are
// left out.
std::string pictureFromStrftime(const std::string& format, const CLocale& locale, int depth = 0) {
  std::string pattern;
  std::string literal;
  auto field = [&](const std::string& picture) {
    if (!literal.empty()) appendLiteral(pattern, literal);
    literal.clear();
    pattern += picture;
  };
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      literal += format[i];
      continue;
    }
    bool noPadding = false;
    ++i;
    while (i < format.size() &&
           (format[i] == '-' || format[i] == '_' || format[i] == '0' || format[i] == '^' ||
            format[i] == '#' || (format[i] >= '1' && format[i] <= '9'))) {
      noPadding = noPadding || format[i] == '-' || format[i] == '_';
      ++i;
    }
    if (i < format.size() && (format[i] == 'E' || format[i] == 'O')) ++i;
    if (i >= format.size()) break;
    switch (format[i]) {
      case 'd':
        field(noPadding ? "d" : "dd");
        break;
      case 'e':
        field("d");
        break;
      case 'm':
        field(noPadding ? "M" : "MM");
        break;
      case 'Y':
        field("yyyy");
        break;
      case 'y':
        field("yy");
        break;
      case 'b':
      case 'h':
        field("MMM");
        break;
      case 'B':
        field("MMMM");
        break;
      case 'a':
        field("ddd");
        break;
      case 'A':
        field("dddd");
        break;
      case 'D':
        field("MM/dd/yy");
        break;
      case 'F':
        field("yyyy-MM-dd");
        break;
      case 'H':
        field(noPadding ? "H" : "HH");
        break;
      case 'k':
        field("H");
        break;
      case 'I':
        field(noPadding ? "h" : "hh");
        break;
      case 'l':
        field("h");
        break;
      case 'M':
        field("mm");
        break;
      case 'S':
        field("ss");
        break;
      case 'p':
      case 'P':
        field("tt");
        break;
      case 'T':
        field("HH:mm:ss");
        break;
      case 'R':
        field("HH:mm");
        break;
      case 'r':
        // The 12-hour time of the locale; guarded against a format naming itself.
        if (depth == 0) field(pictureFromStrftime(locale.item(T_FMT_AMPM), locale, depth + 1));
        break;
      case 'n':
      case 't':
        literal += ' ';
        break;
      case '%':
        literal += '%';
        break;
      default:
        break;
    }
  }
  if (!literal.empty()) appendLiteral(pattern, literal);
  return pattern;
}

// The separator a pattern writes after its first field ("/" in "dd/MM/yyyy"), or fallback.
String separatorOf(const String& pattern, const String& fallback) {
  std::size_t i = 0;
  while (i < pattern.size() && pattern[i] < 0x80 && isPictureLetter(static_cast<char>(pattern[i])))
    ++i;
  if (i == 0 || i >= pattern.size() || pattern[i] == u'\'') return fallback;
  std::size_t end = i;
  while (end < pattern.size() && pattern[end] != u'\'' &&
         !(pattern[end] < 0x80 && isPictureLetter(static_cast<char>(pattern[end]))))
    ++end;
  return pattern.substr(i, end - i);
}

// A long date in the order of the short one; the C library has no long date of its own.
String longDateFor(DateOrder order) {
  switch (order) {
    case DateOrder::MonthDayYear:
      return u"dddd, MMMM d, yyyy";
    case DateOrder::YearMonthDay:
      return u"yyyy MMMM d, dddd";
    case DateOrder::DayMonthYear:
    default:
      return u"dddd, d MMMM yyyy";
  }
}

#if defined(ALTMON_1)
// The text of a numbered item, the alternative (nominative) form first where the C library has
// one, since Windows' month names are nominative.
std::string itemPreferringAlternative(const CLocale& locale, nl_item alternative, nl_item item) {
  std::string value = locale.item(alternative);
  return value.empty() ? locale.item(item) : value;
}
#endif

Locale localeFromData(const CLocale& data, const String& name) {
  const DataText text(data.item(CODESET));
  Locale locale;
  locale.name = name;
  locale.lcid = 0;
  locale.decimalSeparator = text(data.item(RADIXCHAR));
  if (locale.decimalSeparator.empty()) locale.decimalSeparator = u".";
  locale.thousandsSeparator = text(data.item(THOUSEP));
  // The first character of CRNCYSTR tells where the symbol goes ('-' before, '+' after, '.'
  // in place of the radix); the symbol follows it.
  std::string currency = data.item(CRNCYSTR);
  if (!currency.empty() && (currency[0] == '-' || currency[0] == '+' || currency[0] == '.'))
    currency.erase(0, 1);
  locale.currencySymbol = text(currency);
  locale.shortDatePattern = text(pictureFromStrftime(data.item(D_FMT), data));
  if (locale.shortDatePattern.empty()) locale.shortDatePattern = u"MM/dd/yy";
  locale.timePattern = text(pictureFromStrftime(data.item(T_FMT), data));
  if (locale.timePattern.empty()) locale.timePattern = u"HH:mm:ss";
  locale.dateSeparator = separatorOf(locale.shortDatePattern, u"/");
  locale.timeSeparator = separatorOf(locale.timePattern, u":");
  locale.longDatePattern = longDateFor(locale.dateOrder());
  locale.amDesignator = text(data.item(AM_STR));
  locale.pmDesignator = text(data.item(PM_STR));
  for (int i = 0; i < 7; ++i) {
    locale.dayNames[static_cast<std::size_t>(i)] = text(data.item(DAY_1 + i));
    locale.abbreviatedDayNames[static_cast<std::size_t>(i)] = text(data.item(ABDAY_1 + i));
  }
  for (int i = 0; i < 12; ++i) {
    const auto month = static_cast<std::size_t>(i);
#if defined(ALTMON_1)
    locale.monthNames[month] = text(itemPreferringAlternative(data, ALTMON_1 + i, MON_1 + i));
    locale.abbreviatedMonthNames[month] =
        text(itemPreferringAlternative(data, _NL_ABALTMON_1 + i, ABMON_1 + i));
#else
    locale.monthNames[month] = text(data.item(MON_1 + i));
    locale.abbreviatedMonthNames[month] = text(data.item(ABMON_1 + i));
#endif
  }
  // Windows' code pages for the Western locales; the library converts no others.
  locale.ansiCodePage = 1252;
  locale.oemCodePage = 850;
  return locale;
}

// "pt_br" as the C library writes its names: language in lower case, territory in upper case.
std::string systemCase(std::string base) {
  const auto underscore = base.find('_');
  if (underscore == std::string::npos) return base;
  for (std::size_t i = 0; i < base.size(); ++i) {
    const char c = base[i];
    if (i < underscore && c >= 'A' && c <= 'Z') base[i] = static_cast<char>(c - 'A' + 'a');
    if (i > underscore && c >= 'a' && c <= 'z') base[i] = static_cast<char>(c - 'a' + 'A');
  }
  return base;
}

// The names to try for a locale: its UTF-8 forms first, so the data comes as UTF-8, then the
// name as given ("de_DE@euro" in ISO-8859-15).
std::vector<std::string> candidateNames(const std::string& name) {
  const auto baseEnd = name.find_first_of(".@");
  std::string base = name.substr(0, baseEnd);
  for (char& c : base) {
    if (c == '-') c = '_';
  }
  base = systemCase(base);
  const std::string suffix = baseEnd == std::string::npos ? std::string() : name.substr(baseEnd);
  std::string modifier;
  if (auto at = name.find('@'); at != std::string::npos) modifier = name.substr(at);
  return {base + ".UTF-8" + modifier, base + ".utf8" + modifier, base + suffix, name};
}

class PosixLocaleSystem final : public LocaleSystem {
 public:
  String environmentLocaleName() const override {
    return fromUtf8(localeNameFromVariables([](std::string_view name) {
      const char* value = std::getenv(std::string(name).c_str());
      return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }));
  }

  std::optional<Locale> findLocale(StringView name) const override {
    const std::string utf8 = toUtf8(name);
    // A slash would make the C library read a locale from a path.
    if (utf8.empty() || utf8.find('/') != std::string::npos || utf8[0] == '.' || utf8[0] == '@')
      return std::nullopt;
    for (const std::string& candidate : candidateNames(utf8)) {
      CLocale data(candidate);
      if (data) return localeFromData(data, localeBaseName(fromUtf8(systemCase(candidate))));
    }
    return std::nullopt;
  }

  // POSIX locales have no Windows identifiers; the library's own table covers the ones it knows.
  std::optional<Locale> findLocale(uint32_t) const override { return std::nullopt; }
};

}  // namespace

std::unique_ptr<LocaleSystem> LocaleSystem::makeNative() {
  return std::make_unique<PosixLocaleSystem>();
}

}  // namespace ravelin::platform
