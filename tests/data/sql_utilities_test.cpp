#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <ravelin/tests/support/stand_in_field.hpp>
#include <vector>

namespace ravelin {
namespace {

constexpr auto kUnknownKind = static_cast<DataBTypeEnum>(7);

const SQLUtilities sql;

// A member call that gives text, or "E<number>" for the error it raises.
using TextCall = std::function<String()>;

String outcome(const TextCall& call) {
  try {
    return call();
  } catch (const AutomationError& error) {
    return u"E" + fromAscii(std::to_string(error.number()));
  }
}

struct TextRow {
  const char* what;
  TextCall call;
  const char16_t* expected;
};

void expectRows(std::initializer_list<TextRow> rows) {
  for (const TextRow& row : rows)
    EXPECT_EQ(outcome(row.call), row.expected) << row.what;
}

Date at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return makeDate(year, month, day, hour, minute, second);
}

TEST(SQLUtilities, ValueLiteralsPerKind) {
  ScopedLocale locale(u"en-US");
  const Date march2 = at(2010, 3, 2);
  const Date march2Time = at(2010, 3, 2, 14, 5, 9);
  expectRows({
      // The desktop kind takes the locale's own date text inside DATEVALUE.
      {"date, desktop", [&] { return sql.fmtSQLDate(march2, dbtMDB); }, u" DATEVALUE('3/2/2010')"},
      {"date with time, desktop", [&] { return sql.fmtSQLDate(march2Time, dbtMDB); },
       u" DATEVALUE('3/2/2010 2:05:09 PM')"},
      {"date, server", [&] { return sql.fmtSQLDate(march2Time, dbtMSSQL); },
       u" CAST('20100302' AS datetime)"},
      // Year 1899 and before is "no date" for the server; note the blanks at both ends.
      {"zero date, server", [&] { return sql.fmtSQLDate(Date{}, dbtMSSQL); },
       u" CAST('' AS datetime) "},
      {"31 Dec 1899, server", [&] { return sql.fmtSQLDate(at(1899, 12, 31), dbtMSSQL); },
       u" CAST('' AS datetime) "},
      {"1 Jan 1900, server", [&] { return sql.fmtSQLDate(at(1900, 1, 1), dbtMSSQL); },
       u" CAST('19000101' AS datetime)"},
      {"date, unknown kind", [&] { return sql.fmtSQLDate(march2, kUnknownKind); }, u""},
      {"date time, desktop", [&] { return sql.fmtSQLDateTime(march2Time, dbtMDB); },
       u"#03/02/2010 14:05:09#"},
      {"date time, server", [&] { return sql.fmtSQLDateTime(march2Time, dbtMSSQL); },
       u"CAST('20100302 14:05:09' AS datetime)"},
      // The server's threshold for date and time is its own first year, 1753, without blanks.
      {"1 Jan 1753, server", [&] { return sql.fmtSQLDateTime(at(1753, 1, 1), dbtMSSQL); },
       u"CAST('' AS datetime)"},
      {"1 Jan 1754, server", [&] { return sql.fmtSQLDateTime(at(1754, 1, 1), dbtMSSQL); },
       u"CAST('17540101 00:00:00' AS datetime)"},
      {"1 Jan 1800, desktop", [&] { return sql.fmtSQLDateTime(at(1800, 1, 1), dbtMDB); },
       u"#01/01/1800 00:00:00#"},
      {"date time, unknown kind", [&] { return sql.fmtSQLDateTime(march2, kUnknownKind); }, u""},
      {"noon", [&] { return sql.fmtSQLTime(Date{0.5}, dbtMSSQL); }, u" .5"},
      {"06:00, unknown kind", [&] { return sql.fmtSQLTime(Date{0.25}, kUnknownKind); }, u" .25"},
      {"midnight", [&] { return sql.fmtSQLTime(Date{}, dbtMDB); }, u" 0"},
      {"a date and time", [&] { return sql.fmtSQLTime(Date{40239.75}, dbtMDB); }, u" 40239.75"},
      {"True, desktop", [&] { return sql.fmtSQLBoolean(true, dbtMDB); }, u"True"},
      {"False, desktop", [&] { return sql.fmtSQLBoolean(false, dbtMDB); }, u"False"},
      {"True, server", [&] { return sql.fmtSQLBoolean(true, dbtMSSQL); }, u"1"},
      {"False, server", [&] { return sql.fmtSQLBoolean(false, dbtMSSQL); }, u"0"},
      {"boolean, unknown kind", [&] { return sql.fmtSQLBoolean(true, kUnknownKind); }, u""},
      {"apostrophe, desktop", [&] { return sql.fmtSQLString(u"O'Brien", dbtMDB); }, u"O''Brien"},
      {"apostrophes, server", [&] { return sql.fmtSQLString(u"''x'", dbtMSSQL); }, u"''''x''"},
      {"other quotes stay", [&] { return sql.fmtSQLString(u"a\"b\\c`", dbtMSSQL); }, u"a\"b\\c`"},
      {"string, unknown kind", [&] { return sql.fmtSQLString(u"O'Brien", kUnknownKind); }, u""},
      {"like, desktop", [&] { return sql.GetSQLLikeOperatorAnySymbol(dbtMDB); }, u"%"},
      {"like, server", [&] { return sql.GetSQLLikeOperatorAnySymbol(dbtMSSQL); }, u"%"},
      // The pure formatters have no handler: a date outside the calendar raises as it is.
      {"date out of range", [&] { return sql.fmtSQLDateTime(Date{1e9}, dbtMSSQL); }, u"E5"},
  });
}

TEST(SQLUtilities, DateTexts) {
  ScopedLocale locale(u"pt-BR");
  const Date d = at(2010, 3, 2, 14, 5, 9);
  expectRows({
      {"canonical", [&] { return sql.FormatDateToCanonicalForm(d); }, u"2010-03-02 14:05:09"},
      {"canonical V2, desktop", [&] { return sql.FormatDateToCanonicalFormV2(d, dbtMDB); },
       u"2010-03-02 14:05:09"},
      {"canonical V2, server", [&] { return sql.FormatDateToCanonicalFormV2(d, dbtMSSQL); },
       u"20100302 14:05:09"},
      {"canonical V2, unknown", [&] { return sql.FormatDateToCanonicalFormV2(d, kUnknownKind); },
       u""},
      // Without a date format the desktop kind gives the time alone, after a blank.
      {"for database, desktop", [&] { return sql.FormatDateTimeForDatabase(d, dbtMDB); },
       u" 14:05:09"},
      {"for database, desktop with format",
       [&] { return sql.FormatDateTimeForDatabase(d, dbtMDB, u"dd\\/mm\\/yyyy"); },
       u"02/03/2010 14:05:09"},
      {"for database, server default",
       [&] { return sql.FormatDateTimeForDatabase(d, dbtMSSQL, u"dd.mm.yyyy"); },
       u"2010-03-02 14:05:09"},
      {"for database, server own format",
       [&] { return sql.FormatDateTimeForDatabase(d, dbtMSSQL, u"dd.mm.yyyy", false); },
       u"02.03.2010 14:05:09"},
      {"for database, server empty format",
       [&] { return sql.FormatDateTimeForDatabase(d, dbtMSSQL, u"", false); },
       u"20100302 14:05:09"},
      {"for database, unknown", [&] { return sql.FormatDateTimeForDatabase(d, kUnknownKind); },
       u""},
      {"V2, desktop as V1",
       [&] { return sql.FormatDateTimeForDatabaseV2(d, dbtMDB, u"yyyy", false); },
       u"2010 14:05:09"},
      {"V2, server ignores both options",
       [&] { return sql.FormatDateTimeForDatabaseV2(d, dbtMSSQL, u"dd.mm.yyyy", true); },
       u"20100302 14:05:09"},
      {"V2, unknown", [&] { return sql.FormatDateTimeForDatabaseV2(d, kUnknownKind); }, u""},
  });
}

// fmtSQLNumber always writes a decimal point; FormatSqlValue keeps the locale's separator.
TEST(SQLUtilities, NumbersInDecimalPointAndDecimalCommaLocales) {
  const struct {
    const char16_t* locale;
    double value;
    const char16_t* sqlNumber;
    const char16_t* formatted;
  } rows[] = {
      {u"en-US", 1234.5, u"1234.5", u"1234.5"},   {u"pt-BR", 1234.5, u"1234.5", u"1234,5"},
      {u"de-DE", -0.125, u"-0.125", u"-0,125"},   {u"de-DE", 1e20, u"1E+20", u"1E+20"},
      {u"de-DE", 1.5e-7, u"1.5E-07", u"1,5E-07"},
  };
  for (const auto& row : rows) {
    ScopedLocale locale(row.locale);
    SCOPED_TRACE(toUtf8(row.locale));
    EXPECT_EQ(sql.fmtSQLNumber(row.value), row.sqlNumber);
    EXPECT_EQ(sql.FormatSqlValue(DTS_Numeric, Variant(row.value), dbtMSSQL), row.formatted);
  }
}

TEST(SQLUtilities, ExpressionWrappers) {
  const auto iif = [](DataBTypeEnum kind, StringView name) {
    return sql.FunctionIIF(u"x>0", u"1", u"0", kind, name);
  };
  expectRows({
      {"date, desktop", [] { return sql.FunctionDate(dbtMDB); }, u" date() "},
      {"date, server", [] { return sql.FunctionDate(dbtMSSQL); }, u" getdate() "},
      {"date, unknown", [] { return sql.FunctionDate(kUnknownKind); }, u""},
      {"cast to date, desktop", [] { return sql.fmtSQLCastToDate(u"d", dbtMDB); },
       u" DATEVALUE(d)"},
      {"cast to date, server", [] { return sql.fmtSQLCastToDate(u"d", dbtMSSQL); },
       u" CAST(d AS datetime)"},
      {"cast to date, unknown", [] { return sql.fmtSQLCastToDate(u"d", kUnknownKind); }, u""},
      {"cast to string, desktop", [] { return sql.fmtSQLCastToString(u"n", dbtMDB); }, u" CStr(n)"},
      {"cast to string, server", [] { return sql.fmtSQLCastToString(u"n", dbtMSSQL); },
       u" CAST(n AS nvarchar)"},
      {"convert to string, server", [] { return sql.fmtSQLAddConvertToString(u"n", dbtMSSQL); },
       u" CAST(n AS nvarchar)"},
      {"convert to string, unknown",
       [] { return sql.fmtSQLAddConvertToString(u"n", kUnknownKind); }, u""},
      {"null, desktop", [] { return sql.FunctionHandleNull(u"a.b", u"0", dbtMDB); },
       u" IIF(ISNULL(a.b),0,a.b)"},
      {"null, server", [] { return sql.FunctionHandleNull(u"a.b", u"0", dbtMSSQL); },
       u" ISNULL(a.b,0)"},
      {"null, unknown", [] { return sql.FunctionHandleNull(u"a.b", u"0", kUnknownKind); }, u""},
      {"IIF named, desktop", [&] { return iif(dbtMDB, u"Flag"); }, u" IIF(x>0,1,0) AS [Flag]"},
      {"IIF named, server", [&] { return iif(dbtMSSQL, u"Flag"); },
       u" [Flag]=CASE WHEN x>0 THEN 1 ELSE 0 END"},
      {"IIF blank name, desktop", [&] { return iif(dbtMDB, u"   "); }, u" IIF(x>0,1,0)"},
      {"IIF blank name, server", [&] { return iif(dbtMSSQL, u"   "); },
       u" CASE WHEN x>0 THEN 1 ELSE 0 END"},
      // Only the test for a name trims it.
      {"IIF padded name, desktop", [&] { return iif(dbtMDB, u" F "); }, u" IIF(x>0,1,0) AS [ F ]"},
      {"IIF padded name, server", [&] { return iif(dbtMSSQL, u" F "); },
       u" [ F ]=CASE WHEN x>0 THEN 1 ELSE 0 END"},
      {"IIF, unknown", [&] { return iif(kUnknownKind, u"Flag"); }, u""},
  });
}

TEST(SQLUtilities, DatePartTokens) {
  const struct {
    const char16_t* part;
    const char16_t* desktop;
    const char16_t* server;
  } rows[] = {
      {u"yyyy", u"'yyyy'", u"yyyy"}, {u"Q", u"'q'", u"q"},   {u" mm ", u"'m'", u"m"},
      {u"y", u"'y'", u"y"},          {u"Dd", u"'d'", u"d"},  {u"HH", u"'h'", u"hh"},
      {u"n", u"'n'", u"n"},          {u"S  ", u"'s'", u"s"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.part));
    EXPECT_EQ(sql.FunctionDatePart(row.part, u"d", dbtMDB),
              u" DatePart(" + String(row.desktop) + u",d)");
    EXPECT_EQ(sql.FunctionDatePart(row.part, u"d", dbtMSSQL),
              u" DatePart(" + String(row.server) + u",d)");
    EXPECT_EQ(CStr(sql.FunctionDateDiff(row.part, u"a", u"b", dbtMSSQL)),
              u" DateDiff(" + String(row.server) + u",a,b) ");
    // An unknown kind is no error: the token is simply empty.
    EXPECT_EQ(sql.FunctionDatePart(row.part, u"d", kUnknownKind), u" DatePart(,d)");
  }
  const Variant diff = sql.FunctionDateDiff(u"dd", u"a", u"b", dbtMDB);
  EXPECT_EQ(diff.type(), VarType::String);
  EXPECT_EQ(diff.asString(), u" DateDiff('d',a,b) ");
}

