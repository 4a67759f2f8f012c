#include <gtest/gtest.h>

#include <ravelin/frame/format.hpp>
#include <ravelin/frame/locale.hpp>

namespace ravelin {
namespace {

const Locale& kPtBr = *findKnownLocale(u"pt-BR");

struct TextCase {
  Variant value;
  const char16_t* format;
  const char16_t* expected;
};

TEST(FormatText, PlaceholdersCaseAlignmentAndKind) {
  const TextCase cases[] = {
      {u"testing", u"@@@@@@@@", u" testing"},
      {u"testing", u"@\\x", u"txesting"},
      {u"abc", u"&&&&&", u"abc"},
      {u"abc", u"!@@@@@", u"abc  "},
      {u"ab", u"@-@-@", u" -a-b"},
      {u"ab", u"!@-@-@", u"a-b- "},
      {u"Hello", u">", u"HELLO"},
      {u"Hello", u"<@@@@@@", u" hello"},
      {u"a\u00e7\u00e3o", u">&&&&", u"A\u00c7\u00c3O"},
      {123, u"@@@@@", u"  123"},
      {1.5, u"@@@@@", u"  1,5"},
      {Variant(true), u"&", u"True"},
      {u"", u"@;\\e\\m\\p\\t\\y", u"empty"},
      {Variant::null(), u"@;\\e\\m\\p\\t\\y", u"empty"},
      {u"x", u"@;\\e\\m\\p\\t\\y", u"x"},
      {Variant::null(), u"@", u""},
      // Only literals: the value's type decides how the text is read.
      {u"abc", u"\\-", u"-abc"},
      {5.0, u"\\-", u"-"},
      // Otherwise the first deciding token, outside literals, picks the kind of format.
      {1234.5, u"0 \\d\\a\\y\\s", u"1235 days"},
      {1234.5, u"\"dias: \"0", u"dias: 1235"},
      {Date{2.5}, u"0.00", u"2,50"},
      {Date{2.5}, u"@", u"01/01/1900 12:00:00"},
      {u"1234,5", u"#,##0.00", u"1.234,50"},
      {u"31/01/2024", u"yyyymmdd", u"20240131"},
  };
  for (const TextCase& c : cases) {
    SCOPED_TRACE(toUtf8(c.format));
    EXPECT_EQ(toUtf8(Format(c.value, c.format, vbSunday, vbFirstJan1, kPtBr)), toUtf8(c.expected));
  }
}

}  // namespace
}  // namespace ravelin
