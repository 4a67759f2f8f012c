// SQLUtilities: value literals, date texts and FormatSqlValue.
#include <algorithm>
#include <ravelin/data/internal/sql_error_handler.hpp>
#include <ravelin/data/internal/sql_kind.hpp>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/format.hpp>

namespace ravelin {
namespace {

String formatDate(Date value, StringView pattern) {
  return Format(Variant(value), pattern);
}

String doubledApostrophes(StringView text) {
  String result;
  result.reserve(text.size() + 2);
  for (const char16_t unit : text) {
    result.push_back(unit);
    if (unit == u'\'') result.push_back(u'\'');
  }
  return result;
}

}  // namespace

String SQLUtilities::fmtSQLDate(Date datValue, DataBTypeEnum veDatabaseType) const {
  switch (veDatabaseType) {
    case dbtMDB:
      return u" DATEVALUE('" + textOfDate(datValue) + u"')";
    case dbtMSSQL:
      // The zero date and the years before it stand for "no date".
      if (splitDate(datValue).year > 1899) {
        return u" CAST('" + formatDate(datValue, u"yyyymmdd") + u"' AS datetime)";
      }
      return u" CAST('' AS datetime) ";
  }
  return String();
}

String SQLUtilities::fmtSQLDateTime(Date datValue, DataBTypeEnum veDatabaseType) const {
  switch (veDatabaseType) {
    case dbtMDB:
      return u"#" + formatDate(datValue, u"mm\\/dd\\/yyyy hh:mm:ss") + u"#";
    case dbtMSSQL:
      // The server's datetime starts in 1753.
      if (splitDate(datValue).year > 1753) {
        return u"CAST('" + formatDate(datValue, u"yyyymmdd hh:mm:ss") + u"' AS datetime)";
      }
      return u"CAST('' AS datetime)";
  }
  return String();
}

String SQLUtilities::fmtSQLTime(Date datValue, DataBTypeEnum /*veDatabaseType*/) const {
  return Str(Variant(datValue.serial));
}

String SQLUtilities::fmtSQLBoolean(bool blnValue, DataBTypeEnum veDatabaseType) const {
  return blnValue ? sql::forKind(veDatabaseType, u"True", u"1")
                  : sql::forKind(veDatabaseType, u"False", u"0");
}

String SQLUtilities::fmtSQLNumber(double vdblValue) const {
  String text = textOfDouble(vdblValue);
  std::replace(text.begin(), text.end(), u',', u'.');
  return text;
}

String SQLUtilities::fmtSQLString(StringView strValue, DataBTypeEnum veDatabaseType) const {
  return sql::isKnownKind(veDatabaseType) ? doubledApostrophes(strValue) : String();
}

String SQLUtilities::fmtSQLStringHandleNull(const ObjectRef& vntValue,
                                            DataBTypeEnum veDatabaseType) const {
  return sql::underHandler(u".fmtSQLStringHandleNull()",
                           [&] { return fmtSQLString(FillTextField(vntValue), veDatabaseType); });
}

String SQLUtilities::GetSQLLikeOperatorAnySymbol(DataBTypeEnum veDatabaseType) const {
  return sql::forKind(veDatabaseType, u"%", u"%");
}

String SQLUtilities::FormatDateToCanonicalForm(Date vdValue) const {
  return formatDate(vdValue, u"yyyy-mm-dd hh:mm:ss");
}

String SQLUtilities::FormatDateToCanonicalFormV2(Date vdValue, DataBTypeEnum veDatabaseType) const {
  if (!sql::isKnownKind(veDatabaseType)) return String();
  return formatDate(vdValue,
                    sql::forKind(veDatabaseType, u"yyyy-mm-dd hh:mm:ss", u"yyyymmdd hh:mm:ss"));
}

String SQLUtilities::FormatDateTimeForDatabase(Date vdValue, DataBTypeEnum veDatabaseType,
                                               StringView vsDateFormat,
                                               bool vbUseDefaultFormatForSQLServer) const {
  switch (veDatabaseType) {
    case dbtMDB:
      // With no date format only the time remains, after its blank; callers rely on it.
      return formatDate(vdValue, String(vsDateFormat) + u" hh:mm:ss");
    case dbtMSSQL:
      if (vbUseDefaultFormatForSQLServer) return formatDate(vdValue, u"yyyy-mm-dd hh:mm:ss");
      return formatDate(vdValue,
                        (vsDateFormat.empty() ? u"yyyymmdd" : String(vsDateFormat)) + u" hh:mm:ss");
  }
  return String();
}

String SQLUtilities::FormatDateTimeForDatabaseV2(Date vdValue, DataBTypeEnum veDatabaseType,
                                                 StringView vsDateFormat,
                                                 bool vbUseDefaultFormatForSQLServer) const {
  if (veDatabaseType == dbtMSSQL) return formatDate(vdValue, u"yyyymmdd hh:mm:ss");
  return FormatDateTimeForDatabase(vdValue, veDatabaseType, vsDateFormat,
                                   vbUseDefaultFormatForSQLServer);
}

String SQLUtilities::FormatSqlValue(enumDataTypesSql veDataType, const Variant& vvntValue,
                                    DataBTypeEnum veDatabaseType,
                                    bool vbReturnStringWithQuotes) const {
  return sql::underHandler(u".formatSqlValue()", [&]() -> String {
    // A field (or any object with a default value) stands for its value.
    const Variant value = valueBehindObject(vvntValue);
    switch (veDataType) {
      case DTS_Date:
        return fmtSQLDate(CDate(value), veDatabaseType);
      case DTS_Time:
        return fmtSQLTime(CDate(value), veDatabaseType);
      case DTS_Boolean:
        return fmtSQLBoolean(CBool(value), veDatabaseType);
      case DTS_Numeric:
      case DTS_Unknown:
        // The locale's own text: a decimal comma stays, unlike fmtSQLNumber.
        return CStr(value);
      default: {
        // Unicode text gets no national prefix; the suite's statements never carry one.
        String inner = fmtSQLString(CStr(value), veDatabaseType);
        return vbReturnStringWithQuotes ? u"'" + inner + u"'" : inner;
      }
    }
  });
}

}  // namespace ravelin