// The failure of an unknown date part, wrapped by the calling member's handler.
TEST(SQLUtilities, UnknownDatePartRaisesThroughTheHandler) {
  const struct {
    const char* what;
    const char16_t* part;
    std::function<void(StringView)> call;
    const char16_t* memberTag;
  } rows[] = {
      {"DatePart M", u"M", [](StringView p) { sql.FunctionDatePart(p, u"d", dbtMSSQL); },
       u".functionDatePart()"},
      {"DatePart YY", u" YY", [](StringView p) { sql.FunctionDatePart(p, u"d", dbtMDB); },
       u".functionDatePart()"},
      {"DateDiff empty", u"", [](StringView p) { sql.FunctionDateDiff(p, u"a", u"b", dbtMDB); },
       u".functionDateDiff()"},
      {"DateDiff SS, unknown kind", u"SS",
       [](StringView p) { sql.FunctionDateDiff(p, u"a", u"b", kUnknownKind); },
       u".functionDateDiff()"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    try {
      row.call(row.part);
      ADD_FAILURE() << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), CCEC_FailedParametersParsing);
      EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
      EXPECT_EQ(error.description(), u"clsUtilitiesSQL" + String(row.memberTag) +
                                         u"\r\nclsUtilitiesSQL.getDatePartForDatabase()\r\n"
                                         u" vsDatePart=" +
                                         String(row.part) + u"\r\nTarn.Quillmark.Common");
    }
  }
}

