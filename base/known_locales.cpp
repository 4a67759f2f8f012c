// The locales the library carries itself, with the settings Windows has for them.
//
// Where Windows changed a value between releases, the table keeps the value of the releases the
// suite's texts were produced under (Windows XP to 7, the same data the automation runtime read):
// - AM/PM designators are empty for the 24-hour locales other than English, so a 12-hour format
//   asked for explicitly shows no designator there, as it did on those systems;
// - en-GB writes "AM"/"PM" and abbreviates September "Sep" (later releases: "am"/"pm", "Sept");
// - pt-PT separates thousands with "." and writes the short date dd-MM-yyyy (later releases: a
//   no-break space and dd/MM/yyyy);
// - fr-FR separates thousands with U+00A0 (later releases: U+202F);
// - de-DE abbreviates March "Mrz"; es-ES writes the time H:mm:ss; it-IT HH:mm:ss (Vista on).
// Month and day names are in lower case in Portuguese, French, Spanish and Italian, as Windows
// writes them.
#include <algorithm>
#include <array>
#include <ravelin/base/locale.hpp>

namespace ravelin {
namespace {

constexpr uint32_t kEnUs = 1033;
constexpr uint32_t kEnGb = 2057;
constexpr uint32_t kPtBr = 1046;
constexpr uint32_t kPtPt = 2070;
constexpr uint32_t kDeDe = 1031;
constexpr uint32_t kFrFr = 1036;
constexpr uint32_t kEsEs = 3082;
constexpr uint32_t kItIt = 1040;

Locale makeEnUs() {
  Locale l;
  l.name = u"en-US";
  l.lcid = kEnUs;
  l.decimalSeparator = u".";
  l.thousandsSeparator = u",";
  l.currencySymbol = u"$";
  l.dateSeparator = u"/";
  l.timeSeparator = u":";
  l.shortDatePattern = u"M/d/yyyy";
  l.longDatePattern = u"dddd, MMMM d, yyyy";
  l.timePattern = u"h:mm:ss tt";
  l.amDesignator = u"AM";
  l.pmDesignator = u"PM";
  l.dayNames = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                u"Thursday", u"Friday", u"Saturday"};
  l.abbreviatedDayNames = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};
  l.monthNames = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
                  u"July",    u"August",   u"September", u"October", u"November", u"December"};
  l.abbreviatedMonthNames = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                             u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
  l.ansiCodePage = 1252;
  l.oemCodePage = 437;
  return l;
}

Locale makeEnGb() {
  Locale l = makeEnUs();
  l.name = u"en-GB";
  l.lcid = kEnGb;
  l.currencySymbol = u"\u00A3";
  l.shortDatePattern = u"dd/MM/yyyy";
  l.longDatePattern = u"dd MMMM yyyy";
  l.timePattern = u"HH:mm:ss";
  l.oemCodePage = 850;
  return l;
}

// Portuguese names, shared by Brazil and Portugal.
void setPortugueseNames(Locale& l) {
  l.dayNames = {u"domingo",      u"segunda-feira", u"ter\u00E7a-feira", u"quarta-feira",
                u"quinta-feira", u"sexta-feira",   u"s\u00E1bado"};
  l.abbreviatedDayNames = {u"dom", u"seg", u"ter", u"qua", u"qui", u"sex", u"s\u00E1b"};
  l.monthNames = {u"janeiro", u"fevereiro", u"mar\u00E7o", u"abril",   u"maio",     u"junho",
                  u"julho",   u"agosto",    u"setembro",   u"outubro", u"novembro", u"dezembro"};
  l.abbreviatedMonthNames = {u"jan", u"fev", u"mar", u"abr", u"mai", u"jun",
                             u"jul", u"ago", u"set", u"out", u"nov", u"dez"};
}

// The settings shared by the continental locales: comma decimals, 24-hour clock, no designators,
// euro, OEM 850.
Locale makeContinental(StringView name, uint32_t lcid) {
  Locale l;
  l.name = String(name);
  l.lcid = lcid;
  l.decimalSeparator = u",";
  l.thousandsSeparator = u".";
  l.currencySymbol = u"\u20AC";
  l.dateSeparator = u"/";
  l.timeSeparator = u":";
  l.shortDatePattern = u"dd/MM/yyyy";
  l.timePattern = u"HH:mm:ss";
  l.ansiCodePage = 1252;
  l.oemCodePage = 850;
  return l;
}

Locale makePtBr() {
  Locale l = makeContinental(u"pt-BR", kPtBr);
  l.currencySymbol = u"R$";
  l.longDatePattern = u"dddd, d' de 'MMMM' de 'yyyy";
  setPortugueseNames(l);
  return l;
}

Locale makePtPt() {
  Locale l = makeContinental(u"pt-PT", kPtPt);
  l.dateSeparator = u"-";
  l.shortDatePattern = u"dd-MM-yyyy";
  l.longDatePattern = u"dddd, d' de 'MMMM' de 'yyyy";
  setPortugueseNames(l);
  return l;
}

