' Reading a dBASE III table into a record set: the columns the reader made, every row walked
' with MoveFirst, MoveNext and EOF, and the errors of a missing or broken file.
Option Explicit
SetLocale "en-US"

Dim reader, rs, field, line
Set reader = CreateObject("DBFFileReader")

WScript.Echo "Records in the header:", reader.RecordCount("dbase_sample.dbf")

Set rs = reader.readDBF("dbase_sample.dbf")
For Each field In rs.Fields
  WScript.Echo "Column", field.Name, "type", field.Type, "size", field.DefinedSize
Next

' The last record is still being added; the first move completes it.
WScript.Echo "Edit mode (2, adding):", rs.EditMode

rs.MoveFirst
Do While Not rs.EOF
  If IsNull(rs("CODE").Value) Then
    WScript.Echo "(a deleted record: every column is Null)"
  Else
    line = rs("CODE").Value & " [" & rs("NAME").Value & "] " & FormatNumber(rs("PRICE").Value, 2) & _
           " paid=" & rs("PAID").Value
    If IsNull(rs("SOLD").Value) Then
      line = line & " sold: no date"
    Else
      line = line & " sold: " & Year(rs("SOLD").Value) & "-" & Month(rs("SOLD").Value) & "-" & _
             Day(rs("SOLD").Value)
    End If
    WScript.Echo line & " notes null: " & IsNull(rs("NOTES").Value)
  End If
  rs.MoveNext
Loop
WScript.Echo "Rows:", rs.RecordCount

On Error Resume Next
Set rs = reader.readDBF("no_such_table.dbf")
WScript.Echo Hex(Err.Number), Err.Source, Err.Description
Err.Clear
WScript.Echo TypeName(reader.readDBF("")), reader.RecordCount("")
