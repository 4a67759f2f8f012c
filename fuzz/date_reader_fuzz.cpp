// Reads arbitrary text as a date in three locales. Checks that only error 13 escapes, that
// isDateText agrees with parseDate, that every date read lies in the valid range, and that the
// text of a date of 1930..2029 reads back as the same date.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <string_view>

namespace {

using ravelin::Locale;
using ravelin::String;

// A locale the library carries; the names used here are all in its table.
const Locale& known(ravelin::StringView name) {
  return *ravelin::findKnownLocale(name);
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
  static const Locale* const locales[] = {&known(u"en-US"), &known(u"pt-BR"), &known(u"de-DE")};
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
  for (const Locale* locale : locales)
    check(text, *locale);
  return 0;
}
