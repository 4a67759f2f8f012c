' The import of dbase_import.vbs against a PostgreSQL server: the rows of dbase_sample.dbf marked
' as pending insertions, sent in one batch through a connection, and read back with a query.
' Usage: ravelin dbase_import.vbs "Driver={PostgreSQL Unicode};Server=...;Port=...;Database=...;UID=...;"
' (tools/dev demo runs it when a server is given in RAVELIN_POSTGRES.)
Option Explicit
SetLocale "en-US"

Dim connection, reader, utilities, rs, result, line, field

If WScript.Arguments.Count < 1 Then
  WScript.Echo "Usage: ravelin dbase_import.vbs <ODBC connection string of a PostgreSQL database>"
  WScript.Quit 2
End If

Set connection = CreateObject("ADODB.Connection")
connection.Open WScript.Arguments(0)
' The columns carry the dBASE field names as they are spelt there (PostgreSQL folds bare names).
connection.Execute "DROP TABLE IF EXISTS dbase_sample"
connection.Execute "CREATE TABLE dbase_sample (""CODE"" DOUBLE PRECISION, ""NAME"" VARCHAR(20), " & _
                   """PRICE"" DOUBLE PRECISION, ""SOLD"" TIMESTAMP, ""PAID"" BOOLEAN, ""NOTES"" VARCHAR(10))"

Set reader = CreateObject("DBFFileReader")
Set utilities = CreateObject("DataUtilities")
Set rs = reader.readDBF("../dbase_sample.dbf")
utilities.UpdateRsToInsert rs
WScript.Echo "Pending insertions:", rs.RecordCount
Set rs.ActiveConnection = connection
rs.UpdateBatch
utilities.CloseRecordset rs

Set result = connection.Execute("SELECT ""CODE"", ""NAME"", ""PRICE"", ""SOLD"", ""PAID"" " & _
                                "FROM dbase_sample WHERE ""CODE"" IS NOT NULL ORDER BY ""CODE""")
Do While Not result.EOF
  line = ""
  For Each field In result.Fields
    If IsNull(field.Value) Then line = line & "| Null " Else line = line & "| " & field.Value & " "
  Next
  WScript.Echo line
  result.MoveNext
Loop
Set result = connection.Execute("SELECT COUNT(*) AS n FROM dbase_sample")
WScript.Echo "Rows in the table:", result("n").Value
connection.Execute "DROP TABLE dbase_sample"
connection.Close
