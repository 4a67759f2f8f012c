// SQLUtilities: the texts that let one query run against both database kinds of the suite, a
// desktop database file (dbtMDB) and a database server (dbtMSSQL). It turns values into SQL
// literal text, wraps column expressions in each dialect's functions, reads typed values out of
// record-set fields, maps the server catalogue's type codes onto enumDataTypesSql and hands out
// the texts of two server routines. Nothing here opens a connection or runs a statement.
//
// Every blank of every result is intended: callers concatenate the texts directly. A database
// kind other than the two known ones is no error; the members that take a kind then give "",
// except where a member says otherwise.
//
// Dates go through the automation date formatter, numbers and date text through the runtime's
// conversions in the calling thread's locale.
//
// Error handling: the members marked "handled" below catch any automation error raised inside
// them and raise it again with the same number, the source "Tarn.Quillmark.Common" and the
// description "clsUtilitiesSQL" + the member's tag (".functionDatePart()") + CR LF + the caught
// description + CR LF + the caught source, so a caller sees where it failed and why. The other
// members let a conversion error (a date outside the formatter's range) through unchanged.
// Argument conversions of a late-bound call happen before a member runs and are not wrapped.
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/frame/date.hpp>
#include <ravelin/frame/enum_info.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/sql_data_types.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// The database kind every member of SQLUtilities writes for.
enum DataBTypeEnum : int32_t {
  dbtMDB = 0,    // a desktop database file: #...# dates, IIF, nz, DATEVALUE, CStr, True/False
  dbtMSSQL = 1,  // a database server: CAST(... AS datetime), CASE WHEN, Coalesce, ISNULL, 1/0
};
template <>
const EnumInfo& enumInfo<DataBTypeEnum>();

class SQLUtilities : public PublicClass<SQLUtilities, IgnoringCopyObject> {
 public:
  static constexpr StringView kClassName = u"SQLUtilities";
  // The identifier getClassIdAsString answers and the class part of the error descriptions.
  static constexpr StringView kClassId = u"clsUtilitiesSQL";

  SQLUtilities() : PublicClass(kClassId) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // ---- Value literals --------------------------------------------------------------------------

  // dbtMDB: " DATEVALUE('" + the locale's text of the date + "')". dbtMSSQL: " CAST('yyyymmdd' AS
  // datetime)" for a year after 1899, else " CAST('' AS datetime) " (the zero date stands for
  // no date).
  String fmtSQLDate(Date datValue, DataBTypeEnum veDatabaseType) const;
  // dbtMDB: "#mm/dd/yyyy hh:mm:ss#", month first in every locale. dbtMSSQL: "CAST('yyyymmdd
  // hh:mm:ss' AS datetime)" for a year after 1753 (the server's first), else "CAST('' AS
  // datetime)".
  String fmtSQLDateTime(Date datValue, DataBTypeEnum veDatabaseType) const;
  // The serial as Str writes it: " .5" for noon, " 0" for midnight. The kind is not used.
  String fmtSQLTime(Date datValue, DataBTypeEnum veDatabaseType) const;
  // dbtMDB: "True" or "False". dbtMSSQL: "1" or "0".
  String fmtSQLBoolean(bool blnValue, DataBTypeEnum veDatabaseType) const;
  // The locale's text of the number with every "," turned into ".": no grouping, no fixed
  // decimals, a decimal point in every locale.
  String fmtSQLNumber(double vdblValue) const;
  // The text with every apostrophe doubled, without enclosing apostrophes (the caller adds them).
  String fmtSQLString(StringView strValue, DataBTypeEnum veDatabaseType) const;
  // fmtSQLString of FillTextField(vntValue): a Null or unreadable field gives "". Handled.
  String fmtSQLStringHandleNull(const ObjectRef& vntValue, DataBTypeEnum veDatabaseType) const;
  // "%" for both kinds.
  String GetSQLLikeOperatorAnySymbol(DataBTypeEnum veDatabaseType) const;

  // ---- Date texts, never quoted ----------------------------------------------------------------

  // "yyyy-mm-dd hh:mm:ss".
  String FormatDateToCanonicalForm(Date vdValue) const;
  // dbtMDB "yyyy-mm-dd hh:mm:ss", dbtMSSQL "yyyymmdd hh:mm:ss".
  String FormatDateToCanonicalFormV2(Date vdValue, DataBTypeEnum veDatabaseType) const;
  // dbtMDB: vsDateFormat + " hh:mm:ss" (with the default empty format, the time alone after a
  // blank). dbtMSSQL: "yyyy-mm-dd hh:mm:ss" when vbUseDefaultFormatForSQLServer, else
  // vsDateFormat (empty meaning "yyyymmdd") + " hh:mm:ss".
  String FormatDateTimeForDatabase(Date vdValue, DataBTypeEnum veDatabaseType,
                                   StringView vsDateFormat = {},
                                   bool vbUseDefaultFormatForSQLServer = true) const;
  // dbtMDB as FormatDateTimeForDatabase; dbtMSSQL always "yyyymmdd hh:mm:ss".
  String FormatDateTimeForDatabaseV2(Date vdValue, DataBTypeEnum veDatabaseType,
                                     StringView vsDateFormat = {},
                                     bool vbUseDefaultFormatForSQLServer = true) const;

