// SQLUtilities: the expression wrappers of the two dialects.
#include <ravelin/base/text.hpp>
#include <ravelin/data/internal/sql_error_handler.hpp>
#include <ravelin/data/internal/sql_kind.hpp>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/text/text_helpers.hpp>

namespace ravelin {
namespace {

struct DatePartTokens {
  StringView name;     // the part as callers write it, upper-cased
  StringView desktop;  // quoted, as DatePart and DateDiff of the desktop database take it
  StringView server;   // bare
};

constexpr DatePartTokens kDateParts[] = {
    {u"YYYY", u"'yyyy'", u"yyyy"}, {u"Q", u"'q'", u"q"},  {u"MM", u"'m'", u"m"},
    {u"Y", u"'y'", u"y"},          {u"DD", u"'d'", u"d"}, {u"HH", u"'h'", u"hh"},
    {u"N", u"'n'", u"n"},          {u"S", u"'s'", u"s"},
};

// The dialect's token of a date-part name ("mm", " dd "); empty for an unknown kind. Any other
// name raises CCEC_FailedParametersParsing with the name as given.
String datePartForDatabase(StringView vsDatePart, DataBTypeEnum kind) {
  const String name = toUpper(TrimSpaces(vsDatePart));
  for (const DatePartTokens& part : kDateParts) {
    if (name == part.name) return sql::forKind(kind, part.desktop, part.server);
  }
  raiseError(CCEC_FailedParametersParsing, String(kCommonErrorSource),
             String(SQLUtilities::kClassId) + u".getDatePartForDatabase()\r\n vsDatePart=" +
                 String(vsDatePart));
}

}  // namespace

String SQLUtilities::FunctionDate(DataBTypeEnum veDatabaseType) const {
  return sql::forKind(veDatabaseType, u" date() ", u" getdate() ");
}

String SQLUtilities::fmtSQLCastToDate(StringView vsVarName, DataBTypeEnum veDatabaseType) const {
  const String e(vsVarName);
  return sql::forKind(veDatabaseType, u" DATEVALUE(" + e + u")", u" CAST(" + e + u" AS datetime)");
}

String SQLUtilities::fmtSQLCastToString(StringView vsColumnExpression,
                                        DataBTypeEnum veDatabaseType) const {
  const String e(vsColumnExpression);
  return sql::forKind(veDatabaseType, u" CStr(" + e + u")", u" CAST(" + e + u" AS nvarchar)");
}

String SQLUtilities::fmtSQLAddConvertToString(StringView vsColumnExpression,
                                              DataBTypeEnum veDatabaseType) const {
  return fmtSQLCastToString(vsColumnExpression, veDatabaseType);
}

String SQLUtilities::FunctionHandleNull(StringView vsColumnExpression, StringView vsUseThisOnNull,
                                        DataBTypeEnum veDatabaseType) const {
  return sql::underHandler(u".functionHandleNull()", [&]() -> String {
    const String e(vsColumnExpression);
    const String u(vsUseThisOnNull);
    return sql::forKind(veDatabaseType, u" IIF(ISNULL(" + e + u")," + u + u"," + e + u")",
                        u" ISNULL(" + e + u"," + u + u")");
  });
}

String SQLUtilities::FunctionIIF(StringView vsCondition, StringView vsTrueCondition,
                                 StringView vsFalseCondition, DataBTypeEnum veDatabaseType,
                                 StringView vsOutputColumnName) const {
  return sql::underHandler(u".functionIIF()", [&]() -> String {
    // Only the test for a name trims it; the name itself goes in as given.
    const bool named = !TrimSpaces(vsOutputColumnName).empty();
    const String name(vsOutputColumnName);
    const String c(vsCondition);
    const String a(vsTrueCondition);
    const String b(vsFalseCondition);
    switch (veDatabaseType) {
      case dbtMDB:
        return u" IIF(" + c + u"," + a + u"," + b + u")" + (named ? u" AS [" + name + u"]" : u"");
      case dbtMSSQL:
        return (named ? u" [" + name + u"]=" : String(u" ")) + u"CASE WHEN " + c + u" THEN " + a +
               u" ELSE " + b + u" END";
    }
    return String();
  });
}

String SQLUtilities::FunctionDatePart(StringView vsDatePart, StringView vsExpressionValue,
                                      DataBTypeEnum veDatabaseType) const {
  return sql::underHandler(u".functionDatePart()", [&] {
    return u" DatePart(" + datePartForDatabase(vsDatePart, veDatabaseType) + u"," +
           String(vsExpressionValue) + u")";
  });
}

Variant SQLUtilities::FunctionDateDiff(StringView vsDatePart, StringView vsStartDateExpression,
                                       StringView vsEndDateExpression,
                                       DataBTypeEnum veDatabaseType) const {
  return sql::underHandler(u".functionDateDiff()", [&] {
    return Variant(u" DateDiff(" + datePartForDatabase(vsDatePart, veDatabaseType) + u"," +
                   String(vsStartDateExpression) + u"," + String(vsEndDateExpression) + u") ");
  });
}

String SQLUtilities::FunctionCoalesce(const std::shared_ptr<clsArrayString>& voExpressionValues,
                                      DataBTypeEnum veDatabaseType) const {
  return sql::underHandler(u".functionCoalesce()", [&]() -> String {
    if (!voExpressionValues) return String();
    const int16_t count = voExpressionValues->getCount();
    if (count < 2) return String();
    switch (veDatabaseType) {
      case dbtMSSQL: {
        String joined = voExpressionValues->item(0);
        for (int16_t i = 1; i < count; ++i)
          joined += u"," + voExpressionValues->item(i);
        return u" Coalesce(" + joined + u")";
      }
      case dbtMDB: {
        // nz takes two arguments, so each further item wraps what came before.
        String nested = voExpressionValues->item(0);
        for (int16_t i = 1; i < count; ++i) {
          nested = u" nz(" + nested + u"," + voExpressionValues->item(i) + u")";
        }
        return nested;
      }
    }
    return String();
  });
}

}  // namespace ravelin
