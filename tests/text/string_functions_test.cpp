#include <gtest/gtest.h>

#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/platform/fake/random_fake.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <ravelin/text/string_functions.hpp>

namespace ravelin {
namespace {

TEST(StringFunctions, FixedWidthFields) {
  StringFunctions f;
  const struct {
    String actual;
    const char16_t* expected;
  } rows[] = {
      {f.PadL(u"ABCDE", 3), u"ABC"},  // cut on the right, like PadR
      {f.PadR(u"AB", 4, 46), u"AB.."},
      {f.PadL(u"AB", 4, 48), u"00AB"},
      {f.StrZero(7.9, 3), u"007"},  // cut, not rounded
      {f.StrZero(-5, 4), u"00-5"},
      {f.StrZero(12345, 3), u"123"},
      {f.StrZero(-0.7, 2), u"00"},
      {f.StrCenter(u"  abc ", 8), u"  abc   "},
      {f.StrCenter(u"abcdef", 4), u"abcd"},
      {f.StrCenter(u"", 3), u"   "},
      {f.Stuff(u"ABCDEF", 2, 3, u"xy"), u"Axy EF"},
      {f.Stuff(u"ABCDEF", 2, 1, u"xyz"), u"AxCDEF"},
      {f.Stuff(u"ABC", 2, 0, u"zz"), u"ABC"},
      {f.Stuff(u"AB", 5, 2, u"XY"), u"AB  XY"},
      {f.Stuff(u"ABC", 0, 1, u"x"), u"ABC"},
      {f.Stuff(u"ABC", 3, 5, u"x"), u"ABx    "},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(rows[i].actual, rows[i].expected);
  }
  int16_t width = 5;
  EXPECT_EQ(f.PadZeroRight(u"42", width), u"00042");
  EXPECT_EQ(width, 5);
  width = 3;
  EXPECT_EQ(f.PadZeroRight(u"123456", width), u"123456");
  EXPECT_EQ(errorNumberOf([&] { f.Stuff(u"A", 32767, 1, u"x"); }), vb_error::kOverflow);
  EXPECT_EQ(errorNumberOf([&] { f.StrCenter(u"abc", -1); }), vb_error::kInvalidProcedureCall);
}

// A class that changes PadL changes StrZero and TRAN, which build on it.
class StarPadding : public StringFunctions {
 public:
  String PadL(StringView Text, int16_t Size, int16_t) override {
    return StringFunctions::PadL(Text, Size, 42);
  }
};

TEST(StringFunctions, MembersBuildOnEachOtherThroughTheObject) {
  StarPadding f;
  EXPECT_EQ(f.StrZero(5, 3), u"**5");
  EXPECT_EQ(f.TRAN(Variant(5.0), u"##0.00"), u"**5.00");
  EXPECT_EQ(f.ConvertStringToDec(u"A"), u"*65");
}

TEST(StringFunctions, TranPictures) {
  StringFunctions f;
  const struct {
    const char16_t* locale;
    Variant value;
    const char16_t* picture;
    const char16_t* expected;
  } rows[] = {
      {u"en-US", Variant(1234.5), u"#,##0.00", u"1,234.50"},
      {u"en-US", Variant(12.5), u"#,##0.00", u"   12.50"},
      {u"en-US", Variant(99999.0), u"#,##0.00", u"*,***.**"},
      {u"en-US", Variant(9999.99), u"#,##0.00", u"9,999.99"},
      {u"en-US", Variant(-3.0), u"##0", u" -3"},
      {u"en-US", Variant::null(), u"#0.0", u" 0.0"},
      {u"pt-BR", Variant(1234.5), u"###,##0.00", u"  1.234,50"},
      {u"pt-BR", Variant(1234567.0), u"###,##0.00", u"***,***.**"},
      {u"en-US", Variant(u"abc"), u"XXXXX", u"abc  "},
      {u"en-US", Variant(u"abcdefg"), u"!XXX", u"abc"},
      {u"en-US", Variant(u" ab\r\nc "), u"@@@@", u"abc "},
      {u"en-US", Variant(u" abc "), u"XXX", u" abc "},  // fits once trimmed: kept whole
      {u"en-US", Variant(int32_t{42}), u"@@@@", u"42  "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.picture) + " " + toUtf8(row.locale));
    ScopedLocale locale(row.locale);
    EXPECT_EQ(f.TRAN(row.value, row.picture), row.expected);
  }
}

TEST(StringFunctions, CheckDigits) {
  StringFunctions f;
  const struct {
    const char16_t* barcode;
    int16_t expected;
  } rows[] = {{u"590123412345", 7}, {u"9638507", 4},     {u"12A4", 0}, {u"", 0},
              {u"03600029145", 2},  {u"400638133393", 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.barcode));
    EXPECT_EQ(f.GetBarCodeCheckDigit(row.barcode), row.expected);
  }
}

TEST(StringFunctions, CharacterCodes) {
  ScopedLocale locale(u"en-US");
  StringFunctions f;
  EXPECT_EQ(f.ConvertStringToDec(u"AB\u20AC"), u"065/066/128");
  EXPECT_EQ(f.ConvertStringToDec(u""), u"");
  EXPECT_EQ(f.ConvertDecToString(u"065/066\\067"), u"ABC");
  EXPECT_EQ(f.ConvertDecToString(u" 65 / 128"), u"A\u20AC");
  EXPECT_EQ(f.ConvertDecToString(u"   "), u"");
  EXPECT_EQ(errorNumberOf([&] { f.ConvertDecToString(u"65/"); }), vb_error::kTypeMismatch);
  EXPECT_EQ(errorNumberOf([&] { f.ConvertDecToString(u"65\\66/67"); }), vb_error::kTypeMismatch);
  EXPECT_EQ(errorNumberOf([&] { f.ConvertDecToString(u"300"); }), vb_error::kInvalidProcedureCall);
  EXPECT_EQ(f.ReturnOnlyCharacteres(u"a\tb\u00FFc\u00FE\u20AC"), u"abc\u00FE\u20AC");
  EXPECT_EQ(f.ReturnOnlyDigits(u"a1-2.3\u0663"), u"123");
}

