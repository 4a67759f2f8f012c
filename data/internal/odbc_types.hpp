// How record-set fields and ODBC columns and parameters meet: the field a result column becomes
// (as the ODBC provider of the data-access objects types it), the parameter a field's values are
// sent as, and dates between serials and ODBC timestamps.
#pragma once

#include <ravelin/data/field_types.hpp>
#include <ravelin/frame/date.hpp>
#include <ravelin/platform/odbc.hpp>

namespace ravelin::odbc_types {

// The field for a result column: type, DefinedSize, precision and scale, attributes
// (adFldUnknownUpdatable, adFldFixed, adFldLong, adFldIsNullable | adFldMayBeNull for a column
// that may hold Null) and base table and column as the driver gave them. SQL types:
// INTEGER adInteger, SMALLINT adSmallInt, TINYINT adTinyInt, BIGINT adBigInt (the unsigned
// forms adUnsignedInt, adUnsignedSmallInt, adUnsignedTinyInt, adUnsignedBigInt), DOUBLE and
// FLOAT adDouble, REAL adSingle, NUMERIC and DECIMAL adNumeric, BIT adBoolean, DATE adDBDate,
// TIME adDBTime, TIMESTAMP adDBTimeStamp, CHAR adChar, VARCHAR adVarChar, LONGVARCHAR
// adLongVarChar, WCHAR adWChar, WVARCHAR adVarWChar, WLONGVARCHAR adLongVarWChar, BINARY
// adBinary, VARBINARY adVarBinary, LONGVARBINARY adLongVarBinary, GUID adGUID; any other type
// is read as text (adVarWChar).
FieldDefinition fieldFor(const platform::OdbcColumn& column);

// The parameter a field's values are bound as.
platform::OdbcParameter parameterFor(const FieldDefinition& field);

// The table of a simple query, "SELECT ... FROM name [alias] [WHERE ...|ORDER BY ...]", its
// quotes removed: empty when there is no FROM, or more than one (a subquery), or the clause
// names more than one table (a comma or a JOIN).
String singleTableOf(StringView query);

platform::OdbcTimestamp timestampOf(Date date);
// The serial of a timestamp, whole seconds (the fraction is dropped); raises 0x80040E21 for a
// date outside the automation range (years 100 to 9999).
Date dateOf(const platform::OdbcTimestamp& stamp);

}  // namespace ravelin::odbc_types