TEST(SQLUtilities, Coalesce) {
  const auto items = [](std::initializer_list<const char16_t*> texts) {
    auto array = makeObject<clsArrayString>();
    for (const char16_t* text : texts)
      array->add(text);
    return array;
  };
  const struct {
    const char* what;
    std::shared_ptr<clsArrayString> values;
    DataBTypeEnum kind;
    const char16_t* expected;
  } rows[] = {
      {"Nothing", nullptr, dbtMSSQL, u""},
      {"empty", items({}), dbtMDB, u""},
      {"one item, server", items({u"a"}), dbtMSSQL, u""},
      {"one item, desktop", items({u"a"}), dbtMDB, u""},
      {"two, server", items({u"a", u"b"}), dbtMSSQL, u" Coalesce(a,b)"},
      {"two, desktop", items({u"a", u"b"}), dbtMDB, u" nz(a,b)"},
      {"three, server", items({u"a", u"b", u"0"}), dbtMSSQL, u" Coalesce(a,b,0)"},
      {"three, desktop", items({u"a", u"b", u"0"}), dbtMDB, u" nz( nz(a,b),0)"},
      {"empty items, server", items({u"", u""}), dbtMSSQL, u" Coalesce(,)"},
      {"three, unknown", items({u"a", u"b", u"c"}), kUnknownKind, u""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(sql.FunctionCoalesce(row.values, row.kind), row.expected) << row.what;
}

TEST(SQLUtilities, CatalogueTypes) {
  const struct {
    std::initializer_list<int32_t> codes;
    enumDataTypesSql expected;
  } rows[] = {
      {{2, 3, 4, 5, 14, 16, 17, 18, 19, 20, 21, 131, 139}, DTS_Numeric},
      {{7, 133}, DTS_Date},
      {{8, 129, 200, 201}, DTS_Text},
      {{11}, DTS_Boolean},
      {{130, 202, 203}, DTS_TextUnicode},
      {{134}, DTS_Time},
      {{135}, DTS_TimeStamp},
      // adCurrency (6) is no number to the suite; nor are the other codes.
      {{6, 0, -1, 1, 9, 10, 12, 13, 64, 72, 128, 132, 136, 204, 205, 0x2000}, DTS_Unknown},
  };
  for (const auto& row : rows) {
    for (const int32_t code : row.codes)
      EXPECT_EQ(sql.ConvertFromCatalogDataType(code), row.expected) << code;
  }
}

// A record set with one row in which every column is Null, and one with values.
std::shared_ptr<Recordset> typedRows() {
  auto rs = makeObject<Recordset>();
  const int32_t nullable = adFldIsNullable | adFldMayBeNull;
  rs->Fields()->Append(u"Text", adVarWChar, 20, nullable);
  rs->Fields()->Append(u"Number", adDouble, 0, nullable);
  rs->Fields()->Append(u"When", adDate, 0, nullable);
  rs->Fields()->Append(u"Flag", adBoolean, 0, nullable);
  rs->Open(Variant::missing(), Variant::missing(), adOpenUnspecified, adLockOptimistic);
  rs->AddNew();
  rs->Update();
  rs->AddNew();
  rs->Fields()->Item(u"Text")->setValue(Variant(u"O'Neil"));
  rs->Fields()->Item(u"Number")->setValue(Variant(-2.5));
  rs->Fields()->Item(u"When")->setValue(Variant(at(2010, 3, 2, 14, 5, 9)));
  rs->Fields()->Item(u"Flag")->setValue(Variant(true));
  rs->Update();
  rs->MoveFirst();
  return rs;
}

TEST(SQLUtilities, FieldReadersSwallowFailures) {
  ScopedLocale locale(u"en-US");
  platform::ScopedFake<platform::SimulatedClock> clock;
  using namespace std::chrono;
  clock.fake().setUtcNow(sys_days{2026y / 11 / 24} + 15h + 30min);
  const Date today = at(2026, 11, 24);

  auto rs = typedRows();
  const auto field = [&](const char16_t* name) -> ObjectRef { return rs->Fields()->Item(name); };
  const ObjectRef text = field(u"Text"), number = field(u"Number"), when = field(u"When"),
                  flag = field(u"Flag");
  // Null in every column of the first row.
  EXPECT_EQ(sql.FillTextField(text), u"");
  EXPECT_EQ(sql.FillNumberField(number), 0.0);
  EXPECT_EQ(sql.FillDateField(when), today);
  EXPECT_EQ(sql.FillBooleanField(flag), false);
  EXPECT_EQ(sql.fmtSQLStringHandleNull(text, dbtMSSQL), u"");

  rs->MoveNext();
  EXPECT_EQ(sql.FillTextField(text), u"O'Neil");
  EXPECT_EQ(sql.FillNumberField(number), -2.5);
  EXPECT_EQ(sql.FillDateField(when), at(2010, 3, 2, 14, 5, 9));
  EXPECT_EQ(sql.FillBooleanField(flag), true);
  EXPECT_EQ(sql.fmtSQLStringHandleNull(text, dbtMDB), u"O''Neil");
  EXPECT_EQ(sql.fmtSQLStringHandleNull(text, kUnknownKind), u"");
  // Read across types: text that is no number, a date as text.
  EXPECT_EQ(sql.FillNumberField(text), 0.0);
  EXPECT_EQ(sql.FillDateField(text), today);
  EXPECT_EQ(sql.FillTextField(when), u"3/2/2010 2:05:09 PM");
  EXPECT_EQ(sql.FillBooleanField(number), true);

  // Past the last row every read raises 3021, and every reader still answers.
  rs->MoveNext();
  EXPECT_EQ(sql.FillTextField(text), u"");
  EXPECT_EQ(sql.FillNumberField(number), 0.0);
  EXPECT_EQ(sql.FillDateField(when), today);
  EXPECT_EQ(sql.FillBooleanField(flag), false);
  EXPECT_EQ(sql.FillDateField(nullptr), today);
}

TEST(SQLUtilities, FillFieldDispatchesByType) {
  ScopedLocale locale(u"en-US");
  platform::ScopedFake<platform::SimulatedClock> clock;
  using namespace std::chrono;
  clock.fake().setUtcNow(sys_days{2026y / 11 / 24} + 23h);
  const struct {
    enumDataTypesSql type;
    Variant stored;
    Variant expected;  // of the stored value
    Variant expectedOfNull;
  } rows[] = {
      {DTS_Text, Variant(int32_t{7}), Variant(u"7"), Variant(u"")},
      {DTS_TextUnicode, Variant(true), Variant(u"True"), Variant(u"")},
      {DTS_Unknown, Variant(1.5), Variant(u"1.5"), Variant(u"")},
      {DTS_Date, Variant(u"3/2/2010"), Variant(at(2010, 3, 2)), Variant(at(2026, 11, 24))},
      {DTS_Time, Variant(0.5), Variant(Date{0.5}), Variant(at(2026, 11, 24))},
      {DTS_TimeStamp, Variant(at(1999, 1, 1)), Variant(at(1999, 1, 1)), Variant(at(2026, 11, 24))},
      {DTS_Numeric, Variant(u"12.25"), Variant(12.25), Variant(0.0)},
      {DTS_Boolean, Variant(int32_t{-1}), Variant(true), Variant(false)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.type));
    const Variant value = sql.FillField(makeObject<StandInField>(row.stored), row.type);
    EXPECT_EQ(value.type(), row.expected.type());
    EXPECT_EQ(value, row.expected);
    const Variant ofNull = sql.FillField(makeObject<StandInField>(Variant::null()), row.type);
    EXPECT_EQ(ofNull.type(), row.expectedOfNull.type());
    EXPECT_EQ(ofNull, row.expectedOfNull);
  }
  // The types without a reader give Empty and do not touch the field.
  for (const int32_t code : std::initializer_list<int32_t>{DTS_FunctionGroup, DTS_TimeStampTime,
                                                           DTS_TimeStampDate, 3, -1}) {
    auto field = makeObject<StandInField>(Variant(u"x"));
    EXPECT_TRUE(sql.FillField(field, static_cast<enumDataTypesSql>(code)).isEmpty()) << code;
    EXPECT_EQ(field->reads(), 0) << code;
  }
}

TEST(SQLUtilities, FormatSqlValue) {
  ScopedLocale locale(u"en-US");
  const auto format = [](int32_t type, Variant value, DataBTypeEnum kind, bool quotes = true) {
    return [=] {
      return sql.FormatSqlValue(static_cast<enumDataTypesSql>(type), value, kind, quotes);
    };
  };
  const Variant brien(u"O'Brien");
  expectRows({
      {"text, server", format(DTS_Text, brien, dbtMSSQL), u"'O''Brien'"},
      {"text, desktop, bare", format(DTS_Text, brien, dbtMDB, false), u"O''Brien"},
      // No national prefix for Unicode text; unlisted codes are text too.
      {"unicode", format(DTS_TextUnicode, Variant(u"\u00e7\u4e2d"), dbtMSSQL), u"'\u00e7\u4e2d'"},
      {"time stamp is text", format(DTS_TimeStamp, Variant(at(2010, 3, 2)), dbtMSSQL),
       u"'3/2/2010'"},
      {"function group is text", format(DTS_FunctionGroup, Variant(int16_t{5}), dbtMDB), u"'5'"},
      {"undefined code is text", format(3, Variant(true), dbtMDB), u"'True'"},
      {"empty value", format(DTS_Text, Variant(), dbtMDB), u"''"},
      {"text, unknown kind", format(DTS_Text, brien, kUnknownKind), u"''"},
      {"text, unknown kind, bare", format(DTS_Text, brien, kUnknownKind, false), u""},
      {"date, server", format(DTS_Date, Variant(u"2010-03-02"), dbtMSSQL),
       u" CAST('20100302' AS datetime)"},
      {"date, desktop", format(DTS_Date, Variant(40239.0), dbtMDB), u" DATEVALUE('3/2/2010')"},
      {"date, unknown kind", format(DTS_Date, Variant(40239.0), kUnknownKind), u""},
      {"time", format(DTS_Time, Variant(u"18:00"), dbtMDB), u" .75"},
      {"boolean, server", format(DTS_Boolean, Variant(u"True"), dbtMSSQL), u"1"},
      {"boolean, desktop", format(DTS_Boolean, Variant(0.0), dbtMDB), u"False"},
      {"number", format(DTS_Numeric, Variant(1234.5), dbtMDB), u"1234.5"},
      {"number as given", format(DTS_Numeric, Variant(u" 12 "), dbtMSSQL), u" 12 "},
      {"unknown type", format(DTS_Unknown, Variant(int32_t{-3}), dbtMSSQL), u"-3"},
  });
}

// Conversion failures inside FormatSqlValue come wrapped by its handler.
TEST(SQLUtilities, FormatSqlValueRaisesThroughTheHandler) {
  ScopedLocale locale(u"en-US");
  const struct {
    enumDataTypesSql type;
    Variant value;
    int32_t number;
    const char16_t* cause;
  } rows[] = {
      {DTS_Text, Variant::null(), 94, u"Invalid use of Null"},
      {DTS_Numeric, Variant::null(), 94, u"Invalid use of Null"},
      {DTS_Date, Variant(u"no date"), 13, u"Type mismatch"},
      {DTS_Boolean, Variant(u"maybe"), 13, u"Type mismatch"},
      {DTS_Time, Variant(1e9), 6, u"Overflow"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.type));
    try {
      sql.FormatSqlValue(row.type, row.value, dbtMSSQL);
      ADD_FAILURE() << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number);
      EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
      EXPECT_EQ(error.description(), u"clsUtilitiesSQL.formatSqlValue()\r\n" + String(row.cause) +
                                         u"\r\n" + String(kRuntimeErrorSource));
    }
  }
}