TEST(StringFunctions, OemConversion) {
  ScopedLocale locale(u"pt-BR");  // OEM page 850
  StringFunctions f;
  EXPECT_EQ(f.GetOEMString(0, u"A\u00E7\u00E3o \u00C5"), u"Acao \u008F");  // Å stays: 0x8F in 850
  // With accents kept, ç is 0x87 and ã 0xC6 in page 850, read back through Windows-1252.
  EXPECT_EQ(f.GetOEMString(850, u"A\u00E7\u00E3o"), u"A\u2021\u00C6o");
  EXPECT_EQ(f.GetOEMString(1, u"\u00FF\u00D1"), u"\u02DC\u00A5");
}

TEST(StringFunctions, SmallUtilities) {
  StringFunctions f;
  EXPECT_EQ(f.StripNulls(String(u" ab\0cd", 6)), u"ab");
  EXPECT_EQ(f.GetCleanCaption(u"&File && Edit"), u"File  Edit");
  EXPECT_TRUE(f.HaveOnlyDigits(u""));
  EXPECT_FALSE(f.HaveOnlyDigits(u"1 2"));
  EXPECT_EQ(f.HowManyStrings(u"aaa", u"aa"), 2);
  EXPECT_EQ(f.HowManyStrings(u"aAa", u"a"), 2);
  EXPECT_EQ(f.HowManyStrings(u"", u"a"), 0);
  EXPECT_EQ(f.HowManyStrings(u"a", u""), 0);

  const SafeArray bytes = f.StringToBytes(u"A\u20AC").asArray();
  EXPECT_EQ(bytes.elementType, VarType::Byte);
  std::vector<uint8_t> values;
  for (const Variant& v : bytes.elements)
    values.push_back(v.asByte());
  EXPECT_EQ(values, (std::vector<uint8_t>{0x41, 0, 0xAC, 0x20, 0}));
  EXPECT_EQ(f.StringToBytes(u"").asArray().elements.size(), 1u);
}

TEST(StringFunctions, ParamArrayToString) {
  StringFunctions f;
  SafeArray values = SafeArray::vector(VarType::Variant, 0, 2);
  values.elements = {Variant(int16_t{1}), Variant(u"x"), Variant()};
  Variant source(values);
  const SafeArray texts = f.ParamArrayToString(source).asArray();
  EXPECT_EQ(texts.elementType, VarType::String);
  ASSERT_EQ(texts.elements.size(), 3u);
  EXPECT_EQ(texts.elements[0], Variant(u"1"));
  EXPECT_EQ(texts.elements[2], Variant(u""));

  Variant empty(SafeArray::vector(VarType::Variant, 0, -1));
  EXPECT_TRUE(f.ParamArrayToString(empty).asArray().bounds.empty());

  Variant fromOne(SafeArray::vector(VarType::Variant, 1, 2));
  EXPECT_EQ(errorNumberOf([&] { f.ParamArrayToString(fromOne); }), vb_error::kSubscriptOutOfRange);
  values.elements[1] = Variant::null();
  Variant withNull(values);
  EXPECT_EQ(errorNumberOf([&] { f.ParamArrayToString(withNull); }), vb_error::kInvalidUseOfNull);
}

TEST(StringFunctions, CreateGuidMarksVersionFour) {
  StringFunctions f;
  platform::ScopedFake<platform::FakeRandomSource> random;
  EXPECT_EQ(f.CreateGUID(), u"");  // no random bytes
  random.fake().setBytes({0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0xFF, 0x99, 0xAA, 0xBB,
                          0xCC, 0xDD, 0xEE, 0xFF});
  EXPECT_EQ(f.CreateGUID(), u"0011223344556647BF99AABBCCDDEEFF");
}

TEST(StringFunctions, NativeGuidsDiffer) {
  StringFunctions f;
  const String first = f.CreateGUID();
  ASSERT_EQ(first.size(), 32u);
  EXPECT_EQ(first[14], u'4');
  EXPECT_NE(first, f.CreateGUID());
}

TEST(StringFunctions, PublishedMembers) {
  const ClassInfo info = StringFunctions::describe();
  const MemberInfo* padZeroRight = info.find(u"PadZeroRight", MemberKind::Method);
  ASSERT_NE(padZeroRight, nullptr);
  EXPECT_TRUE(padZeroRight->parameters[1].byRef);
  const MemberInfo* padL = info.find(u"PadL", MemberKind::Method);
  ASSERT_NE(padL, nullptr);
  EXPECT_TRUE(padL->parameters[2].optional);
  std::vector<CallArgument> arguments = {CallArgument(Variant(u"AB")), CallArgument(Variant(4.0))};
  StringFunctions f;
  EXPECT_EQ(callMember(f, *padL, arguments), Variant(u"  AB"));
  EXPECT_EQ(info.members().size(), 20u);
}

}  // namespace
}  // namespace ravelin
