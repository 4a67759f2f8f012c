// SQLUtilities: the database kinds, the member table and the class's error handler.
#include <ravelin/data/internal/sql_error_handler.hpp>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

template <>
const EnumInfo& enumInfo<DataBTypeEnum>() {
  static const EnumInfo info{u"DataBTypeEnum", {{u"dbtMDB", dbtMDB}, {u"dbtMSSQL", dbtMSSQL}}};
  return info;
}

namespace sql {

void raiseFromHandler(StringView memberTag, const AutomationError& caught) {
  raiseError(caught.number(), String(kCommonErrorSource),
             String(SQLUtilities::kClassId) + String(memberTag) + u"\r\n" + caught.description() +
                 u"\r\n" + caught.source());
}

}  // namespace sql

ClassInfo SQLUtilities::describe() {
  using S = SQLUtilities;
  ClassBuilder<S> builder(kClassName);
  publishCopyInterface(builder);
  const Param kind(u"veDatabaseType");
  return builder.method(u"ConvertFromCatalogDataType", &S::ConvertFromCatalogDataType, {u"Value"})
      .method(u"FunctionCoalesce", &S::FunctionCoalesce, {u"voExpressionValues", kind})
      .method(u"FunctionDate", &S::FunctionDate, {kind})
      .method(u"FunctionDateDiff", &S::FunctionDateDiff,
              {u"vsDatePart", u"vsStartDateExpression", u"vsEndDateExpression", kind})
      .method(u"FunctionDatePart", &S::FunctionDatePart,
              {u"vsDatePart", u"vsExpressionValue", kind})
      .method(u"FunctionHandleNull", &S::FunctionHandleNull,
              {u"vsColumnExpression", u"vsUseThisOnNull", kind})
      .method(u"FunctionIIF", &S::FunctionIIF,
              {u"vsCondition", u"vsTrueCondition", u"vsFalseCondition", kind,
               optional(u"vsOutputColumnName", u"")})
      .method(u"FillField", &S::FillField, {u"fld", u"veDataType"})
      .method(u"FillTextField", &S::FillTextField, {u"fld"})
      .method(u"FillNumberField", &S::FillNumberField, {u"fld"})
      .method(u"FillDateField", &S::FillDateField, {u"fld"})
      .method(u"FillBooleanField", &S::FillBooleanField, {u"fld"})
      .method(u"fmtSQLDate", &S::fmtSQLDate, {u"datValue", kind})
      .method(u"fmtSQLDateTime", &S::fmtSQLDateTime, {u"datValue", kind})
      .method(u"fmtSQLTime", &S::fmtSQLTime, {u"datValue", kind})
      .method(u"fmtSQLCastToDate", &S::fmtSQLCastToDate, {u"vsVarName", kind})
      .method(u"fmtSQLCastToString", &S::fmtSQLCastToString, {u"vsColumnExpression", kind})
      .method(u"fmtSQLAddConvertToString", &S::fmtSQLAddConvertToString,
              {u"vsColumnExpression", kind})
      .method(u"fmtSQLBoolean", &S::fmtSQLBoolean, {u"blnValue", kind})
      .method(u"fmtSQLNumber", &S::fmtSQLNumber, {u"vdblValue"})
      .method(u"fmtSQLString", &S::fmtSQLString, {u"strValue", kind})
      .method(u"fmtSQLStringHandleNull", &S::fmtSQLStringHandleNull, {u"vntValue", kind})
      .method(u"FormatDateToCanonicalForm", &S::FormatDateToCanonicalForm, {u"vdValue"})
      .method(u"FormatDateToCanonicalFormV2", &S::FormatDateToCanonicalFormV2, {u"vdValue", kind})
      .method(u"FormatDateTimeForDatabase", &S::FormatDateTimeForDatabase,
              {u"vdValue", kind, optional(u"vsDateFormat", u""),
               optional(u"vbUseDefaultFormatForSQLServer", true)})
      .method(u"FormatDateTimeForDatabaseV2", &S::FormatDateTimeForDatabaseV2,
              {u"vdValue", kind, optional(u"vsDateFormat", u""),
               optional(u"vbUseDefaultFormatForSQLServer", true)})
      .method(u"GetSQLLikeOperatorAnySymbol", &S::GetSQLLikeOperatorAnySymbol, {kind})
      .method(u"FormatSqlValue", &S::FormatSqlValue,
              {u"veDataType", u"vvntValue", kind, optional(u"vbReturnStringWithQuotes", true)})
      .method(u"UDFCastFloatToString", &S::UDFCastFloatToString, {u"vsSQLMain", u"vsSQLDrop"})
      .method(u"UDFCrossTable", &S::UDFCrossTable, {u"vsSQLMain", u"vsSQLDrop"})
      .build();
}

}  // namespace ravelin