  // ---- Expression wrappers: the caller's expression texts are inserted unchanged -------------

  // " date() " or " getdate() ".
  String FunctionDate(DataBTypeEnum veDatabaseType) const;
  // " DATEVALUE(e)" or " CAST(e AS datetime)".
  String fmtSQLCastToDate(StringView vsVarName, DataBTypeEnum veDatabaseType) const;
  // " CStr(e)" or " CAST(e AS nvarchar)".
  String fmtSQLCastToString(StringView vsColumnExpression, DataBTypeEnum veDatabaseType) const;
  // The same as fmtSQLCastToString.
  String fmtSQLAddConvertToString(StringView vsColumnExpression,
                                  DataBTypeEnum veDatabaseType) const;
  // " IIF(ISNULL(e),u,e)" or " ISNULL(e,u)". Handled.
  String FunctionHandleNull(StringView vsColumnExpression, StringView vsUseThisOnNull,
                            DataBTypeEnum veDatabaseType) const;
  // dbtMDB " IIF(c,a,b)", then " AS [name]" when the trimmed name is not empty. dbtMSSQL
  // " [name]=" when it is not empty, else " ", then "CASE WHEN c THEN a ELSE b END". The name
  // goes in untrimmed. Handled.
  String FunctionIIF(StringView vsCondition, StringView vsTrueCondition,
                     StringView vsFalseCondition, DataBTypeEnum veDatabaseType,
                     StringView vsOutputColumnName = {}) const;
  // " DatePart(P,e)", P the dialect's token of the date part ("yyyy", "q", "mm", "y", "dd",
  // "hh", "n", "s", trimmed, any case): quoted for dbtMDB ("'m'"), bare for dbtMSSQL ("m"),
  // empty for another kind. Any other part raises CCEC_FailedParametersParsing. Handled.
  String FunctionDatePart(StringView vsDatePart, StringView vsExpressionValue,
                          DataBTypeEnum veDatabaseType) const;
  // " DateDiff(P,s,t) " with the token of FunctionDatePart, as a String in a Variant. Handled.
  Variant FunctionDateDiff(StringView vsDatePart, StringView vsStartDateExpression,
                           StringView vsEndDateExpression, DataBTypeEnum veDatabaseType) const;
  // The first non-null of two or more expressions: dbtMSSQL " Coalesce(a,b,c)", dbtMDB nested
  // " nz( nz(a,b),c)". Nothing or fewer than two items gives "". Handled.
  String FunctionCoalesce(const std::shared_ptr<clsArrayString>& voExpressionValues,
                          DataBTypeEnum veDatabaseType) const;

  // ---- Types and fields ------------------------------------------------------------------------

  // The library's SQL type of a data-access type code: numbers, dates, ANSI and Unicode text,
  // booleans, times and time stamps; every other code (adCurrency, 6, among them) DTS_Unknown.
  // Handled.
  enumDataTypesSql ConvertFromCatalogDataType(int32_t Value) const;
  // The field's Value as text; "" when it is Null or cannot be read or converted.
  String FillTextField(const ObjectRef& fld) const;
  // The field's Value as a Double; 0 when it is Null or cannot be read or converted.
  double FillNumberField(const ObjectRef& fld) const;
  // The field's Value as a Date; today (at midnight) when it is Null or cannot be read or
  // converted, so a missing date never reads as the zero date.
  Date FillDateField(const ObjectRef& fld) const;
  // The field's Value as a Boolean; False when it is Null or cannot be read or converted.
  bool FillBooleanField(const ObjectRef& fld) const;
  // The reader of veDataType, its result in a Variant of that type: String for the text types
  // and DTS_Unknown, Date for the date and time types, Double for DTS_Numeric, Boolean for
  // DTS_Boolean; any other code gives Empty without reading the field. Handled.
  Variant FillField(const ObjectRef& fld, enumDataTypesSql veDataType) const;

  // The literal of a value as veDataType wants it: text types (and codes not listed here)
  // through fmtSQLString, enclosed in apostrophes when vbReturnStringWithQuotes (an unknown kind
  // gives "''" or ""); DTS_Date through fmtSQLDate; DTS_Time through fmtSQLTime; DTS_Boolean
  // through fmtSQLBoolean; DTS_Numeric and DTS_Unknown the locale's text of the value,
  // unchanged (a decimal comma stays a comma) and for every kind, as the table of types gives it
  // without a kind. No national prefix for DTS_TextUnicode. Handled.
  String FormatSqlValue(enumDataTypesSql veDataType, const Variant& vvntValue,
                        DataBTypeEnum veDatabaseType, bool vbReturnStringWithQuotes = true) const;

  // ---- Server routines ---------------------------------------------------------------------

  // The creation and drop scripts of the server function castFloatToString, which writes a
  // decimal number with a chosen decimal-point character and no trailing zeros.
  void UDFCastFloatToString(String& vsSQLMain, String& vsSQLDrop) const;
  // The creation and drop scripts of the server procedure crosstab, which turns a grouped
  // query into a cross table with one column per distinct value of a pivot column.
  void UDFCrossTable(String& vsSQLMain, String& vsSQLDrop) const;
};

}  // namespace ravelin
