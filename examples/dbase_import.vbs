' The suite's import of a dBASE table into its database: the rows of dbase_sample.dbf marked as
' pending insertions, sent in one batch through a connection to an SQLite database held in
' memory, and read back with a query. The table of the database carries the file's name.
Option Explicit
SetLocale "en-US"

Dim reader, utilities, connection, rs, result, line, field

Set connection = CreateObject("ADODB.Connection")
connection.Open "Driver={SQLite3};Database=:memory:"
connection.Execute "CREATE TABLE dbase_sample (CODE DOUBLE PRECISION, NAME VARCHAR(20), " & _
                   "PRICE DOUBLE PRECISION, SOLD TIMESTAMP, PAID BOOLEAN, NOTES VARCHAR(10))"

Set reader = CreateObject("DBFFileReader")
Set utilities = CreateObject("DataUtilities")
Set rs = reader.readDBF("dbase_sample.dbf")
WScript.Echo "Has a PRICE column: " & CStr(utilities.FieldExists(rs, "price"))
utilities.UpdateRsToInsert rs
rs.Filter = 1 ' adFilterPendingRecords
WScript.Echo "Pending insertions:", rs.RecordCount
rs.Filter = 0

Set rs.ActiveConnection = connection
rs.UpdateBatch
rs.MoveFirst
WScript.Echo "Status after the batch (8, unmodified):", rs.Status
utilities.CloseRecordset rs

Set result = connection.Execute("SELECT CODE, NAME, PRICE, SOLD, PAID FROM dbase_sample " & _
                                "WHERE CODE IS NOT NULL ORDER BY CODE")
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

' A row the database refuses rolls the whole batch back.
connection.Execute "CREATE TABLE strict (CODE DOUBLE PRECISION NOT NULL)"
Set rs = CreateObject("ADODB.Recordset")
Set rs.ActiveConnection = connection
rs.Open "SELECT CODE FROM strict", , 3, 4 ' adOpenStatic, adLockBatchOptimistic
rs.AddNew "CODE", 1
rs.AddNew
rs.Update
On Error Resume Next
rs.UpdateBatch
WScript.Echo "Batch with a Null CODE fails: " & CStr(Err.Number <> 0)
WScript.Echo "  " & Err.Description
On Error GoTo 0
Set result = connection.Execute("SELECT COUNT(*) AS n FROM strict")
WScript.Echo "Rows kept:", result("n").Value
connection.Close