TEST(SQLUtilities, FormatSqlValueReadsAFieldPassedAsTheValue) {
  ScopedLocale locale(u"en-US");
  auto rs = typedRows();
  rs->MoveLast();
  const Variant text(ObjectRef(rs->Fields()->Item(u"Text")));
  EXPECT_EQ(sql.FormatSqlValue(DTS_Text, text, dbtMSSQL), u"'O''Neil'");
  const Variant when(ObjectRef(rs->Fields()->Item(u"When")));
  EXPECT_EQ(sql.FormatSqlValue(DTS_Date, when, dbtMSSQL), u" CAST('20100302' AS datetime)");
}

std::vector<String> linesOf(const String& text) {
  std::vector<String> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find(u"\r\n", start)) != String::npos; start = end + 2)
    lines.push_back(text.substr(start, end - start));
  lines.push_back(text.substr(start));
  return lines;
}

TEST(SQLUtilities, ServerRoutineScripts) {
  const struct {
    const char* what;
    void (SQLUtilities::*produce)(String&, String&) const;
    std::size_t lines;
    const char16_t* first;
    const char16_t* last;
    const char16_t* dropEnd;
  } rows[] = {
      {"castFloatToString", &SQLUtilities::UDFCastFloatToString, 38,
       u"CREATE FUNCTION [dbo].[castFloatToString] (@Value decimal(38,10),@DecimalPointChar char)",
       u"END", u"and xtype in (N'FN', N'IF', N'TF'))\r\ndrop function [dbo].[castFloatToString]"},
      {"crosstab", &SQLUtilities::UDFCrossTable, 36, u"CREATE PROCEDURE crosstab ",
       u" SET ANSI_WARNINGS ON",
       u"and OBJECTPROPERTY(id, N'IsProcedure') = 1) drop procedure [dbo].[crosstab]"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    String main = u"previous\r\n", drop = u"previous";
    (sql.*row.produce)(main, drop);
    const std::vector<String> lines = linesOf(main);
    ASSERT_EQ(lines.size(), row.lines);
    EXPECT_EQ(lines.front(), row.first);
    EXPECT_EQ(lines.back(), row.last);
    // Line breaks are CR LF only.
    for (const String& line : lines) {
      EXPECT_EQ(line.find_first_of(u"\r\n"), String::npos) << toUtf8(line);
    }
    EXPECT_TRUE(drop.starts_with(u"if exists (select * from dbo.sysobjects where id = "));
    EXPECT_TRUE(drop.ends_with(row.dropEnd)) << toUtf8(drop);
    String again, dropAgain;
    (sql.*row.produce)(again, dropAgain);
    EXPECT_EQ(again, main);
    EXPECT_EQ(dropAgain, drop);
  }
  // Blanks that the server keeps as written and doubled apostrophes inside the procedure.
  String main, drop;
  sql.UDFCastFloatToString(main, drop);
  EXPECT_EQ(linesOf(main)[1], u"RETURNS varchar(256) AS  ");
  sql.UDFCrossTable(main, drop);
  EXPECT_EQ(linesOf(main)[13], u"+ @pivot1 + ' Is Not Null AND ' + @pivot1 + '<>''''')");
  EXPECT_EQ(linesOf(main)[33], u"/*exec ('insert into [crossTabTable] ' + @select)*/");
}

// By name, as scripts call it: the copy interface, optional parameters, by-reference texts.
TEST(SQLUtilities, LateBinding) {
  ScopedLocale locale(u"en-US");
  const ObjectRef object = libraryRegistry().create(u"Ravelin.SQLUtilities");
  const auto call = [&](StringView name, std::vector<CallArgument> arguments) {
    return callMember(object, name, MemberKind::Method, arguments);
  };
  EXPECT_EQ(CStr(call(u"getClassIdAsString", {})), u"clsUtilitiesSQL");
  EXPECT_TRUE(call(u"generateCopy", {}).asObject() == nullptr);
  EXPECT_TRUE(call(u"getParameterValue", {Variant(u"x")}).isEmpty());
  EXPECT_EQ(CStr(call(u"FunctionIIF",
                      {Variant(u"c"), Variant(u"a"), Variant(u"b"), Variant(int32_t{dbtMDB})})),
            u" IIF(c,a,b)");
  EXPECT_EQ(CStr(call(u"FormatSqlValue",
                      {Variant(int32_t{DTS_Text}), Variant(u"x"), Variant(int32_t{dbtMDB}),
                       CallArgument::named(u"vbReturnStringWithQuotes", Variant(false))})),
            u"x");
  EXPECT_EQ(CStr(call(u"FormatDateTimeForDatabase",
                      {Variant(at(2010, 3, 2, 1, 2, 3)), Variant(int32_t{dbtMSSQL})})),
            u"2010-03-02 01:02:03");
  Variant main(u"old"), drop(int32_t{1});
  call(u"UDFCastFloatToString", {CallArgument(main, &main), CallArgument(drop, &drop)});
  EXPECT_TRUE(main.asString().starts_with(u"CREATE FUNCTION"));
  EXPECT_TRUE(drop.asString().ends_with(u"drop function [dbo].[castFloatToString]"));
  // The enumeration of database kinds is published with the classes.
  EXPECT_EQ(libraryRegistry().findEnumValue(u"dbtMSSQL"), 1);
}

}  // namespace
}  // namespace ravelin