Locale makeDeDe() {
  Locale l = makeContinental(u"de-DE", kDeDe);
  l.dateSeparator = u".";
  l.shortDatePattern = u"dd.MM.yyyy";
  l.longDatePattern = u"dddd, d. MMMM yyyy";
  l.dayNames = {u"Sonntag",    u"Montag",  u"Dienstag", u"Mittwoch",
                u"Donnerstag", u"Freitag", u"Samstag"};
  l.abbreviatedDayNames = {u"So", u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa"};
  l.monthNames = {u"Januar", u"Februar", u"M\u00E4rz", u"April",   u"Mai",      u"Juni",
                  u"Juli",   u"August",  u"September", u"Oktober", u"November", u"Dezember"};
  l.abbreviatedMonthNames = {u"Jan", u"Feb", u"Mrz", u"Apr", u"Mai", u"Jun",
                             u"Jul", u"Aug", u"Sep", u"Okt", u"Nov", u"Dez"};
  return l;
}

Locale makeFrFr() {
  Locale l = makeContinental(u"fr-FR", kFrFr);
  l.thousandsSeparator = u"\u00A0";
  l.longDatePattern = u"dddd d MMMM yyyy";
  l.dayNames = {u"dimanche", u"lundi", u"mardi", u"mercredi", u"jeudi", u"vendredi", u"samedi"};
  l.abbreviatedDayNames = {u"dim.", u"lun.", u"mar.", u"mer.", u"jeu.", u"ven.", u"sam."};
  l.monthNames = {u"janvier",   u"f\u00E9vrier", u"mars",     u"avril",
                  u"mai",       u"juin",         u"juillet",  u"ao\u00FBt",
                  u"septembre", u"octobre",      u"novembre", u"d\u00E9cembre"};
  l.abbreviatedMonthNames = {u"janv.", u"f\u00E9vr.", u"mars",  u"avr.", u"mai",  u"juin",
                             u"juil.", u"ao\u00FBt",  u"sept.", u"oct.", u"nov.", u"d\u00E9c."};
  return l;
}

Locale makeEsEs() {
  Locale l = makeContinental(u"es-ES", kEsEs);
  l.longDatePattern = u"dddd, d' de 'MMMM' de 'yyyy";
  l.timePattern = u"H:mm:ss";
  l.dayNames = {u"domingo", u"lunes",   u"martes",     u"mi\u00E9rcoles",
                u"jueves",  u"viernes", u"s\u00E1bado"};
  l.abbreviatedDayNames = {u"dom", u"lun", u"mar", u"mi\u00E9", u"jue", u"vie", u"s\u00E1b"};
  l.monthNames = {u"enero", u"febrero", u"marzo",      u"abril",   u"mayo",      u"junio",
                  u"julio", u"agosto",  u"septiembre", u"octubre", u"noviembre", u"diciembre"};
  l.abbreviatedMonthNames = {u"ene", u"feb", u"mar", u"abr", u"may", u"jun",
                             u"jul", u"ago", u"sep", u"oct", u"nov", u"dic"};
  return l;
}

Locale makeItIt() {
  Locale l = makeContinental(u"it-IT", kItIt);
  l.longDatePattern = u"dddd d MMMM yyyy";
  l.dayNames = {u"domenica",     u"luned\u00EC",  u"marted\u00EC", u"mercoled\u00EC",
                u"gioved\u00EC", u"venerd\u00EC", u"sabato"};
  l.abbreviatedDayNames = {u"dom", u"lun", u"mar", u"mer", u"gio", u"ven", u"sab"};
  l.monthNames = {u"gennaio", u"febbraio", u"marzo",     u"aprile",  u"maggio",   u"giugno",
                  u"luglio",  u"agosto",   u"settembre", u"ottobre", u"novembre", u"dicembre"};
  l.abbreviatedMonthNames = {u"gen", u"feb", u"mar", u"apr", u"mag", u"giu",
                             u"lug", u"ago", u"set", u"ott", u"nov", u"dic"};
  return l;
}

const std::array<Locale, 8>& knownLocales() {
  static const std::array<Locale, 8> locales = {makeEnUs(), makeEnGb(), makePtBr(), makePtPt(),
                                                makeDeDe(), makeFrFr(), makeEsEs(), makeItIt()};
  return locales;
}

// Other names and identifiers Windows gives the same settings: the neutral languages (which
// take their main country's data) and Spanish with the traditional sort.
struct Alias {
  StringView name;
  uint32_t lcid;
  uint32_t target;
};
constexpr std::array<Alias, 7> kAliases = {{
    {u"en", 0x0009, kEnUs},
    {u"pt", 0x0016, kPtBr},
    {u"de", 0x0007, kDeDe},
    {u"fr", 0x000C, kFrFr},
    {u"es", 0x000A, kEsEs},
    {u"it", 0x0010, kItIt},
    {u"es-ES-tradnl", 0x040A, kEsEs},
}};

}  // namespace

const Locale* findKnownLocale(uint32_t lcid) {
  for (const Alias& alias : kAliases) {
    if (alias.lcid == lcid) {
      lcid = alias.target;
      break;
    }
  }
  const auto& locales = knownLocales();
  auto it = std::find_if(locales.begin(), locales.end(),
                         [lcid](const Locale& l) { return l.lcid == lcid; });
  return it == locales.end() ? nullptr : &*it;
}

const Locale* findKnownLocale(StringView name) {
  const String base = localeBaseName(name);
  if (base.empty()) return nullptr;
  for (const Locale& locale : knownLocales()) {
    if (equalsIgnoreCase(locale.name, base)) return &locale;
  }
  for (const Alias& alias : kAliases) {
    if (equalsIgnoreCase(alias.name, base)) return findKnownLocale(alias.target);
  }
  return nullptr;
}

}  // namespace ravelin
