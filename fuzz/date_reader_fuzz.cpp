// Reads arbitrary text as a date in three locales. Checks that only error 13 escapes, that
// isDateText agrees with parseDate, that every date read lies in the valid range, and that the
// text of a date of 1930..2029 reads back as the same date.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <string_view>

namespace {

using ravelin::Locale;
using ravelin::String;

Locale usEnglish() {
  Locale locale;
  locale.name = u"en-US";
  locale.dateSeparator = u"/";
  locale.timeSeparator = u":";
  locale.shortDatePattern = u"M/d/yyyy";
  locale.timePattern = u"h:mm:ss tt";
  locale.amDesignator = u"AM";
  locale.pmDesignator = u"PM";
  locale.dayNames = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                     u"Thursday", u"Friday", u"Saturday"};
  locale.abbreviatedDayNames = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};
  locale.monthNames = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
                       u"July",    u"August",   u"September", u"October", u"November", u"December"};
  locale.abbreviatedMonthNames = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                  u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
  return locale;
}

Locale brazilianPortuguese() {
  Locale locale = usEnglish();
  locale.name = u"pt-BR";
  locale.shortDatePattern = u"dd/MM/yyyy";
  locale.timePattern = u"HH:mm:ss";
  locale.dayNames = {u"domingo",      u"segunda-feira", u"terça-feira", u"quarta-feira",
                     u"quinta-feira", u"sexta-feira",   u"sábado"};
  locale.abbreviatedDayNames = {u"dom", u"seg", u"ter", u"qua", u"qui", u"sex", u"sáb"};
  locale.monthNames = {u"janeiro", u"fevereiro", u"março",    u"abril",   u"maio",     u"junho",
                       u"julho",   u"agosto",    u"setembro", u"outubro", u"novembro", u"dezembro"};
  locale.abbreviatedMonthNames = {u"jan", u"fev", u"mar", u"abr", u"mai", u"jun",
                                  u"jul", u"ago", u"set", u"out", u"nov", u"dez"};
  return locale;
}

Locale german() {
  Locale locale = usEnglish();
  locale.name = u"de-DE";
  locale.dateSeparator = u".";
  locale.shortDatePattern = u"dd.MM.yyyy";
  locale.timePattern = u"HH:mm:ss";
  locale.amDesignator.clear();
  locale.pmDesignator.clear();
  locale.monthNames = {u"Januar", u"Februar", u"März",      u"April",   u"Mai",      u"Juni",
                       u"Juli",   u"August",  u"September", u"Oktober", u"November", u"Dezember"};
  locale.abbreviatedMonthNames = {u"Jan", u"Feb", u"Mär", u"Apr", u"Mai", u"Jun",
                                  u"Jul", u"Aug", u"Sep", u"Okt", u"Nov", u"Dez"};
  return locale;
}

void check(ravelin::StringView text, const Locale& locale) {
  const bool isDate = ravelin::isDateText(text, locale);
  ravelin::Date date;
  try {
    date = ravelin::parseDate(text, locale);
  } catch (const ravelin::AutomationError& error) {
    if (error.number() != 13 || isDate) std::abort();
    return;
  }
  if (!isDate || !ravelin::isValidDateSerial(date.serial)) std::abort();
  const ravelin::DateParts parts = ravelin::splitDate(date);
  if (parts.year >= 1930 && parts.year <= 2029) {
    if (ravelin::parseDate(ravelin::textOfDate(date, locale), locale) != date) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Locale locales[] = {usEnglish(), brazilianPortuguese(), german()};
  if (size == 0) return 0;
  // The first byte chooses how the rest becomes text: UTF-8, or raw little-endian 16-bit units.
  String text;
  if (data[0] & 1) {
    for (size_t i = 1; i + 1 < size; i += 2) {
      text += static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    }
  } else {
    text = ravelin::fromUtf8(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1));
  }
  for (const Locale& locale : locales)
    check(text, locale);
  return 0;
}
