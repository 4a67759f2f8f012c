' SQLUtilities: one query written once and built for both database kinds, the desktop database
' file (dbtMDB) and the database server (dbtMSSQL). Every text is spliced in as it comes back,
' blanks included. Run with: ravelin examples/sql_text.vbs
Option Explicit
SetLocale "en-US"

Dim sql, kind, names, items, query
Set sql = CreateObject("Ravelin.SQLUtilities")
names = Array("desktop (dbtMDB)", "server (dbtMSSQL)")

' A receipt line: the price of the first present of three columns, the sale's date and time,
' a flag named by a conditional, filtered on a customer's name, a date and an active flag.
Set items = CreateObject("Ravelin.clsArrayString")
items.add "l.Price"
items.add "p.ListPrice"
items.add "0"

For Each kind In Array(dbtMDB, dbtMSSQL)
  query = "SELECT l.ID," & sql.FunctionCoalesce(items, kind) & " AS Price," & _
          sql.FunctionHandleNull("l.Note", "''", kind) & " AS Note," & _
          sql.FunctionDatePart("yyyy", "l.Sold", kind) & " AS SoldYear," & _
          sql.FunctionIIF("l.Qty>1", "1", "0", kind, "Multi") & _
          " FROM Lines l WHERE l.Customer=" & sql.FormatSqlValue(DTS_Text, "O'Brien", kind) & _
          " AND l.Name LIKE '" & sql.fmtSQLString("Caf" & sql.GetSQLLikeOperatorAnySymbol(kind), kind) & "'" & _
          " AND l.Sold>=" & sql.fmtSQLDateTime(DateSerial(2010, 3, 2) + TimeSerial(14, 5, 9), kind) & _
          " AND l.Day=" & sql.fmtSQLDate(DateSerial(2010, 3, 2), kind) & _
          " AND l.Active=" & sql.fmtSQLBoolean(True, kind) & _
          " AND l.Price>" & sql.fmtSQLNumber(2.5) & _
          " AND" & sql.FunctionDateDiff("dd", "l.Sold", sql.FunctionDate(kind), kind) & "<30"
  WScript.Echo names(kind) & ":"
  WScript.Echo query
Next

' Numbers: fmtSQLNumber always writes a point, FormatSqlValue keeps the locale's separator.
SetLocale "pt-BR"
WScript.Echo "pt-BR:", sql.fmtSQLNumber(1234.5), sql.FormatSqlValue(DTS_Numeric, 1234.5, dbtMSSQL)
SetLocale "en-US"

' The catalogue's type codes, money deliberately unknown.
WScript.Echo "adVarWChar:", sql.ConvertFromCatalogDataType(adVarWChar), _
             "adCurrency:", sql.ConvertFromCatalogDataType(adCurrency)

' A date part the dialects do not share fails with the library's parsing error.
On Error Resume Next
query = sql.FunctionDatePart("M", "l.Sold", dbtMSSQL)
WScript.Echo "error:", Err.Number, Err.Source
WScript.Echo Err.Description
On Error GoTo 0

' The server routines come back through the two by-reference arguments.
Dim createText, dropText
sql.UDFCastFloatToString createText, dropText
WScript.Echo "castFloatToString:", UBound(Split(createText, vbCrLf)) + 1, "lines; drop:"
WScript.Echo dropText
